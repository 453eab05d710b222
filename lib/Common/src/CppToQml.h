// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

namespace Common {

/// Native hooks for QML (singleton CppToQml). Any thread.
class CppToQml : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Called by QML assertions. Does nothing in this build, even if @p test is false.
    Q_INVOKABLE static void qml_assert(bool test, const QString& method, const QString& file,
                                       int line, const QString& message);
};

} // namespace Common
