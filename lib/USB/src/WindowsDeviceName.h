#pragma once

#include <QString>

namespace USB {

/// Extracts the vendor and product id from a Windows device interface name, which holds them as
/// "VID_16D0&PID_0C07" in either case; the first such place counts. An id that is not hexadecimal
/// gives 0. Any thread.
/// @return false, with both outputs untouched, when the name holds no such place.
bool parseWindowsDeviceName(const QString& name, quint16& vid, quint16& pid);

} // namespace USB
