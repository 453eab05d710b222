// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

namespace AquenSolvar {

/// Notifies a person who looks at another window, for QML (singleton DesktopNotification). Best
/// effort: a desktop that shows no notifications is logged and is not an error. Does not wait for
/// the desktop. GUI thread.
///
/// Linux: org.freedesktop.Notifications.Notify on the session bus. Windows: the window's button in
/// the taskbar flashes, without the text.
class DesktopNotification : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// @param text plain text, one line, in the language of the user interface
    Q_INVOKABLE void show(const QString& text);
};

} // namespace AquenSolvar
