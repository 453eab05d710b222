// The real user interface, the real classes and the real libusb, with virtual units on the bus:
// what a person sees and presses.
#include "MainWindowFixture.h"
#include "USB/LibusbDeviceEnumerator.h"

#include <QAccessible>
#include <QQuickItemGrabResult>
#include <QRegularExpression>
#include <QTest>

using namespace VirtualUnit;

class tst_mainwindow : public MainWindowFixture
{
    Q_OBJECT

private slots:
    void searchingUntilAUnitComes();
    void updateByPointer();
    void keyboardReachesEverything();
    void updateByKeyboard();
    void bootloaderIsResumed();
    void initialisationFails();

private:
    QStringList unexpectedLines() const;
    QImage picture() const;
};

// Warnings and errors in the log. A notice during a listing is dropped, which is told and is no
// fault.
QStringList tst_mainwindow::unexpectedLines() const
{
    return m_log->messages().filter(
        QRegularExpression("^(WARN|ERROR|FATAL) (?!already enumerating, ignoring$)"));
}

// What is drawn: the platform without a screen keeps no picture of a window.
QImage tst_mainwindow::picture() const
{
    const QSharedPointer<QQuickItemGrabResult> grab = m_window->contentItem()->grabToImage();
    bool isReady = false;
    connect(grab.data(), &QQuickItemGrabResult::ready, this, [&isReady] { isReady = true; });
    return waitFor([&isReady] { return isReady; }) ? grab->image() : QImage();
}

void tst_mainwindow::searchingUntilAUnitComes()
{
    QCOMPARE(m_window->title(), QStringLiteral("Aquen/Solvar Updater"));
    QCOMPARE(m_window->size(), QSize(600, 400));
    QVERIFY(m_window->minimumSize() == m_window->size());
    QVERIFY(m_window->maximumSize() == m_window->size());
    const QString searching = "Looking for Aquen or Solvar connected via USB";
    QVERIFY(shows(searching));
    m_bus->plugApplication("W-2", "1.2.0");
    m_bus->plugApplication("C-1", "1.3.1", Kind::Solvar);
    QVERIFY(waitFor([&] { return visible("updateButton").size() == 2; }, 10000));
    QVERIFY(!shows(searching));
    for (const char* text : {"Devices", "W-2", "C-1", "Connected", "Aquen", "Solvar",
                             "Firmware Up To Date", "Update Firmware", "Quit"})
        QVERIFY2(shows(text), text);
    // Ordered by name: the curing unit first, which needs nothing.
    QVERIFY(waitFor([&] {
        const QList<QQuickItem*> buttons = visible("updateButton");
        return buttons.size() == 2 && !buttons.at(0)->isEnabled() && buttons.at(1)->isEnabled();
    }));
    m_bus->unplugAll();
    QVERIFY(waitFor([&] { return shows(searching); }, 10000));
    QCOMPARE(unexpectedLines(), QStringList());
}

void tst_mainwindow::updateByPointer()
{
    const P_Unit unit = m_bus->plugApplication("W-2", "1.2.0");
    QVERIFY(waitFor([&] { return one("updateButton") != nullptr; }, 10000));
    QVERIFY(press(one("updateButton")));
    QVERIFY(waitFor([&] { return one("doneButton") != nullptr; }));
    QVERIFY(waitFor([&] { return m_window->height() == 125; }));
    QVERIFY(!one("doneButton")->isEnabled());
    QVERIFY(waitFor([&] { return m_log->contains("INFO", "TaskState"); }, 10000));
    m_engine->collectGarbage(); // the task is the script engine's, and in use
    QVERIFY(waitFor([&] { return barText() == "Update successful!"; }, 20000));
    QVERIFY(one("doneButton")->isEnabled());
    QCOMPARE(one("progressBarFill")->width(), one("progressBar")->width());
    QCOMPARE(toByteArray(unit->applicationContent()), m_image);
    QVERIFY(press(one("doneButton")));
    QVERIFY(waitFor([&] { return shows("Firmware Up To Date"); }, 10000));
    QCOMPARE(m_window->height(), 400);
    QVERIFY(!one("updateButton")->isEnabled());

    QStringList states = m_log->messages().filter(
        QRegularExpression("^INFO (DefaultState|FirmwareUpdateState|UpdatingState|"
                           "DropToBootloaderState|TaskState|RestartingDeviceState|"
                           "UpdateFinishedState|FirmwareUpdateFinalState)$"));
    states.replaceInStrings("INFO ", "");
    QCOMPARE(states, QStringList({"DefaultState", "FirmwareUpdateState", "UpdatingState",
                                  "DropToBootloaderState", "TaskState", "RestartingDeviceState",
                                  "UpdateFinishedState", "FirmwareUpdateState",
                                  "FirmwareUpdateFinalState", "DefaultState"}));
    QVERIFY(m_log->contains("INFO", "Progress: 0.819"));
    QCOMPARE(unexpectedLines(), QStringList());
}

