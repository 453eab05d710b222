// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/VirtualBus.h"

#include "umockdev/Testbed.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace VirtualUnit {

std::unique_ptr<BusHost> VirtualBus::makeHost()
{
    if (!available())
        throw std::runtime_error("the virtual bus needs LD_PRELOAD=libumockdev-preload.so.0");
    return std::make_unique<Testbed>();
}

VirtualBus::VirtualBus()
    : Bus(makeHost())
{
}

bool VirtualBus::available()
{
    const char* preload = std::getenv("LD_PRELOAD");
    return preload != nullptr &&
           std::string(preload).find("libumockdev-preload") != std::string::npos;
}

} // namespace VirtualUnit
