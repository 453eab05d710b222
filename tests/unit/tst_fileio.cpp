#include "Common/FileIO.h"
#include "support/TempFiles.h"

#include <QtTest>

using Common::FileIO;
using Common::SimpleCipher;

class FileIOTest : public QObject
{
    Q_OBJECT

private slots:
    void writesAndReadsText()
    {
        const QString path = m_files.path("notes.txt");
        const QString text = QStringLiteral("Gr\u00FC\u00DFe\nsecond \u6D17\n");
        QVERIFY(FileIO::writeFile(path, text));
        QCOMPARE(FileIO::readFile(path), text);
        QVERIFY(FileIO::writeFile(path, "short"));
        QCOMPARE(FileIO::readFile(path), QStringLiteral("short"));
        QVERIFY(!FileIO::writeFile(m_files.path("missing/notes.txt"), text));
        QCOMPARE(FileIO::readFile(m_files.path("missing.txt")), QString());
        QCOMPARE(FileIO::readFile(m_files.root()), QString());
    }

    void aPathThatEndsWithCIsDeciphered_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("deciphered");
        QTest::newRow("txc") << "notes.txc" << true;
        QTest::newRow("no extension") << "basic" << true;
        QTest::newRow("upper case") << "notes.TXC" << false;
        QTest::newRow("txt") << "notes.txt" << false;
    }
    void aPathThatEndsWithCIsDeciphered()
    {
        QFETCH(QString, name);
        QFETCH(bool, deciphered);
        const QByteArray sealed = SimpleCipher(77).encryptToByteArray("Gr\xC3\xBC\xC3\x9F"
                                                                      "e");
        m_files.put(name, sealed);
        const QString path = m_files.path(name);
        QCOMPARE(FileIO::readFile(path, 77),
                 deciphered ? QStringLiteral("Gr\u00FC\u00DFe") : QString::fromUtf8(sealed));
        if (deciphered)
            QCOMPARE(FileIO::readFile(path, 78), QString());
    }

    void plainTextUnderACipherNameReadsAsNothing()
    {
        m_files.put("plain.txc", "just text");
        QTest::ignoreMessage(QtWarningMsg, "Invalid version or not a cyphertext.");
        QCOMPARE(FileIO::readFile(m_files.path("plain.txc")), QString());
    }

    // One way takes Latin-1 and gives Base64, the other takes the raw envelope and gives UTF-8.
    void theTwoDirectionsAreNotMirrorImages()
    {
        const QString text = QStringLiteral("na\u00EFve \u6D17");
        const QByteArray sealed = QByteArray::fromBase64(FileIO::encryptToBase64(text).toLatin1());
        QCOMPARE(SimpleCipher(0x5A2E7B19).decryptToByteArray(sealed), QByteArray("na\xEFve ?"));
        QCOMPARE(FileIO::decrypt(SimpleCipher(0x5A2E7B19).encryptToByteArray("na\xC3\xAFve")),
                 QStringLiteral("na\u00EFve"));
        QTest::ignoreMessage(QtWarningMsg, "Invalid version or not a cyphertext.");
        QCOMPARE(FileIO::decrypt(FileIO::encryptToBase64("x").toLatin1()), QString());
        QCOMPARE(
            FileIO::decrypt(QByteArray::fromBase64(FileIO::encryptToBase64("x", 5).toLatin1()), 5),
            QStringLiteral("x"));
    }

    void makesDirectories()
    {
        const QString path = m_files.path("a/b/c");
        QVERIFY(FileIO::makeDirectory(path));
        QVERIFY(QFileInfo(path).isDir());
        QVERIFY(FileIO::makeDirectory(path));
        m_files.put("file", "x");
        QVERIFY(!FileIO::makeDirectory(m_files.path("file/below")));
        QVERIFY(!FileIO::makeDirectory(m_files.path("file")));
    }

private:
    const TempFiles m_files;
};

QTEST_GUILESS_MAIN(FileIOTest)
#include "tst_fileio.moc"
