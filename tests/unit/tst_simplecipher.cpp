#include "Common/BoundedUncompress.h"
#include "Common/SimpleCipher.h"

#include <QCryptographicHash>
#include <QtTest>

#include <set>

using Common::SimpleCipher;
using Error = SimpleCipher::Error;

namespace {

// A second implementation of the envelope, bit by bit and from the layout alone.

quint16 crcIso3309(const QByteArray& bytes)
{
    quint16 crc = 0xFFFF;
    for (const char byte : bytes) {
        for (int bit = 0; bit < 8; ++bit) {
            const bool differs = ((crc ^ (static_cast<quint8>(byte) >> bit)) & 1) != 0;
            crc = static_cast<quint16>((crc >> 1) ^ (differs ? 0x8408 : 0));
        }
    }
    return static_cast<quint16>(~crc);
}

QByteArray scrambled(quint64 key, const QByteArray& clear)
{
    QByteArray result;
    unsigned last = 0;
    for (int i = 0; i < clear.size(); ++i) {
        last = static_cast<quint8>(clear[i]) ^ ((key >> (8 * (i % 8))) & 0xFF) ^ last;
        result.append(static_cast<char>(last));
    }
    return result;
}

// The clear form: random byte, integrity bytes, payload.
QByteArray envelope(quint64 key, quint8 flags, const QByteArray& clear)
{
    return QByteArray("\x03") + static_cast<char>(flags) + scrambled(key, clear);
}

QByteArray bigEndian16(quint16 value)
{
    return QByteArray(1, static_cast<char>(value >> 8)) + static_cast<char>(value & 0xFF);
}

constexpr quint64 key = 0x0123456789ABCDEF;

} // namespace

class SimpleCipherTest : public QObject
{
    Q_OBJECT

private slots:
    void theReferenceItselfMatchesThePublishedCheckValue()
    {
        QCOMPARE(crcIso3309("123456789"), quint16(0x906E));
    }

    // Worked out by hand: key bytes 19 7B 2E 5A 00…, random byte 00, then the CRC of "A" and "A".
    void deciphersAKnownEnvelope()
    {
        QCOMPARE(crcIso3309("A"), quint16(0xA3F5));
        const QByteArray known = QByteArray::fromHex("0302 19 c11a 01");
        SimpleCipher cipher(Common::defaultCipherKey);
        QCOMPARE(cipher.decryptToByteArray(known), QByteArray("A"));
        QCOMPARE(cipher.lastError(), Error::NoError);
    }

    void readsWhatTheReferenceWrites_data()
    {
        const QByteArray text("Caf\xC3\xA9 at noon, noon, noon, noon, noon, noon");
        const QByteArray packed = qCompress(text);
        const auto hashed = [](const QByteArray& payload) -> QByteArray {
            return QCryptographicHash::hash(payload, QCryptographicHash::Sha1) + payload;
        };
        const auto summed = [](const QByteArray& payload) -> QByteArray {
            return bigEndian16(crcIso3309(payload)) + payload;
        };
        QTest::addColumn<int>("flags");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("bare") << 0x00 << text;
        QTest::newRow("compressed") << 0x01 << packed;
        QTest::newRow("checksum") << 0x02 << summed(text);
        QTest::newRow("checksum, compressed") << 0x03 << summed(packed);
        QTest::newRow("hash") << 0x04 << hashed(text);
        QTest::newRow("hash, compressed") << 0x05 << hashed(packed);
        QTest::newRow("the checksum flag wins over the hash flag") << 0x06 << summed(text);
    }
    void readsWhatTheReferenceWrites()
    {
        QFETCH(int, flags);
        QFETCH(QByteArray, body);
        SimpleCipher cipher(key);
        const QByteArray sealed = envelope(key, static_cast<quint8>(flags), "\x7F" + body);
        QCOMPARE(cipher.decryptToString(sealed),
                 QString::fromUtf8("Caf\xC3\xA9 at noon, noon, noon, noon, noon, noon"));
        QCOMPARE(cipher.lastError(), Error::NoError);
    }

