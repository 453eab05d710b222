// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

namespace Common {

/// The target system of this build, for QML (singleton BuildOS) and for native code. Constants,
/// except for the architecture, which the running system reports. Any thread.
class BuildOS : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    Q_INVOKABLE static bool isWindows();
    Q_INVOKABLE static bool isMac();
    Q_INVOKABLE static bool isLinux();

    /// "win", "mac" or "linux".
    Q_INVOKABLE static QString buildOSString();

    /// The result of GetOSArchitectureBits().
    Q_INVOKABLE static QString buildArchitectureBitsString();
};

} // namespace Common
