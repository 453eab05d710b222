// SPDX-License-Identifier: LicenseRef-Proprietary
#include "update/FirmwareChoice.h"

#include "Common/Paths.h"
#include "firmware/ImageSize.h"

#include <QDir>
#include <QFileInfo>

namespace AquenSolvar {

namespace {

QString patternOf(const Device::UnitKind& kind)
{
    return QString::fromLatin1(Device::bootloaderOf(kind).firmwarePattern);
}

} // namespace

FirmwareChoice::FirmwareChoice(QString file, QString folder)
    : m_file(std::move(file))
    , m_folder(folder.isEmpty() ? Common::Paths::resourceSubdirectory(QStringLiteral("Firmwares"))
                                : std::move(folder))
{
}

bool FirmwareChoice::isFor(const Device::UnitKind& kind) const
{
    return m_file.isEmpty() || QDir::match(patternOf(kind), QFileInfo(m_file).fileName());
}

FirmwareChoice::Found FirmwareChoice::find(const Device::UnitKind& kind) const
{
    Found found;
    if (!isFor(kind)) {
        found.fault = QStringLiteral("%1 is not named as firmware of this kind of unit (%2).")
                          .arg(m_file, patternOf(kind));
        return found;
    }
    if (m_file.isEmpty()) {
        found.bundle = Device::newestFirmwareBundle(m_folder, patternOf(kind));
        if (found.bundle.data.isEmpty())
            found.fault =
                QStringLiteral("There is no valid %1 in %2.").arg(patternOf(kind), m_folder);
    } else if (const int result = Device::readFirmwareBundle(m_file, found.bundle)) {
        found.fault = QStringLiteral("%1: %2.").arg(m_file, Device::firmwareReadResultText(result));
    } else if (found.bundle.version < 1 || found.bundle.data.isEmpty()) {
        found.fault = QStringLiteral("%1 holds no firmware.").arg(m_file);
    }
    if (found.bundle.data.size() >= Device::imageSizeBound)
        found.fault = QStringLiteral("The firmware for %1 is larger than the unit's memory.")
                          .arg(QLatin1String(kind.name));
    return found;
}

void FirmwareChoice::read(Device::AttachedUnit& unit) const
{
    unit.read();
    if (!unit.kind->dfu)
        unit.needsUpdate = isOlderThanBundle(unit.firmware, find(*unit.kind).bundle.version)
                               .value_or(unit.needsUpdate);
}

std::optional<Device::FirmwareVersion> firmwareVersionOf(qint32 bundleVersion)
{
    if (bundleVersion < 10000)
        return std::nullopt;
    return Device::FirmwareVersion{bundleVersion / 10000, bundleVersion / 100 % 100,
                                   bundleVersion % 100};
}

std::optional<bool> isOlderThanBundle(const QString& firmware, qint32 bundleVersion)
{
    const std::optional<Device::FirmwareVersion> version = firmwareVersionOf(bundleVersion);
    if (!version || firmware.isEmpty())
        return std::nullopt;
    return Device::isOlderThan(firmware, *version);
}

} // namespace AquenSolvar
