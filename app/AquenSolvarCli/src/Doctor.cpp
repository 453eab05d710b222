// SPDX-License-Identifier: LicenseRef-Proprietary
#include "cli/Doctor.h"

#include "Common/BuildVersion.h"
#include "Common/Logging/LogTail.h"
#include "Common/Paths.h"
#include "devices/AttachedUnit.h"
#include "firmware/FirmwareBundle.h"
#include "qslog/LogFailures.h"

#include <QDir>
#include <QSysInfo>

namespace AquenSolvar::Cli {

namespace {

void addVersions(QStringList& report, const QString& log)
{
    using Common::BuildVersion;
    const libusb_version* usb = libusb_get_version();
    const QString started = "Initialized \"?Quillon|The window is drawn in software";
    const QString renderer = Common::lastLogLines(log, started, 1).value(0);
    report << "program:  " + BuildVersion::majorMinorRevisionString() + ", revision " +
                  BuildVersion::buildGitCommit()
           << "system:   " + QSysInfo::prettyProductName() + ", kernel " +
                  QSysInfo::kernelVersion() + ", " + QSysInfo::currentCpuArchitecture()
           << QStringLiteral("libusb:   %1.%2.%3").arg(usb->major).arg(usb->minor).arg(usb->micro)
           << QStringLiteral("Qt:       ") + qVersion()
           << "renderer: " + (renderer.isEmpty()              ? "unknown: start the window once"
                              : renderer.contains("software") ? renderer.section(": ", 1)
                                                              : QString("OpenGL"));
}

void addBundles(QStringList& report, QStringList& problems, const QString& folder)
{
    const QStringList files = QDir(folder).entryList({"*.tarnware"}, QDir::Files);
    for (const QString& file : files) {
        Device::FirmwareBundle bundle;
        const int result = Device::readFirmwareBundle(QDir(folder).filePath(file), bundle);
        const QString state = Device::firmwareReadResultText(result);
        report << QStringLiteral("  %1: version %2, %3").arg(file).arg(bundle.version).arg(state);
        if (result != Device::FirmwareRead)
            problems << file + ": " + state + ". Replace it.";
    }
    if (files.isEmpty())
        problems << "There is no firmware: put bundles into " + folder;
}

void addUnits(QStringList& report, QStringList& problems, const FirmwareChoice& firmware)
{
    QList<Device::AttachedUnit> units = Device::attachedUnits();
    for (Device::AttachedUnit& unit : units) {
        unit.tryOpen();
        report << QStringLiteral("unit:     %1 %2: ").arg(unit.port, unit.kind->name) +
                      (unit.error ? unit.error->message() : "can be opened");
        if (unit.error)
            problems << unit.port + ": " + Device::remedyFor(*unit.error);
        const QString fault = firmware.find(*unit.kind).fault;
        if (!fault.isEmpty())
            problems << fault + " Add valid firmware.";
    }
    if (units.isEmpty())
        problems << "No unit is on the bus: switch it on, try another cable and port.";
}

} // namespace

QStringList examine(const FirmwareChoice& firmware, const QString& usbFault)
{
    const QString logs = Common::Paths::logDirectory();
    const QString log = QDir(logs).filePath("AquenSolvarUpdater.log");
    QStringList report;
    QStringList problems;
    addVersions(report, log);
    report << "settings: " + Common::Paths::userSettingsDirectory() << "log:      " + logs
           << "firmware: " + firmware.folder();
    if (QsLogging::LogFailures::instance().any())
        problems << "The log cannot be written: free space, or make its folder and files yours.";
    addBundles(report, problems, firmware.folder());
    if (usbFault.isEmpty())
        addUnits(report, problems, firmware);
    else
        problems << usbFault + ": restart the computer.";
    problems.removeDuplicates();
    report << "last warnings and errors:" << Common::lastLogLines(log, "^ *(WARN|ERROR|FATAL) ", 20)
           << "problems:" << (problems.isEmpty() ? QStringList("  none") : problems);
    return report;
}

} // namespace AquenSolvar::Cli
