// SPDX-License-Identifier: LicenseRef-Proprietary
// The program tarnware, which makes and shows firmware bundles.
#include "firmware/FirmwareBundle.h"
#include "support/TempFiles.h"

#include <QtTest>

#include <sys/stat.h>

using namespace AquenSolvar::Device;

class tst_tarnware : public QObject
{
    Q_OBJECT

private slots:
    void toolPacksShowsAndUnpacks()
    {
        const QByteArray image(163839, 'x'); // the largest
        m_files.put("noise", "noise");
        m_files.put("old", packFirmwareBundle(0, image));
        m_files.put("image.bin", image);
        QCOMPARE(run("pack --version 12 image.bin aquen-v12.tarnware"), 0);
        QCOMPARE(run("show noise aquen-v12.tarnware old"), 1);
        // sha256sum of the same bytes.
        const QByteArray facts =
            ", 163839 bytes, SHA-256 "
            "95a0ac61113ea617d0ade4c8c0b045fb8899a4c862494da48c721c7ca2208651\n";
        QCOMPARE(m_output, "aquen-v12.tarnware: version 12" + facts + "old: version 0" + facts);
        QCOMPARE(m_errors,
                 QByteArray("tarnware: noise: the magic is not \"tarnware\"\n"
                            "tarnware: old: the updater reads only files named "
                            "aquen-v*.tarnware or solvar-v*.tarnware\n"
                            "tarnware: old: the updater never chooses a version below 1\n"));
        QCOMPARE(run("unpack aquen-v12.tarnware - | \"$0\" pack --version 1 - bundle"), 0);
        QCOMPARE(run("unpack - - <bundle | cmp - image.bin"), 0); // more than a pipe holds
        QCOMPARE(run("show aquen-v12.tarnware >/dev/full"), 1);
        QCOMPARE(run("--version"), 0);
        QCOMPARE(run("pack --help"), 0);
        QVERIFY(m_output.startsWith("Usage:") && m_errors.isEmpty());
    }

    void toolRefuses_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("error");
        const auto row = [](const char* arguments, int status, const char* error) {
            QTest::newRow(arguments) << status << "tarnware: " + QByteArray(error);
        };
        row("", 2, "no command given\nUsage:");
        row("flash image.bin out", 2, "unknown command \"flash\"\nUsage:");
        row("pack --version 0 image.bin out", 2, "the version is not a whole number from 1 to");
        row("show --bogus old", 2, "Unknown option 'bogus'.\nUsage:");
        row("pack --version 1 %2 out", 1, "%2: No such file or directory");
        row("pack --version 1 . out", 1, ".: is a folder");
        row("show /proc/self/mem", 1, "/proc/self/mem: Input/output error");
        row("unpack old pipe", 1, "pipe: is not a regular file");
        row("unpack old ./old", 1, "./old: is the source as well");
        row("pack --version 1 elf out", 1, "elf: is an ELF file and not a raw flash image");
        row("pack --version 1 hex out", 1, "hex: is an Intel HEX file");
        row("pack --version 1 dfuse out", 1, "dfuse: is a DfuSe file");
        row("pack --version 1 suffix out", 1, "suffix: is a file with a DFU suffix");
        row("pack --version 1 old out", 1, "old: is a firmware bundle");
        row("pack --version 1 empty.bin out", 1, "empty.bin: an image has 1 to 163839 bytes");
        row("pack --version 1 larger.bin out", 1, "larger.bin: an image has 1 to 163839 bytes");
        row("unpack noise out", 1, "noise: the magic is not");
        row("unpack old no/such/out", 1, "no/such/out: ");
    }
    void toolRefuses()
    {
        m_files.put("larger.bin", QByteArray(163840, 'x'));
        m_files.put("empty.bin", QByteArray());
        m_files.put("old", packFirmwareBundle(0, "image"));
        m_files.put("elf", "\177ELF\2\1\1");
        m_files.put("hex", ":020000040800F2\r\n");
        m_files.put("dfuse", "DfuSe\1");
        m_files.put("suffix", "image" + QByteArray::fromHex("ffff050cd0161a01554644 10 12345678"));
        mkfifo(qPrintable(m_files.path("pipe")), 0600);
        FirmwareBundle out;
        QCOMPARE(readFirmwareBundle(m_files.path("pipe"), out), 2);
        m_files.put("out", "as before");
        QTEST(run(QTest::currentDataTag()), "status");
        QFETCH(QByteArray, error);
        QCOMPARE(m_errors.left(error.size()), error);
        QCOMPARE(m_files.get("out"), QByteArray("as before"));
    }

private:
    int run(const QString& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(m_files.root());
        process.start("sh", {"-c", "\"$0\" " + arguments, TARNWARE});
        process.waitForFinished();
        m_output = process.readAllStandardOutput();
        m_errors = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    const TempFiles m_files;
    QByteArray m_output;
    QByteArray m_errors;
};

QTEST_GUILESS_MAIN(tst_tarnware)
#include "tst_tarnware.moc"
