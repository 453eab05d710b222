// SPDX-License-Identifier: LicenseRef-Proprietary
// The bytes that pass between program and unit. Expected values were worked out by hand.
#include "devices/VendorProtocol.h"
#include "dfu/DfuProtocol.h"
#include "dfu/DfuSeLayout.h"
#include "support/LogCapture.h"

#include <QTest>

using namespace AquenSolvar::Device;

static QString hex(std::initializer_list<qint64> values)
{
    QStringList texts;
    for (const qint64 value : values)
        texts << QString::number(value, 16);
    return texts.join(' ');
}

class tst_protocol : public QObject
{
    Q_OBJECT

private slots:
    void dfuMessages()
    {
        const auto decoded = [](const char* bytes) {
            const DfuStatusReply reply = decodeStatusReply(QByteArray::fromHex(bytes));
            return hex({quint32(reply.status), reply.pollTimeout, quint32(reply.state)});
        };
        QCOMPARE(decoded("0a0102030400"), QStringLiteral("a 30201 4"));
        // Bytes of 0x80 and more are widened with their sign.
        QCOMPARE(decoded("80808000ff00"), QStringLiteral("ffffff80 ffffff80 ffffffff"));
        QCOMPARE(specialCommandPayload(0x08003800, SET_ADDRESS).toHex(), QByteArray("2100380008"));
        QCOMPARE(specialCommandPayload(0x89ABCDEF, ERASE_PAGE).toHex(), QByteArray("41efcdab89"));
        QCOMPARE(specialCommandPayload(1, SpecialCommand(2)).toHex(), QByteArray("0001000000"));
        QString names;
        for (int code = -1; code <= 16; ++code)
            names += statusName(code) + ',' + stateName(code) + ' ';
        QCOMPARE(
            names,
            QStringLiteral(
                "Illegal status,Illegal state OK,App idle Target error,App detached File "
                "error,Idle "
                "Write error,Download sync Erase error,Download busy Check erased error,Download "
                "idle "
                "Prog error,Manifest sync: Verify error,Manifest Address error,Manifest wait reset "
                "Not done error,Upload idle Firmware error,Error Vendor error,Illegal state "
                "USBR error,Illegal state POR error,Illegal state Unknown error,Illegal state "
                "Stalled packet,Illegal state Illegal status,Illegal state "));
    }

    void functionalDescriptor()
    {
        // The configuration's total length as it is sent, its last descriptor, the fields found.
        const QByteArrayList rows[] = {
            {"1b00", "09210bff0000081a01", "b ffff 800"}, // the time-out is widened
            {"1b00", "092107640080081a01", "7 64 ff80"},
            {"0014", "0921070000", "7 0 0"},        // ends beyond the last byte
            {"c800", "09210bff0000081a01", "none"}, // widened to below 0
            {"0800", "09210bff0000081a01", "none"},
        };
        DfuFunctionalDescriptor out;
        for (const QByteArrayList& row : rows) {
            const QByteArray configuration = QByteArray::fromHex(
                "0902" + row[0] + "01010080fa0904000000fe010204" + row[1] + "00000000");
            const bool found = decodeFunctionalDescriptor(configuration, out);
            QCOMPARE(found ? hex({out.attributes, out.detachTimeout, out.transferSize}) : "none",
                     QString(row[2]));
        }
    }

    void memoryLayout()
    {
        // The text, the segments by start, end and page size, the warning.
        const QStringList rows[] = {
            {"@Internal Flash  /0x08000000/07*002Ka,121*002Kg",
             "8000000 80037ff 800, 8003800 803ffff 800", ""},
            {"@A/0x08000000/04*016K/0x100/2*8Be,1*1Mg",
             "8000000 800ffff 4000, 100 10f 8, 110 10010f 100000", ""},
            {"@A/0xFFFFFC00/1*1Kg", "fffffc00 ffffffff 400", ""},
            {"@A/0xFFFFFC01/1*1Kg", "", "fit 32 bits"},
            {"@A/0x0/999999999999999999*999999999999999999Mg", "", "fit 32 bits"},
            {"@A/0x100000000/1*1Kg", "", "fit 32 bits"},
            {"@A/0x0/4*016Kg,1*1\n", "0 ffff 4000", "Unknown multiplier: 0x0a"},
        };
        for (const QStringList& row : rows) {
            LogCapture log({"DfuSeLayout"});
            QStringList parsed;
            for (const MemorySegment& segment : parseMemoryLayout(row[0]))
                parsed << hex({segment.startAddress, segment.endAddress, segment.pageSize});
            QCOMPARE(parsed.join(", "), row[1]);
            QCOMPARE(log.count("WARN"), row[2].isEmpty() ? 0 : 1);
            QVERIFY2(log.lines().join("").contains(row[2]), qPrintable(row[0]));
        }
    }

    void segmentLookup()
    {
        const QList<MemorySegment> segments = {{100, 199, 10}, {150, 299, 20}};
        QStringList sizes;
        for (const quint32 address : {99u, 100u, 199u, 200u, 299u, 300u})
            sizes << QString::number(segmentForAddress(segments, address).pageSize);
        QCOMPARE(sizes.join(' '), QStringLiteral("0 10 10 20 20 0"));
    }

    void versions()
    {
        for (const char* text : {"1.3.0", "1.2.9", "0.9.9", "1.3", "1..5", "99999999999.0.0", ""})
            QVERIFY2(isOlderThan(text, {1, 3, 1}), text);
        for (const char* text : {"1.3.1", "1.4.0", "2.0.0", "1.10.0", "1.3.1.0"})
            QVERIFY2(!isOlderThan(text, {1, 3, 1}), text);
        QCOMPARE(cleanedFirmwareVersion("10.98.7-rc"), QStringLiteral("10.98.7"));
    }

    void configuration()
    {
        QCOMPARE(decodeSchemaVersion(QByteArray::fromHex("01020380")), qint32(0x80030201));
        QVERIFY(configurationPageLength(3) == -1 && configurationPageLength(6) == -1);
        const QByteArray page = QByteArray(16, 'x') + QByteArray(32, 'A') + "xx"; // no NUL
        QCOMPARE(serialNameInPage(page), QString(32, QLatin1Char('A')));
    }
};

QTEST_GUILESS_MAIN(tst_protocol)
#include "tst_protocol.moc"
