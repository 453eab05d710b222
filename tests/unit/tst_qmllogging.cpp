// Logging from documents: that a line names the document, line and handler that wrote it.
#include "qslog/LoggerRegistry.h"
#include "qslog/QsLogHelpers.h"
#include "support/LogCapture.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QTest>
#include <QTextCodec>

class tst_qmllogging : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QsLog::registerQmlLogging(m_engine); }
    void levels_data();
    void levels();
    void thresholds_data();
    void thresholds();
    void explicitTag();
    void textsOutsideTheLocalEncoding();
    void assertNamesTheCheckersCaller();
    void assertFromHandler();
    void callingLine();
    void basename_data();
    void basename();

private:
    // Makes a document at qrc:/qml/Probe.qml whose body starts at line 4, and answers its root.
    std::unique_ptr<QObject> document(const QByteArray& body);
    QVariant evaluate(const QByteArray& expression);

    QQmlEngine m_engine;
};

std::unique_ptr<QObject> tst_qmllogging::document(const QByteArray& body)
{
    QQmlComponent component(&m_engine);
    component.setData(
        "import QtQml 2.2\nimport qslog 1.0 as QsLog\nQtObject {\nproperty var result\n" + body +
            "\n}\n",
        QUrl("qrc:/qml/Probe.qml"));
    std::unique_ptr<QObject> root(component.create());
    if (!root)
        qWarning() << component.errorString();
    return root;
}

QVariant tst_qmllogging::evaluate(const QByteArray& expression)
{
    const auto root = document("Component.onCompleted: result = " + expression);
    return root ? root->property("result") : QVariant();
}

void tst_qmllogging::levels_data()
{
    QTest::addColumn<QString>("level");
    for (const char* level : {"trace", "debug", "info", "warn", "error", "fatal"})
        QTest::newRow(level) << QString(level).toUpper();
    QTest::newRow("off") << QString();
}

void tst_qmllogging::levels()
{
    QFETCH(QString, level);
    LogCapture log({"Probe"});
    const QByteArray function = QTest::currentDataTag();
    const auto root =
        document("Component.onCompleted: {\nQsLog.FLog." + function +
                 "(\"a word\");\n}\nfunction byName() { QsLog.FLog." + function + "(2) }");
    QVERIFY(root);
    QMetaObject::invokeMethod(root.get(), "byName");
    const QStringList expected = {level + " qml/Probe.qml:6 [onCompleted] a word",
                                  level + " qml/Probe.qml:8 [byName] 2"};
    QCOMPARE(log.lines().replaceInStrings(QRegularExpression("^\\s+"), " "), expected);
}

void tst_qmllogging::thresholds_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("written");
    QTest::newRow("below") << 3 << 0;
    QTest::newRow("at") << 4 << 1;
    QTest::newRow("off passes") << 6 << 1;
    QTest::newRow("beyond counts as off") << 9 << 1;
    QTest::newRow("negative counts as off") << -1 << 1;
}

void tst_qmllogging::thresholds()
{
    QFETCH(int, level);
    LogCapture log({"Threshold"});
    const auto threshold =
        level == 3 || level == 4 ? QsLogging::Level::Error : QsLogging::Level::Off;
    QsLogging::getLogger("Threshold")->setLoggingLevel(threshold);
    evaluate("QsLog.FLog.log(" + QByteArray::number(level) + ", 'text', 'Threshold')");
    QTEST(log.lines().size(), "written");
}

void tst_qmllogging::explicitTag()
{
    LogCapture probe({"Probe"});
    LogCapture other({"OtherLogger"});
    evaluate("QsLog.FLog.log(2, 'tagged', 'OtherLogger')");
    evaluate("QsLog.FLog.log(2, 'own', '')");
    QCOMPARE(other.lines(), QStringList("INFO qml/Probe.qml:5 [onCompleted] tagged"));
    QCOMPARE(probe.lines(), QStringList("INFO qml/Probe.qml:5 [onCompleted] own"));
    QCOMPARE(evaluate("QsLog.FLog.tag()").toString(), QStringLiteral("Probe"));
}

// As on a system whose 8-bit encoding is not UTF-8.
void tst_qmllogging::textsOutsideTheLocalEncoding()
{
    QTextCodec* const before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    LogCapture log({"Probe"});
    QsLog::QsLogHelpers().qml_QsLog("Probe", 2, QStringLiteral("w\u00E4hle"),
                                    QStringLiteral("qml/Probe.qml"), "7",
                                    QStringLiteral("W\u00E4scher \u6D17"));
    QTextCodec::setCodecForLocale(before);
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("INFO qml/Probe.qml:7 [w\u00E4hle] W\u00E4scher \u6D17")));
}

void tst_qmllogging::assertNamesTheCheckersCaller()
{
    LogCapture log({"Probe"});
    const auto root = document("function check() {\nvar text = QsLog.FLog.assert('too hot');\n"
                               "result = text;\n}\n"
                               "Component.onCompleted: {\ncheck();\n}");
    QVERIFY(root);
    QCOMPARE(root->property("result").toString(),
             QStringLiteral("qml/Probe.qml:10 [onCompleted] ASSERT too hot"));
    QCOMPARE(log.lines(), QStringList("FATAL qml/Probe.qml:10 [onCompleted] ASSERT too hot"));
}

void tst_qmllogging::assertFromHandler()
{
    LogCapture log({"Probe"});
    QCOMPARE(evaluate("QsLog.FLog.assert()").toString(),
             QStringLiteral("qml/Probe.qml:5 [onCompleted] ASSERT failed"));
    QCOMPARE(log.lines(), QStringList("FATAL qml/Probe.qml:5 [onCompleted] ASSERT failed"));
}

void tst_qmllogging::callingLine()
{
    const QVariantMap place =
        evaluate(
            "(function named() { var place = QsLog.LoggingUtils.callingLine(); return place })()")
            .value<QJSValue>()
            .toVariant()
            .toMap();
    const QVariantMap expected = {{"method", "named"},
                                  {"url", "qml/Probe.qml"},
                                  {"line", "5"},
                                  {"relativeUrl", "qml/Probe.qml"},
                                  {"baseUrl", "Probe"}};
    QCOMPARE(place, expected);
}

void tst_qmllogging::basename_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("qml/FirmwareUpdateState.qml") << "FirmwareUpdateState";
    QTest::newRow("a\\\\b.c\\\\Name.test.js") << "Name.test";
    QTest::newRow("plain") << "plain";
    QTest::newRow("") << "";
}

void tst_qmllogging::basename()
{
    const QByteArray path = QTest::currentDataTag();
    QTEST(evaluate("QsLog.LoggingUtils.basename('" + path + "')").toString(), "name");
}

QTEST_GUILESS_MAIN(tst_qmllogging)
#include "tst_qmllogging.moc"
