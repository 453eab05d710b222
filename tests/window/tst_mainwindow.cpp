// SPDX-License-Identifier: LicenseRef-Proprietary
// What a person sees and presses in the window. This program is also the desktop that opens files
// and shows notifications.
#include "Common/Paths.h"
#include "USB/LibusbDeviceEnumerator.h"
#include "shell/Help.h"
#include "support/UpdaterSession.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDesktopServices>
#include <QQuickItemGrabResult>
#include <QRegularExpression>
#include <QSignalSpy>

using namespace VirtualUnit;

class tst_mainwindow : public UpdaterSession
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    Q_SCRIPTABLE uint Notify(const QString&, uint, const QString&, const QString& summary,
                             const QString&, const QStringList&, const QVariantMap&, int)
    {
        m_notified << summary;
        return 1;
    }

public slots:
    void open(const QUrl& url) { m_opened = url; }

private slots:
    void list();
    void successfulUpdate();
    void failedUpdate();
    void keyboard_data();
    void keyboard();
    void initialisationFails();

private:
    QString logged(const QString& pattern) const
    {
        return m_log->messages().filter(QRegularExpression(pattern)).join(", ");
    }

    bool helpOpens(const QString& heading)
    {
        QDesktopServices::setUrlHandler("file", this, "open");
        QTest::keyClick(m_window, Qt::Key_F1);
        QFile guide(m_opened.toLocalFile());
        return guide.open(QIODevice::ReadOnly) && m_opened.hasFragment() &&
               guide.readAll().contains("# " + heading.toUtf8() + "\n") &&
               m_opened.fragment() == AquenSolvar::Help::anchorOf(heading);
    }

    QUrl m_opened;
    QStringList m_notified;
    const QString m_searching = "Looking for Aquen or Solvar connected via USB";
    // A notice during a listing is dropped and logged, which is no fault.
    const QString m_problems = "^(WARN|ERROR) (?!already enumerating, ignoring$)";
};

void tst_mainwindow::list()
{
    QCOMPARE(m_window->title(), QStringLiteral("Aquen/Solvar Updater"));
    for (const QSize size : {m_window->size(), m_window->minimumSize(), m_window->maximumSize()})
        QCOMPARE(size, QSize(600, 400));
    QVERIFY(shows(m_searching) && one("loadingIndicator") != nullptr);
    m_window->requestActivate();
    QTRY_VERIFY(m_window->isActive());
    QVERIFY(helpOpens("No unit in the list"));
    QCOMPARE(AquenSolvar::Help::anchorOf("The log, and A_b-2"), QString("the-log-and-a_b-2"));
    QVERIFY(QDir().mkpath(Common::Paths::logDirectory()));
    QTest::keyClick(m_window, Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(m_opened, QUrl::fromLocalFile(Common::Paths::logDirectory()));
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
    QVERIFY(helpOpens("Update a unit"));
    QObject* card = visible("deviceCard").last()->parentItem()->parentItem();
    QTRY_COMPARE(
        QAccessible::queryAccessibleInterface(card)->text(QAccessible::Description),
        "Aquen, Connected, Update needed, Installed firmware: 1.2.0, Available firmware: 10, "
        "USB port: " +
            USB::portPath(*m_bus.awaitRecord(0x0C07)));
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
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "desktop");
    QVERIFY(bus.registerObject("/org/freedesktop/Notifications", this,
                               QDBusConnection::ExportScriptableInvokables));
    QVERIFY(bus.registerService("org.freedesktop.Notifications"));
    QCOMPARE(update(), QStringLiteral("Failed to erase flash."));
    QVERIFY(helpOpens("What the bar can say"));
    QVERIFY(one("doneButton")->hasActiveFocus());
    QCOMPARE(one("progressBarFill")->width(), one("progressBar")->width());
    QVERIFY(m_log->contains("INFO", "Device already in Dfu, skipping DropToBootloaderState."));
    QVERIFY(m_log->contains("ERROR", "ErrorDuringUpdateState: Error during updating."));
    QWindow other; // the window's own end of an update is no news while it is active
    other.show();
    other.requestActivate();
    QTRY_VERIFY(!m_window->isActive());
    QVERIFY(press("doneButton"));
    QCOMPARE(update(), QStringLiteral("Update successful!"));
    QTRY_COMPARE(m_notified, QStringList("Update successful!"));
    QCOMPARE(one("progressBarFill")->width(), one("progressBar")->width());
    QCOMPARE(toByteArray(unit->applicationContent()), m_solvarImage);
}

