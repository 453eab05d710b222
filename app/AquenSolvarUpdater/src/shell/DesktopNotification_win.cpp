// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/Log.h"
#include "shell/DesktopNotification.h"

#include <QGuiApplication>
#include <QWindow>

namespace AquenSolvar {

void DesktopNotification::show(const QString& text)
{
    QLOG_INFO() << "The window's button in the taskbar flashes:" << text;
    for (QWindow* window : QGuiApplication::topLevelWindows())
        window->alert(0); // until it is active
}

} // namespace AquenSolvar
