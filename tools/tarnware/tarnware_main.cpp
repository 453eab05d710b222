// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/ConsoleOutput.h"
#include "Common/LibrarySearch.h"
#include "tarnware/Tarnware.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    Common::restrictLibrarySearch();
    const Common::ConsoleOutput console;
    const QCoreApplication application(argc, argv);
    QTextStream output(stdout);
    QTextStream errors(stderr);
    return Tarnware(output, errors).run(QCoreApplication::arguments());
}
