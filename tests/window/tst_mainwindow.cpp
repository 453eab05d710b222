// SPDX-License-Identifier: LicenseRef-Proprietary
// What a person sees and presses in the window.
#include "USB/LibusbDeviceEnumerator.h"
#include "support/UpdaterSession.h"

#include <QAccessible>
#include <QQuickItemGrabResult>
#include <QRegularExpression>
#include <QSignalSpy>

using namespace VirtualUnit;

class tst_mainwindow : public UpdaterSession
{
    Q_OBJECT

private slots:
    void list();
    void successfulUpdate();
    void failedUpdate();
    void keyboard();
    void initialisationFails();

private:
    QString logged(const QString& pattern) const
    {
        return m_log->messages().filter(QRegularExpression(pattern)).join(", ");
    }

    const QString m_searching = "Looking for Aquen or Solvar connected via USB";
    // A notification during a listing is dropped and logged, which is not an error.
    const QString m_problems = "^(WARN|ERROR) (?!already enumerating, ignoring$)";
};

void tst_mainwindow::list()
{
    QCOMPARE(m_window->title(), QStringLiteral("Aquen/Solvar Updater"));
    for (const QSize size : {m_window->size(), m_window->minimumSize(), m_window->maximumSize()})
        QCOMPARE(size, QSize(600, 400));
    QVERIFY(shows(m_searching) && one("loadingIndicator") != nullptr);
    m_bus.plugApplication("W-2", "1.2.0");
    m_bus.plugApplication("C-1", "1.3.1", Kind::Solvar);
    m_bus.plugBootloader(Kind::Solvar);
    const auto cards = [this] {
        QString texts;
        for (const QQuickItem* item : visible("serialNameText") + visible("updateButton"))
            texts += textOf(item) + (item->isEnabled() ? ", " : " (off), ");
        return texts;
    };
    QTRY_COMPARE_WITH_TIMEOUT(cards(),
                              QString("Solvar (Update), C-1, W-2, Resume Update, "
                                      "Update Firmware (off), Update Firmware, "),
                              30000);
    QVERIFY(shows("Devices") && shows("DFU Devices") && !shows(m_searching));
    QVERIFY(m_log->contains("INFO", "List of devices have changed: 3"));
    m_bus.unplugAll();
    QVERIFY(waitFor([&] { return shows(m_searching); }));
    QCOMPARE(logged(m_problems), QString());
}

void tst_mainwindow::successfulUpdate()
{
    const P_Unit unit = m_bus.plugApplication("W-2", "1.2.0");
    QSignalSpy texts(m_window->findChild<QObject*>("progressBarText"),
                     SIGNAL(textChanged(QString)));
    QVERIFY(waitFor([&] { return press("updateButton"); }));
    QVERIFY(waitFor([&] { return m_window->height() == 125; }));
    QVERIFY(one("doneButton") != nullptr && !isDone());
    QVERIFY(waitFor([&] { return m_log->contains("INFO", "TaskState"); }));
    m_engine->collectGarbage(); // the task is the script engine's, and in use
    QVERIFY(waitFor([&] { return isDone(); }));
    QCOMPARE(listed(), QStringList("W-2")); // it is back
    QVERIFY(one("doneButton")->hasActiveFocus());
    QCOMPARE(toByteArray(unit->applicationContent()), m_aquenImage);
    QVERIFY(press("doneButton"));
    QVERIFY(waitFor([&] { return one("upToDateText") != nullptr; }));
    QCOMPARE(m_window->height(), 400);
    QVERIFY(!press("updateButton"));

    QStringList shown;
    for (const QList<QVariant>& text : texts)
        shown << text.first().toString();
    QCOMPARE(shown.join(' '),
             QString("Preparing to update firmware… Preparing device to receive update… "
                     "Updating firmware, please leave device connected… "
                     "Restarting device… Update successful!"));
    QString steps = logged("^INFO (\\w+State|Selected.*|Updating device with.*|Progress: 0.*)$");
    QCOMPARE(steps.remove("INFO "),
             QString("Selected device serial: W-2, FirmwareUpdateState, UpdatingState, "
                     "Updating device with serial: W-2, DropToBootloaderState, TaskState, "
                     "Progress: 0.6826666593551636, RestartingDeviceState, UpdateFinishedState, "
                     "Progress: 0, FirmwareUpdateState, FirmwareUpdateFinalState, DefaultState"));
    QCOMPARE(logged(m_problems), QString());
}

