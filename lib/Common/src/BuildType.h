// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

namespace Common {

/// The kind of build, for QML (singleton BuildType) and for native code. Constants; any thread.
class BuildType : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether the build is meant for customers: true for a release.
    Q_INVOKABLE static bool isPublic();
    Q_INVOKABLE static bool isRelease();
    Q_INVOKABLE static bool isRC();
    Q_INVOKABLE static bool isBeta();
    Q_INVOKABLE static bool isTesting();

    /// "release", "rc", "beta" or "testing".
    Q_INVOKABLE static QString buildTypeString();
};

} // namespace Common
