// Updates that do not come to their end, as the window shows them, and the way on from there.
#include "MainWindowFixture.h"

#include <QTest>

using namespace VirtualUnit;
using Action = Fault::Action;

class tst_brokenupdates : public MainWindowFixture
{
    Q_OBJECT

private slots:
    void failures_data();
    void failures();
    void listEmptiedWhileAway();
    void closedWhileFlashing();
};

void tst_brokenupdates::failures_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<int>("value"); // a DFU status; 0: refused; -1: gone, and back
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("nextButton");
    QTest::newRow("drop refused") << "drop" << 0 << "Error while dropping to boot loader."
                                  << "Update Firmware";
    QTest::newRow("set-up fails") << "string" << 0 << "Error while starting to upload the firmware."
                                  << "Resume Update";
    QTest::newRow("erase fails") << "erase" << 4 << "Failed to erase flash."
                                 << "Resume Update";
    QTest::newRow("programming fails") << "write" << 6 << "Error state while flashing firmware."
                                       << "Resume Update";
    QTest::newRow("unplugged") << "write" << -1 << "Failed to upload firmware data."
                               << "Resume Update";
}

void tst_brokenupdates::failures()
{
    QFETCH(QString, request);
    QFETCH(int, value);
    QFETCH(QString, text);
    QFETCH(QString, nextButton);
    const P_Unit unit = m_bus->plugApplication("W-2", "1.2.0");
    QVERIFY(waitFor([&] { return one("updateButton") != nullptr; }, 10000));
    const Action action = value < 0    ? Action::LeaveBus
                          : value == 0 ? Action::Stall
                                       : Action::FailStatus;
    unit->addFault(Fault::on(request.toStdString(), action, unsigned(qMax(value, 0))));
    QVERIFY(press(one("updateButton")));
    QVERIFY(waitFor([&] { return isDone(); }, 20000));
    QCOMPARE(barText(), text);
    QVERIFY(one("doneButton")->hasActiveFocus());
    QCOMPARE(one("progressBarFill")->width(), one("progressBar")->width());
    QVERIFY(m_log->contains("ERROR", "ErrorDuringUpdateState: Error during updating."));
    // The card of a unit that is gone stays until the bus was listed again.
    QVERIFY(value >= 0 ||
            waitFor([&] { return m_log->contains("INFO", "Aquen (DFU) removed..."); }, 10000));
    QVERIFY(press(one("doneButton")));
    // The way out is the same button that a person finds in the list.
    QVERIFY(waitFor([&] { return shows(nextButton); }, 10000));
    QVERIFY(press(one("updateButton")));
    QVERIFY(waitFor([&] { return shows("Update successful!"); }, 20000));
    QCOMPARE(toByteArray(unit->applicationContent()), m_image);
}

// The list comes back in the low window of the progress, with a card to drop that it has not laid
// out since, and no picture is drawn before its scroll bars measure it. The framework's own
// warnings are looked at in cleanup().
void tst_brokenupdates::listEmptiedWhileAway()
{
    const P_Unit unit = m_bus->plugBootloader();
    QVERIFY(waitFor([&] { return shows("Resume Update"); }, 10000));
    QVERIFY(press(one("updateButton")));
    QVERIFY(waitFor([&] { return unit->dfuState() != Dfu::State::Idle; }));
    m_bus->unplugAll();
    QVERIFY(waitFor([&] { return isDone(); }, 20000));
    QVERIFY(waitFor([&] { return m_log->contains("INFO", "Aquen (DFU) removed..."); }, 10000));
    QQuickItem* doneButton = one("doneButton");
    m_window->hide();
    QVERIFY(QMetaObject::invokeMethod(doneButton, "clicked"));
    QVERIFY(waitFor([&] { return m_log->messages().last() == "INFO DefaultState"; }));
    QTest::qWait(50);
    m_window->show();
    QVERIFY(waitFor([&] { return one("searchingText") != nullptr; }));
}

void tst_brokenupdates::closedWhileFlashing()
{
    const P_Unit unit = m_bus->plugBootloader();
    QVERIFY(waitFor([&] { return shows("Resume Update"); }, 10000));
    QVERIFY(press(one("updateButton")));
    QVERIFY(waitFor([&] { return m_log->contains("INFO", "TaskState"); }));
    QVERIFY(waitFor([&] { return unit->dfuState() != Dfu::State::Idle; }));
    QTest::qWait(200);
    QVERIFY(m_window->close());
    m_engine.reset();
    QVERIFY(unit->mode() == Mode::Bootloader);
    QVERIFY(!m_log->contains("ERROR", "timed out while closing"));
    const std::size_t requests = unit->trace().size();
    QTest::qWait(300);
    QCOMPARE(unit->trace().size(), requests); // nobody talks to the unit any more
}

QTEST_MAIN(tst_brokenupdates)
#include "tst_brokenupdates.moc"
