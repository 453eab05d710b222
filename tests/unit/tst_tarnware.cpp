#include "firmware/FirmwareBundle.h"
#include "support/TempFiles.h"

#include <QtTest>

using namespace AquenSolvar::Device;

// Runs the real program, as a release script would.
class TarnwareTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_files.put("image.bin", m_image);
        m_files.put("largest.bin", QByteArray(163839, 'x'));
        m_files.put("larger.bin", QByteArray(163840, 'x'));
        m_files.put("empty.bin", QByteArray());
        m_files.put("noise.tarnware", "noise");
        m_files.put("good.tarnware", packFirmwareBundle(4, m_image));
        m_files.put("old.tarnware", packFirmwareBundle(0, m_image));
    }

    void packsShowsAndUnpacks()
    {
        QCOMPARE(run({"pack", "--version", "12", "image.bin", "made.tarnware"}), 0);
        FirmwareBundle bundle;
        QCOMPARE(readFirmwareBundle(m_files.path("made.tarnware"), bundle), 0);
        QCOMPARE(bundle.version, 12);
        QCOMPARE(bundle.data, m_image);

        QCOMPARE(run({"show", "made.tarnware"}), 0);
        // sha256sum of the same bytes.
        QCOMPARE(m_output,
                 QByteArray("made.tarnware: version 12, 14 bytes, SHA-256 "
                            "1df2f3853d10a305aa52d36fd4a03f5721d7ce7daef6f7e5e8d51074d31361f1\n"));
        QCOMPARE(run({"unpack", "made.tarnware", "unpacked.bin"}), 0);
        QCOMPARE(m_files.get("unpacked.bin"), m_image);
        QCOMPARE(run({"pack", "largest.bin", "made.tarnware", "--version", "13"}), 0);
        QCOMPARE(run({"unpack", "made.tarnware", "unpacked.bin"}), 0);
        QCOMPARE(m_files.get("unpacked.bin").size(), 163839);
    }

    void showNamesEachFileThatFails()
    {
        QCOMPARE(run({"show", "noise.tarnware", "good.tarnware", "missing", "old.tarnware"}), 1);
        QVERIFY(m_output.startsWith("good.tarnware: version 4, 14 bytes"));
        QCOMPARE(m_output.count('\n'), 2);
        QVERIFY(m_errors.contains("noise.tarnware: the magic is not \"tarnware\""));
        QVERIFY(m_errors.contains("missing: the file cannot be read"));
        QVERIFY(m_errors.contains("old.tarnware: the updater never chooses a version below 1"));
    }

    void refusesWithTheRightStatus_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        const auto row = [](const char* name, int status, const QString& line) {
            QTest::newRow(name) << line.split(' ', Qt::SkipEmptyParts) << status;
        };
        row("no command", 2, "");
        row("unknown command", 2, "flash x");
        row("no version", 2, "pack image.bin out");
        row("version 0", 2, "pack --version 0 image.bin out");
        row("negative version", 2, "pack --version -1 image.bin out");
        row("version beyond 32 bits", 2, "pack --version 2147483648 image.bin out");
        row("version in words", 2, "pack --version two image.bin out");
        row("version without a value", 2, "pack image.bin out --version");
        row("no output", 2, "pack --version 1 image.bin");
        row("too many files", 2, "pack --version 1 image.bin out more");
        row("show nothing", 2, "show");
        row("unpack without output", 2, "unpack good.tarnware");
        row("missing image", 1, "pack --version 1 missing out");
        row("image is a directory", 1, "pack --version 1 . out");
        row("empty image", 1, "pack --version 1 empty.bin out");
        row("image too large", 1, "pack --version 1 larger.bin out");
        row("output cannot be made", 1, "pack --version 1 image.bin no/such/out");
        row("unpack noise", 1, "unpack noise.tarnware out");
        row("unpack to nowhere", 1, "unpack good.tarnware no/such/out");
    }
    void refusesWithTheRightStatus()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        m_files.put("out", "as before");
        QCOMPARE(run(arguments), status);
        QVERIFY(m_output.isEmpty());
        QVERIFY(m_errors.startsWith("tarnware: "));
        QCOMPARE(m_errors.contains("Usage:"), status == 2);
        QCOMPARE(m_files.get("out"), QByteArray("as before"));
    }

    void helpGoesToStandardOutput()
    {
        QCOMPARE(run({"--help"}), 0);
        QVERIFY(m_output.startsWith("Usage:"));
        QVERIFY(m_errors.isEmpty());
    }

private:
    int run(const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(m_files.root());
        process.start(QString::fromLocal8Bit(qgetenv("TARNWARE")), arguments);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return -1;
        m_output = process.readAllStandardOutput();
        m_errors = process.readAllStandardError();
        return process.exitCode();
    }

    const TempFiles m_files;
    const QByteArray m_image = "firmware image";
    QByteArray m_output;
    QByteArray m_errors;
};

QTEST_GUILESS_MAIN(TarnwareTest)
#include "tst_tarnware.moc"
