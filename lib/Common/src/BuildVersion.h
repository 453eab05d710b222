// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

namespace Common {

/// The version of this build, for QML (singleton BuildVersion) and for native code. Constants; any
/// thread.
class BuildVersion : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// major * 1,000,000,000 + minor * 1,000,000 + revision * 1,000 + build.
    Q_INVOKABLE static qint64 versionNumber();
    Q_INVOKABLE static QString versionNumberString();

    /// For example "2.17.1".
    Q_INVOKABLE static QString majorMinorRevisionString();

    /// The build part of the version number, in decimal without padding.
    Q_INVOKABLE static QString buildNumberString();

    /// The source revision: 40 hexadecimal digits, all zeros if unknown.
    Q_INVOKABLE static QString buildGitCommit();
};

} // namespace Common
