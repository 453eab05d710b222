// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/SetupPacket.h"

#include <string>

namespace VirtualUnit {

/// A short name for a control request, for traces and faults: "schema", "config", "version",
/// "revision", "drop", "dnload", "set-address", "erase", "write", "finish", "upload", "getstatus",
/// "clrstatus", "getstate", "abort", "detach", "descriptor", "string", "standard", "other".
std::string requestName(const SetupPacket& setup, const Bytes& data);

/// Whether the request has that name. "any" matches every request, "dnload" every DNLOAD with any
/// payload.
bool matchesName(const std::string& name, const SetupPacket& setup, const Bytes& data);

/// Whether matchesName() knows that name.
bool isRequestName(const std::string& name);

} // namespace VirtualUnit
