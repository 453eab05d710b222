// SPDX-License-Identifier: LicenseRef-Proprietary
// Units that come, go and change in ways that no single update shows, and windows that are closed.
#include "support/UpdaterSession.h"

#include <QDir>

#include <linux/capability.h>
#include <random>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace VirtualUnit;
using Action = Fault::Action;

Q_DECLARE_METATYPE(VirtualUnit::Fault)

class tst_plugging : public UpdaterSession
{
    Q_OBJECT

private slots:
    void twoUnitsOfEachKind();
    void plugStorm();
    void comesBackAsSomethingElse();
    void closedInEveryState_data();
    void closedInEveryState();
    void noPermission();

private:
    QMap<QString, P_Unit> plugFour(const std::string& firmware);
    void replug(const P_Unit& unit);

    const QString m_success = "Update successful!";
};

QMap<QString, P_Unit> tst_plugging::plugFour(const std::string& firmware)
{
    return {{"A-1", m_bus.plugApplication("A-1", firmware)},
            {"A-2", m_bus.plugApplication("A-2", firmware)},
            {"S-1", m_bus.plugApplication("S-1", firmware, Kind::Solvar)},
            {"S-2", m_bus.plugApplication("S-2", firmware, Kind::Solvar)}};
}

// The program sees both; from then on the unit returns by itself.
void tst_plugging::replug(const P_Unit& unit)
{
    m_bus.bus().unplug(unit);
    QVERIFY(waitFor([&] { return listed().isEmpty(); }));
    unit->adjust([](Overrides& overrides) { overrides.returns = true; });
    m_bus.bus().plug(unit);
}

