// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/ConsoleOutput.h"
#include "Common/LibrarySearch.h"
#include "tarnware/BinaryStreams.h"
#include "tarnware/Tarnware.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    Common::restrictLibrarySearch();
    const Common::ConsoleOutput console;
    makeStreamsBinary();
    const QCoreApplication application(argc, argv);
    QTextStream errors(stderr);
    return Tarnware(errors).run(QCoreApplication::arguments());
}
