// The built program itself in homes and beside copies that make things hard for it. It must find
// and read its units in all of them.
#include "support/BusFixture.h"
#include "support/TempFiles.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

using namespace VirtualUnit;

class tst_executable : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { m_bus.unplug(m_unit); }
    void homes_data();
    void homes();
    void secondCopy();

private:
    using P_Process = std::unique_ptr<QProcess>;
    P_Process start(const QString& home, const QString& locale = "C.UTF-8");
    static QString said(QProcess& program);
    static void end(const P_Process& program);

    void plugUnit();
    void replugUnit();
    int timesRead() const;

    // Not a fixture: this process is no client of the bus. Of clients in several processes only the
    // latest may hear what comes and goes.
    VirtualBus m_bus;
    P_Unit m_unit;
};

namespace {

const QString logFile =
    QStringLiteral("/.local/share/Quillon/QuillonFirmwareUpdater/Logs/AquenSolvarUpdater.log");

QString contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

void tst_executable::plugUnit()
{
    UnitSetup setup;
    setup.serialName = "A-1";
    setup.firmware = "1.2.0";
    m_unit = std::make_shared<Unit>(setup);
    m_bus.plug(m_unit);
}

// How often its facts were read to the end.
int tst_executable::timesRead() const
{
    const std::vector<TraceEntry> trace = m_unit->trace();
    return int(std::count_if(trace.begin(), trace.end(),
                             [](const TraceEntry& entry) { return entry.name == "revision"; }));
}

void tst_executable::replugUnit()
{
    m_bus.unplug(m_unit);
    QTest::qWait(150); // a shorter absence can be missed
    m_bus.plug(m_unit);
}

tst_executable::P_Process tst_executable::start(const QString& home, const QString& locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        environment.remove(name);
    environment.insert("HOME", home);
    environment.insert("LC_ALL", locale);
    auto program = std::make_unique<QProcess>();
    program->setProcessEnvironment(environment);
    program->setProcessChannelMode(QProcess::MergedChannels);
    program->start(UPDATER, QStringList());
    return program;
}

QString tst_executable::said(QProcess& program)
{
    return QString::fromLocal8Bit(program.readAll());
}

void tst_executable::end(const P_Process& program)
{
    QCOMPARE(program->state(), QProcess::Running);
    program->terminate();
    QVERIFY(program->waitForFinished(5000));
}

void tst_executable::homes_data()
{
    QTest::addColumn<QString>("home"); // below a new directory
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("logs");
    QTest::newRow("empty") << "home" << true << "C.UTF-8" << true;
    QTest::newRow("missing") << "no/home" << false << "C.UTF-8" << true;
    QTest::newRow("not ASCII") << "Zoë Müller – 洗浄" << true << "C.UTF-8" << true;
    QTest::newRow("not ASCII, in a locale that is") << "Zoë" << true << "C" << false;
    // Nothing can be made there, by root neither.
    QTest::newRow("read-only") << "/proc/self" << true << "C.UTF-8" << false;
    QTest::newRow("full disk") << "full" << true << "C.UTF-8" << false;
}

void tst_executable::homes()
{
    QFETCH(QString, home);
    QFETCH(bool, exists);
    QFETCH(QString, locale);
    QFETCH(bool, logs);
    const TempFiles files;
    if (home == "full") {
        // Every byte that is written to the log finds the disk full.
        QVERIFY(QDir(files.root()).mkpath(QFileInfo("full" + logFile).path()));
        QVERIFY(QFile::link("/dev/full", files.path(home + logFile)));
    }
    home = files.path(home);
    QCOMPARE(QFileInfo::exists(home) || (exists && QDir().mkpath(home)), exists);
    plugUnit();
    const P_Process program = start(home, locale);
    QVERIFY(waitFor([&] { return timesRead() == 1; }, 30000));
    // Later events are seen as well.
    replugUnit();
    QVERIFY(waitFor([&] { return timesRead() == 2; }, 30000));
    if (logs)
        QVERIFY(
            waitFor([&] { return contents(home + logFile).count("Serial name: \"A-1\"") == 2; }));
    const bool told = said(*program).contains("Could not make directory for log files:");
    QCOMPARE(told, home.startsWith("/proc"));
    end(program);
}

void tst_executable::secondCopy()
{
    const TempFiles files;
    const QString warning = "Another copy of this program is running (process %1).";
    plugUnit();
    const P_Process first = start(files.root());
    QVERIFY(waitFor([&] { return timesRead() == 1; }, 30000));
    const P_Process second = start(files.root());
    const QString log = files.root() + logFile;
    QVERIFY(waitFor(
        [&] { return contents(log).contains("no other copy of this program is running"); }, 30000));
    QVERIFY(contents(log).contains("LIBUSB_ERROR_BUSY"));
    const QString expected = warning.arg(first->processId());
    QVERIFY(said(*second).contains(expected));
    QVERIFY(!said(*first).contains("Another copy"));
    QCOMPARE(timesRead(), 1); // the first copy's unit was left alone

    // The first ends without a word; the second is then as good as it, after plugging in again.
    first->kill();
    QVERIFY(first->waitForFinished(5000));
    replugUnit();
    QVERIFY(waitFor([&] { return timesRead() == 2; }, 30000));
    end(second);
    // What they left behind stops nobody.
    const P_Process third = start(files.root());
    QVERIFY(waitFor([&] { return timesRead() == 3; }, 30000));
    QVERIFY(!said(*third).contains("Another copy"));
    end(third);
}

QTEST_GUILESS_MAIN(tst_executable)
#include "tst_executable.moc"
