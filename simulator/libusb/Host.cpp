// SPDX-License-Identifier: LicenseRef-Proprietary
#include "libusb/Host.h"

#include <algorithm>

using namespace VirtualUnit;

void Host::add(unsigned port, const P_Unit& unit, const OnDeparture& onDeparture)
{
    Lock lock(mutex);
    const auto address = static_cast<std::uint8_t>(devices.size() % 127 + 1);
    devices.push_back({unit, std::uint8_t(port), address, onDeparture, unit->descriptors()});
    lock.unlock();
    notify(devices.back(), true);
}

void Host::remove(unsigned port)
{
    Lock lock(mutex);
    libusb_device& device =
        *std::find_if(devices.begin(), devices.end(),
                      [port](const auto& known) { return known.present && known.port == port; });
    device.present = false;
    for (auto& pending : transfers) {
        if (&pending.first->dev_handle->device == &device)
            end(pending, LIBUSB_TRANSFER_NO_DEVICE);
    }
    lock.unlock();
    notify(device, false);
}

void Host::end(Transfers::value_type& pending, libusb_transfer_status status)
{
    if (pending.second <= Clock::now())
        return;
    pending.second = Clock::now();
    pending.first->status = status;
    changed.notify_all();
}
