// SPDX-License-Identifier: LicenseRef-Proprietary
#include "update/UnitUpdate.h"

#include "devices/AquenSolvarDevice.h"
#include "qslog/Log.h"
#include "update/FirmwareChoice.h"

#include <algorithm>

namespace AquenSolvar {

namespace {

using Device::AttachedUnit;

constexpr std::chrono::milliseconds pollInterval(200);
constexpr std::chrono::milliseconds retryInterval(1000);
constexpr std::chrono::milliseconds settleTime(500);
// How long a unit that already runs its bootloader may refuse to be opened.
constexpr std::chrono::milliseconds resumeLimit(1500);

std::optional<AttachedUnit> unitOnPort(const QString& port)
{
    const QList<AttachedUnit> units = Device::attachedUnits();
    const auto found = std::find_if(units.begin(), units.end(), [&port](const AttachedUnit& unit) {
        return unit.port == port;
    });
    return found == units.end() ? std::nullopt : std::make_optional(*found);
}

Device::DfuTimes limitedTimes()
{
    Device::DfuTimes times;
    times.busyLimit = UnitUpdate::busyLimit;
    return times;
}

} // namespace

UnitUpdate::UnitUpdate(AttachedUnit unit, Device::FirmwareBundle bundle,
                       std::chrono::milliseconds limit, QObject* parent)
    : QObject(parent)
    , m_unit(std::move(unit))
    , m_bundle(std::move(bundle))
    , m_limit(limit)
{
    connect(&m_timer, &QTimer::timeout, this, &UnitUpdate::poll);
}

UnitUpdate::~UnitUpdate() = default;

void UnitUpdate::start()
{
    m_unit.error.reset();
    m_total.start();
    if (!m_unit.kind->dfu)
        emit stepBegun(Step::Restart);
    m_wait.start();
    m_timer.start(pollInterval);
    if (!m_unit.kind->dfu)
        restart();
}

void UnitUpdate::stop()
{
    if (m_stopRequested || m_outcome != Outcome::Pending)
        return;
    m_stopRequested = true;
    if (m_step == Step::Write)
        m_task->requestStop();
    else
        endStopped();
}

void UnitUpdate::restart()
{
    const std::optional<AttachedUnit> present = unitOnPort(m_unit.port);
    if (!present || !present->isSameAs(m_unit))
        return end(Outcome::Gone, QStringLiteral("The unit has left port %1.").arg(m_unit.port));
    try {
        Device::AquenSolvarDevice device(m_unit.record);
        if (!device.dropToBootloader())
            fail(QStringLiteral(
                "The unit did not take the request to restart into its bootloader."));
    } catch (const USB::USBException& exception) {
        m_unit.error = exception;
        end(Outcome::NoAccess, exception.message() + QLatin1Char('.'));
    }
}

void UnitUpdate::beginWait(Step step)
{
    m_step = step;
    m_wait.start();
    m_timer.start(pollInterval);
    emit stepBegun(step);
}

void UnitUpdate::poll()
{
    if (m_outcome != Outcome::Pending) {
        m_timer.stop();
        if (m_outcome != Outcome::Updated)
            m_message += QLatin1Char(' ') + whereabouts();
        QLOG_INFO() << "The update on port" << m_unit.port << "from" << m_unit.firmware << "to"
                    << m_firmwareAfter << "ended after" << m_total.elapsed() << "ms." << m_message;
        emit ended();
        return;
    }
    if (m_limit.count() > 0 && m_total.hasExpired(m_limit.count())) {
        if (m_step == Step::Write)
            m_task->stopUpdate();
        return fail(QStringLiteral("The update took longer than %1 s.")
                        .arg(std::chrono::duration<double>(m_limit).count()));
    }
    if (m_step == Step::Write)
        return;
    const std::optional<AttachedUnit> present = unitOnPort(m_unit.port);
    if (present && present->kindWord() != m_unit.kindWord())
        return fail(
            QStringLiteral("Another unit took the place of this one on port %1.").arg(m_unit.port));
    const bool inBootloader = present && present->kind->dfu;
    if (m_step == Step::Restart && inBootloader)
        write(*present);
    else if (m_step == Step::Return && inBootloader && !present->isSameAs(m_bootloader))
        fail(QStringLiteral(
                 "The unit returned to its bootloader: it did not accept the firmware. ") +
             m_error);
    else if (m_step == Step::Return && present && !inBootloader)
        verify(*present);
    if (m_outcome != Outcome::Pending || m_step == Step::Write)
        return;
    const auto limit = m_unit.kind->dfu && m_step == Step::Restart
                           ? resumeLimit
                           : std::chrono::milliseconds(waitLimit);
    if (!m_wait.hasExpired(limit.count()))
        return;
    if (m_unit.error)
        end(Outcome::NoAccess, m_unit.error->message() + QLatin1Char('.'));
    else
        fail((m_step == Step::Restart
                  ? QStringLiteral("The unit did not start its bootloader within %1 s. ")
                  : QStringLiteral("The unit did not return within %1 s. "))
                 .arg(waitLimit.count()) +
             m_error);
}

void UnitUpdate::write(const AttachedUnit& bootloader)
{
    m_bootloader = bootloader;
    m_task =
        std::make_unique<Tasks::AquenSolvarFirmwareUpdateTask>(bootloader.record, limitedTimes());
    m_task->setFirmware(m_bundle);
    if (!m_task->uploadFirmware()) {
        // The system may still be setting up a device that has just arrived.
        m_unit.error = m_task->setUpError();
        m_timer.start(retryInterval);
        return;
    }
    using Tasks::AquenSolvarFirmwareUpdateTask;
    const AquenSolvarFirmwareUpdateTask* task = m_task.get();
    connect(task, &AquenSolvarFirmwareUpdateTask::progressChanged, this,
            [this] { emit progressed(m_task->progress()); });
    connect(task, &AquenSolvarFirmwareUpdateTask::uploadError, this, [this](const QString& text) {
        if (m_error.isEmpty())
            m_error = text;
    });
    connect(task, &AquenSolvarFirmwareUpdateTask::downloadEnded, this,
            &UnitUpdate::on_task_downloadEnded);
    m_unit.error.reset();
    beginWait(Step::Write);
}

void UnitUpdate::on_task_downloadEnded()
{
    if (m_outcome != Outcome::Pending)
        return;
    if (m_stopRequested)
        return endStopped();
    if (!m_task->isImageSent())
        return fail(m_error);
    // Some units restart before they respond to the last requests, which then fail: what returns
    // decides.
    emit progressed(1);
    beginWait(Step::Return);
}

void UnitUpdate::verify(AttachedUnit returned)
{
    returned.read();
    m_unit.error = returned.error;
    if (returned.error && returned.error->errorCode() != 0)
        return; // again at the next poll
    m_firmwareAfter = returned.firmware;
    if (returned.error)
        return fail(returned.error->message() + QLatin1Char('.'));
    if (isOlderThanBundle(returned.firmware, m_bundle.version).value_or(false))
        return fail(QStringLiteral(
                        "The unit runs %1, which is older than the firmware that was written (%2).")
                        .arg(returned.firmware, Device::bundleVersionText(m_bundle.version)));
    m_unit.name = returned.name;
    end(Outcome::Updated, QString());
}

void UnitUpdate::fail(const QString& message)
{
    end(Outcome::Failed, message.trimmed());
}

void UnitUpdate::endStopped()
{
    end(Outcome::Stopped, m_task && m_task->isImageSent()
                              ? QStringLiteral("Interrupted; the firmware was written completely.")
                              : QStringLiteral("Interrupted."));
}

void UnitUpdate::end(Outcome outcome, const QString& message)
{
    if (outcome != Outcome::Updated)
        QLOG_ERROR() << "The update on port" << m_unit.port << "failed:" << message;
    m_outcome = outcome;
    m_message = message;
    // The listing of the bus lags behind a unit that has just left.
    m_timer.start(outcome == Outcome::Updated ? std::chrono::milliseconds(0) : settleTime);
}

QString UnitUpdate::whereabouts() const
{
    const std::optional<AttachedUnit> present = unitOnPort(m_unit.port);
    if (!present || present->kindWord() != m_unit.kindWord())
        return m_bootloader.record
                   ? QStringLiteral("It is not attached. Its bootloader is intact: attach it and "
                                    "update again.")
                   : QStringLiteral("It is not attached. Attach it and update again.");
    return present->kind->dfu
               ? QStringLiteral("It waits in its bootloader: update again to resume.")
               : QStringLiteral(
                     "It runs its application firmware and can be used; to retry, switch it "
                     "off and on and update again.");
}

} // namespace AquenSolvar
