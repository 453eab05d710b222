// Logging from documents: a line names the document, line and handler that wrote it.
#include "qslog/LoggerRegistry.h"
#include "qslog/QsLogHelpers.h"
#include "support/LogCapture.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QTextCodec>
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
        LogCapture log({"Probe", "Other"});
        QCOMPARE(run("function check(text) {\nresult = QsLog.FLog.assert(text); result += '';\n}\n"
                     "Component.onCompleted: { var f = QsLog.FLog;\n"
                     "f.trace('a word'); f.debug(1); f.info(2);\n"
                     "f.warn(3); f.error(4); f.fatal(5); f.off(6);\n"
                     "f.log(2, 'tagged', 'Other'); f.log(2, f.tag(), '');\n"
                     "check(); check('too hot');\n}"),
                 QString("qml/Probe.qml:11 [onCompleted] ASSERT too hot"));
        QStringList expected{"TRACE@8 a word",
                             "DEBUG@8 1",
                             "INFO@8 2",
                             "WARN@9 3",
                             "ERROR@9 4",
                             "FATAL@9 5",
                             "     @9 6",
                             "INFO@10 tagged",
                             "INFO@10 Probe",
                             "FATAL@11 ASSERT failed",
                             "FATAL@11 ASSERT too hot"};
        expected.replaceInStrings(QRegularExpression("@(\\d+)"),
                                  " qml/Probe.qml:\\1 [onCompleted]");
        QCOMPARE(log.lines(), expected);
    }

    void offAndUnknownLevelsPassEveryThreshold()
    {
        LogCapture log({"Threshold"});
        QsLogging::getLogger("Threshold")->setLoggingLevel(QsLogging::Level::Fatal);
        for (const char* level : {"4", "5", "6", "9", "-1"})
            run(QByteArray("Component.onCompleted: QsLog.FLog.log(") + level + ", 1, 'Threshold')");
        QCOMPARE(log.lines().size(), 4);
    }

    // As on a system whose 8-bit encoding is not UTF-8.
    void textsOutsideTheLocalEncodingStayWhole()
    {
        QTextCodec* const before = QTextCodec::codecForLocale();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        LogCapture log({"Probe"});
        run("Component.onCompleted: QsLog.FLog.info('\xE6\xB4\x97')");
        QTextCodec::setCodecForLocale(before);
        QVERIFY(log.contains("INFO", QStringLiteral("[onCompleted] \u6D17")));
    }
};

QTEST_GUILESS_MAIN(tst_qmllogging)
#include "tst_qmllogging.moc"
