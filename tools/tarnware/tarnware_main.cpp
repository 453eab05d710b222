// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tarnware/Tarnware.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QTextStream output(stdout);
    QTextStream errors(stderr);
    return Tarnware(output, errors).run(QCoreApplication::arguments());
}
