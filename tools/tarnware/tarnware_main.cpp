// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tarnware/BinaryStreams.h"
#include "tarnware/Tarnware.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    makeStreamsBinary();
    const QCoreApplication application(argc, argv);
    QTextStream errors(stderr);
    return Tarnware(errors).run(QCoreApplication::arguments());
}
