// SPDX-License-Identifier: LicenseRef-Proprietary
#include "libusb/Host.h"

#include <dbt.h>

using namespace VirtualUnit;

/// Sends what the system sends to a window that registered for USB devices.
void Host::notify(libusb_device& device, bool arrived)
{
    alignas(DEV_BROADCAST_DEVICEINTERFACE_W) char memory[512] = {};
    auto& broadcast = *reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_W*>(memory);
    broadcast.dbcc_size = sizeof memory;
    broadcast.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    broadcast.dbcc_classguid = {
        0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
    // A device path without its end, which repeats the class.
    wsprintfW(broadcast.dbcc_name, L"\\\\?\\USB#VID_%04X&PID_%04X#%S",
              readNumber(&device.descriptors[8], 2), readNumber(&device.descriptors[10], 2),
              device.unit->stringText(Descriptors::SerialString).c_str());
    const WPARAM event = arrived ? DBT_DEVICEARRIVAL : DBT_DEVICEREMOVECOMPLETE;
    for (HWND window = nullptr;
         (window = FindWindowExW(nullptr, window, nullptr, nullptr)) != nullptr;) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId() && IsWindowVisible(window) != FALSE)
            SendMessageW(window, WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(memory));
    }
}