void tst_plugging::twoUnitsOfEachKind()
{
    const QMap<QString, P_Unit> units = plugFour("1.2.0");
    // The one in the middle of the list first.
    for (const char* name : {"A-2", "S-1", "A-1", "S-2"}) {
        QVERIFY(waitFor([&] { return visible("updateButton").size() == 4; }));
        QQuickItem* button = visible("updateButton").at(listed().indexOf(name));
        button->forceActiveFocus(Qt::TabFocusReason); // the list scrolls to it
        const QPointF centre = button->mapRectToScene(button->boundingRect()).center();
        QTest::mouseClick(m_window, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
        QVERIFY(waitFor([&] { return isDone(); }));
        QCOMPARE(barText(), m_success);
        QCOMPARE(toByteArray(units[name]->applicationContent()),
                 name[0] == 'A' ? m_aquenImage : m_solvarImage);
        QVERIFY(press("doneButton"));
    }
    QVERIFY(waitFor([&] { return visible("upToDateText").size() == 4; }));
}

void tst_plugging::plugStorm()
{
    QMap<QString, P_Unit> units = plugFour("1.3.1");
    units["Aquen (Update)"] = m_bus.plugBootloader(Kind::Aquen);
    units["Solvar (Update)"] = m_bus.plugBootloader(Kind::Solvar);
    std::mt19937 random(1);
    // Around the time of a listing, so that notifications arrive before, during and after one.
    for (int event = 0; event < 200; ++event) {
        const P_Unit unit = std::next(units.begin(), int(random() % 6)).value();
        if (m_bus.bus().isPlugged(unit))
            m_bus.bus().unplug(unit);
        else
            m_bus.bus().plug(unit);
        waitFor([] { return false; }, int(random() % (event < 100 ? 10 : 60)));
    }
    for (const QString& name : units.keys()) {
        if (!m_bus.bus().isPlugged(units[name]))
            units.remove(name);
    }
    QTRY_COMPARE_WITH_TIMEOUT(listed(), QStringList(units.keys()), 30000);
}

void tst_plugging::comesBackAsSomethingElse()
{
    const P_Unit washing = m_bus.plugApplication("A-1", "1.2.0");
    washing->adjust([](Overrides& overrides) { overrides.returns = false; });
    QVERIFY(waitFor([&] { return press("updateButton"); }));
    QVERIFY(waitFor([&] { return !m_bus.bus().isPlugged(washing); }));
    // It loses power, and the request to be a bootloader with it: the wait goes on, indefinitely.
    replug(washing);
    QVERIFY(waitFor([&] { return !listed().isEmpty(); }));
    QCOMPARE(barText(), QStringLiteral("Preparing device to receive update…"));
    // No pairing is attempted: the first bootloader is taken, and gets its own kind's firmware.
    const P_Unit curing = m_bus.plugBootloader(Kind::Solvar);
    QVERIFY(waitFor([&] { return isDone(); }));
    QCOMPARE(barText(), m_success);
    QCOMPARE(toByteArray(curing->applicationContent()), m_solvarImage);
    QVERIFY(washing->firmwareVersion() == "1.2.0");
}

void tst_plugging::closedInEveryState_data()
{
    QTest::addColumn<QString>("state"); // on reaching it the window is closed
    QTest::addColumn<int>("requests");  // after so many at least
    QTest::addColumn<Fault>("fault");
    const auto row = [](const char* state, int requests, const Fault& fault) {
        QTest::addRow("%s %d", state, requests) << state << requests << fault;
    };
    const Fault slow = Fault::on("any", Action::Delay, 5);
    row("DefaultState", 4, slow);
    row("DropToBootloaderState", 5, Fault::on("drop", Action::NeverReturn));
    row("TaskState", 14, slow);
    row("TaskState", 13, Fault::on("getstatus", Action::Silence, 0, 3));
    row("TaskState", 15, Fault::on("erase", Action::StayBusy, Fault::Forever));
    row("RestartingDeviceState", 36, Fault::on("finish", Action::NeverReturn));
    row("UpdateFinishedState", 40, slow);
    row("ErrorDuringUpdateState", 12, Fault::on("erase", Action::Stall));
}

void tst_plugging::closedInEveryState()
{
    QFETCH(QString, state);
    QFETCH(int, requests);
    QFETCH(Fault, fault);
    start(std::chrono::seconds(100));
    const P_Unit unit = m_bus.plug({Kind::Aquen, Mode::Application, "A-1", "1.2.0"}, {fault});
    QVERIFY(waitFor([&] { return one("updateButton") != nullptr; }));
    QVERIFY(state == "DefaultState" || press("updateButton"));
    QVERIFY(waitFor([&] {
        return int(unit->trace().size()) >= requests && !m_log->lines().filter(state).isEmpty();
    }));
    QVERIFY(m_window->close());
    end();
    // Within a command no stop is honoured: the transfer is cancelled after a while.
    const bool isDeaf = fault.action == Action::Silence || fault.action == Action::StayBusy;
    QCOMPARE(m_log->contains("ERROR", "timed out while closing"), isDeaf);
    QVERIFY(!m_log->contains("ERROR", "did not end"));
    QVERIFY(!m_log->contains("WARN", "goes on without the task"));
    const std::size_t asked = unit->trace().size();
    QTest::qWait(50);
    QCOMPARE(unit->trace().size(), asked);

    // The next start of the program finds what the unit became, and brings it to the end.
    unit->clearFaults();
    m_bus.bus().waitUntilSettled(milliseconds(30000));
    m_bus.bus().unplug(unit);
    unit->adjust([](Overrides& overrides) { overrides.returns = true; });
    m_bus.bus().plug(unit);
    start();
    QVERIFY(waitFor([&] { return one("updateButton") != nullptr; }));
    QVERIFY(unit->firmwareVersion() == "1.3.1" || update() == m_success);
    QCOMPARE(toByteArray(unit->applicationContent()), m_aquenImage);
}

void tst_plugging::noPermission()
{
    end();
    const P_Unit unit = m_bus.plugApplication("A-1", "1.2.0");
    const QDir nodes(qEnvironmentVariable("UMOCKDEV_DIR") + "/dev/bus/usb/001");
    const QString node = nodes.filePath(nodes.entryList(QDir::System).value(0));
    QCOMPARE(chmod(qPrintable(node), 0), 0);
    // Permissions bind root as well once this thread has given up its capabilities.
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct nothing[2] = {};
    QCOMPARE(syscall(SYS_capset, &header, &nothing), 0L);
    start();
    QVERIFY(waitFor([&] { return m_log->count("ERROR") > 0; }));
    for (const char* text :
         {"Could not open the Aquen on port", "LIBUSB_ERROR_ACCESS", "udev rule"})
        QVERIFY2(m_log->contains("ERROR", text), text);
    QVERIFY(listed().isEmpty());
    QVERIFY(waitFor([&] { return shows("Aquen found, but without permission to use it."); }));

    // Once it is permitted, plugging in again is all that it takes.
    m_bus.bus().unplug(unit);
    QVERIFY(waitFor([&] { return one("noticeText") == nullptr; }));
    m_bus.bus().plug(unit);
    QCOMPARE(update(), m_success);
}

QTEST_MAIN(tst_plugging)
#include "tst_plugging.moc"
