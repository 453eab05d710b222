#include "qslog/QsLogHelpers.h"

#include "qslog/LoggerRegistry.h"
#include "qslog/MessageBuilder.h"

#include <QDir>
#include <QQmlEngine>

// A static library's resources are linked only when something asks for them, and the call must
// stand outside of any namespace.
static void initializeResources()
{
    Q_INIT_RESOURCE(qslog);
}

namespace QsLog {

namespace {

QsLogging::Level loggingLevel(int level)
{
    return level >= QsLogHelpers::Trace && level <= QsLogHelpers::Fatal ? QsLogging::Level(level)
                                                                        : QsLogging::Level::Off;
}

} // namespace

void QsLogHelpers::qml_QsLog(const QString& tag, int level, const QString& method,
                             const QString& url, const QString& line, const QString& message)
{
    const QsLogging::Level mapped = loggingLevel(level);
    if (!QsLogging::getLogger(tag)->admits(mapped))
        return;
    const QString origin = QsLogging::originText(qml_RelativeSrcDir(url), line, method);
    QsLogging::MessageBuilder builder(mapped, tag);
    // Text objects would be put in quotes, and 8-bit text is UTF-8 to the stream on every platform.
    builder.stream() << origin.toUtf8().constData() << message.toUtf8().constData();
}

QString QsLogHelpers::qml_RelativeSrcDir(const QString& file)
{
    return QDir(QString()).relativeFilePath(file);
}

void registerQmlLogging(QQmlEngine& engine)
{
    initializeResources();
    qmlRegisterSingletonType<QsLogHelpers>(
        "QsLog", 1, 0, "QsLogHelpers",
        [](QQmlEngine*, QJSEngine*) -> QObject* { return new QsLogHelpers; });
    engine.addImportPath(QStringLiteral("qrc:/qslog"));
}

} // namespace QsLog
