// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/RequestName.h"

#include "unit/Protocol.h"

#include <algorithm>
#include <iterator>

namespace VirtualUnit {

namespace {

constexpr int anyRequest = -1;

struct Row
{
    const char* name;
    std::uint8_t type; ///< SetupPacket::type()
    int request;       ///< bRequest, or anyRequest
    bool (*fits)(const SetupPacket&, const Bytes&) = nullptr;
};

template <std::uint8_t Code>
bool isCommand(const SetupPacket& setup, const Bytes& data)
{
    return setup.wValue == 0 && !data.empty() && data[0] == Code;
}

/// The first row that fits names the request.
constexpr Row rows[] = {
    {"version", SetupPacket::Vendor, Vendor::FirmwareVersion},
    {"revision", SetupPacket::Vendor, Vendor::FirmwareRevision},
    {"drop", SetupPacket::Vendor, Vendor::DropToBootloader},
    {"config", SetupPacket::Vendor, Vendor::ConfigurationPage},
    {"schema", SetupPacket::Vendor, Vendor::SchemaVersion},
    {"detach", SetupPacket::Class, Dfu::Detach},
    {"finish", SetupPacket::Class, Dfu::Download,
     [](const SetupPacket& setup, const Bytes&) {
         return setup.wLength == 0;
     }},
    {"write", SetupPacket::Class, Dfu::Download,
     [](const SetupPacket& setup, const Bytes&) {
         return setup.wValue >= DfuSe::FirstDataBlock;
     }},
    {"set-address", SetupPacket::Class, Dfu::Download, isCommand<DfuSe::SetAddress>},
    {"erase", SetupPacket::Class, Dfu::Download, isCommand<DfuSe::Erase>},
    {"dnload", SetupPacket::Class, Dfu::Download},
    {"upload", SetupPacket::Class, Dfu::Upload},
    {"getstatus", SetupPacket::Class, Dfu::GetStatus},
    {"clrstatus", SetupPacket::Class, Dfu::ClearStatus},
    {"getstate", SetupPacket::Class, Dfu::GetState},
    {"abort", SetupPacket::Class, Dfu::Abort},
    {"string", SetupPacket::Standard, Standard::GetDescriptor,
     [](const SetupPacket& setup, const Bytes&) {
         return setup.wValue >> 8 == Standard::StringDescriptor;
     }},
    {"descriptor", SetupPacket::Standard, Standard::GetDescriptor},
    {"standard", SetupPacket::Standard, anyRequest},
};

} // namespace

std::string requestName(const SetupPacket& setup, const Bytes& data)
{
    for (const Row& row : rows) {
        if (row.type == setup.type() &&
            (row.request == setup.bRequest || row.request == anyRequest) &&
            (row.fits == nullptr || row.fits(setup, data)))
            return row.name;
    }
    return "other";
}

bool matchesName(const std::string& name, const SetupPacket& setup, const Bytes& data)
{
    const bool isDownload = setup.type() == SetupPacket::Class && setup.bRequest == Dfu::Download;
    return name == "any" || (name == "dnload" ? isDownload : requestName(setup, data) == name);
}

bool isRequestName(const std::string& name)
{
    return name == "any" || name == "other" ||
           std::any_of(std::begin(rows), std::end(rows),
                       [&name](const Row& row) { return name == row.name; });
}

} // namespace VirtualUnit
