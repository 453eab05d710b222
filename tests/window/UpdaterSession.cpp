#include "UpdaterSession.h"

#include "USB/LibusbDeviceEnumerator.h"
#include "USB/LibusbUSBNotifier.h"
#include "shell/UserInterface.h"
#include "tracking/AquenSolvarWatcher.h"
#include "update/AquenSolvarTaskFactory.h"

#include <QFile>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <cstdio>

using AquenSolvar::AquenSolvarTaskFactory;
using AquenSolvar::AquenSolvarWatcher;
using AquenSolvar::Device::DfuTimes;
using AquenSolvar::Device::P_I_Device;
using AquenSolvar::Tasks::AquenSolvarFirmwareUpdateTask;

namespace {

// How long this thread has waited for a processor so far, in milliseconds.
qint64 timeWithoutProcessor()
{
    QFile statistics("/proc/thread-self/schedstat");
    if (!statistics.open(QIODevice::ReadOnly))
        return 0;
    return statistics.readLine().split(' ').value(1).toLongLong() / 1000000;
}

// Measures one turn of the event loop from its making on.
class Turn
{
public:
    Turn() { m_time.start(); }
    // What the machine's other work has taken is not counted.
    qint64 milliseconds() const
    {
        return m_time.elapsed() - (timeWithoutProcessor() - m_withoutBefore);
    }

private:
    QElapsedTimer m_time;
    qint64 m_withoutBefore = timeWithoutProcessor();
};

} // namespace

SessionTimes SessionTimes::quick()
{
    return {20, 5, std::chrono::milliseconds(0), std::chrono::milliseconds(300)};
}

SessionTimes SessionTimes::real()
{
    return {USB::LibusbDeviceEnumerator::defaultListingDelayMs, 0, DfuTimes().pollSleep,
            DfuTimes().statusTimeout};
}

UpdaterSession::UpdaterSession(const SessionTimes& times)
    : m_log({"main", "FirmwareUpdateState", "DFUDownloadJob", "DetachedJob", "AquenSolvarWatcher"})
    , m_engine(std::make_unique<QQmlApplicationEngine>())
{
    if (!AquenSolvar::loadUserInterface(*m_engine))
        return;
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    useTimes(times);
    listen();
    wait([this] { return states().contains("DefaultState"); });
    if (times.eventIntervalMs == 0)
        return;
    auto* notifier = m_window->findChild<USB::LibusbUSBNotifier*>();
    connect(&m_libusbEvents, &QTimer::timeout, notifier,
            &USB::LibusbUSBNotifier::on_LibusbEventTimer_timeout);
    m_libusbEvents.start(times.eventIntervalMs);
}

UpdaterSession::~UpdaterSession() = default;

void UpdaterSession::useTimes(const SessionTimes& times)
{
    m_window->findChild<USB::LibusbDeviceEnumerator*>()->setListingDelay(times.listingDelayMs);
    auto* factory = m_engine->singletonInstance<AquenSolvarTaskFactory*>(
        qmlTypeId("AquenSolvar", 1, 0, "AquenSolvarTaskFactory"));
    factory->setTimes({times.pollSleep, times.statusTimeout});
}

void UpdaterSession::listen()
{
    auto* watcher = m_window->findChild<AquenSolvarWatcher*>();
    connect(watcher, &AquenSolvarWatcher::addedDevice, this, [this](const P_I_Device& device) {
        m_unitSignals << "+" + device->serialName();
        ++m_unitsPresent;
    });
    connect(watcher, &AquenSolvarWatcher::addedDFUDevice, this, [this] { m_unitSignals << "dfu"; });
    connect(watcher, &AquenSolvarWatcher::removedDevice, this, [this](const P_I_Device& device) {
        m_unitSignals << "-" + device->serialName();
        --m_unitsPresent;
    });
    for (QObject* object : m_window->findChildren<QObject*>()) {
        if (object->metaObject()->indexOfProperty("task") >= 0)
            m_updatingState = object;
    }
    connect(m_updatingState, SIGNAL(taskChanged()), this, SLOT(on_updatingState_taskChanged()));
    on_updatingState_taskChanged();
}

void UpdaterSession::on_updatingState_taskChanged()
{
    using Task = AquenSolvarFirmwareUpdateTask;
    auto* task = m_updatingState->property("task").value<Task*>();
    if (task == nullptr)
        return;
    connect(task, &Task::progressChanged, this, [this, task] {
        m_taskSignals << "progress " + QString::number(double(task->progress()), 'g', 4);
    });
    connect(task, &Task::uploadFinsihed, this, [this] { m_taskSignals << "finished"; });
    connect(task, &Task::uploadError, this,
            [this](const QString& text) { m_taskSignals << "error " + text; });
}

QString UpdaterSession::barText() const
{
    QQuickItem* text = one("progressBarText");
    return text != nullptr ? text->property("text").toString() : QString();
}

bool UpdaterSession::isDone() const
{
    QQuickItem* button = one("doneButton");
    return button != nullptr && button->isEnabled();
}

bool UpdaterSession::offers(const QString& buttonText, bool enabled) const
{
    QQuickItem* button = one("updateButton");
    return button != nullptr && button->property("text").toString() == buttonText &&
           button->isEnabled() == enabled && shows("Firmware Up To Date") != enabled;
}

bool UpdaterSession::press(QQuickItem* item)
{
    const Turn turn;
    const bool pressed = ::press(item);
    m_longestTurn = qMax(m_longestTurn, turn.milliseconds());
    return pressed;
}

bool UpdaterSession::wait(const std::function<bool()>& condition, int milliseconds)
{
    QElapsedTimer time;
    time.start();
    while (!condition()) {
        if (time.elapsed() > milliseconds)
            return false;
        const Turn turn;
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_longestTurn = qMax(m_longestTurn, turn.milliseconds());
        QTest::qSleep(1);
    }
    return true;
}

QStringList UpdaterSession::states() const
{
    QStringList names;
    for (QString line : m_log.messages()) {
        line.remove(0, line.indexOf(' ') + 1);
        if (line.startsWith("ErrorDuringUpdateState:"))
            line = "ErrorDuringUpdateState";
        if (line.endsWith("State") && !line.contains(' '))
            names << line;
    }
    return names;
}

void UpdaterSession::forget()
{
    m_log.clear();
    m_unitSignals.clear();
    m_taskSignals.clear();
    m_longestTurn = 0;
}

void withoutSizeHints(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!text.contains("does not support propagateSizeHints"))
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
}
