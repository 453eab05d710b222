// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibUsbDevice.h"

#include <atomic>

namespace USB {

/// The libusb session of the process, on libusb's default context. init() opens it, program exit
/// closes it. Listings may run on any thread while it is open.
class LibUSB
{
public:
    /// The instance of the process. Lives until program exit.
    static LibUSB& instance();

    LibUSB() = default;
    LibUSB(const LibUSB&) = delete;
    LibUSB& operator=(const LibUSB&) = delete;
    ~LibUSB();

    /// Opens the session; a second call only logs. Main thread.
    /// @throws USBException "Error initializing libusb: %1" with libusb's error name
    void init();

    /// Closes the session if it is open. Main thread.
    void exit();

    bool initialized() const { return m_initialized; }

    /// Lists the bus in libusb's order. A zero @p vid or @p pid is a wildcard. The caller owns the
    /// records and releases each with releaseLibUsbDevice(). The list is empty when the bus is
    /// empty or cannot be listed. A device whose descriptor cannot be read is omitted with a
    /// warning; if both arguments are wildcards it is kept, with zeros as descriptor. Any thread.
    /// @throws USBException when the session is not open
    QList<LibUsbDevice*> findRaw(quint16 vid, quint16 pid);

    /// As findRaw(), with shared ownership of the records.
    QList<P_LibUsbDevice> find(quint16 vid, quint16 pid);

    /// Sleeps @p delayMs milliseconds, then calls find(). Any thread.
    /// @throws USBException when the session is not open, without the sleep
    QList<P_LibUsbDevice> find_delayed(int delayMs, quint16 vid, quint16 pid);

private:
    // Written on the main thread at start-up and exit, read by listings on pool threads.
    std::atomic<bool> m_initialized{false};
};

} // namespace USB
