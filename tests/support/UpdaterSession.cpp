// SPDX-License-Identifier: LicenseRef-Proprietary
#include "support/UpdaterSession.h"

#include "Common/Paths.h"
#include "USB/LibusbDeviceEnumerator.h"
#include "USB/LibusbUSBNotifier.h"
#include "firmware/FirmwareBundle.h"
#include "shell/UserInterface.h"
#include "tracking/AquenSolvarListModel.h"
#include "tracking/AquenSolvarWatcher.h"
#include "unit/FirmwareImage.h"
#include "update/AquenSolvarTaskFactory.h"
#include "update/DetachedJob.h"

#include <QDir>
#include <QSaveFile>
#include <QTimer>

#include <algorithm>

using namespace AquenSolvar;
using std::chrono::milliseconds;

namespace {

void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    // The offscreen platform cannot pass on size hints.
    if (type != QtDebugMsg && type != QtInfoMsg && !text.contains("propagateSizeHints"))
        QTest::qFail(qPrintable(text), __FILE__, __LINE__);
}

// Test programs of one folder may do so at the same time.
QByteArray ship(const QString& name, quint32 seed)
{
    const QByteArray image = toByteArray(VirtualUnit::makeImage(3000, "1.3.1", seed));
    QSaveFile file(Common::Paths::resourceDirectory() + "/Firmwares/" + name);
    if (!QDir().mkpath(QFileInfo(file.fileName()).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(Device::packFirmwareBundle(10, image)) < 0 || !file.commit())
        QTest::qFail(qPrintable(file.errorString()), __FILE__, __LINE__);
    return image;
}

void collectBelow(QQuickItem* item, const QString& objectName, QList<QQuickItem*>& found)
{
    if (!item->isVisible())
        return;
    if (objectName.isNull() || item->objectName() == objectName)
        found << item;
    for (QQuickItem* child : item->childItems())
        collectBelow(child, objectName, found);
}

} // namespace

void UpdaterSession::initTestCase()
{
    m_aquenImage = ship("aquen-v10.tarnware", 1);
    m_solvarImage = ship("solvar-v10.tarnware", 2);
    qInstallMessageHandler(&failOnWarning);
}

void UpdaterSession::init()
{
    if (!m_engine)
        start();
    m_log->clear();
}

void UpdaterSession::cleanup()
{
    if (QTest::currentTestFailed() || one("quitButton") == nullptr)
        end();
    m_bus.unplugAll();
    QVERIFY(m_bus.awaitGone(0));
    QVERIFY(!m_engine || waitFor([this] { return listed().isEmpty(); }));
}

void UpdaterSession::load(milliseconds statusTimeout)
{
    end();
    m_log = std::make_unique<LogCapture>(QStringList(
        {"main", "FirmwareUpdateState", "LibusbDeviceEnumerator", "AquenSolvarWatcher",
         "AquenSolvarFirmwareUpdateTask", "DfuDevice", "DFUDownloadJob", "DetachedJob"}));
    m_engine = std::make_unique<QQmlApplicationEngine>();
    QVERIFY(loadUserInterface(*m_engine));
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    m_window->findChild<USB::LibusbDeviceEnumerator*>()->setListingDelay(20);
    auto* factory = m_engine->singletonInstance<AquenSolvarTaskFactory*>(
        qmlTypeId("AquenSolvar", 1, 0, "AquenSolvarTaskFactory"));
    factory->setTimes({milliseconds(0), statusTimeout});
}

void UpdaterSession::start(milliseconds statusTimeout)
{
    load(statusTimeout);
    QVERIFY(waitFor([this] { return m_log->contains("INFO", "DefaultState"); }));
    // The notifier itself looks once a second.
    auto* notifier = m_window->findChild<USB::LibusbUSBNotifier*>();
    auto* timer = new QTimer(notifier);
    connect(timer, &QTimer::timeout, notifier,
            &USB::LibusbUSBNotifier::on_LibusbEventTimer_timeout);
    timer->start(5);
}

void UpdaterSession::end()
{
    m_window = nullptr;
    m_engine.reset();
    Device::DetachedJob::endAll();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QList<QQuickItem*> UpdaterSession::visible(const QString& objectName) const
{
    QList<QQuickItem*> found;
    if (m_window != nullptr)
        collectBelow(m_window->contentItem(), objectName, found);
    // Cards are created in the order in which their units came.
    std::stable_sort(found.begin(), found.end(), [](QQuickItem* left, QQuickItem* right) {
        return left->mapToScene(QPointF()).y() < right->mapToScene(QPointF()).y();
    });
    return found;
}

QQuickItem* UpdaterSession::one(const QString& objectName) const
{
    const QList<QQuickItem*> found = visible(objectName);
    return found.size() == 1 ? found.first() : nullptr;
}

bool UpdaterSession::shows(const QString& text) const
{
    const QList<QQuickItem*> items = visible();
    return std::any_of(items.begin(), items.end(),
                       [&text](const QQuickItem* item) { return textOf(item) == text; });
}

bool UpdaterSession::press(const QString& objectName) const
{
    const QQuickItem* item = one(objectName);
    if (item == nullptr || !item->isEnabled())
        return false;
    const QPointF centre = item->mapRectToScene(item->boundingRect()).center();
    QTest::mouseClick(m_window, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    return true;
}

QString UpdaterSession::update() const
{
    waitFor([this] { return press("updateButton"); });
    return waitFor([this] { return isDone(); }) ? barText() : "no end: " + barText();
}

void UpdaterSession::reportUnopened(bool isAttached) const
{
    static const auto record = USB::P_LibUsbDevice::create(); // on no bus
    record->descriptor.idProduct = 0x0C07;
    auto* watcher = m_window->findChild<AquenSolvarWatcher*>();
    isAttached ? watcher->deviceNotOpened(record, OpenFailure::Other)
               : watcher->unopenedDeviceLeft(record);
}

QStringList UpdaterSession::listed() const
{
    const auto* model = m_window->findChild<AquenSolvarListModel*>();
    QStringList names;
    for (int row = 0; row < model->rowCount(); ++row) {
        const QVariant device = model->index(row).data(AquenSolvarListModel::ObjectRole);
        names << device.value<Device::I_Device*>()->serialName();
    }
    return names;
}
