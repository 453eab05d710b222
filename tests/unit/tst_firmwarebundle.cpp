// SPDX-License-Identifier: LicenseRef-Proprietary
// Firmware bundles, and the program tarnware that makes them.
#include "firmware/FirmwareBundle.h"
#include "support/LogCapture.h"
#include "support/TempFiles.h"

#include <QtTest>

#ifdef Q_OS_LINUX
#include <sys/stat.h>
#endif

using namespace AquenSolvar::Device;

// Made by hand from the file's layout: magic, format, version 12, the enciphered "A", its length
// and its checksum.
static const QByteArray handMade =
    QByteArray::fromHex("00000010007400610072006e0077006100720065 00000001 0000000c"
                        "00000006030219c11a01 00000001 a3f5");

class tst_firmwarebundle : public QObject
{
    Q_OBJECT

private slots:
    void fieldsAreCheckedInOrder()
    {
        QByteArray bytes = handMade;
        FirmwareBundle out;
        QCOMPARE(parseFirmwareBundle(bytes + "more", out), 0);
        QVERIFY(out.version == 12 && out.data == "A");
        out.version = 99;
        // From the last field to the first, one more is wrong each time: the offset of a byte in
        // it, and the code.
        const QPair<int, int> steps[] = {{43, 7}, {41, 6}, {37, 5}, {23, 4}, {5, 3}};
        for (const auto& [offset, code] : steps) {
            bytes[offset] = char(bytes[offset] + 1);
            QCOMPARE(parseFirmwareBundle(bytes, out), code);
        }
        bytes = handMade;
        bytes[23] = 0; // an older format
        QCOMPARE(parseFirmwareBundle(bytes, out), 4);
        QVERIFY(out.version == 99 && out.data == "A");
        // The checksum of this image is zero, so that a missing one reads as the right one.
        QCOMPARE(bundleVersionText(9999) + ' ' + bundleVersionText(20315), QString("9999 2.3.15"));
        QCOMPARE(parseFirmwareBundle(packFirmwareBundle(1, "!\"b;"), out), 0);
        QCOMPARE(parseFirmwareBundle(packFirmwareBundle(1, "!\"b;").chopped(2), out), 7);
    }

    void filesThatAreNoBundleFiles()
    {
        FirmwareBundle out;
        QCOMPARE(readFirmwareBundle(m_files.root(), out), 2);
        const QByteArray largest = handMade.leftJustified(16 * 1024 * 1024, '\0');
        QCOMPARE(readFirmwareBundle(m_files.put("largest", largest), out), 0);
        QCOMPARE(readFirmwareBundle(m_files.put("larger", largest + 'x'), out), 2);
        QCOMPARE(parseFirmwareBundle(packFirmwareBundle(1, largest + 'x'), out), 5); // unpacked
    }

    // The highest version; of equal ones the first by name, ignoring case.
    void choosesTheNewest()
    {
        const auto put = [&](const QString& name, qint32 version, const QByteArray& image) {
            m_files.put(name, packFirmwareBundle(version, image));
        };
        put("aquen-v1.tarnware", 3, "three");
        put("AQUEN-V2.tarnware", 5, "five");
        put("aquen-v3.tarnware", 5, "five again");
        m_files.put("aquen-v4.tarnware", "noise");
        put("solvar-v0.tarnware", 0, "zero");
        LogCapture log({"FirmwareBundle"});
        const QString aquen = QStringLiteral("aquen-v*.tarnware");
        QCOMPARE(newestFirmwareBundle(m_files.root(), aquen).data, QByteArray("five"));
        QCOMPARE(log.messages(),
                 QStringList({"INFO Found file: \"aquen-v1.tarnware\"",
                              "INFO Found bundled tarnware \"aquen-v1.tarnware\" with version 3",
                              "INFO Found file: \"AQUEN-V2.tarnware\"",
                              "INFO Found bundled tarnware \"AQUEN-V2.tarnware\" with version 5",
                              "INFO Found file: \"aquen-v3.tarnware\"",
                              "INFO Found bundled tarnware \"aquen-v3.tarnware\" with version 5",
                              "INFO Found file: \"aquen-v4.tarnware\""}));
        QVERIFY(newestFirmwareBundle(m_files.root(), "solvar-v*.tarnware").data.isEmpty());
        QVERIFY(newestFirmwareBundle(m_files.path("missing"), aquen).data.isEmpty());
    }

#ifdef Q_OS_LINUX // the tool runs in a shell
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
#endif

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

QTEST_GUILESS_MAIN(tst_firmwarebundle)
#include "tst_firmwarebundle.moc"
