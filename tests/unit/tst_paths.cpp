#include "Common/Paths.h"
#include "support/TempFiles.h"

#include <QtTest>

using Common::Paths;

class PathsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Org"));
        QCoreApplication::setApplicationName(QStringLiteral("App"));
    }

    void directoriesAreWhereTheyShouldBe()
    {
        const QString app = QFileInfo(QCoreApplication::applicationFilePath()).absolutePath();
        const QString data = QString::fromLocal8Bit(qgetenv("XDG_DATA_HOME")) + "/Org/App";
        const QString ini = QStringLiteral("Logging.ini");
        QCOMPARE(Paths::applicationDirectory(), app);
        QCOMPARE(Paths::applicationSubdirectory("a/b"), app + "/a/b");
        QCOMPARE(Paths::resourceSubdirectory("Firmwares"), app + "/Resources/Firmwares");
        QCOMPARE(Paths::settingsSubdirectory("x"), app + "/Resources/Settings/x");
        QCOMPARE(Paths::settingsFilename(ini), app + "/Resources/Settings/Logging.ini");
        QCOMPARE(Paths::dataDirectory(), data);
        QCOMPARE(Paths::dataFilename("f.txt", "sub"), data + "/sub/f.txt");
        QCOMPARE(Paths::userSettingsSubdirectory("x"), data + "/Settings/x");
        QCOMPARE(Paths::userSettingsFilename(ini), data + "/Settings/Logging.ini");
        QCOMPARE(Paths::logDirectory(), data + "/Logs");
        QVERIFY(QFileInfo::exists(Paths::sourcesDirectory() + "/lib/Common/src/CMakeLists.txt"));
        QVERIFY2(!QFileInfo::exists(data), "asking for a path must not create it");
    }

    void joinsNames()
    {
        QCOMPARE(Paths::fileInDirectory("/a/b", "c.txt"), QStringLiteral("/a/b/c.txt"));
        QCOMPARE(Paths::fileInDirectory("/a/b/", "c.txt"), QStringLiteral("/a/b/c.txt"));
        QCOMPARE(Paths::fileInDirectory("/", "c.txt"), QStringLiteral("/c.txt"));
        QCOMPARE(Paths::fileInDirectory("/a/b", "/x/y"), QStringLiteral("/x/y"));
        QCOMPARE(Paths::fileInDirectory("", "c.txt"), QDir::currentPath() + "/c.txt");
        QCOMPARE(Paths::relativePath("/a/b", "/a/c/d"), QStringLiteral("../c/d"));
        QCOMPARE(Paths::resourceSubdirectory("/abs"), QStringLiteral("/abs"));
    }

    void convertsBetweenPathsAndUrls_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << "/tmp/a.txt";
        QTest::newRow("blank, hash, question mark") << "/tmp/a b#c?d.txt";
        QTest::newRow("per cent") << "/tmp/100%25 %41.txt";
        QTest::newRow("beyond ASCII") << QStringLiteral("/tmp/Gr\u00FC\u00DFe \u6D17.txt");
    }
    void convertsBetweenPathsAndUrls()
    {
        QFETCH(QString, path);
        const QString url = Paths::urlFromAbsoluteFilePath(path);
        QVERIFY(url.startsWith("file:///tmp/"));
        QCOMPARE(Paths::absoluteFilePathFromURL(QUrl(url)), path);
    }

    void findsEveryFileInATree()
    {
        for (const char* name : {"one.txt", "sub/two.txt", "sub/deeper/.hidden", ".dot/three"})
            m_files.put(name);
        QVERIFY(QDir(m_files.root()).mkpath("empty"));
        QVERIFY(QFile::link(m_files.path("sub"), m_files.path("loop")));
        QStringList found = Paths::filesInDirectoryTree(m_files.root());
        found.sort();
        const QString root = m_files.root();
        QCOMPARE(found, QStringList({root + "/.dot/three", root + "/one.txt",
                                     root + "/sub/deeper/.hidden", root + "/sub/two.txt"}));
        QCOMPARE(Paths::filesInDirectoryTree(root + "/empty"), QStringList());
        QCOMPARE(Paths::filesInDirectoryTree(root + "/missing"), QStringList());
        QCOMPARE(Paths::filesInDirectoryTree(QString()), QStringList());
    }

    void tellsLocalFilesFromOtherUrls()
    {
        m_files.put("file.txt");
        const QUrl file = QUrl::fromLocalFile(m_files.path("file.txt"));
        QVERIFY(Paths::allURLsPointToLocalFiles({}));
        QVERIFY(Paths::allURLsPointToLocalFiles({file, file}));
        QVERIFY(!Paths::allURLsPointToLocalFiles({file, QUrl::fromLocalFile(m_files.root())}));
        QVERIFY(!Paths::allURLsPointToLocalFiles({file, QUrl("http://localhost/file.txt")}));
        QVERIFY(!Paths::allURLsPointToLocalFiles({QUrl::fromLocalFile(m_files.path("no"))}));
        QVERIFY(Paths::absoluteFilePathFromURL(QUrl("http://localhost/file.txt")).isEmpty());
    }

    // QML reaches the static functions by name through the meta-object.
    void canBeCalledByName()
    {
        Paths paths;
        QString result;
        QVERIFY(QMetaObject::invokeMethod(&paths, "fileInDirectory", Q_RETURN_ARG(QString, result),
                                          Q_ARG(QString, "/a"), Q_ARG(QString, "b")));
        QCOMPARE(result, QStringLiteral("/a/b"));
    }

private:
    const TempFiles m_files;
};

QTEST_GUILESS_MAIN(PathsTest)
#include "tst_paths.moc"
