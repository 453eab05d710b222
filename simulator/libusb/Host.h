// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/BusHost.h"

#include <QtGlobal>

#include <condition_variable>
#include <libusb.h>
#include <list>
#include <map>

/// Begins a function that the library exports. The contracts are those of libusb 1.0.26.
#define API(type) extern "C" Q_DECL_EXPORT type LIBUSB_CALL

/// One stay of a unit on the bus. It is kept until libusb_exit(), so that references need no count.
struct libusb_device
{
    const VirtualUnit::P_Unit unit;
    const std::uint8_t port;
    const std::uint8_t address;
    const VirtualUnit::BusHost::OnDeparture onDeparture;
    const VirtualUnit::Bytes descriptors;        ///< Unit::descriptors() at its arrival
    bool present = true;                         ///< guarded by the host's lock
    const libusb_device_handle* owner = nullptr; ///< of the interface; guarded as well
};

struct libusb_device_handle
{
    libusb_device& device;
};

namespace VirtualUnit {

/// Shows the units of a bus to the process that this library is loaded into, and to no other. The
/// library's functions work on its data, with the lock held.
class Host : public BusHost
{
public:
    using Lock = std::unique_lock<std::recursive_mutex>;

    /// Submitted transfers, which hold their results already, and when they end. Their callbacks
    /// run after that, when events are handled.
    using Transfers = std::map<libusb_transfer*, Clock::time_point>;

    unsigned ports() const override { return 50; }
    void add(unsigned port, const P_Unit& unit, const OnDeparture& onDeparture) override;
    void remove(unsigned port) override;

    /// Ends a transfer now and without data, unless it is due already.
    void end(Transfers::value_type& pending, libusb_transfer_status status);

    std::recursive_mutex mutex; ///< callbacks run with it held and may call the library
    std::condition_variable_any changed;
    std::list<libusb_device> devices;
    Transfers transfers;
    libusb_hotplug_callback_fn onHotplug = nullptr; ///< called on the bus's threads
    void* hotplugData = nullptr;

private:
    /// Reports a change as programs on this system expect it. Called without the lock.
    void notify(libusb_device& device, bool arrived);
};

/// The host between libusb_init() and libusb_exit().
Host& host();

} // namespace VirtualUnit