    void writesTheLayoutOfEachMode_data()
    {
        using Compression = SimpleCipher::CompressionMode;
        using Protection = SimpleCipher::ProtectionMode;
        QTest::addColumn<int>("compression");
        QTest::addColumn<int>("protection");
        QTest::addColumn<QByteArray>("plain");
        QTest::addColumn<int>("flags");
        const auto row = [](const char* name, Compression c, Protection p, const QByteArray& plain,
                            int flags) {
            QTest::newRow(name) << int(c) << int(p) << plain << flags;
        };
        const QByteArray zeros(5000, '\0');
        row("auto, shorter", Compression::Auto, Protection::Checksum, zeros, 0x03);
        row("auto, one byte", Compression::Auto, Protection::Checksum, "x", 0x02);
        row("auto, empty", Compression::Auto, Protection::Checksum, "", 0x02);
        row("always", Compression::Always, Protection::None, "x", 0x01);
        row("always, empty", Compression::Always, Protection::None, "", 0x01);
        row("never", Compression::Never, Protection::Hash, zeros, 0x04);
        row("always, hash", Compression::Always, Protection::Hash, zeros, 0x05);
        row("nothing at all", Compression::Never, Protection::None, "x", 0x00);
    }
    void writesTheLayoutOfEachMode()
    {
        QFETCH(int, compression);
        QFETCH(int, protection);
        QFETCH(QByteArray, plain);
        QFETCH(int, flags);
        SimpleCipher cipher(key);
        cipher.setCompressionMode(static_cast<SimpleCipher::CompressionMode>(compression));
        cipher.setProtectionMode(static_cast<SimpleCipher::ProtectionMode>(protection));
        const QByteArray sealed = cipher.encryptToByteArray(plain);

        const QByteArray payload = (flags & 0x01) != 0 ? qCompress(plain) : plain;
        QByteArray body = payload;
        if ((flags & 0x02) != 0)
            body = bigEndian16(crcIso3309(payload)) + payload;
        else if ((flags & 0x04) != 0)
            body = QCryptographicHash::hash(payload, QCryptographicHash::Sha1) + payload;
        // The random byte, recovered with the first key byte.
        const char random = static_cast<char>(sealed.at(2) ^ 0xEF);
        QCOMPARE(sealed, envelope(key, static_cast<quint8>(flags), random + body));
        QCOMPARE(cipher.decryptToByteArray(sealed), plain);
        QCOMPARE(cipher.lastError(), Error::NoError);
    }

    void everyChangedBitIsNoticed()
    {
        SimpleCipher cipher(key);
        const QByteArray sealed = cipher.encryptToByteArray("The quick brown fox jumps.");
        for (int position = 2; position < sealed.size(); ++position) {
            for (int bit = 0; bit < 8; ++bit) {
                QByteArray damaged = sealed;
                damaged[position] = static_cast<char>(damaged.at(position) ^ (1 << bit));
                // The random byte carries nothing, but scrambling carries its change onward.
                QCOMPARE(cipher.decryptToByteArray(damaged), QByteArray());
                QCOMPARE(cipher.lastError(), Error::IntegrityFailed);
            }
        }
    }