// Every control, and no other, has the keyboard in turn, and is seen to have it.
void tst_mainwindow::keyboardReachesEverything()
{
    m_bus->plugApplication("W-1", "1.2.0");
    m_bus->plugApplication("W-2", "1.2.0");
    m_bus->plugApplication("W-3", "1.3.1");
    QVERIFY(waitFor([&] { return visible("updateButton").size() == 3; }, 10000));
    const auto focused = [&] {
        const auto* item = QAccessible::queryAccessibleInterface(m_window->activeFocusItem());
        return (item->text(QAccessible::Name) + " " + item->text(QAccessible::Description))
            .trimmed();
    };
    const QString card = "W-1 Aquen, Connected, Update needed";
    const QList<QPair<Qt::Key, QString>> steps = {
        {Qt::Key_Tab, card},
        {Qt::Key_Tab, "Update Firmware W-1"},
        {Qt::Key_Tab, "Update Firmware W-2"},
        {Qt::Key_Tab, "Quit"},
        {Qt::Key_Tab, card},
        {Qt::Key_Down, "W-2 Aquen, Connected, Update needed"},
        {Qt::Key_Down, "W-3 Aquen, Connected, Firmware Up To Date"},
        {Qt::Key_Down, "W-3 Aquen, Connected, Firmware Up To Date"},
        {Qt::Key_Backtab, "Quit"},
        {Qt::Key_Tab, "W-3 Aquen, Connected, Firmware Up To Date"},
    };
    QRect place;
    QImage before;
    for (const auto& [key, expected] : steps) {
        const QString from = before.isNull() ? QString() : focused();
        QTest::keyClick(m_window, key);
        QCOMPARE(focused(), expected);
        const QImage now = picture();
        QVERIFY(!now.isNull());
        if (!before.isNull() && from != expected)
            QVERIFY2(before.copy(place) != now.copy(place), qPrintable(from));
        before = now;
        const QQuickItem* item = m_window->activeFocusItem();
        place = item->mapRectToScene(item->boundingRect()).toAlignedRect().adjusted(-3, -3, 3, 3);
    }
}

void tst_mainwindow::updateByKeyboard()
{
    m_bus->plugApplication("W-2", "1.2.0");
    QVERIFY(waitFor([&] { return one("updateButton") != nullptr; }, 10000));
    const auto tabTo = [&](const QString& name) {
        for (int i = 0; i < 10 && !one(name)->hasActiveFocus(); ++i)
            QTest::keyClick(m_window, Qt::Key_Tab);
        return one(name)->hasActiveFocus();
    };
    QVERIFY(tabTo("updateButton"));
    QTest::keyClick(m_window, Qt::Key_Return);
    QVERIFY(waitFor([&] { return isDone(); }, 20000));
    QVERIFY(one("doneButton")->hasActiveFocus());
    QTest::keyClick(m_window, Qt::Key_Enter);
    QVERIFY(waitFor([&] { return one("quitButton") != nullptr; }, 10000));
    QVERIFY(tabTo("quitButton"));
    QTest::keyClick(m_window, Qt::Key_Return);
    QVERIFY(waitFor([&] { return !m_window->isVisible(); }));
}

void tst_mainwindow::bootloaderIsResumed()
{
    const P_Unit unit = m_bus->plugBootloader(Kind::Solvar);
    QVERIFY(waitFor([&] { return shows("Resume Update"); }, 10000));
    QVERIFY(shows("DFU Devices") && shows("Solvar (Update)"));
    QVERIFY(press(one("updateButton")));
    QVERIFY(waitFor([&] { return shows("Update successful!"); }, 20000));
    QCOMPARE(toByteArray(unit->applicationContent()), m_image);
    QVERIFY(m_log->contains("INFO", "Device already in Dfu, skipping DropToBootloaderState."));
}

void tst_mainwindow::initialisationFails()
{
    // The state machine starts with the event loop: an enumerator that somebody has opened before
    // it refuses to be opened again.
    loadWindow();
    QVERIFY(m_window->findChild<USB::LibusbDeviceEnumerator*>()->init(m_window));
    m_log->clear();
    QVERIFY(
        waitFor([&] { return m_log->contains("ERROR", "Error during initializing..."); }, 10000));
    QVERIFY(m_log->contains("WARN", "Was called twice"));
    QVERIFY(!m_log->contains("INFO", "Running..."));
    QVERIFY(shows("Looking for Aquen or Solvar connected via USB"));
    QVERIFY(one("loadingIndicator") == nullptr);
    QVERIFY(press(one("quitButton")));
    QVERIFY(waitFor([&] { return !m_window->isVisible(); }));
}

QTEST_MAIN(tst_mainwindow)
#include "tst_mainwindow.moc"
