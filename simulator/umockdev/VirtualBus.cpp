// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/VirtualBus.h"

#include "umockdev/GObjectPtr.h"
#include "umockdev/Testbed.h"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace VirtualUnit {

namespace {

// umockdev ends the process if it cannot make its folder.
void checkTemporaryFolder()
{
    GError* error = nullptr;
    gchar* folder = g_dir_make_tmp("virtualbus-XXXXXX", &error);
    throwUnless(folder != nullptr, "cannot use the temporary folder of TMPDIR", error);
    rmdir(folder);
    g_free(folder);
}

} // namespace

std::unique_ptr<BusHost> VirtualBus::makeHost()
{
    if (!available())
        throw std::runtime_error("the virtual bus needs LD_PRELOAD=libumockdev-preload.so.0");
    checkTemporaryFolder();
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
