#include "umockdev/PollFifo.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace VirtualUnit {

namespace {

constexpr int onePage = 4096;

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

PollFifo::PollFifo(const std::string& path)
    : m_path(path)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    if (mkfifo(path.c_str(), 0600) != 0)
        fail("cannot make the device node " + path);
    m_descriptor = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (m_descriptor < 0 || fcntl(m_descriptor, F_SETPIPE_SZ, onePage) < 0) {
        const int error = errno;
        if (m_descriptor >= 0)
            close(m_descriptor);
        unlink(path.c_str());
        errno = error;
        fail("cannot open the device node " + path);
    }
    set(false);
}

PollFifo::~PollFifo()
{
    unlink(m_path.c_str());
    close(m_descriptor);
}

void PollFifo::set(bool open)
{
    if (open == m_open)
        return;
    char token = 0;
    const ssize_t moved = open ? read(m_descriptor, &token, 1) : write(m_descriptor, &token, 1);
    // Only a client that reads or writes the node itself can have moved the byte; then the pollFifo
    // is where it was wanted anyway.
    static_cast<void>(moved);
    m_open = open;
}

} // namespace VirtualUnit
