// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/Notices.h"

#include "devices/UnitKind.h"
#include "qslog/Log.h"
#include "qslog/LogFailures.h"
#include "shell/InstanceGuard.h"
#include "update/ShippedFirmware.h"

#include <QGuiApplication>

#include <algorithm>

namespace AquenSolvar {

Notices::Notices(QObject* parent)
    : QObject(parent)
{
    // Queued: a thread that logs emits it.
    connect(&QsLogging::LogFailures::instance(), &QsLogging::LogFailures::changed, this,
            &Notices::update, Qt::QueuedConnection);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive)
                    checkAgain();
            });
}

void Notices::followWatcher(AquenSolvarWatcher* watcher)
{
    if (watcher == nullptr) {
        QLOG_ERROR() << "Was not passed a watcher";
        return;
    }
    m_watcher = watcher;
    connect(watcher, &AquenSolvarWatcher::addedDevice, this,
            [this](const Device::P_I_Device& unit) {
                m_units.append(unit);
                update();
            });
    connect(watcher, &AquenSolvarWatcher::removedDevice, this,
            [this](const Device::P_I_Device& unit) {
                m_units.removeOne(unit);
                update();
            });
    connect(watcher, &AquenSolvarWatcher::deviceNotOpened, this,
            [this](const USB::P_LibUsbDevice& record, OpenFailure failure) {
                m_unopened.append({record, failure});
                update();
            });
    connect(watcher, &AquenSolvarWatcher::unopenedDeviceLeft, this,
            [this](const USB::P_LibUsbDevice& record) {
                const auto isRecord = [&](const auto& unit) {
                    return unit.first == record;
                };
                m_unopened.erase(std::remove_if(m_unopened.begin(), m_unopened.end(), isRecord),
                                 m_unopened.end());
                update();
            });
    update();
}

void Notices::followFirmware(ShippedFirmware* firmware)
{
    m_firmware = firmware;
    connect(firmware, &ShippedFirmware::versionsChanged, this, &Notices::update);
}

void Notices::followGuard(InstanceGuard* guard)
{
    m_guard = guard;
    checkAgain();
}

void Notices::checkAgain()
{
    if (m_guard != nullptr)
        m_isOnlyCopy = m_guard->isFirst();
    for (const Device::P_I_Device& unit : qAsConst(m_units)) {
        if (lacksFirmware(unit))
            m_firmware->lookUp(unit.data());
    }
    update();
}

void Notices::update()
{
    const Notice notice = mostUrgent();
    if (notice.text == m_shown.text)
        return;
    m_shown = notice;
    emit changed();
}

bool Notices::lacksFirmware(const Device::P_I_Device& unit) const
{
    const Device::UnitKind* kind = Device::unitKindOf(unit->deviceType());
    if (kind == nullptr || m_firmware == nullptr)
        return false;
    // Absent until it was looked up.
    const QVariant version =
        m_firmware->versions().value(QString::number(Device::bootloaderOf(*kind).type));
    return version.isValid() && version.toString().isEmpty();
}

Notices::Notice Notices::mostUrgent() const
{
    if (m_watcher == nullptr)
        return {};
    if (!m_unopened.isEmpty()) {
        const auto& [record, failure] = m_unopened.first();
        return notOpened(
            QString::fromLatin1(Device::unitKindOf(record->descriptor.idProduct)->product),
            failure);
    }
    for (const Device::P_I_Device& unit : m_units) {
        if (lacksFirmware(unit))
            //: Beside "Quit" (60 letters; CJK 30): there is no valid firmware file for units of the
            //: kind %1, "Aquen" or "Solvar". An update would begin and then fail.
            return {tr("No valid firmware for %1: an update would fail.")
                        .arg(QLatin1String(Device::unitKindOf(unit->deviceType())->product)),
                    QStringLiteral("Firmware bundles")};
    }
    if (!m_isOnlyCopy)
        //: Beside "Quit" (60 letters; CJK 30): this program was started twice.
        return {tr("Another copy of this program is running."),
                QStringLiteral("Another copy is running")};
    if (QsLogging::LogFailures::instance().any())
        //: Beside "Quit" (60 letters; CJK 30): the program's own log file, which support reads.
        return {tr("The log cannot be written."), QStringLiteral("The log, and your data")};
    return {};
}

Notices::Notice Notices::notOpened(const QString& product, OpenFailure failure)
{
    const QString heading = QStringLiteral("A unit cannot be opened");
    switch (failure) {
    case OpenFailure::NoPermission:
        //: Beside "Quit" (60 letters; CJK 30): a unit is attached, but the system does not let this
        //: person use it. %1 is its kind, "Aquen" or "Solvar".
        return {tr("%1 found, but without permission to use it.").arg(product), heading};
    case OpenFailure::NoDriver:
        //: Beside "Quit" (60 letters; CJK 30): a unit is attached, but Windows has no driver for
        //: it. %1 is its kind, "Aquen" or "Solvar".
        return {tr("%1 found, but its driver is missing.").arg(product), heading};
    case OpenFailure::InUse:
        //: Beside "Quit" (60 letters; CJK 30): a unit is attached, but another program, or another
        //: copy of this one, uses it. %1 is its kind, "Aquen" or "Solvar".
        return {tr("%1 found, but another program is using it.").arg(product), heading};
    default:
        //: Beside "Quit" (60 letters; CJK 30): a unit is attached, but does not work. %1 is its
        //: kind, "Aquen" or "Solvar".
        return {tr("%1 found, but it cannot be opened.").arg(product), heading};
    }
}

} // namespace AquenSolvar
