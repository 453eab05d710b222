// The executable's own options, those of the framework beside them, and what is neither.
#include <QProcess>
#include <QTest>

class tst_commandline : public QObject
{
    Q_OBJECT

private slots:
    void answers_data();
    void answers();
};

void tst_commandline::answers_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("output"); // how standard output begins
    QTest::addColumn<QByteArray>("error");  // what standard error holds

    const QByteArray usage = "Usage: " UPDATER " [options]\n";
    const QByteArray version = "AquenSolvarUpdater ";
    const auto row = [](const char* arguments, int status, const QByteArray& output,
                        const QByteArray& error) {
        QTest::newRow(arguments) << QString(arguments).split(' ') << status << output << error;
    };
    row("--help", 0, usage, "");
    row("-h", 0, usage, "");
    row("-v", 0, version, "");
    row("-platform offscreen --version", 0, version, "");
    row("--bogus", 2, "", "Unknown option 'bogus'.\n" + usage);
    row("unit", 2, "", "Unexpected argument 'unit'.\n" + usage);
    // The framework takes the words; no letter in them counts for an option.
    row("-reverse --bogus", 2, "", "Unknown option 'bogus'.\n" + usage);
    row("-stylesheet /dev/null --bogus", 2, "", "Unknown option 'bogus'.\n" + usage);
}

void tst_commandline::answers()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, error);
    QProcess updater;
    updater.start(UPDATER, arguments);
    QVERIFY(updater.waitForFinished(20000));
    QCOMPARE(updater.exitStatus(), QProcess::NormalExit);
    QCOMPARE(updater.exitCode(), status);
    QCOMPARE(updater.readAllStandardOutput().left(output.size()), output);
    // Before its own words the framework may have some about the environment.
    QVERIFY2(updater.readAllStandardError().contains(error), error);
}

QTEST_GUILESS_MAIN(tst_commandline)
#include "tst_commandline.moc"
