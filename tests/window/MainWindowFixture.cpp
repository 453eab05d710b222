#include "MainWindowFixture.h"

#include "USB/LibusbDeviceEnumerator.h"
#include "shell/UserInterface.h"
#include "support/ShippedFirmware.h"
#include "unit/FirmwareImage.h"

#include <QTest>

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
                             "DfuSeLayout"};

} // namespace

void MainWindowFixture::initTestCase()
{
    m_bus = std::make_unique<BusFixture>();
    m_image = toByteArray(VirtualUnit::makeImage(5000, "1.3.1"));
    QVERIFY(shipFirmware(m_image, m_image));
    qInstallMessageHandler(&collectWarnings);
}

void MainWindowFixture::init()
{
    frameworkWarnings.clear();
    m_log = std::make_unique<LogCapture>(loggers);
    loadWindow();
    m_window->findChild<USB::LibusbDeviceEnumerator*>()->setListingDelay(100);
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    QVERIFY(waitFor([this] { return m_log->contains("INFO", "DefaultState"); }));
}

void MainWindowFixture::cleanup()
{
    m_engine.reset();
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
    m_log.reset();
    QVERIFY2(frameworkWarnings.isEmpty(), qPrintable(frameworkWarnings.join('\n')));
}

void MainWindowFixture::loadWindow()
{
    m_engine = std::make_unique<QQmlApplicationEngine>();
    QVERIFY(AquenSolvar::loadUserInterface(*m_engine));
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
}

bool MainWindowFixture::isDone() const
{
    const QQuickItem* button = one("doneButton");
    return button != nullptr && button->isEnabled();
}
