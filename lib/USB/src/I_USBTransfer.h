// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

namespace USB {

/// An asynchronous transfer as the event loop of a USBDevice sees it. Not owned by the device; it
/// must live until the device is stopped.
class I_USBTransfer
{
public:
    virtual ~I_USBTransfer() = default;

    /// Requests cancellation. Returns at once.
    virtual void cancel() = 0;

    /// Whether libusb has completed the transfer.
    virtual bool isDone() const = 0;
};

} // namespace USB
