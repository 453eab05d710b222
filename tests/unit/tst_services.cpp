// SPDX-License-Identifier: LicenseRef-Proprietary
// The cipher, files, paths, facts of the build.
#include "Common/BuildOS.h"
#include "Common/BuildType.h"
#include "Common/FileIO.h"
#include "Common/Logging/OSInformation.h"
#include "Common/Paths.h"
#include "support/LogCapture.h"
#include "support/ReferenceEnvelope.h"
#include "support/TempFiles.h"

#include <QtTest>

using namespace Common;
using Reference::envelope;

class ServicesTest : public QObject
{
    Q_OBJECT

    static constexpr quint64 key = 0x0123456789ABCDEF;
    const QString text = QStringLiteral("Caf\u00E9\0at noon\n\u6D17 at noon, noon, noon, noon\n");
    const TempFiles m_files;

private slots:
    void bothDirectionsAgreeWithTheReference()
    {
        // Worked out by hand: key bytes 19 7B 2E 5A, seed 00, the CRC of "A" is A3F5.
        QCOMPARE(envelope(defaultCipherKey, "A", 2, 0), QByteArray::fromHex("030219c11a01"));
        for (const QByteArray& plain : {text.toUtf8(), QByteArray("x"), QByteArray()}) {
            for (int mode = 0; mode < 9; ++mode) {
                SimpleCipher cipher(key);
                QCOMPARE(cipher.encryptToByteArray(text.toUtf8()).at(1), '\3');
                cipher.setCompressionMode(static_cast<SimpleCipher::CompressionMode>(mode % 3));
                cipher.setProtectionMode(static_cast<SimpleCipher::ProtectionMode>(mode / 3));
                const bool packed = mode % 3 == 1 || (mode % 3 == 0 && plain.size() > 1);
                const auto flags = static_cast<quint8>((packed ? 1 : 0) | (2 * (mode / 3)));
                const QByteArray sealed = cipher.encryptToByteArray(plain);
                const char seed = static_cast<char>(sealed.at(2) ^ 0xEF);
                QCOMPARE(sealed, envelope(key, packed ? qCompress(plain) : plain, flags, seed));
                QCOMPARE(cipher.decryptToByteArray(sealed), plain);
                QCOMPARE(cipher.lastError(), SimpleCipher::Error::NoError);
            }
        }
        // Every changed bit is noticed.
        SimpleCipher cipher(key);
        QByteArray sealed = envelope(key, "The quick brown fox jumps.");
        for (int bit = 16; bit < 8 * sealed.size(); ++bit) {
            for (const int error : {3, 0}) {
                sealed[bit / 8] = static_cast<char>(sealed.at(bit / 8) ^ (1 << (bit % 8)));
                QCOMPARE(cipher.decryptToByteArray(sealed).isEmpty(), error != 0);
                QCOMPARE(static_cast<int>(cipher.lastError()), error);
            }
        }
    }

    void whatIsNoEnvelopeIsRefused()
    {
        SimpleCipher cipher(key);
        cipher.setMaximumPlainSize(1000);
        const QByteArray tooLong = qCompress(QByteArray(1001, 'a'));
        const QList<std::pair<QByteArray, int>> rows{
            {"\x03\x02", 2},
            {envelope(key, "x", 2, 'R', 2), 2},
            {Reference::envelopeOfBody(key, "x", 2), 3},
            {Reference::envelopeOfBody(key, QByteArray(19, 'x'), 4), 3},
            {envelope(key, "abc", 1), 3},
            {envelope(key, "x", 2 | 4), 0}, // the checksum counts
            {envelope(key, qCompress("cut short").chopped(6), 1), 3},
            {envelope(key, qCompress(QByteArray(1000, 'a')), 1), 0},
            {envelope(key, tooLong, 1), 3},
            {envelope(key, QByteArray("\0\0\0\1", 4) + tooLong.mid(4), 1), 3}};
        for (const auto& [sealed, error] : rows) {
            if (error == 2)
                QTest::ignoreMessage(QtWarningMsg, "Invalid version or not a cyphertext.");
            QCOMPARE(cipher.decryptToByteArray(sealed).isEmpty(), error != 0);
            QCOMPARE(static_cast<int>(cipher.lastError()), error);
        }
        QTest::ignoreMessage(QtWarningMsg, "No key set.");
        QVERIFY(SimpleCipher().decryptToByteArray(envelope(key, "x")).isEmpty());
    }

    void filesAreReadAndWritten()
    {
        const QByteArray sealed = envelope(77, text.toUtf8());
        QCOMPARE(FileIO::readFile(m_files.put("notes.txc", sealed), 77), text);
        QVERIFY(FileIO::readFile(m_files.put("notes.TXC", sealed), 77) != text);
        QVERIFY(!FileIO::makeDirectory(m_files.path("notes.txc/below")));
        QVERIFY(FileIO::makeDirectory(m_files.path("a")) && QDir(m_files.path("a")).exists());
        const QString path = m_files.put("a/notes.txt", QByteArray(999, 'x'));
        QVERIFY(FileIO::writeFile(path, text));
        QCOMPARE(m_files.get(path), text.toUtf8());
        QCOMPARE(FileIO::readFile(m_files.put("raw.txt", text.toUtf8())), text);
        QVERIFY(!FileIO::writeFile(m_files.path("missing/notes.txt"), text));
        QCOMPARE(FileIO::readFile(m_files.root()), QString());
        // One way takes Latin-1 and gives Base64, the other takes raw bytes and gives UTF-8.
        const QByteArray base64 = FileIO::encryptToBase64(text).toLatin1();
        QCOMPARE(SimpleCipher(0x5A2E7B19).decryptToByteArray(QByteArray::fromBase64(base64)),
                 text.toLatin1());
        QCOMPARE(FileIO::decrypt(sealed, 77), text);
    }

    void pathsAndFactsAreRight()
    {
        QCoreApplication::setOrganizationName("Org");
        QCoreApplication::setApplicationName("App");
        const QString app = QFileInfo(QCoreApplication::applicationFilePath()).absolutePath();
        const QString local = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        const QString data = local + "/Org/App";
        const QString root = QDir::rootPath();
        const bool windows = QSysInfo::productType() == "windows";
        const QString file = m_files.put("tree/sub/.hidden");
        const QString type = BuildType::buildTypeString();
        const QList<std::pair<QString, QString>> rows{
            {Paths::resourceSubdirectory("Firmwares"), app + "/Resources/Firmwares"},
            {Paths::settingsFilename("L.ini"), app + "/Resources/Settings/L.ini"},
            {Paths::dataFilename("f.txt", "sub"), data + "/sub/f.txt"},
            {Paths::userSettingsFilename("L.ini"), data + "/Settings/L.ini"},
            {Paths::logDirectory(), data + "/Logs"},
            {Paths::fileInDirectory(root + "a/b", root + "x/y"), root + "x/y"},
            {Paths::filesInDirectoryTree(m_files.path("tree")).join(' '), file},
            {BuildOS::buildOSString(), windows ? "win" : "linux"},
            {GetOSArchitectureBits(), windows ? "32" : "64"}}; // no emulation there
        for (const auto& [actual, expected] : rows)
            QCOMPARE(actual, expected);
        LogCapture log({"OSInformation"});
        GetOSArchitectureBits(ArchitectureProbe::Failed);
        QCOMPARE(log.lines().value(0).section(' ', 2),
                 "[GetOSArchitectureBits] IsWow64Process returned an error.");
    }
};

QTEST_GUILESS_MAIN(ServicesTest)
#include "tst_services.moc"
