// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>
#include <QString>

class QQmlEngine;

namespace QsLog {

/// The native side of the JavaScript module "qslog": singleton QsLogHelpers of the QML module
/// "QsLog" 1.0. Stateless; called on the engine's thread.
class QsLogHelpers : public QObject
{
    Q_OBJECT

public:
    /// The values of QsLogging::Level.
    enum Level
    {
        Trace = 0,
        Debug = 1,
        Info = 2,
        Warn = 3,
        Error = 4,
        Fatal = 5,
        Off = 6
    };
    Q_ENUM(Level)

    using QObject::QObject;

    /// Writes one line through the logger named @p tag, unless its threshold is higher.
    /// @param level 0 to 5; anything else counts as Off, which passes every threshold
    /// @param method, url, line the place of the call, as the line shows it
    /// @param message the text; each control character and line separator becomes a space
    Q_INVOKABLE void qml_QsLog(const QString& tag, int level, const QString& method,
                               const QString& url, const QString& line, const QString& message);

    /// The path relative to the root of the sources, which is empty: the current directory.
    Q_INVOKABLE QString qml_RelativeSrcDir(const QString& file);
};

/// Makes `import qslog 1.0` work in documents of that engine: registers the module's resources and
/// the singleton, and adds the import path. May be called repeatedly. The engine's thread.
void registerQmlLogging(QQmlEngine& engine);

} // namespace QsLog
