// The bytes that pass between the program and a unit, without a bus. Expected values were worked
// out by hand from the layouts of the protocol.
#include "devices/VendorProtocol.h"
#include "dfu/DfuProtocol.h"
#include "dfu/DfuSeLayout.h"
#include "support/LogCapture.h"

#include <QTest>

using namespace AquenSolvar::Device;

using Segments = QVector<QVector<quint32>>;
Q_DECLARE_METATYPE(Segments)

class tst_protocol : public QObject
{
    Q_OBJECT

private slots:
    void statusReply_data();
    void statusReply();
    void functionalDescriptor_data();
    void functionalDescriptor();
    void specialCommands();
    void names();
    void memoryLayout_data();
    void memoryLayout();
    void memoryLayoutSurvivesCutsAndNoise();
    void segmentLookup();
    void needsUpdate_data();
    void needsUpdate();
    void applicationAnswers();
};

void tst_protocol::statusReply_data()
{
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<qint32>("status");
    QTest::addColumn<quint32>("pollTimeout");
    QTest::addColumn<qint32>("state");
    QTest::newRow("idle") << QByteArray("000000000200") << 0 << 0u << 2;
    QTest::newRow("busy for 0x030201 ms") << QByteArray("000102030400") << 0 << 0x030201u << 4;
    QTest::newRow("middle byte widens") << QByteArray("00ff00000500") << 0 << 0xFFFFFFFFu << 5;
    QTest::newRow("second byte widens") << QByteArray("000080000500") << 0 << 0xFFFF8000u << 5;
    QTest::newRow("third byte widens") << QByteArray("000000800500") << 0 << 0xFF800000u << 5;
    QTest::newRow("status and state widen") << QByteArray("80000000ff00") << -128 << 0u << -1;
    QTest::newRow("cut short") << QByteArray("0a01") << 10 << 1u << 0;
    QTest::newRow("nothing") << QByteArray() << 0 << 0u << 0;
}

void tst_protocol::statusReply()
{
    QFETCH(QByteArray, hex);
    const DfuStatusReply reply = decodeStatusReply(QByteArray::fromHex(hex));
    QTEST(reply.status, "status");
    QTEST(reply.pollTimeout, "pollTimeout");
    QTEST(reply.state, "state");
}

void tst_protocol::functionalDescriptor_data()
{
    QTest::addColumn<QByteArray>("configuration");
    QTest::addColumn<bool>("found");
    QTest::addColumn<int>("attributes");
    QTest::addColumn<int>("detachTimeout");
    QTest::addColumn<int>("transferSize");

    const QByteArray interface = QByteArray::fromHex("0904000000fe010204");
    const auto configuration = [&](quint16 total, const QByteArray& functional) {
        QByteArray header = QByteArray::fromHex("0902000001010080fa");
        header[2] = char(total & 0xFF);
        header[3] = char(total >> 8);
        return header + interface + QByteArray::fromHex(functional);
    };
    const QByteArray usual = "09210bff0000081a01"; // detach 255 sign-widens, 2048 bytes
    QTest::newRow("usual, buffer padded")
        << configuration(27, usual).leftJustified(4096, '\0') << true << 0x0B << 0xFFFF << 2048;
    QTest::newRow("size byte widens") << configuration(27, "09210b640080001a01").leftJustified(64)
                                      << true << 0x0B << 100 << 0xFF80;
    QTest::newRow("total beyond the buffer")
        << configuration(0x1400, usual) << true << 0x0B << 0xFFFF << 2048;
    // The low byte of 200 widens to a negative length, which leaves nothing.
    QTest::newRow("total length widens") << configuration(200, usual) << false << 0 << 0 << 0;
    QTest::newRow("total shorter than the descriptor")
        << configuration(8, usual) << false << 0 << 0 << 0;
    QTest::newRow("total 0") << configuration(0, usual) << false << 0 << 0 << 0;
    QTest::newRow("8 bytes") << configuration(27, usual).left(8) << false << 0 << 0 << 0;
    QTest::newRow("3 bytes") << QByteArray("\x09\x02\x1b") << false << 0 << 0 << 0;
    QTest::newRow("nothing") << QByteArray() << false << 0 << 0 << 0;
}

void tst_protocol::functionalDescriptor()
{
    QFETCH(QByteArray, configuration);
    DfuFunctionalDescriptor descriptor;
    QTEST(decodeFunctionalDescriptor(configuration, descriptor), "found");
    QTEST(int(descriptor.attributes), "attributes");
    QTEST(int(descriptor.detachTimeout), "detachTimeout");
    QTEST(int(descriptor.transferSize), "transferSize");
    QCOMPARE(descriptor.canDownload(), (descriptor.attributes & 1) != 0);
    QCOMPARE(descriptor.canUpload(), (descriptor.attributes & 2) != 0);
    QCOMPARE(descriptor.isManifestationTolerant(), (descriptor.attributes & 4) != 0);
}

