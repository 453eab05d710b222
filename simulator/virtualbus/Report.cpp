#include "virtualbus/Report.h"

#include <array>
#include <cstdio>
#include <glib.h>

namespace VirtualUnit {

namespace {

const char* nameOf(Mode mode)
{
    return mode == Mode::Application ? "application" : "bootloader";
}

const char* nameOf(Answer::Kind kind)
{
    switch (kind) {
    case Answer::Kind::Data:
        return "data";
    case Answer::Kind::Acknowledge:
        return "ack";
    case Answer::Kind::Stall:
        return "STALL";
    case Answer::Kind::Silence:
        return "silence";
    }
    return "?";
}

std::string sha256(const Bytes& bytes)
{
    const std::unique_ptr<gchar, decltype(&g_free)> text(
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, bytes.data(), bytes.size()), &g_free);
    return text.get();
}

} // namespace

void writeReport(std::ostream& out, const LabelledUnit& unit, bool onBus)
{
    const std::string version = unit.unit->firmwareVersion();
    const Bytes content = unit.unit->applicationContent();
    out << "unit=" << unit.label << " mode=" << nameOf(unit.unit->mode())
        << " firmware=" << (version.empty() ? "-" : version) << " bus=" << (onBus ? "yes" : "no")
        << " length=" << content.size() << " sha256=" << sha256(content) << '\n';
}

void writeTrace(std::ostream& out, const LabelledUnit& unit)
{
    const auto trace = unit.unit->trace();
    for (const TraceEntry& entry : trace) {
        const std::chrono::duration<double> since = entry.time - trace.front().time;
        std::array<char, 160> line{};
        std::snprintf(
            line.data(), line.size(),
            "%9.3f %-11s %-11s %02x %02x value=%04x index=%04x length=%u out=%zu %s in=%zu",
            since.count(), nameOf(entry.mode), entry.name.c_str(), entry.setup.bmRequestType,
            entry.setup.bRequest, entry.setup.wValue, entry.setup.wIndex, entry.setup.wLength,
            entry.payload.size(), nameOf(entry.outcome), entry.answer.size());
        out << unit.label << ' ' << line.data() << '\n';
    }
}

} // namespace VirtualUnit
