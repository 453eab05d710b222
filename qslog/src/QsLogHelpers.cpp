// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/QsLogHelpers.h"

#include "qslog/LoggerRegistry.h"
#include "qslog/MessageBuilder.h"

#include <QDir>
#include <QQmlEngine>

// The linker drops a static library's resources unless something refers to them. The macro works
// only outside of namespaces.
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

// Names come from units: a line break in one must not look like the start of another log line.
QString onOneLine(QString text)
{
    for (QChar& character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            character = QLatin1Char(' ');
    }
    return text;
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
    // Text objects would be quoted; the stream takes 8-bit text as UTF-8 on every platform.
    builder.stream() << origin.toUtf8().constData() << onOneLine(message).toUtf8().constData();
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
