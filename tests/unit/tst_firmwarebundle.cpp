#include "firmware/FirmwareBundle.h"
#include "support/LogCapture.h"
#include "support/TempFiles.h"

#include <QDataStream>
#include <QtTest>

#include <functional>

#include <sys/stat.h>

using namespace AquenSolvar::Device;

namespace {

// What a release process would write, from the file's layout alone.
struct HandMade
{
    QString magic = QStringLiteral("tarnware");
    qint32 format = 1;
    qint32 version = 3;
    QByteArray image = "firmware image";
    QByteArray payload;
    qint32 length = 0;
    qint16 checksum = 0;

    explicit HandMade(qint32 aVersion = 3, const QByteArray& anImage = "firmware image")
        : version(aVersion)
        , image(anImage)
        , payload(sealed(0x02, bigEndian(crc(anImage)) + anImage))
        , length(anImage.size())
        , checksum(static_cast<qint16>(crc(anImage)))
    {
    }

    // Flags as they stand in the envelope; the body follows the random byte.
    static QByteArray sealed(char flags, const QByteArray& body)
    {
        static const unsigned key[8] = {0x19, 0x7B, 0x2E, 0x5A, 0, 0, 0, 0};
        QByteArray result = QByteArray("\x03") + flags;
        unsigned last = 0;
        const QByteArray clear = "R" + body;
        for (int i = 0; i < clear.size(); ++i) {
            last ^= static_cast<quint8>(clear[i]) ^ key[i % 8];
            result.append(static_cast<char>(last));
        }
        return result;
    }

    static quint16 crc(const QByteArray& bytes)
    {
        unsigned remainder = 0xFFFF;
        for (const char byte : bytes) {
            remainder ^= static_cast<quint8>(byte);
            for (int bit = 0; bit < 8; ++bit)
                remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? 0x8408 : 0);
        }
        return static_cast<quint16>(remainder ^ 0xFFFF);
    }

    static QByteArray bigEndian(quint16 value)
    {
        const char bytes[] = {static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)};
        return QByteArray(bytes, 2);
    }

    QByteArray bytes() const
    {
        QByteArray result;
        QDataStream stream(&result, QIODevice::WriteOnly);
        stream << magic << format << version << payload << length << checksum;
        return result;
    }
};

QByteArray changed(const std::function<void(HandMade&)>& change)
{
    HandMade bundle;
    change(bundle);
    return bundle.bytes();
}

const QString aquenPattern = QStringLiteral("aquen-v*.tarnware");
const QString solvarPattern = QStringLiteral("solvar-v*.tarnware");

} // namespace

class FirmwareBundleTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<TempFiles>(); }

    // The layout written out byte by byte: no stream class takes part.
    void readsABundleMadeByHand()
    {
        const QByteArray bytes = QByteArray::fromHex("00000010"
                                                     "007400610072006e0077006100720065"
                                                     "00000001"
                                                     "0000000c"
                                                     "00000006"
                                                     "030219c11a01"
                                                     "00000001"
                                                     "a3f5");
        FirmwareBundle bundle;
        QCOMPARE(parseFirmwareBundle(bytes, bundle), 0);
        QCOMPARE(bundle.version, 12);
        QCOMPARE(bundle.data, QByteArray("A"));
    }

    void answersTheRightCode_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("code");
        const auto row = [](const char* name, int code, const QByteArray& bytes) {
            QTest::newRow(name) << bytes << code;
        };
        row("valid", 0, HandMade().bytes());
        row("negative version", 0, HandMade(-7).bytes());
        row("bytes after the end", 0, HandMade().bytes() + "more");
        row("magic", 3, changed([](HandMade& b) { b.magic = "Tarnware"; }));
        row("magic before format", 3, changed([](HandMade& b) {
                b.magic = "x";
                b.format = 2;
            }));
        row("format 2", 4, changed([](HandMade& b) { b.format = 2; }));
        row("format before cipher", 4, changed([](HandMade& b) {
                b.format = 0;
                b.payload.clear();
            }));
        row("no envelope", 5, changed([](HandMade& b) { b.payload = "plain"; }));
        row("damaged envelope", 5, changed([](HandMade& b) { b.payload[8] = '\0'; }));
        row("cipher before length", 5, changed([](HandMade& b) {
                b.payload = "plain";
                b.length = 0;
            }));
        row("length", 6, changed([](HandMade& b) { --b.length; }));
        row("negative length", 6, changed([](HandMade& b) { b.length = -b.length; }));
        row("length before checksum", 6, changed([](HandMade& b) {
                ++b.length;
                ++b.checksum;
            }));
        row("checksum off by one", 7, changed([](HandMade& b) { ++b.checksum; }));
        row("nothing", 3, QByteArray());
        row("payload longer than the file", 5,
            HandMade().bytes().left(28) + QByteArray::fromHex("7FFFFFFF") + "short");
        row("magic longer than the file", 3, QByteArray::fromHex("7FFFFFFE") + "short");
        row("magic of odd length", 3, QByteArray::fromHex("00000011") + HandMade().bytes().mid(4));
    }
    void answersTheRightCode()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, code);
        FirmwareBundle out{99, "untouched"};
        QCOMPARE(parseFirmwareBundle(bytes, out), code);
        if (code != 0) {
            QCOMPARE(out.version, 99);
            QCOMPARE(out.data, QByteArray("untouched"));
        }
        const QString path = m_files->put("one.tarnware", bytes);
        FirmwareBundle fromFile;
        QCOMPARE(readFirmwareBundle(path, fromFile), code);
    }

    // An image whose checksum is zero, so that a checksum cut off reads as the right one.
    void everyTruncationIsNoticed()
    {
        QByteArray image(3, '\0');
        for (int value = 0; HandMade::crc(image) != 0; ++value) {
            image[1] = static_cast<char>(value & 0xFF);
            image[2] = static_cast<char>(value >> 8);
        }
        const QByteArray whole = HandMade(3, image).bytes();
        const QByteArray packed = packFirmwareBundle(3, QByteArray(3000, 'z'));
        for (const QByteArray& bytes : {whole, packed}) {
            FirmwareBundle out;
            QCOMPARE(parseFirmwareBundle(bytes, out), 0);
            for (int size = 0; size < bytes.size(); ++size) {
                FirmwareBundle untouched;
                QVERIFY2(parseFirmwareBundle(bytes.left(size), untouched) != 0,
                         qPrintable(QString::number(size)));
                QVERIFY(untouched.data.isNull());
            }
        }
    }

    // 20 MiB of zeros in a few kilobytes, once honest about it and once claiming a single byte.
    void aPayloadThatUnpacksToTooMuchIsRefused()
    {
        const QByteArray packed = qCompress(QByteArray(20 * 1024 * 1024, '\0'));
        const QByteArray liar = QByteArray("\0\0\0\1", 4) + packed.mid(4);
        for (const QByteArray& body : {packed, liar}) {
            const QByteArray bytes = changed([&body](HandMade& b) {
                b.payload = HandMade::sealed(0x01, body);
                b.length = 20 * 1024 * 1024;
            });
            FirmwareBundle out;
            QCOMPARE(parseFirmwareBundle(bytes, out), 5);
        }
    }

    void filesThatAreNoBundleFilesAreUnreadable()
    {
        FirmwareBundle out;
        QCOMPARE(readFirmwareBundle(m_files->path("missing"), out), 2);
        QCOMPARE(readFirmwareBundle(m_files->root(), out), 2);
        QCOMPARE(readFirmwareBundle(QString(), out), 2);
        QCOMPARE(mkfifo(qPrintable(m_files->path("pipe")), 0600), 0);
        QCOMPARE(readFirmwareBundle(m_files->path("pipe"), out), 2);

        const QByteArray valid = HandMade().bytes();
        m_files->put("largest", valid + QByteArray(largestFirmwareBundle - valid.size(), '\0'));
        m_files->put("larger", valid + QByteArray(largestFirmwareBundle - valid.size() + 1, '\0'));
        QCOMPARE(readFirmwareBundle(m_files->path("largest"), out), 0);
        QCOMPARE(readFirmwareBundle(m_files->path("larger"), out), 2);
    }

    void packsWhatItReads_data()
    {
        QTest::addColumn<QByteArray>("image");
        QTest::newRow("one byte") << QByteArray("x");
        QTest::newRow("compresses well") << QByteArray(163839, '\xFF');
        QByteArray noise;
        for (unsigned i = 0, value = 1; i < 50000; ++i, value = value * 1103515245 + 12345)
            noise.append(static_cast<char>(value >> 16));
        QTest::newRow("compresses badly") << noise;
    }
    void packsWhatItReads()
    {
        QFETCH(QByteArray, image);
        FirmwareBundle out;
        QCOMPARE(parseFirmwareBundle(packFirmwareBundle(2147483647, image), out), 0);
        QCOMPARE(out.version, 2147483647);
        QCOMPARE(out.data, image);
    }

    void choosesTheNewest_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::newRow("newer last") << "aquen-v07.tarnware"
                                    << "aquen-v12.tarnware";
        QTest::newRow("newer first") << "aquen-vB.tarnware"
                                     << "aquen-va.tarnware";
    }
    void choosesTheNewest()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        m_files->put(first, HandMade(7, "seven").bytes());
        m_files->put(second, HandMade(12, "twelve").bytes());
        m_files->put("solvar-v99.tarnware", HandMade(99, "other unit").bytes());
        m_files->put("aquen-v98.tarnware.bak", HandMade(98, "other name").bytes());
        const FirmwareBundle newest = newestFirmwareBundle(m_files->root(), aquenPattern);
        QCOMPARE(newest.version, 12);
        QCOMPARE(newest.data, QByteArray("twelve"));
        QCOMPARE(newestFirmwareBundle(m_files->root(), solvarPattern).data,
                 QByteArray("other unit"));
    }

    void logsEachFileAndPassesOverBadOnes()
    {
        m_files->put("aquen-v1.tarnware", changed([](HandMade& b) { b.format = 2; }));
        m_files->put("AQUEN-V2.tarnware", HandMade(5, "five").bytes());
        m_files->put("aquen-v3.tarnware", HandMade(5, "five again").bytes());
        m_files->put("aquen-v4.tarnware", HandMade(0, "zero").bytes());
        QVERIFY(QDir(m_files->root()).mkdir("aquen-v5.tarnware"));
        LogCapture log({"FirmwareBundle"});
        const FirmwareBundle newest = newestFirmwareBundle(m_files->root(), aquenPattern);
        QCOMPARE(newest.data, QByteArray("five"));
        QCOMPARE(log.messages(),
                 QStringList({"INFO Found file: \"aquen-v1.tarnware\"",
                              "INFO Found file: \"AQUEN-V2.tarnware\"",
                              "INFO Found bundled tarnware \"AQUEN-V2.tarnware\" with version 5",
                              "INFO Found file: \"aquen-v3.tarnware\"",
                              "INFO Found bundled tarnware \"aquen-v3.tarnware\" with version 5",
                              "INFO Found file: \"aquen-v4.tarnware\"",
                              "INFO Found bundled tarnware \"aquen-v4.tarnware\" with version 0",
                              "INFO Found file: \"aquen-v5.tarnware\""}));
    }

    void aVersionBelowOneIsNeverChosen()
    {
        m_files->put("aquen-v0.tarnware", HandMade(0).bytes());
        m_files->put("aquen-v1.tarnware", HandMade(-1).bytes());
        const FirmwareBundle none = newestFirmwareBundle(m_files->root(), aquenPattern);
        QCOMPARE(none.version, 0);
        QVERIFY(none.data.isEmpty());
    }

    void aMissingDirectoryHasNoBundles()
    {
        LogCapture log({"FirmwareBundle"});
        QVERIFY(newestFirmwareBundle(m_files->path("missing"), aquenPattern).data.isEmpty());
        QCOMPARE(log.lines(), QStringList());
    }

private:
    std::unique_ptr<TempFiles> m_files;
};

QTEST_APPLESS_MAIN(FirmwareBundleTest)
#include "tst_firmwarebundle.moc"
