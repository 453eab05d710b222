// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QString>

namespace USB {

/// Extracts the vendor and product id from a Windows device interface name. The name holds them as
/// "VID_16D0&PID_0C07", in upper or lower case; the first match counts. An id that is not
/// hexadecimal reads as 0. Any thread.
/// @return false, with both outputs unchanged, when nothing matches
bool parseWindowsDeviceName(const QString& name, quint16& vid, quint16& pid);

} // namespace USB
