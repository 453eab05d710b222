// SPDX-License-Identifier: LicenseRef-Proprietary
// Logging from documents: a line names the document, line and handler that wrote it.
#include "qslog/LoggerRegistry.h"
#include "qslog/QsLogHelpers.h"
#include "support/LogCapture.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QtTest>

class tst_qmllogging : public QObject
{
    Q_OBJECT

private:
    // The property "result" after a document at qrc:/qml/Probe.qml, body from line 4, was created.
    static QString run(const QByteArray& body)
    {
        QQmlEngine engine;
        QsLog::registerQmlLogging(engine);
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.2; import qslog 1.0 as QsLog\nQtObject {\n"
                          "property var result\n" +
                              body + "\n}\n",
                          QUrl("qrc:/qml/Probe.qml"));
        const std::unique_ptr<QObject> root(component.create());
        return root ? root->property("result").toString() : component.errorString();
    }

private slots:
    void everyLevelNamesItsPlace()
    {
        // As on a system whose 8-bit encoding is not UTF-8.
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        LogCapture log({"Probe", "Other"});
        QCOMPARE(run(R"(function check(text) { result = QsLog.FLog.assert(text); result += ''; }
Component.onCompleted: { var f = QsLog.FLog;
f.trace('a 洗'); f.debug(1); f.info(2); f.warn(3);
f.error(4); f.fatal(5); f.off(6); f.log(2, f.tag(), '');
f.log(2, 'a\n\u2028\x1bz', 'Other'); check(); check('too hot'); })"),
                 QString("qml/Probe.qml:8 [onCompleted] ASSERT too hot"));
        QCOMPARE(log.lines().join('\n').remove(" qml/Probe.qml").remove(" [onCompleted]"),
                 QStringLiteral(R"(TRACE:6 a 洗
DEBUG:6 1
INFO:6 2
WARN:6 3
ERROR:7 4
FATAL:7 5
     :7 6
INFO:7 Probe
INFO:8 a   z
FATAL:8 ASSERT failed
FATAL:8 ASSERT too hot)"));
    }

    void offAndUnknownLevelsPassEveryThreshold()
    {
        LogCapture log({"Threshold"});
        QsLogging::getLogger("Threshold")->setLoggingLevel(QsLogging::Level::Fatal);
        for (const char* level : {"4", "5", "6", "9", "-1"})
            run(QByteArray("Component.onCompleted: QsLog.FLog.log(") + level + ", 1, 'Threshold')");
        QCOMPARE(log.lines().replaceInStrings(QRegularExpression(" qml.*"), "").join('|'),
                 QStringLiteral("FATAL|     |     |     "));
    }
};

QTEST_GUILESS_MAIN(tst_qmllogging)
#include "tst_qmllogging.moc"
