// The real user interface, the real classes and the real libusb, with virtual units on the bus:
// what a person sees and presses.
#include "BusFixture.h"
#include "FirmwareBundle.h"
#include "FirmwareImage.h"
#include "LibusbDeviceEnumerator.h"
#include "LogCapture.h"
#include "Paths.h"
#include "UserInterface.h"

#include <QAccessible>
#include <QDir>
#include <QFile>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTest>

using namespace VirtualUnit;
using Action = Fault::Action;

namespace {

QStringList frameworkWarnings;

void collectWarnings(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    // The platform without a screen cannot tell size limits to anyone.
    const bool expected = text.contains("does not support propagateSizeHints");
    if (type != QtDebugMsg && type != QtInfoMsg && !expected)
        frameworkWarnings << text;
}

const QStringList loggers = {"main",
                             "FirmwareUpdateState",
                             "LibusbDeviceEnumerator",
                             "LibusbUSBNotifier",
                             "PFlibusb",
                             "USBDevice",
                             "AquenSolvarDevice",
                             "AquenSolvarWatcher",
                             "AquenSolvarListModel",
                             "AquenSolvarFilterProxyModel",
                             "AquenSolvarFirmwareUpdateTask",
                             "AquenSolvarTaskFactory",
                             "DfuDevice",
                             "DFUDownloadJob",
                             "DetachedJob",
                             "MemoryLayout"};

// Every item below this one, in the order of the picture: delegates are no children of objects.
QList<QQuickItem*> itemsBelow(QQuickItem* item)
{
    QList<QQuickItem*> all = {item};
    for (QQuickItem* child : item->childItems())
        all += itemsBelow(child);
    return all;
}

} // namespace

class tst_mainwindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void searchingUntilAUnitComes();
    void updateByPointer();
    void keyboardReachesEverything();
    void updateByKeyboard();
    void bootloaderIsResumed();
    void failures_data();
    void failures();
    void listEmptiedWhileAway();
    void closedWhileFlashing();
    void initialisationFails();

private:
    QList<QQuickItem*> visible(const QString& objectName);
    QQuickItem* one(const QString& objectName);
    QStringList texts();
    QStringList unexpectedLines();
    bool shows(const QString& text);
    void click(QQuickItem* item);
    QString barText() { return one("progressBarText")->property("text").toString(); }
    void putBundles();

    std::unique_ptr<BusFixture> m_bus;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    std::unique_ptr<LogCapture> m_log;
    QQuickWindow* m_window = nullptr;
    QByteArray m_image;
};

void tst_mainwindow::initTestCase()
{
    m_bus = std::make_unique<BusFixture>();
    m_image = toByteArray(makeImage(5000, "1.3.1"));
    putBundles();
    qInstallMessageHandler(&collectWarnings);
}

