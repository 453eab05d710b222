// Units that come, go and change in ways that no single update sees, and windows that are closed.
#include "Common/Logging/LoggingStartup.h"
#include "UpdaterSession.h"
#include "support/TempFiles.h"
#include "tracking/AquenSolvarListModel.h"
#include "unit/FirmwareImage.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <random>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace VirtualUnit;
using Action = Fault::Action;

namespace {

int timesAsked(const P_Unit& unit, const QString& request)
{
    const std::vector<TraceEntry> trace = unit->trace();
    return int(std::count_if(trace.begin(), trace.end(), [&](const TraceEntry& entry) {
        return QString::fromStdString(entry.name) == request;
    }));
}

// Names of the process's threads.
QStringList threadNames()
{
    QStringList names;
    const QDir tasks("/proc/self/task");
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(tasks.filePath(task + "/comm"));
        if (name.open(QIODevice::ReadOnly))
            names << QString::fromLocal8Bit(name.readAll()).trimmed();
    }
    return names;
}

} // namespace

class tst_plugging : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void twoUnitsOfEachKind();
    void plugStorm_data();
    void plugStorm();
    void comesBackAsTheOtherKind();
    void comesBackAsAnApplication();
    void neverComesBackUntilPluggedIn();
    void closedInEveryState_data();
    void closedInEveryState();
    void noPermission();
    void fullDiskUnderTheLog();

private:
    void startSession(const SessionTimes& times);
    void startUpdate();
    QStringList listed() const;
    bool holds(const P_Unit& unit, const QByteArray& image) const
    {
        return unit->mode() == Mode::Application &&
               toByteArray(unit->applicationContent()) == image;
    }

    std::unique_ptr<BusFixture> m_bus;
    std::unique_ptr<UpdaterSession> m_session;
    QByteArray m_aquenImage;
    QByteArray m_solvarImage;
};

void tst_plugging::initTestCase()
{
    qInstallMessageHandler(&withoutSizeHints);
    m_bus = std::make_unique<BusFixture>();
    m_aquenImage = toByteArray(makeImage(5000, "1.3.1"));
    m_solvarImage = toByteArray(makeImage(5000, "1.3.1", 2));
    QVERIFY(shipFirmware(m_aquenImage, m_solvarImage));
}

void tst_plugging::init()
{
    startSession(SessionTimes::quick());
}

void tst_plugging::startSession(const SessionTimes& times)
{
    m_session.reset();
    m_session = std::make_unique<UpdaterSession>(times);
    QVERIFY(m_session->isRunning());
}

void tst_plugging::cleanup()
{
    m_session.reset();
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
}

// Presses the button of the one unit that needs an update.
void tst_plugging::startUpdate()
{
    QVERIFY(m_session->wait([&] {
        QQuickItem* button = m_session->one("updateButton");
        return button != nullptr && button->isEnabled();
    }));
    QVERIFY(m_session->press("updateButton"));
}

QStringList tst_plugging::listed() const
{
    const auto* model = m_session->window()->findChild<AquenSolvar::AquenSolvarListModel*>();
    QStringList names;
    for (int row = 0; row < model->rowCount(); ++row) {
        const QVariant device = model->data(model->index(row), Qt::UserRole + 1);
        names << device.value<AquenSolvar::Device::I_Device*>()->serialName();
    }
    return names;
}

void tst_plugging::twoUnitsOfEachKind()
{
    QMap<QString, P_Unit> units;
    for (const char* name : {"A-1", "A-2", "S-1", "S-2"})
        units[name] =
            m_bus->plugApplication(name, "1.2.0", name[0] == 'A' ? Kind::Aquen : Kind::Solvar);
    // The one in the middle of the list first.
    for (const char* name : {"A-2", "S-1", "A-1", "S-2"}) {
        QVERIFY(m_session->wait([&] { return m_session->visible("updateButton").size() == 4; }));
        const int row = listed().indexOf(name);
        // The list scrolls to the button that has the keyboard.
        m_session->visible("updateButton").at(row)->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(m_session->window(), Qt::Key_Return);
        QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
        QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
        QVERIFY(holds(units.value(name), name[0] == 'A' ? m_aquenImage : m_solvarImage));
        QVERIFY(m_session->press("doneButton"));
    }
    QVERIFY(m_session->wait([&] { return m_session->visible("upToDateText").size() == 4; }));
}

void tst_plugging::plugStorm_data()
{
    QTest::addColumn<unsigned>("seed");
    QTest::addColumn<int>("longestPauseMs");
    QTest::newRow("as fast as can be") << 1U << 10;
    QTest::newRow("faster than the listing") << 2U << 60;
    QTest::newRow("slower") << 3U << 120;
}

