// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibUsbDevice.h"

namespace USB {

/// Receives the differences between two listings of the bus. Called on the main thread. Not owned
/// by the enumerator.
class LibusbDeviceEnumeratorListener
{
public:
    virtual ~LibusbDeviceEnumeratorListener() = default;

    /// A device arrived.
    /// @return true when this listener takes the device: later listeners are not called
    virtual bool cb_libusbDeviceAdded(P_LibUsbDevice device) = 0;

    /// A device left. @p device is the record that was passed on its arrival.
    /// @return true when this listener has handled the removal: later listeners are not called
    virtual bool cb_libusbDeviceRemoved(P_LibUsbDevice device) = 0;
};

} // namespace USB