void tst_mainwindow::putBundles()
{
    QDir firmwares(Common::Paths::resourceDirectory() + "/Firmwares");
    QVERIFY(firmwares.mkpath("."));
    for (const char* name : {"aquen-v10.tarnware", "solvar-v10.tarnware"}) {
        QFile file(firmwares.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(AquenSolvar::Device::packFirmwareBundle(10, m_image));
    }
}

void tst_mainwindow::init()
{
    frameworkWarnings.clear();
    m_log = std::make_unique<LogCapture>(loggers);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    QVERIFY(AquenSolvar::loadUserInterface(*m_engine));
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    m_window->findChild<USB::LibusbDeviceEnumerator*>()->setListingDelay(100);
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    QVERIFY(waitFor([&] { return m_log->contains("INFO", "DefaultState"); }));
}

void tst_mainwindow::cleanup()
{
    m_engine.reset();
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
    m_log.reset();
    QVERIFY2(frameworkWarnings.isEmpty(), qPrintable(frameworkWarnings.join('\n')));
}

QList<QQuickItem*> tst_mainwindow::visible(const QString& objectName)
{
    QList<QQuickItem*> found;
    for (QQuickItem* item : itemsBelow(m_window->contentItem())) {
        if (item->objectName() == objectName && item->isVisible())
            found << item;
    }
    return found;
}

QQuickItem* tst_mainwindow::one(const QString& objectName)
{
    const QList<QQuickItem*> found = visible(objectName);
    return found.size() == 1 ? found.first() : nullptr;
}

QStringList tst_mainwindow::texts()
{
    QStringList all;
    for (QQuickItem* item : itemsBelow(m_window->contentItem())) {
        const QString text = item->property("text").toString();
        if (item->isVisible() && !text.isEmpty() && !all.contains(text))
            all << text;
    }
    return all;
}

bool tst_mainwindow::shows(const QString& text)
{
    return texts().contains(text);
}

void tst_mainwindow::click(QQuickItem* item)
{
    QVERIFY(item != nullptr);
    const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(m_window, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
}

// Warnings and errors in the log. A notice during a listing is dropped, which is told and is no
// fault.
QStringList tst_mainwindow::unexpectedLines()
{
    return m_log->messages().filter(
        QRegularExpression("^(WARN|ERROR|FATAL) (?!already enumerating, ignoring$)"));
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
    QVERIFY(!visible("updateButton").at(0)->isEnabled());
    QVERIFY(visible("updateButton").at(1)->isEnabled());
    m_bus->unplugAll();
    QVERIFY(waitFor([&] { return shows(searching); }, 10000));
    QCOMPARE(unexpectedLines(), QStringList());
}

void tst_mainwindow::updateByPointer()
{
    const P_Unit unit = m_bus->plugApplication("W-2", "1.2.0");
    QVERIFY(waitFor([&] { return one("updateButton") != nullptr; }, 10000));
    click(one("updateButton"));
    QVERIFY(waitFor([&] { return one("doneButton") != nullptr; }));
    QVERIFY(waitFor([&] { return m_window->height() == 125; }));
    QVERIFY(!one("doneButton")->isEnabled());
    QVERIFY(waitFor([&] { return m_log->contains("INFO", "TaskState"); }, 10000));
    m_engine->collectGarbage(); // the task is the script engine's, and in use
    QVERIFY(waitFor([&] { return barText() == "Update successful!"; }, 20000));
    QVERIFY(one("doneButton")->isEnabled());
    QCOMPARE(one("progressBarFill")->width(), one("progressBar")->width());
    QCOMPARE(toByteArray(unit->applicationContent()), m_image);
    click(one("doneButton"));
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
        const QImage now = m_window->grabWindow();
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
    QVERIFY(waitFor([&] { return one("doneButton") && one("doneButton")->isEnabled(); }, 20000));
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
    click(one("updateButton"));
    QVERIFY(waitFor([&] { return shows("Update successful!"); }, 20000));
    QCOMPARE(toByteArray(unit->applicationContent()), m_image);
    QVERIFY(m_log->contains("INFO", "Device already in Dfu, skipping DropToBootloaderState."));
}

void tst_mainwindow::failures_data()
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

void tst_mainwindow::failures()
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
    click(one("updateButton"));
    QVERIFY(waitFor([&] { return one("doneButton") && one("doneButton")->isEnabled(); }, 20000));
    QCOMPARE(barText(), text);
    QVERIFY(one("doneButton")->hasActiveFocus());
    QCOMPARE(one("progressBarFill")->width(), one("progressBar")->width());
    QVERIFY(m_log->contains("ERROR", "ErrorDuringUpdateState: Error during updating."));
    // The card of a unit that is gone stays until the bus was listed again.
    QVERIFY(value >= 0 ||
            waitFor([&] { return m_log->contains("INFO", "Aquen (DFU) removed..."); }, 10000));
    click(one("doneButton"));
    // The way out is the same button that a person finds in the list.
    QVERIFY(waitFor([&] { return shows(nextButton); }, 10000));
    click(one("updateButton"));
    QVERIFY(waitFor([&] { return shows("Update successful!"); }, 20000));
    QCOMPARE(toByteArray(unit->applicationContent()), m_image);
}

// The list comes back in the low window of the progress, with a card to drop that it has not laid
// out since, and no picture is drawn before its scroll bars measure it. The framework's own
// warnings are looked at in cleanup().
void tst_mainwindow::listEmptiedWhileAway()
{
    const P_Unit unit = m_bus->plugBootloader();
    QVERIFY(waitFor([&] { return shows("Resume Update"); }, 10000));
    click(one("updateButton"));
    QVERIFY(waitFor([&] { return unit->dfuState() != Dfu::State::Idle; }));
    m_bus->unplugAll();
    QVERIFY(waitFor([&] { return one("doneButton") && one("doneButton")->isEnabled(); }, 20000));
    QVERIFY(waitFor([&] { return m_log->contains("INFO", "Aquen (DFU) removed..."); }, 10000));
    QQuickItem* doneButton = one("doneButton");
    m_window->hide();
    QVERIFY(QMetaObject::invokeMethod(doneButton, "clicked"));
    QVERIFY(waitFor([&] { return m_log->messages().last() == "INFO DefaultState"; }));
    QTest::qWait(50);
    m_window->show();
    QVERIFY(waitFor([&] { return one("searchingText") != nullptr; }));
}

void tst_mainwindow::closedWhileFlashing()
{
    const P_Unit unit = m_bus->plugBootloader();
    QVERIFY(waitFor([&] { return shows("Resume Update"); }, 10000));
    click(one("updateButton"));
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

void tst_mainwindow::initialisationFails()
{
    // The state machine starts with the event loop: an enumerator that somebody has opened before
    // it refuses to be opened again.
    m_engine = std::make_unique<QQmlApplicationEngine>();
    QVERIFY(AquenSolvar::loadUserInterface(*m_engine));
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    QVERIFY(m_window->findChild<USB::LibusbDeviceEnumerator*>()->init(m_window));
    m_log->clear();
    QVERIFY(
        waitFor([&] { return m_log->contains("ERROR", "Error during initializing..."); }, 10000));
    QVERIFY(m_log->contains("WARN", "Was called twice"));
    QVERIFY(!m_log->contains("INFO", "Running..."));
    QVERIFY(shows("Looking for Aquen or Solvar connected via USB"));
    QVERIFY(one("loadingIndicator") == nullptr);
    click(one("quitButton"));
    QVERIFY(waitFor([&] { return !m_window->isVisible(); }));
}

QTEST_MAIN(tst_mainwindow)
#include "tst_mainwindow.moc"
