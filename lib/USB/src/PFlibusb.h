#pragma once

#include "USB/LibUsbDevice.h"

#include <atomic>

namespace USB {

/// The process's one libusb session, on libusb's default context. Closed at first; init() opens it,
/// program exit closes it. Listings may run on any thread while it is open.
class LibUSB
{
public:
    /// The process-wide instance; lives until program exit.
    static LibUSB& instance();

    LibUSB() = default;
    LibUSB(const LibUSB&) = delete;
    LibUSB& operator=(const LibUSB&) = delete;
    ~LibUSB();

    /// Opens the session; a second call only logs. Main thread.
    /// @throws USBException "Error initializing libusb: %1" with libusb's error name.
    void init();

    /// Closes the session if it is open. Runs at program exit.
    void exit();

    bool initialized() const { return m_initialized; }

    /// Lists the bus in libusb's order. A zero @p vid or @p pid is a wildcard. The caller owns the
    /// records and ends each with releaseLibUsbDevice(). An empty bus, or one that cannot be
    /// listed, gives an empty list; a device whose descriptor cannot be read is left out with a
    /// warning, unless both arguments are wildcards. Any thread.
    /// @throws USBException when the session is not open.
    QList<LibUsbDevice*> findRaw(quint16 vid, quint16 pid);

    /// findRaw() with each record in its shared pointer.
    QList<P_LibUsbDevice> find(quint16 vid, quint16 pid);

    /// Sleeps @p delayMs milliseconds, then find(). Any thread.
    /// @throws USBException at once, without the sleep, when the session is not open.
    QList<P_LibUsbDevice> find_delayed(int delayMs, quint16 vid, quint16 pid);

private:
    // Written on the main thread at start-up and exit, read by listings on pool threads.
    std::atomic<bool> m_initialized{false};
};

} // namespace USB
