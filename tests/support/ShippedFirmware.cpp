#include "support/ShippedFirmware.h"

#include "Common/Paths.h"
#include "firmware/FirmwareBundle.h"

#include <QDir>
#include <QSaveFile>

bool shipFirmware(const QByteArray& aquenImage, const QByteArray& solvarImage)
{
    const QDir firmwares(Common::Paths::resourceDirectory() + "/Firmwares");
    const auto put = [&firmwares](const QString& name, const QByteArray& image) {
        QSaveFile file(firmwares.filePath(name));
        return file.open(QIODevice::WriteOnly) &&
               file.write(AquenSolvar::Device::packFirmwareBundle(10, image)) > 0 && file.commit();
    };
    return firmwares.mkpath(".") && put("aquen-v10.tarnware", aquenImage) &&
           put("solvar-v10.tarnware", solvarImage);
}
