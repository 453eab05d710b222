#pragma once

#include <QObject>

namespace Common {

/// The system that this program was built for, for QML (singleton BuildOS) and for native code.
/// Constants but for the architecture, which is asked of the running system. Any thread.
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

    /// What GetOSArchitectureBits() answers.
    Q_INVOKABLE static QString buildArchitectureBitsString();
};

} // namespace Common
