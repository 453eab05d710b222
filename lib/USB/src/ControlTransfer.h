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
    unsigned timeoutMs = 0; ///< milliseconds; 0 waits for ever
};

/// Runs one control transfer and waits for its end, like libusb_control_transfer(), but can be
/// called off: within 100 ms after @p aborted turns true the transfer is cancelled. @p data is read
/// or filled according to the direction bit of the request type and must hold @p length bytes.
/// Any thread, except inside a libusb callback.
/// @return the count of bytes transferred, or libusb's negative error code;
///         LIBUSB_ERROR_INTERRUPTED when it was called off.
int controlTransfer(libusb_device_handle* handle, const ControlRequest& request,
                    unsigned char* data, quint16 length, const std::atomic<bool>& aborted);

} // namespace USB
