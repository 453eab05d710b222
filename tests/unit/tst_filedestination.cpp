#include "qslog/FileDestination.h"
#include "support/TempFiles.h"

#include <QtTest>

using QsLogging::FileDestination;
using QsLogging::Level;

class FileDestinationTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<TempFiles>(); }

    void appendsPlainLinesAndFlushesEach()
    {
        m_files->put("a.log", "before\n");
        FileDestination destination(m_files->path("a.log"));
        QVERIFY(destination.isValid());
        destination.setColours(true);
        destination.write(QStringLiteral("\x1b[1;30mINFO\x1b[0m \x1b[2J \u6D17 \x1b[m x"),
                          Level::Info);
        // Only colours go: ESC [ 2 J and ESC [ m are none.
        QCOMPARE(m_files->get("a.log"), QByteArray("before\nINFO \x1b[2J \xE6\xB4\x97 \x1b[m x\n"));
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
        m_files->put("b.log", full);
        m_files->put("b.log.old", "old generation");
        FileDestination atOnce(m_files->path("b.log"));
        QVERIFY(atOnce.setMaxSize(maximum));
        QCOMPARE(m_files->get("b.log.old"), rotates ? full : QByteArray("old generation"));
        QCOMPARE(m_files->get("b.log"), rotates ? QByteArray() : full);

        // and before the line that finds the file too large.
        m_files->put("c.log", QByteArray());
        m_files->put("c.log.old", "old generation");
        FileDestination onWrite(m_files->path("c.log"));
        QVERIFY(onWrite.setMaxSize(maximum));
        onWrite.write(QString(size - 1, 'x'), Level::Info);
        onWrite.write("next", Level::Info);
        const QByteArray first = QByteArray(size - 1, 'x') + "\n";
        QCOMPARE(m_files->get("c.log"), rotates ? QByteArray("next\n") : first + "next\n");
        QCOMPARE(m_files->get("c.log.old"), rotates ? first : QByteArray("old generation"));
    }

    void aFailedRotationKeepsLogging()
    {
        m_files->put("d.log", "before\n");
        FileDestination destination(m_files->path("d.log"));
        // Something that cannot be replaced stands where the old generation should go.
        QVERIFY(QDir(m_files->root()).mkpath("d.log.old/full"));
        QVERIFY(!destination.rotate());
        destination.setMaxSize(3);
        destination.write("after", Level::Info);
        QCOMPARE(m_files->get("d.log"), QByteArray("before\nafter\n"));
    }

    void whatCannotBeOpenedIsQuietlyInvalid()
    {
        FileDestination missing(m_files->path("no/such/directory.log"));
        FileDestination directory(m_files->root());
        for (FileDestination* destination : {&missing, &directory}) {
            QVERIFY(!destination->isValid());
            QVERIFY(destination->setMaxSize(1));
            destination->write("lost", Level::Info);
            QVERIFY(!destination->rotate());
        }
        QVERIFY(QFileInfo(m_files->root()).isDir());
    }

    void onePathIsOneObject()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_files->root()));
        const auto relative = QsLogging::fileDestinationFor("e.log");
        const auto absolute = QsLogging::fileDestinationFor(QDir::currentPath() + "/e.log");
        const auto other = QsLogging::fileDestinationFor("f.log");
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(relative, absolute);
        QVERIFY(relative != other);
        QVERIFY2(QFileInfo::exists(m_files->path("e.log")), "opened at once");
    }

private:
    std::unique_ptr<TempFiles> m_files;
};

QTEST_APPLESS_MAIN(FileDestinationTest)
#include "tst_filedestination.moc"
