#include "unit/RequestName.h"

#include "unit/Protocol.h"

namespace VirtualUnit {

namespace {

std::string downloadName(const SetupPacket& setup, const Bytes& data)
{
    if (setup.wLength == 0)
        return "finish";
    if (setup.wValue >= 2)
        return "write";
    if (setup.wValue == 0 && !data.empty()) {
        if (data[0] == DfuSe::SetAddress)
            return "set-address";
        if (data[0] == DfuSe::Erase)
            return "erase";
    }
    return "dnload";
}

std::string className(const SetupPacket& setup, const Bytes& data)
{
    switch (setup.bRequest) {
    case Dfu::Detach:
        return "detach";
    case Dfu::Download:
        return downloadName(setup, data);
    case Dfu::Upload:
        return "upload";
    case Dfu::GetStatus:
        return "getstatus";
    case Dfu::ClearStatus:
        return "clrstatus";
    case Dfu::GetState:
        return "getstate";
    case Dfu::Abort:
        return "abort";
    default:
        return "other";
    }
}

std::string vendorName(const SetupPacket& setup)
{
    switch (setup.bRequest) {
    case Vendor::FirmwareVersion:
        return "version";
    case Vendor::FirmwareRevision:
        return "revision";
    case Vendor::DropToBootloader:
        return "drop";
    case Vendor::ConfigurationPage:
        return "config";
    case Vendor::SchemaVersion:
        return "schema";
    default:
        return "other";
    }
}

std::string standardName(const SetupPacket& setup)
{
    if (setup.bRequest != Standard::GetDescriptor)
        return "standard";
    return setup.wValue >> 8 == Standard::StringDescriptor ? "string" : "descriptor";
}

} // namespace

std::string requestName(const SetupPacket& setup, const Bytes& data)
{
    if (setup.isClass())
        return className(setup, data);
    if (setup.isVendor())
        return vendorName(setup);
    return setup.isStandard() ? standardName(setup) : "other";
}

bool matchesName(const std::string& name, const SetupPacket& setup, const Bytes& data)
{
    if (name == "any")
        return true;
    if (name == "dnload")
        return setup.isClass() && setup.bRequest == Dfu::Download;
    return requestName(setup, data) == name;
}

const std::vector<std::string>& requestNames()
{
    static const std::vector<std::string> names = {
        "any",    "schema",    "config",    "version",  "revision", "drop",   "dnload",
        "erase",  "write",     "finish",    "upload",   "abort",    "detach", "set-address",
        "string", "getstatus", "clrstatus", "getstate", "standard", "other",  "descriptor"};
    return names;
}

} // namespace VirtualUnit