void tst_protocol::specialCommands()
{
    QCOMPARE(specialCommandPayload(0x08003800, SET_ADDRESS).toHex(), QByteArray("2100380008"));
    QCOMPARE(specialCommandPayload(0x89ABCDEF, ERASE_PAGE).toHex(), QByteArray("41efcdab89"));
    QCOMPARE(specialCommandPayload(0x01020304, SpecialCommand(2)).toHex(),
             QByteArray("0004030201"));
}

void tst_protocol::names()
{
    QCOMPARE(statusName(0), QStringLiteral("OK"));
    QCOMPARE(statusName(12), QStringLiteral("USBR error"));
    QCOMPARE(statusName(15), QStringLiteral("Stalled packet"));
    QCOMPARE(stateName(5), QStringLiteral("Download idle"));
    QCOMPARE(stateName(6), QStringLiteral("Manifest sync:"));
    QCOMPARE(stateName(10), QStringLiteral("Error"));
    for (const int code : {-128, -1, 16, 255})
        QCOMPARE(statusName(code), QStringLiteral("Illegal status"));
    for (const int code : {-1, 11, 255})
        QCOMPARE(stateName(code), QStringLiteral("Illegal state"));
}

void tst_protocol::memoryLayout_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Segments>("segments"); // start, end, page size
    QTest::addColumn<QString>("warning");

    const QVector<quint32> sixteenKs = {0x08000000, 0x0800FFFF, 16384};
    QTest::newRow("the units' own")
        << "@Internal Flash  /0x08000000/07*002Ka,121*002Kg"
        << Segments{{0x08000000, 0x080037FF, 2048}, {0x08003800, 0x0803FFFF, 2048}} << "";
    QTest::newRow("three sizes") << "@Flash/0x08000000/04*016Kg,01*064Kg,07*128Kg"
                                 << Segments{sixteenKs,
                                             {0x08010000, 0x0801FFFF, 65536},
                                             {0x08020000, 0x080FFFFF, 131072}}
                                 << "";
    QTest::newRow("two address groups") << "@A/0x08000000/04*016Kg/0x00000100/2*8Be"
                                        << Segments{sixteenKs, {0x100, 0x10F, 8}} << "";
    QTest::newRow("no type letters") << "@A/0x08000000/04*016K" << Segments{sixteenKs} << "";
    QTest::newRow("megabytes") << "@A/0x90000000/2*1Mg"
                               << Segments{{0x90000000, 0x901FFFFF, 1048576}} << "";
    QTest::newRow("to the end of the address space")
        << "@A/0xFFFFFC00/1*1Kg" << Segments{{0xFFFFFC00, 0xFFFFFFFF, 1024}} << "";
    QTest::newRow("one byte past it") << "@A/0xFFFFFC01/1*1Kg" << Segments{} << "fit 32 bits";
    QTest::newRow("nothing past it")
        << "@A/0xFFFFFC00/1*1Kg,0*1Bg" << Segments{{0xFFFFFC00, 0xFFFFFFFF, 1024}} << "fit 32 bits";
    QTest::newRow("count * size past 64 bits")
        << "@A/0x0/999999999999999999*999999999999999999Mg" << Segments{} << "fit 32 bits";
    QTest::newRow("count * size past 32 bits")
        << "@A/0x0/4*016Kg,65536*1Mg" << Segments{{0, 0xFFFF, 16384}} << "fit 32 bits";
    QTest::newRow("address past 32 bits") << "@A/0x100000000/1*1Kg" << Segments{} << "fit 32 bits";
    QTest::newRow("negative address") << "@A/0x-5/1*1Kg" << Segments{} << "fit 32 bits";
    QTest::newRow("negative count") << "@A/0x0/-1*1Kg" << Segments{} << "fit 32 bits";
    QTest::newRow("digits without end")
        << "@A/0x08000000/" + QString(200, QLatin1Char('9')) + "*1Kg" << Segments{} << "";
    QTest::newRow("unknown multiplier after good groups")
        << "@A/0x08000000/04*016Kg,01*064Kg,1*1Xg"
        << Segments{sixteenKs, {0x08010000, 0x0801FFFF, 65536}} << "Unknown multiplier: X";
    QTest::newRow("unknown multiplier that would break the line")
        << "@A/0x08000000/04*016Kg,1*1\n"
        << Segments{sixteenKs} << "Unknown multiplier: 0x0a";
    QTest::newRow("no name") << "@/0x08000000/04*016Kg" << Segments{} << "";
    QTest::newRow("no slash after the address") << "@A/0x08000000" << Segments{} << "";
    QTest::newRow("no address") << "@Internal Flash" << Segments{} << "";
    QTest::newRow("empty") << "" << Segments{} << "";
}

void tst_protocol::memoryLayout()
{
    QFETCH(QString, text);
    QFETCH(QString, warning);
    LogCapture log({"DfuSeLayout"});
    Segments parsed;
    for (const MemorySegment& segment : parseMemoryLayout(text))
        parsed.append({segment.startAddress, segment.endAddress, segment.pageSize});
    QTEST(parsed, "segments");
    QCOMPARE(log.count("WARN"), warning.isEmpty() ? 0 : 1);
    QVERIFY(log.contains("WARN", warning) || warning.isEmpty());
}

