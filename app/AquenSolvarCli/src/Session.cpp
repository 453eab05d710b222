// SPDX-License-Identifier: LicenseRef-Proprietary
#include "cli/Session.h"

#include "Common/Console.h"
#include "USB/PFlibusb.h"
#include "cli/Doctor.h"
#include "devices/UnitSelection.h"

#include <QCoreApplication>

#include <algorithm>

namespace AquenSolvar::Cli {

namespace {

using namespace Device;

constexpr std::chrono::milliseconds pollInterval(100);

// By UnitUpdate::Outcome.
constexpr Status outcomeStatus[] = {Status::UpdateFailed, Status::Done,     Status::UpdateFailed,
                                    Status::NoSuchUnit,   Status::NoAccess, Status::Interrupted};
// By UnitSelection::Result.
constexpr Status selectionStatus[] = {Status::Done, Status::NoSuchUnit, Status::NoAccess,
                                      Status::Ambiguous};
// By UnitUpdate::Step.
constexpr const char* stepNames[] = {"restart", "write", "return"};
constexpr const char* stepTexts[] = {": restarting into the bootloader",
                                     ": writing the firmware; leave the unit connected",
                                     ": waiting for the unit to return"};

QString lineOf(const AttachedUnit& unit, const QString& firmware, const QString& state)
{
    return QStringList{unit.port.leftJustified(8), QString(unit.kind->name).leftJustified(12),
                       unit.name.leftJustified(20), firmware.leftJustified(8), state}
        .join(' ')
        .replace('\n', '?'); // a unit's name must not forge a line
}

} // namespace

Session::Session(const CommandLine& commandLine)
    : m_commandLine(commandLine)
    , m_reporter(commandLine)
    , m_firmware(commandLine.value("bundle"), commandLine.value("firmware"))
{
    connect(&m_timer, &QTimer::timeout, this, &Session::poll);
}

void Session::start()
{
    QString usbFault;
    try {
        USB::LibUSB::instance().init();
    } catch (const USB::USBException& exception) {
        usbFault = exception.message();
    }
    if (m_commandLine.command() == "doctor") {
        m_reporter.event("doctor", {}, examine(m_firmware, usbFault).join('\n'));
        return QCoreApplication::exit(int(Status::Done));
    }
    if (!usbFault.isEmpty())
        return fail(Status::NoAccess, usbFault);
    m_elapsed.start();
    m_timer.start(pollInterval);
    if (m_commandLine.command() == "update")
        beginUpdates();
    else
        poll();
}

void Session::poll()
{
    if (Common::isInterrupted() && m_update != nullptr)
        m_update->stop();
    else if (Common::isInterrupted())
        QCoreApplication::exit(int(Status::Interrupted));
    else if (m_commandLine.command() == "list")
        list();
    else if (m_commandLine.command() == "watch")
        watch();
}

void Session::list()
{
    QList<AttachedUnit> units = attachedUnits();
    const qint64 wait = m_commandLine.seconds("wait").count();
    if (units.isEmpty() && wait > 0 && !m_elapsed.hasExpired(wait))
        return; // again at the next poll
    for (AttachedUnit& unit : units) {
        m_firmware.read(unit);
        show("unit", unit);
    }
    if (units.isEmpty())
        m_reporter.event("none", {}, "No unit is attached.");
    QCoreApplication::exit(int(units.isEmpty() && wait > 0 ? Status::NoSuchUnit : Status::Done));
}

void Session::watch()
{
    QList<AttachedUnit> present = attachedUnits();
    for (const AttachedUnit& unit : qAsConst(m_units)) {
        if (!unit.isAmong(present))
            show("removed", unit);
    }
    for (AttachedUnit& unit : present) {
        if (unit.isAmong(m_units))
            continue;
        m_firmware.read(unit);
        show("attached", unit);
    }
    m_units = present;
}

void Session::beginUpdates()
{
    QList<AttachedUnit> attached = attachedUnits();
    const QStringList words = m_commandLine.units();
    // Without words a given bundle selects the kind.
    const auto isOther = [&](const AttachedUnit& unit) {
        return words.isEmpty() && !m_firmware.isFor(*unit.kind);
    };
    if (!attached.isEmpty() && std::all_of(attached.begin(), attached.end(), isOther))
        return fail(Status::NoFirmware, m_firmware.find(*attached.first().kind).fault);
    attached.erase(std::remove_if(attached.begin(), attached.end(), isOther), attached.end());
    // If all are named by their ports, only these are opened: other copies may use the others.
    QStringList names = words;
    for (const AttachedUnit& unit : qAsConst(attached))
        names.removeAll(unit.port);
    for (AttachedUnit& unit : attached) {
        if (words.isEmpty() || !names.isEmpty() || words.contains(unit.port))
            m_firmware.read(unit);
    }
    const UnitSelection selection =
        selectUnits(attached, words, m_commandLine.isSet("all"), m_commandLine.isSet("force"));
    if (selection.result != UnitSelection::Result::Selected) {
        for (const AttachedUnit& unit : selection.units)
            show("unit", unit);
        return fail(selectionStatus[int(selection.result)], selection.message);
    }
    m_units = selection.units;
    if (m_units.isEmpty())
        m_reporter.event("none", {}, selection.message);
    updateNext();
}

void Session::updateNext()
{
    if (m_units.isEmpty() || m_status == Status::Interrupted) {
        m_reporter.event("end", {{"status", int(m_status)}},
                         m_table.size() > 1 ? m_table.join('\n') : QString());
        return QCoreApplication::exit(int(m_status));
    }
    const AttachedUnit unit = m_units.takeFirst();
    const FirmwareChoice::Found firmware = m_firmware.find(*unit.kind);
    if (!firmware.fault.isEmpty())
        return conclude(unit, Status::NoFirmware, {}, firmware.fault);
    const bool force = m_commandLine.isSet("force");
    if (unit.error && (unit.error->errorCode() != 0 || !force))
        return conclude(unit, Status::NoAccess, {}, remedyFor(*unit.error));
    if (!unit.needsUpdate && !force)
        return conclude(unit, Status::Done, unit.firmware, "up to date");
    m_update = new UnitUpdate(unit, firmware.bundle, m_commandLine.seconds("timeout"), this);
    connect(m_update, &UnitUpdate::stepBegun, this, [this, unit](UnitUpdate::Step step) {
        m_reporter.event("step", {{"port", unit.port}, {"step", stepNames[int(step)]}},
                         unit.port + stepTexts[int(step)]);
    });
    connect(m_update, &UnitUpdate::progressed, this,
            [this, unit](float fraction) { m_reporter.progress(unit.port, fraction); });
    connect(m_update, &UnitUpdate::ended, this, &Session::on_update_ended);
    m_update->start();
}

void Session::on_update_ended()
{
    UnitUpdate* update = std::exchange(m_update, nullptr);
    update->deleteLater();
    const Status status = outcomeStatus[int(update->outcome())];
    const bool advise = status == Status::NoAccess && update->unit().error;
    conclude(update->unit(), status, update->firmwareAfter(),
             update->message() + (advise ? ' ' + remedyFor(*update->unit().error) : QString()));
}

void Session::conclude(const AttachedUnit& unit, Status status, const QString& after,
                       const QString& message)
{
    // Only these two are worse than an earlier failure.
    if (m_status == Status::Done || status == Status::Interrupted || status == Status::UpdateFailed)
        m_status = status;
    const bool changed = !after.isEmpty() && after != unit.firmware;
    const QString line = lineOf(unit, changed ? unit.firmware + " -> " + after : unit.firmware,
                                message.isEmpty() ? "updated" : message);
    m_table.append(line);
    m_reporter.event("result",
                     {{"port", unit.port},
                      {"kind", unit.kindWord()},
                      {"name", unit.name},
                      {"status", int(status)},
                      {"before", unit.firmware},
                      {"after", after},
                      {"message", message}},
                     status == Status::Done ? line : QString());
    if (status != Status::Done)
        m_reporter.error(int(status), line.simplified());
    QTimer::singleShot(0, this, &Session::updateNext);
}

void Session::show(const char* event, const AttachedUnit& unit)
{
    const qint32 bundle = m_firmware.find(*unit.kind).bundle.version;
    m_reporter.event(event,
                     {{"port", unit.port},
                      {"kind", unit.kindWord()},
                      {"bootloader", unit.kind->dfu},
                      {"name", unit.name},
                      {"firmware", unit.firmware},
                      {"bundle", bundle > 0 ? bundleVersionText(bundle) : QString()},
                      {"needsUpdate", unit.needsUpdate},
                      {"error", unit.error ? unit.error->message() : QString()}},
                     lineOf(unit, unit.firmware,
                            event == QLatin1String("removed") ? "removed"
                            : unit.error                      ? remedyFor(*unit.error)
                            : unit.kind->dfu                  ? "waits in its bootloader"
                            : unit.needsUpdate                ? "needs an update"
                                                              : QString("up to date")));
}

void Session::fail(Status status, const QString& message)
{
    m_reporter.error(int(status), message);
    QCoreApplication::exit(int(status));
}

} // namespace AquenSolvar::Cli
