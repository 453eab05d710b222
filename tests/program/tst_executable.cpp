// SPDX-License-Identifier: LicenseRef-Proprietary
// The built program in homes and beside copies that make things hard for it. It has to find and
// read its unit in all of them.
#include "support/TempFiles.h"
#include "umockdev/VirtualBus.h"
#include "unit/Unit.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

using namespace VirtualUnit;

namespace {

constexpr int patience = 30000; // milliseconds
const QString logFile =
    QStringLiteral(".local/share/Quillon/QuillonFirmwareUpdater/Logs/AquenSolvarUpdater.log");

struct Updater : QProcess // killed at the end
{
    explicit Updater(const QString& home, const QString& locale = "C.UTF-8")
    {
        start("env", {"-u", "XDG_DATA_HOME", "-u", "XDG_CONFIG_HOME", "-u", "XDG_CACHE_HOME",
                      "HOME=" + home, "LC_ALL=" + locale, UPDATER});
    }
};

} // namespace

class tst_executable : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bus.plug(m_unit = std::make_shared<Unit>(m_setup)); }
    void cleanup() { m_bus.unplug(m_unit); }
    void homes_data();
    void homes();
    void secondCopy();

private:
    int timesRead() const;

    // Not a fixture: this process is no client of the bus. Of clients in several processes only the
    // latest may get hot-plug events.
    VirtualBus m_bus;
    const UnitSetup m_setup{Kind::Aquen, Mode::Application, "AQ-1", "1.2.0"};
    P_Unit m_unit;
};

// How often the unit's properties were read to the last one.
int tst_executable::timesRead() const
{
    const auto trace = m_unit->trace();
    return int(std::count_if(trace.begin(), trace.end(),
                             [](const auto& entry) { return entry.name == "revision"; }));
}

void tst_executable::homes_data()
{
    QTest::addColumn<QString>("home"); // in a new directory
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("logs");
    const auto row = [](const char* name, const char* home, const char* locale, bool logs) {
        QTest::newRow(name) << QString(home) << QString(locale) << logs;
    };
    row("missing, not ASCII", "no/Zoë Müller – 洗浄", "C.UTF-8", true);
    row("not ASCII in a locale that is", "Zoë", "C", false);
    row("read-only, for root as well", "/proc/self", "C.UTF-8", false);
    row("full disk", "full", "C.UTF-8", false);
}

void tst_executable::homes()
{
    QFETCH(QString, home);
    QFETCH(QString, locale);
    QFETCH(bool, logs);
    const TempFiles files;
    const QString log = home + '/' + logFile;
    if (home == "full") { // for every write to the log
        QVERIFY(QDir(files.root()).mkpath(QFileInfo(log).path()));
        QVERIFY(QFile::link("/dev/full", files.path(log)));
    }
    Updater updater(files.path(home), locale);
    QTRY_COMPARE_WITH_TIMEOUT(timesRead(), 1, patience);
    if (logs)
        QTRY_VERIFY_WITH_TIMEOUT(files.get(log).contains("Serial name: \"AQ-1\""), patience);
    QCOMPARE(updater.readAllStandardError().contains("Could not make directory for log files:"),
             home == "/proc/self");
    QCOMPARE(updater.state(), QProcess::Running);
}

void tst_executable::secondCopy()
{
    const TempFiles files;
    Updater first(files.root());
    QTRY_COMPARE_WITH_TIMEOUT(timesRead(), 1, patience);
    Updater second(files.root());
    QTRY_VERIFY_WITH_TIMEOUT(files.get(logFile).contains("LIBUSB_ERROR_BUSY"), patience);
    const QString warning = "Another copy of this program is running (process %1).";
    QVERIFY(second.readAllStandardError().contains(warning.arg(first.processId()).toUtf8()));
    QCOMPARE(timesRead(), 1); // it left the first one's unit alone

    // A killed copy releases nothing by itself; neither the second copy nor a third one minds.
    first.kill();
    QVERIFY(first.waitForFinished(patience));
    QVERIFY(!first.readAllStandardError().contains("Another copy"));
    m_bus.unplug(m_unit);
    QTest::qWait(150); // a shorter absence can be missed
    m_bus.plug(m_unit);
    QTRY_COMPARE_WITH_TIMEOUT(timesRead(), 2, patience);
    second.kill();
    QVERIFY(second.waitForFinished(patience));
    Updater third(files.root());
    QTRY_COMPARE_WITH_TIMEOUT(timesRead(), 3, patience);
    QVERIFY(!third.readAllStandardError().contains("Another copy"));
}

QTEST_GUILESS_MAIN(tst_executable)
#include "tst_executable.moc"
