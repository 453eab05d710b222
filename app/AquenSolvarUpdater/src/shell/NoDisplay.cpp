// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/NoDisplay.h"

#include <QString>

#include <cstdio>
#include <cstdlib>

namespace AquenSolvar {

namespace {

// What Qt says of any display that does not open, as if the program's files were the cause.
bool isMisleading(const QString& text)
{
    return text.contains(QLatin1String("Reinstalling the application")) ||
           text.contains(QLatin1String("even though it was found"));
}

} // namespace

void exitWithoutDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!isMisleading(text))
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
    if (type != QtFatalMsg)
        return;
    std::fputs("AquenSolvarUpdater: cannot open a display. Start it in a desktop session.\n",
               stderr);
    std::_Exit(EXIT_FAILURE); // the application object is half made
}

} // namespace AquenSolvar