void tst_protocol::memoryLayoutSurvivesCutsAndNoise()
{
    // Whatever the text, the parse ends, and a segment never wraps round the address space.
    const QString good = "@Internal Flash  /0x08000000/07*002Ka,121*002Kg/0x1/1*1Bg";
    const QString noise = "@/0x*,KMB-9 \t%\x7f";
    quint32 random = 1;
    for (int round = 0; round < 20000; ++round) {
        QString text = good.left(int(random % uint(good.size() + 1)));
        for (int i = 0; i < 3 && !text.isEmpty(); ++i) {
            random = random * 1664525u + 1013904223u;
            text[int((random >> 8) % uint(text.size()))] =
                noise[int((random >> 20) % uint(noise.size()))];
        }
        for (const MemorySegment& segment : parseMemoryLayout(text))
            QVERIFY2(segment.pageSize == 0 || segment.startAddress <= segment.endAddress + 1ull,
                     qPrintable(text));
    }
}

void tst_protocol::segmentLookup()
{
    const QList<MemorySegment> segments = {{100, 199, 10}, {150, 299, 20}};
    QCOMPARE(segmentForAddress(segments, 100).pageSize, 10u);
    QCOMPARE(segmentForAddress(segments, 199).pageSize, 10u); // the first of two that match
    QCOMPARE(segmentForAddress(segments, 200).pageSize, 20u);
    for (const quint32 outside : {99u, 300u}) {
        const MemorySegment none = segmentForAddress(segments, outside);
        QCOMPARE(none.startAddress + none.endAddress + none.pageSize, 0u);
    }
}

void tst_protocol::needsUpdate_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("cleaned");
    QTest::addColumn<bool>("older");
    QTest::newRow("same") << QByteArray("1.3.1\0\0\0", 8) << "1.3.1" << false;
    QTest::newRow("patch below") << QByteArray("1.3.0") << "1.3.0" << true;
    QTest::newRow("minor below") << QByteArray("1.2.9") << "1.2.9" << true;
    QTest::newRow("major below") << QByteArray("0.9.9") << "0.9.9" << true;
    QTest::newRow("minor above") << QByteArray("1.4.0") << "1.4.0" << false;
    QTest::newRow("major above, rest below") << QByteArray("2.0.0") << "2.0.0" << false;
    QTest::newRow("two digits are numbers") << QByteArray("1.10.0") << "1.10.0" << false;
    QTest::newRow("two parts") << QByteArray("1.3") << "1.3" << true;
    QTest::newRow("four parts") << QByteArray("1.3.1.0") << "1.3.1.0" << false;
    QTest::newRow("suffix is cut") << QByteArray("1.3.1-rc") << "1.3.1" << false;
    QTest::newRow("not a number reads as 0") << QByteArray("1..5") << "1..5" << true;
    QTest::newRow("number beyond an int")
        << QByteArray("99999999999.0.0") << "99999999999.0.0" << true;
    QTest::newRow("no text") << QByteArray("\xff\xfe") << "" << true;
}

void tst_protocol::needsUpdate()
{
    QFETCH(QByteArray, answer);
    QTEST(cleanedFirmwareVersion(answer), "cleaned");
    QTEST(isOlderThan(cleanedFirmwareVersion(answer), {1, 3, 1}), "older");
}

void tst_protocol::applicationAnswers()
{
    QCOMPARE(decodeSchemaVersion(QByteArray::fromHex("05000000")), 5);
    QCOMPARE(decodeSchemaVersion(QByteArray::fromHex("00000080")), qint32(0x80000000));
    QCOMPARE(decodeSchemaVersion(QByteArray::fromHex("0401")), 0x104);
    QCOMPARE(configurationPageLength(4), 64);
    QCOMPARE(configurationPageLength(5), 74);
    for (const int none : {-1, 0, 3, 6, 0x7FFFFFFF})
        QCOMPARE(configurationPageLength(none), -1);

    QByteArray page(64, 'x');
    page.replace(16, 32, QByteArray("W\xc3\xa4sche 7").leftJustified(32, '\0'));
    QCOMPARE(serialNameInPage(page), QString::fromUtf8("W\xc3\xa4sche 7"));
    page.replace(16, 32, QByteArray(32, 'A')); // no NUL: the field's 32 bytes, no more
    QCOMPARE(serialNameInPage(page), QString(32, QLatin1Char('A')));
    page.replace(16, 2, "\xff\xfe"); // bad UTF-8 gives a text all the same
    QCOMPARE(serialNameInPage(page).size(), 32);
    QCOMPARE(serialNameInPage(page.left(20)).size(), 4);
    QCOMPARE(serialNameInPage(QByteArray()), QString());
}

QTEST_GUILESS_MAIN(tst_protocol)
#include "tst_protocol.moc"
