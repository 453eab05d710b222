#include "update/DownloadTexts.h"

#include <QCoreApplication>

#include <array>

namespace AquenSolvar::Device {

namespace {

constexpr char context[] = "AquenSolvar::Device::DFUDownloadJob";

// What the job tells; "%1" stands for the message of a USB exception, one of these or an English
// one.
constexpr std::array<const char*, 13> texts = {
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Caught USB exception: %1"),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Too much data to complete upload."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "No device to update."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to read device status."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to clear device status."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to upload firmware data."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to upload firmware."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to erase flash."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to flash device sector."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Error while flashing firmware."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob",
                      "Error state while flashing firmware."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob",
                      "Failed to finalize firmware flashing."),
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob",
                      "Error state while downloading to Aquen/Solvar in \"DFU\" mode."),
};

} // namespace

QString englishDownloadText(const QString& userText)
{
    for (const char* source : texts) {
        QString english = QString::fromUtf8(source);
        const QString shown = QCoreApplication::translate(context, source);
        if (userText == shown)
            return english;
        const int place = shown.indexOf(QLatin1String("%1"));
        if (place < 0 || !userText.startsWith(shown.leftRef(place)))
            continue;
        const int after = shown.size() - place - 2;
        if (!userText.endsWith(shown.rightRef(after)))
            continue;
        const QString cause = userText.mid(place, userText.size() - place - after);
        return english.replace(QLatin1String("%1"), englishDownloadText(cause));
    }
    return userText;
}

} // namespace AquenSolvar::Device
