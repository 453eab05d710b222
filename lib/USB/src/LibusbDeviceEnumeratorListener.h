#pragma once

#include "USB/LibUsbDevice.h"

namespace USB {

/// Receives the differences that an enumeration found. Called on the main thread; not owned by the
/// enumerator.
class LibusbDeviceEnumeratorListener
{
public:
    virtual ~LibusbDeviceEnumeratorListener() = default;

    /// A device appeared. True when this listener has taken it: later listeners are not asked.
    virtual bool cb_libusbDeviceAdded(P_LibUsbDevice device) = 0;

    /// A device vanished; @p device is the record that was offered when it appeared. True when this
    /// listener has dealt with it: later listeners are not asked.
    virtual bool cb_libusbDeviceRemoved(P_LibUsbDevice device) = 0;
};

} // namespace USB
