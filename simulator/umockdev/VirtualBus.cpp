// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/VirtualBus.h"

#include "umockdev/GObjectPtr.h"
#include "umockdev/Testbed.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

namespace VirtualUnit {

namespace {

const std::string library = "libumockdev-preload.so.0";

bool isLoaded()
{
    void* handle = dlopen(library.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    return handle != nullptr && dlclose(handle) == 0;
}

/// The sanitizer runtime of this program, if any: it has to be the first in the list.
std::string sanitizerRuntime()
{
    for (const char* symbol : {"__asan_init", "__tsan_init"}) {
        Dl_info info{};
        const void* address = dlsym(RTLD_DEFAULT, symbol);
        if (address != nullptr && dladdr(address, &info) != 0 && info.dli_fname != nullptr)
            return info.dli_fname;
    }
    return {};
}

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
    if (!isLoaded())
        throw std::runtime_error("the virtual bus needs LD_PRELOAD=" + library);
    checkTemporaryFolder();
    return std::make_unique<Testbed>();
}

VirtualBus::VirtualBus()
    : Bus(makeHost())
{
}

void VirtualBus::ensurePreload(char** arguments)
{
    if (isLoaded())
        return;
    const char* before = std::getenv("LD_PRELOAD");
    const std::string list = before != nullptr ? before : "";
    if (list.find(library) != std::string::npos)
        throw std::runtime_error(library + " cannot be loaded: is umockdev installed?");
    setenv("LD_PRELOAD", (sanitizerRuntime() + ' ' + library + ' ' + list).c_str(), 1);
    execv("/proc/self/exe", arguments);
    throw std::runtime_error(std::string("cannot restart: ") + std::strerror(errno));
}

} // namespace VirtualUnit
