// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QtGlobal>

#include <libusb.h>

#include <atomic>

namespace USB {

/// The setup packet of a control transfer (USB 2.0, 9.3) and its time-out.
struct ControlRequest
{
    quint8 requestType = 0;
    quint8 request = 0;
    quint16 value = 0;
    quint16 index = 0;
    unsigned timeoutMs = 0; ///< milliseconds; 0 waits indefinitely
};

/// Runs one control transfer to completion, like libusb_control_transfer(), but cancels it within
/// 100 ms after @p aborted becomes true. @p data holds at least @p length bytes; the direction bit
/// of the request type decides whether it is read or written. Logs the request at DEBUG and its
/// first bytes at TRACE. Any thread, except inside a libusb callback.
/// @return the number of bytes transferred, or libusb's negative error code;
///         LIBUSB_ERROR_INTERRUPTED when it was cancelled through @p aborted
int controlTransfer(libusb_device_handle* handle, const ControlRequest& request,
                    unsigned char* data, quint16 length, const std::atomic<bool>& aborted);

} // namespace USB
