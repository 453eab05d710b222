// SPDX-License-Identifier: LicenseRef-Proprietary
#include "update/ShippedFirmware.h"

#include "Common/Paths.h"
#include "firmware/FirmwareBundle.h"
#include "qslog/Log.h"

#include <QtConcurrent>

#include <utility>

namespace AquenSolvar {

namespace {

qint32 newestVersion(const QString& namePattern)
{
    const QString directory = Common::Paths::resourceSubdirectory(QStringLiteral("Firmwares"));
    return Device::newestFirmwareBundle(directory, namePattern).version;
}

} // namespace

void ShippedFirmware::lookUp(Device::I_Device* device)
{
    const Device::UnitKind* kind =
        device != nullptr ? Device::unitKindOf(device->deviceType()) : nullptr;
    if (kind == nullptr)
        return;
    const Device::UnitKind& bootloader = Device::bootloaderOf(*kind);
    const auto [place, isNew] = m_lookUps.try_emplace(bootloader.type);
    LookUp& lookUp = place->second;
    if (isNew) {
        connect(&lookUp.watcher, &QFutureWatcherBase::finished, this,
                [this, &bootloader, &lookUp] { takeResult(bootloader, lookUp); });
    }
    lookUp.isStale = lookUp.isPending;
    if (!lookUp.isPending)
        start(bootloader, lookUp);
}

void ShippedFirmware::start(const Device::UnitKind& bootloader, LookUp& lookUp)
{
    lookUp.isPending = true;
    lookUp.watcher.setFuture(
        QtConcurrent::run(&newestVersion, QString::fromLatin1(bootloader.firmwarePattern)));
}

void ShippedFirmware::takeResult(const Device::UnitKind& bootloader, LookUp& lookUp)
{
    const qint32 version = lookUp.watcher.result();
    QLOG_INFO() << "Newest valid bundle" << bootloader.firmwarePattern << ":" << version;
    m_versions[QString::number(bootloader.type)] =
        version > 0 ? Device::bundleVersionText(version) : QString();
    emit versionsChanged();
    lookUp.isPending = false;
    if (std::exchange(lookUp.isStale, false))
        start(bootloader, lookUp);
}

} // namespace AquenSolvar