void tst_mainwindow::failedUpdate()
{
    const P_Unit unit = m_bus.plugBootloader(Kind::Solvar);
    unit->addFault(Fault::on("erase", Fault::Action::Stall, 0, 2));
    QCOMPARE(update(), QStringLiteral("Failed to erase flash."));
    QVERIFY(one("doneButton")->hasActiveFocus());
    QCOMPARE(one("progressBarFill")->width(), one("progressBar")->width());
    QVERIFY(m_log->contains("INFO", "Device already in Dfu, skipping DropToBootloaderState."));
    QVERIFY(m_log->contains("ERROR", "ErrorDuringUpdateState: Error during updating."));
    QVERIFY(press("doneButton"));
    QCOMPARE(update(), QStringLiteral("Update successful!"));
    QCOMPARE(one("progressBarFill")->width(), one("progressBar")->width());
    QCOMPARE(toByteArray(unit->applicationContent()), m_solvarImage);
}

// Every control, and no other, gets the focus in turn, shows it, and is operated.
void tst_mainwindow::keyboard()
{
    m_bus.plugApplication("W-1", "1.3.1");
    m_bus.plugApplication("W-2", "1.2.0");
    QVERIFY(waitFor([&] { return visible("updateButton").size() == 2; }));
    const QString first = "W-1 Aquen, Connected, Firmware Up To Date";
    const QString second = "W-2 Aquen, Connected, Update needed";
    const QString button = "Update Firmware W-2";
    const QList<QPair<Qt::Key, QString>> steps = {
        {Qt::Key_Tab, first},       {Qt::Key_Tab, button},  {Qt::Key_Tab, "Quit "},
        {Qt::Key_Tab, first},       {Qt::Key_Down, second}, {Qt::Key_Down, second},
        {Qt::Key_Backtab, "Quit "}, {Qt::Key_Tab, second},  {Qt::Key_Tab, button},
    };
    QString before;
    QRect place;
    QImage picture;
    for (const auto& [key, expected] : steps) {
        QTest::keyClick(m_window, key);
        const auto* item = QAccessible::queryAccessibleInterface(m_window->activeFocusItem());
        QCOMPARE(item->text(QAccessible::Name) + " " + item->text(QAccessible::Description),
                 expected);
        // The offscreen platform keeps no image of a window.
        const auto grab = m_window->contentItem()->grabToImage();
        QVERIFY(QSignalSpy(grab.data(), &QQuickItemGrabResult::ready).wait());
        QVERIFY2(expected == before || picture.copy(place) != grab->image().copy(place),
                 qPrintable(before));
        before = expected;
        picture = grab->image();
        place = item->rect().translated(-m_window->position()).adjusted(-3, -3, 3, 3);
    }
    QTest::keyClick(m_window, Qt::Key_Return);
    QVERIFY(waitFor([&] { return isDone(); }));
    QTest::keyClick(m_window, Qt::Key_Enter);
    QVERIFY(waitFor([&] { return one("quitButton") != nullptr; }));
    while (!one("quitButton")->hasActiveFocus())
        QTest::keyClick(m_window, Qt::Key_Tab);
    QTest::keyClick(m_window, Qt::Key_Space);
    QVERIFY(waitFor([&] { return !m_window->isVisible(); }));
    end();
}

void tst_mainwindow::initialisationFails()
{
    // The state machine starts with the event loop: by then the enumerator has been opened.
    load(milliseconds(300));
    QVERIFY(m_window->findChild<USB::LibusbDeviceEnumerator*>()->init(m_window));
    QVERIFY(waitFor([&] { return m_log->contains("ERROR", "Error during initializing..."); }));
    QVERIFY(!m_log->contains("INFO", "Running..."));
    QVERIFY(shows(m_searching) && one("loadingIndicator") == nullptr);
    QVERIFY(press("quitButton"));
    QVERIFY(waitFor([&] { return !m_window->isVisible(); }));
    end();
}

QTEST_MAIN(tst_mainwindow)
#include "tst_mainwindow.moc"
