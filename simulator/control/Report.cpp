// SPDX-License-Identifier: LicenseRef-Proprietary
#include "control/Report.h"

#include <QCryptographicHash>
#include <QTextStream>

#include <iostream>
#include <stdexcept>

namespace VirtualUnit {

namespace {

const char* nameOf(Mode mode)
{
    return mode == Mode::Application ? "application" : "bootloader";
}

/// By Response::Kind.
constexpr const char* outcomes[] = {"data", "ack", "STALL", "silence"};

void writeReport(QTextStream& out, const LabelledUnit& unit, bool onBus)
{
    const std::string version = unit.unit->firmwareVersion();
    const Bytes content = unit.unit->applicationContent();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(reinterpret_cast<const char*>(content.data()), static_cast<int>(content.size()));
    out << "unit=" << unit.label << " mode=" << nameOf(unit.unit->mode())
        << " firmware=" << (version.empty() ? "-" : version.c_str())
        << " bus=" << (onBus ? "yes" : "no") << " length=" << content.size()
        << " sha256=" << hash.result().toHex() << '\n';
}

void writeTrace(QTextStream& out, const LabelledUnit& unit)
{
    const auto trace = unit.unit->trace();
    for (const TraceEntry& entry : trace) {
        const std::chrono::duration<double> since = entry.time - trace.front().time;
        out << unit.label << ' '
            << QString::asprintf(
                   "%9.3f %-11s %-11s %02x %02x value=%04x index=%04x length=%u out=%zu %s in=%zu",
                   since.count(), nameOf(entry.mode), entry.name.c_str(), entry.setup.bmRequestType,
                   entry.setup.bRequest, entry.setup.wValue, entry.setup.wIndex,
                   entry.setup.wLength, entry.payload.size(),
                   outcomes[static_cast<int>(entry.outcome)], entry.response.size())
            << '\n';
    }
}

void finish(QTextStream& stream, const QFile& file)
{
    stream.flush();
    if (stream.status() != QTextStream::Ok || file.error() != QFile::NoError)
        throw std::runtime_error("cannot write " + (file.fileName().isEmpty()
                                                        ? "standard error"
                                                        : file.fileName().toStdString()));
}

} // namespace

void writeReports(QFile& report, QFile& trace, const Bus& bus,
                  const std::vector<LabelledUnit>& units)
{
    // A program may end while a unit that it has flashed is still on its way back.
    constexpr milliseconds settleTime(5000);
    if (!bus.waitUntilSettled(settleTime))
        std::cerr << "virtualbus: a unit is still about to leave or return\n";
    QTextStream reportText(&report);
    QTextStream traceText(&trace);
    for (const LabelledUnit& unit : units) {
        writeReport(reportText, unit, bus.isPlugged(unit.unit));
        if (trace.isOpen())
            writeTrace(traceText, unit);
    }
    finish(reportText, report);
    finish(traceText, trace);
}

} // namespace VirtualUnit
