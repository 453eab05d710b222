#pragma once

#include "unit/SetupPacket.h"

#include <string>
#include <vector>

namespace VirtualUnit {

/// A short name for what a control request asks, used by traces and scripts: "schema", "config",
/// "version", "revision", "drop", "dnload", "set-address", "erase", "write", "finish", "upload",
/// "getstatus", "clrstatus", "getstate", "abort", "detach", "descriptor", "string", "standard",
/// "other".
std::string requestName(const SetupPacket& setup, const Bytes& data);

/// Whether the request goes by @p name. "any" matches every request, "dnload" every DNLOAD whatever
/// it carries.
bool matchesName(const std::string& name, const SetupPacket& setup, const Bytes& data);

/// All names that matchesName understands.
const std::vector<std::string>& requestNames();

} // namespace VirtualUnit