void tst_plugging::plugStorm()
{
    QFETCH(unsigned, seed);
    QFETCH(int, longestPauseMs);
    QVector<QPair<QString, P_Unit>> units;
    for (const char* name : {"A-1", "A-2", "S-1", "S-2"})
        units.append({name, m_bus->plugApplication(name, "1.3.1",
                                                   name[0] == 'A' ? Kind::Aquen : Kind::Solvar)});
    units.append({"Aquen (Update)", m_bus->plugBootloader(Kind::Aquen)});
    units.append({"Solvar (Update)", m_bus->plugBootloader(Kind::Solvar)});
    std::mt19937 random(seed);
    const auto below = [&random](unsigned bound) {
        return int(random() % bound);
    };
    for (int event = 0; event < 200; ++event) {
        const P_Unit& unit = units.at(below(unsigned(units.size()))).second;
        if (m_bus->bus().isPlugged(unit))
            m_bus->bus().unplug(unit);
        else
            m_bus->bus().plug(unit);
        m_session->wait([] { return false; }, below(unsigned(longestPauseMs)));
    }
    QStringList plugged;
    for (const auto& [name, unit] : units) {
        if (m_bus->bus().isPlugged(unit))
            plugged << name;
    }
    plugged.sort();
    QVERIFY2(m_session->wait([&] { return listed() == plugged; }, 3000),
             qPrintable(listed().join(", ") + " instead of " + plugged.join(", ")));
    // And that is the end of it.
    QVERIFY(!m_session->wait([&] { return listed() != plugged; }, 300));
    QCOMPARE(m_session->unitsPresent(), plugged.size());
}

void tst_plugging::comesBackAsTheOtherKind()
{
    const P_Unit washing = m_bus->plugApplication("A-1", "1.2.0");
    washing->adjust([](Overrides& overrides) { overrides.returns = false; });
    startUpdate();
    QVERIFY(m_session->wait([&] { return m_session->unitsPresent() == 0; }));
    // No pairing is attempted: the first bootloader is taken, and gets the firmware of its own
    // kind.
    const P_Unit curing = m_bus->plugBootloader(Kind::Solvar);
    QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
    QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
    QVERIFY(holds(curing, m_solvarImage));
    QVERIFY(m_session->press("doneButton"));
    QVERIFY(m_session->wait([&] { return m_session->offers("Update Firmware", false); }));
    m_bus->bus().unplug(curing);
    m_bus->bus().plug(washing);
    washing->adjust([](Overrides& overrides) { overrides.returns = true; });
    startUpdate();
    QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
    QVERIFY(holds(washing, m_aquenImage));
}

void tst_plugging::comesBackAsAnApplication()
{
    const P_Unit unit = m_bus->plugApplication("A-1", "1.2.0");
    unit->adjust([](Overrides& overrides) { overrides.returns = false; });
    startUpdate();
    QVERIFY(m_session->wait([&] { return m_session->unitsPresent() == 0; }));
    m_bus->bus().unplug(unit); // it loses power: the wish to be a bootloader is forgotten
    m_bus->bus().plug(unit);
    QVERIFY(m_session->wait([&] { return m_session->unitsPresent() == 1; }));
    // The wait is for a bootloader, and without end. The window lives.
    QVERIFY(!m_session->wait([&] { return m_session->isDone(); }, 300));
    QCOMPARE(m_session->barText(), QStringLiteral("Preparing device to receive update…"));
    QVERIFY(m_session->longestTurn() < 1000);
}

void tst_plugging::neverComesBackUntilPluggedIn()
{
    const P_Unit unit = m_bus->plugApplication("A-1", "1.2.0");
    unit->adjust([](Overrides& overrides) { overrides.returns = false; });
    startUpdate();
    for (const char* text : {"Preparing device to receive update…", "Restarting device…"}) {
        QVERIFY(m_session->wait([&] { return m_session->barText() == QString(text); }));
        QVERIFY(m_bus->bus().waitUntilUnplugged(unit, milliseconds(5000)));
        QVERIFY(!m_session->wait([&] { return m_session->isDone(); }, 300));
        QCOMPARE(m_session->barText(), QString(text));
        m_bus->bus().plug(unit);
    }
    QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
    QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
    QVERIFY(holds(unit, m_aquenImage));
}

void tst_plugging::closedInEveryState_data()
{
    QTest::addColumn<QString>("state");   // on reaching it the window is closed
    QTest::addColumn<QString>("request"); // where the unit misbehaves
    QTest::addColumn<int>("action");      // and how; -1: it does not
    QTest::addColumn<int>("limitMs");     // for the close
    const int none = -1;
    QTest::newRow("list") << "DefaultState"
                          << "" << none << 3000;
    QTest::newRow("waiting for the bootloader") << "DropToBootloaderState"
                                                << "drop" << int(Action::NeverReturn) << 3000;
    QTest::newRow("flashing") << "TaskState"
                              << "" << none << 3000;
    // 2 s for a good end, then the transfer is called off.
    QTest::newRow("flashing a unit that is silent") << "TaskState"
                                                    << "getstatus" << int(Action::Silence) << 6000;
    QTest::newRow("flashing a unit that is busy without end")
        << "TaskState"
        << "erase" << int(Action::StayBusy) << 6000;
    QTest::newRow("restarting") << "RestartingDeviceState"
                                << "finish" << int(Action::NeverReturn) << 3000;
    QTest::newRow("finished") << "UpdateFinishedState"
                              << "" << none << 3000;
    QTest::newRow("failed") << "ErrorDuringUpdateState"
                            << "write" << int(Action::Stall) << 3000;
}

