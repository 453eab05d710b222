#include "VirtualBus.h"

#include "Testbed.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace VirtualUnit {

namespace {

std::unique_ptr<BusHost> makeTestbed()
{
    if (!VirtualBus::available())
        throw std::runtime_error("the virtual bus needs LD_PRELOAD=libumockdev-preload.so.0");
    return std::make_unique<Testbed>();
}

} // namespace

VirtualBus::VirtualBus()
    : Bus(makeTestbed())
{
}

bool VirtualBus::available()
{
    const char* preload = std::getenv("LD_PRELOAD");
    return preload != nullptr &&
           std::string(preload).find("libumockdev-preload") != std::string::npos;
}

} // namespace VirtualUnit
