// SPDX-License-Identifier: LicenseRef-Proprietary
// Firmware bundles, as the updater reads and chooses them.
#include "firmware/FirmwareBundle.h"
#include "support/LogCapture.h"
#include "support/TempFiles.h"

#include <QtTest>

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

private:
    const TempFiles m_files;
};

QTEST_GUILESS_MAIN(tst_firmwarebundle)
#include "tst_firmwarebundle.moc"
