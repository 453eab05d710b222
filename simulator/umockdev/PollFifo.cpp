// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/PollFifo.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace VirtualUnit {

PollFifo::PollFifo(const std::string& path)
    : m_path(path)
{
    constexpr int onePage = 4096;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    if (mkfifo(path.c_str(), 0600) == 0)
        m_descriptor = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (m_descriptor < 0 || fcntl(m_descriptor, F_SETPIPE_SZ, onePage) < 0) {
        const std::error_code error(errno, std::generic_category());
        close(m_descriptor);
        throw std::system_error(error, "cannot make the device node " + path);
    }
    setWriteable(false);
}

PollFifo::~PollFifo()
{
    unlink(m_path.c_str());
    close(m_descriptor);
}

void PollFifo::setWriteable(bool writeable)
{
    if (writeable == m_writeable)
        return;
    char token = 0;
    // This fails only if a client that reads or writes the node itself has moved the byte; then the
    // FIFO is in the wanted state already.
    [[maybe_unused]] const ssize_t moved =
        writeable ? read(m_descriptor, &token, 1) : write(m_descriptor, &token, 1);
    m_writeable = writeable;
}

} // namespace VirtualUnit