void tst_mainwindow::keyboard_data()
{
    // In the order of arrival, "-" needs no update; in the order of the screen, "!" is a button.
    QTest::addColumn<QStringList>("units");
    QTest::addColumn<QStringList>("stops");
    QTest::newRow("1") << QStringList{"1"} << QStringList{"1", "!1"};
    QTest::newRow("2") << QStringList{"2", "1-"} << QStringList{"1-", "2", "!2"};
    QTest::newRow("8") << QStringList{"5", "8-", "1", "7", "2", "6-", "4", "3"}
                       << QString("1 !1 2 !2 3 !3 4 !4 5 !5 6- 7 !7 8-").split(' ');
}

// Every control, and no other, gets the focus in turn, is in sight, shows it, and is operated.
void tst_mainwindow::keyboard()
{
    QFETCH(QStringList, units);
    QFETCH(QStringList, stops);
    const auto plug = [this](const QString& unit, int count) {
        m_bus.plugApplication(unit.toStdString(), unit.endsWith('-') ? "1.3.1" : "1.2.0");
        QTRY_COMPARE_WITH_TIMEOUT(one("deviceListView")->property("count").toInt(), count, 30000);
        // The list follows its count later than the layout.
        QVERIFY(QMetaObject::invokeMethod(one("deviceListView"), "forceLayout"));
        QCoreApplication::processEvents();
    };
    for (int count = 0; count < units.size(); ++count)
        plug(units.at(count), count + 1);
    const QStringList bar = QString(units.size() == 2 ? "Quit Help" : "Quit").split(' ');
    reportUnopened(bar.size() > 1); // a notice adds a button
    QString stop;
    QRect place;
    QImage picture;
    const auto press = [&](Qt::Key key, const QString& expected) {
        QTest::keyClick(m_window, key);
        const auto* item = QAccessible::queryAccessibleInterface(m_window->activeFocusItem());
        const QString name = item->text(QAccessible::Name);
        const bool isUpdate = name == "Update Firmware";
        const QString now = isUpdate ? "!" + item->text(QAccessible::Description) : name;
        QCOMPARE(now, expected);
        const QRect rect = item->rect().translated(-m_window->position());
        QVERIFY(bar.contains(now) ||
                (rect.top() >= (now == stops.first() ? 30 : 10) && rect.bottom() <= 335));
        // The platform without a screen keeps no picture of a window.
        const auto grab = m_window->contentItem()->grabToImage();
        QVERIFY(QSignalSpy(grab.data(), &QQuickItemGrabResult::ready).wait());
        QVERIFY2(now == stop || picture.copy(place) != grab->image().copy(place), qPrintable(stop));
        stop = now;
        picture = grab->image();
        place = rect.adjusted(-3, -3, 3, 3);
    };
    const QStringList order = stops + bar;
    for (const QString& expected : order + stops.mid(0, 1))
        press(Qt::Key_Tab, expected);
    for (int at = order.size(); at-- > 0;)
        press(Qt::Key_Backtab, order.at(at));
    const QStringList cards = stops.filter(QRegularExpression("^[^!]"));
    for (const QString& card : cards.mid(1) + cards.mid(cards.size() - 1))
        press(Qt::Key_Down, card);
    for (int at = cards.size() - 1; at-- > 0;)
        press(Qt::Key_Up, cards.at(at));

    // A unit that sorts earlier leaves the focus where it is.
    while (!stop.startsWith('!'))
        press(Qt::Key_Tab, stops.at(stops.indexOf(stop) + 1));
    plug("0", units.size() + 1);
    press(Qt::Key_Shift, stop);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QCoreApplication::sendEvent(m_window, &held);
    QVERIFY(!m_log->contains("INFO", "Selected device serial: " + stop.mid(1)));
    QTest::keyClick(m_window, Qt::Key_Return);
    QVERIFY(waitFor([&] { return isDone(); }));
    QTest::keyClick(m_window, Qt::Key_Enter);
    QVERIFY(waitFor([&] { return one("quitButton") != nullptr; }));
    QVERIFY(m_log->contains("INFO", "Selected device serial: " + stop.mid(1)));
    while (!one(bar.size() > 1 ? "noticeButton" : "quitButton")->hasActiveFocus())
        QTest::keyClick(m_window, Qt::Key_Tab);
    reportUnopened(false); // the focus goes on to "Quit"
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
    reportUnopened();
    QVERIFY(shows(m_searching) && !one("loadingIndicator") && !one("noticeText"));
    QVERIFY(press("quitButton"));
    QVERIFY(waitFor([&] { return !m_window->isVisible(); }));
    end();
}

QTEST_MAIN(tst_mainwindow)
#include "tst_mainwindow.moc"
