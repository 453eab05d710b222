#pragma once

#include <QObject>

namespace Common {

/// Native hooks for QML (singleton CppToQml). Any thread.
class CppToQml : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The hook that QML's assertions call. It does nothing in this build, whatever `test` is.
    Q_INVOKABLE static void qml_assert(bool test, const QString& method, const QString& file,
                                       int line, const QString& message);
};

} // namespace Common
