#include "FileDestination.h"

#include <QtTest>

using QsLogging::FileDestination;
using QsLogging::Level;

class FileDestinationTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void appendsPlainLinesAndFlushesEach()
    {
        put("a.log", "before\n");
        FileDestination destination(path("a.log"));
        QVERIFY(destination.isValid());
        destination.setColours(true);
        destination.write(QStringLiteral("\x1b[1;30mINFO\x1b[0m \x1b[2J \u6D17 \x1b[m x"),
                          Level::Info);
        // Only colours go: ESC [ 2 J and ESC [ m are none.
        QCOMPARE(get("a.log"), QByteArray("before\nINFO \x1b[2J \xE6\xB4\x97 \x1b[m x\n"));
    }

    void rotatesOnlyPastTheMaximum_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("maximum");
        QTest::addColumn<bool>("rotates");
        QTest::newRow("at the maximum") << 1000 << 1000 << false;
        QTest::newRow("one past") << 1001 << 1000 << true;
        QTest::newRow("zero is no limit") << 1001 << 0 << false;
        QTest::newRow("negative is no limit") << 1001 << -5 << false;
    }
    void rotatesOnlyPastTheMaximum()
    {
        QFETCH(int, size);
        QFETCH(int, maximum);
        QFETCH(bool, rotates);
        const QByteArray full(size, 'x');

        // At once when the size is set,
        put("b.log", full);
        put("b.log.old", "old generation");
        FileDestination atOnce(path("b.log"));
        QVERIFY(atOnce.setMaxSize(maximum));
        QCOMPARE(get("b.log.old"), rotates ? full : QByteArray("old generation"));
        QCOMPARE(get("b.log"), rotates ? QByteArray() : full);

        // and before the line that finds the file too large.
        put("c.log", QByteArray());
        put("c.log.old", "old generation");
        FileDestination onWrite(path("c.log"));
        QVERIFY(onWrite.setMaxSize(maximum));
        onWrite.write(QString(size - 1, 'x'), Level::Info);
        onWrite.write("next", Level::Info);
        const QByteArray first = QByteArray(size - 1, 'x') + "\n";
        QCOMPARE(get("c.log"), rotates ? QByteArray("next\n") : first + "next\n");
        QCOMPARE(get("c.log.old"), rotates ? first : QByteArray("old generation"));
    }

    void aFailedRotationKeepsLogging()
    {
        put("d.log", "before\n");
        FileDestination destination(path("d.log"));
        // Something that cannot be replaced stands where the old generation should go.
        QVERIFY(QDir(m_dir->path()).mkpath("d.log.old/full"));
        QVERIFY(!destination.rotate());
        destination.setMaxSize(3);
        destination.write("after", Level::Info);
        QCOMPARE(get("d.log"), QByteArray("before\nafter\n"));
    }

    void whatCannotBeOpenedIsQuietlyInvalid()
    {
        FileDestination missing(path("no/such/directory.log"));
        FileDestination directory(m_dir->path());
        for (FileDestination* destination : {&missing, &directory}) {
            QVERIFY(!destination->isValid());
            QVERIFY(destination->setMaxSize(1));
            destination->write("lost", Level::Info);
            QVERIFY(!destination->rotate());
        }
        QVERIFY(QFileInfo(m_dir->path()).isDir());
    }

    void onePathIsOneObject()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_dir->path()));
        const auto relative = QsLogging::fileDestinationFor("e.log");
        const auto absolute = QsLogging::fileDestinationFor(QDir::currentPath() + "/e.log");
        const auto other = QsLogging::fileDestinationFor("f.log");
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(relative, absolute);
        QVERIFY(relative != other);
        QVERIFY2(QFileInfo::exists(path("e.log")), "opened at once");
    }

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }

    void put(const QString& name, const QByteArray& contents)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(contents), qint64(contents.size()));
    }

    QByteArray get(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_APPLESS_MAIN(FileDestinationTest)
#include "tst_filedestination.moc"
