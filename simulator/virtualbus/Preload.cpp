// SPDX-License-Identifier: LicenseRef-Proprietary
#include "virtualbus/Preload.h"

#include "umockdev/VirtualBus.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace VirtualUnit {

namespace {

constexpr char library[] = "libumockdev-preload.so.0";

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

} // namespace

void ensurePreload(char** arguments)
{
    if (VirtualBus::available())
        return;
    const char* before = std::getenv("LD_PRELOAD");
    std::string list = before != nullptr ? before : "";
    if (list.find(library) != std::string::npos)
        throw std::runtime_error(std::string(library) +
                                 " cannot be loaded: is umockdev installed?");
    list = sanitizerRuntime() + ' ' + library + ' ' + list;
    setenv("LD_PRELOAD", list.c_str(), 1);
    execv("/proc/self/exe", arguments);
    throw std::runtime_error(std::string("cannot restart: ") + std::strerror(errno));
}

} // namespace VirtualUnit