    void refusesWithTheRightError_data()
    {
        QTest::addColumn<QByteArray>("sealed");
        QTest::addColumn<int>("error");
        QTest::newRow("empty") << QByteArray() << int(Error::UnknownVersion);
        QTest::newRow("two bytes") << QByteArray("\x03\x02") << int(Error::UnknownVersion);
        QTest::newRow("version 2") << QByteArray("\x02\x02xxxx") << int(Error::UnknownVersion);
        QTest::newRow("no room for the checksum")
            << envelope(key, 0x02, "rc") << int(Error::IntegrityFailed);
        QTest::newRow("no room for the hash")
            << envelope(key, 0x04, QByteArray(20, 'h')) << int(Error::IntegrityFailed);
        QTest::newRow("not a zlib stream")
            << envelope(key, 0x01, "rnot a zlib stream") << int(Error::IntegrityFailed);
        QTest::newRow("no length before the stream")
            << envelope(key, 0x01, "rabc") << int(Error::IntegrityFailed);
        QTest::newRow("zlib stream cut short")
            << envelope(key, 0x01, QByteArray("r") + qCompress("cut short here").chopped(3))
            << int(Error::IntegrityFailed);
    }
    void refusesWithTheRightError()
    {
        QFETCH(QByteArray, sealed);
        QFETCH(int, error);
        if (error == int(Error::UnknownVersion))
            QTest::ignoreMessage(QtWarningMsg, "Invalid version or not a cyphertext.");
        SimpleCipher cipher(key);
        QCOMPARE(cipher.decryptToByteArray(sealed), QByteArray());
        QCOMPARE(cipher.lastError(), static_cast<Error>(error));
        // The next success clears the error.
        QVERIFY(!cipher.encryptToByteArray("x").isEmpty());
        QCOMPARE(cipher.lastError(), Error::NoError);
    }

    void withoutAKeyNeitherDirectionWorks()
    {
        SimpleCipher keyless;
        QTest::ignoreMessage(QtWarningMsg, "No key set.");
        QCOMPARE(keyless.encryptToByteArray("x"), QByteArray());
        QCOMPARE(keyless.lastError(), Error::NoKeySet);
        QTest::ignoreMessage(QtWarningMsg, "No key set.");
        QCOMPARE(keyless.decryptToByteArray(envelope(key, 0, "rx")), QByteArray());
        QCOMPARE(keyless.lastError(), Error::NoKeySet);
    }

    void theRandomByteVaries()
    {
        SimpleCipher cipher(key);
        std::set<QByteArray> envelopes;
        for (int i = 0; i < 50; ++i) {
            const QByteArray sealed = cipher.encryptToByteArray("same");
            QCOMPARE(cipher.decryptToByteArray(sealed), QByteArray("same"));
            envelopes.insert(sealed);
        }
        QVERIFY(envelopes.size() > 10);
    }

    void unpackingIsBounded_data()
    {
        QTest::addColumn<QByteArray>("packed");
        QTest::addColumn<bool>("accepted");
        const QByteArray atLimit = qCompress(QByteArray(1000, 'a'));
        const QByteArray above = qCompress(QByteArray(1001, 'a'));
        const QByteArray one("\0\0\0\1", 4);
        const QByteArray smallLiar = one + above.mid(4);
        const QByteArray liar = one + qCompress(QByteArray(9999999, 'a')).mid(4);
        QTest::newRow("exactly the limit") << atLimit << true;
        QTest::newRow("one more") << above << false;
        QTest::newRow("states one byte, holds one too many") << smallLiar << false;
        QTest::newRow("states one byte, holds ten million") << liar << false;
        QTest::newRow("states four thousand million")
            << QByteArray("\xFF\xFF\xFF\xFF" + atLimit.mid(4)) << false;
        QTest::newRow("nothing") << qCompress(QByteArray()) << true;
    }
    void unpackingIsBounded()
    {
        QFETCH(QByteArray, packed);
        QFETCH(bool, accepted);
        SimpleCipher cipher(key);
        cipher.setMaximumPlainSize(1000);
        cipher.decryptToByteArray(envelope(key, 0x01, "r" + packed));
        QCOMPARE(cipher.lastError() == Error::NoError, accepted);
        QCOMPARE(Common::boundedUncompress(packed, 1000).has_value(), accepted);
    }
};

QTEST_APPLESS_MAIN(SimpleCipherTest)
#include "tst_simplecipher.moc"