void tst_plugging::closedInEveryState()
{
    QFETCH(QString, state);
    QFETCH(QString, request);
    QFETCH(int, action);
    QFETCH(int, limitMs);
    SessionTimes times = SessionTimes::quick();
    times.statusTimeout = SessionTimes::real().statusTimeout;
    startSession(times);
    const P_Unit unit = m_bus->plugApplication("A-1", "1.2.0");
    if (action >= 0) {
        const bool busy = Action(action) == Action::StayBusy;
        Fault fault = Fault::on(request.toStdString(), Action(action), busy ? Fault::Forever : 0);
        fault.first = request == "getstatus" ? 5 : 1; // in the midst of the download
        unit->addFault(fault);
    }
    QVERIFY(m_session->wait([&] { return m_session->offers("Update Firmware", true); }));
    if (state != "DefaultState") {
        startUpdate();
        QVERIFY(m_session->wait([&] { return m_session->states().contains(state); }));
    }
    if (action >= 0) {
        QVERIFY(m_session->wait(
            [&] { return timesAsked(unit, request) >= (request == "getstatus" ? 5 : 1); }));
    }

    QElapsedTimer time;
    time.start();
    QVERIFY(m_session->window()->close());
    m_session.reset();
    QVERIFY2(time.elapsed() < limitMs, qPrintable(QString::number(time.elapsed())));
    QVERIFY(!threadNames().contains("dfuDownloadJob"));
    QVERIFY(m_bus->bus().waitUntilSettled(milliseconds(5000)));
    const std::size_t requests = unit->trace().size();
    QTest::qWait(100);
    QCOMPARE(unit->trace().size(), requests); // nobody talks to it any more

    // The next start of the program finds what the unit became, and brings it to the end.
    unit->clearFaults();
    unit->adjust([](Overrides& overrides) { overrides.returns = true; });
    m_bus->bus().unplug(unit);
    m_bus->bus().plug(unit);
    startSession(SessionTimes::quick());
    QVERIFY(m_session->wait([&] { return m_session->one("updateButton") != nullptr; }));
    if (unit->firmwareVersion() != "1.3.1") {
        startUpdate();
        QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
        QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
    }
    QVERIFY(holds(unit, m_aquenImage));
}

void tst_plugging::noPermission()
{
    SessionTimes times = SessionTimes::quick();
    times.listingDelayMs = 500; // in which the node loses its permissions
    startSession(times);
    const P_Unit unit = m_bus->plugApplication("A-1", "1.2.0");
    const QByteArray root = qgetenv("UMOCKDEV_DIR");
    if (geteuid() == 0) {
        // What stands for the kernel must be reached by anybody; the node is what counts.
        QCOMPARE(chmod(root.constData(), 0755), 0);
        QDirIterator files(root, QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            chmod(files.next().toLocal8Bit().constData(), 0777);
    }
    const QByteArray node =
        root + "/dev/bus/usb/001/" +
        QByteArray::number(m_bus->bus().address(unit).device).rightJustified(3, '0');
    QCOMPARE(chmod(node.constData(), 0), 0);
    // Root would not notice, so this thread is not root for a while.
    if (geteuid() == 0)
        setfsuid(65534);
    const bool told = m_session->wait([&] { return m_session->log().count("ERROR") > 0; });
    if (geteuid() == 0)
        setfsuid(0);
    QVERIFY(told);
    QVERIFY(m_session->log().contains("ERROR", "Could not open the Aquen on port"));
    QVERIFY(m_session->log().contains("ERROR", "LIBUSB_ERROR_ACCESS"));
    QVERIFY(m_session->log().contains("ERROR", "udev rule"));
    QCOMPARE(m_session->unitSignals(), QStringList());
    QVERIFY(m_session->shows("Looking for Aquen or Solvar connected via USB"));

    // Once it is permitted, plugging in again is all that it takes.
    m_bus->bus().unplug(unit);
    QVERIFY(m_bus->awaitGone(0));
    m_session->wait([] { return false; }, 150);
    m_bus->bus().plug(unit);
    QVERIFY(m_session->wait([&] { return m_session->offers("Update Firmware", true); }));
}

void tst_plugging::fullDiskUnderTheLog()
{
    const TempFiles files;
    const Common::LoggingFiles logging = {
        files.path("logs"), files.put("Logging.ini", "[default]\nlevel=TRACE\nfile=full.log\n"),
        files.path("none.ini")};
    QVERIFY(QDir(files.root()).mkpath("logs"));
    QVERIFY(QFile::link("/dev/full", files.path("logs/full.log")));
    Common::startLogging(logging, false);
    const P_Unit unit = m_bus->plugApplication("A-1", "1.2.0");
    startUpdate();
    QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
    QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
    QVERIFY(holds(unit, m_aquenImage));
    QVERIFY(QFile(logging.logDirectory + "/full.log").symLinkTarget() == "/dev/full");
}

QTEST_MAIN(tst_plugging)
#include "tst_plugging.moc"
