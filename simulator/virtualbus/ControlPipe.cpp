#include "virtualbus/ControlPipe.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace VirtualUnit {

namespace {

constexpr std::size_t longestLine = 65536;

} // namespace

ControlPipe::ControlPipe(const std::string& path)
    : m_path(path)
{
    if (mkfifo(path.c_str(), 0600) == 0)
        m_made = true;
    else if (errno != EEXIST)
        throw std::invalid_argument("cannot make " + path + ": " + std::strerror(errno));
    // Both ends, so that it does not end when a writer goes.
    m_descriptor = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    struct stat facts = {};
    if (m_descriptor < 0 || fstat(m_descriptor, &facts) != 0 || !S_ISFIFO(facts.st_mode)) {
        if (m_descriptor >= 0)
            close(m_descriptor);
        throw std::invalid_argument("not a FIFO that can be read: " + path);
    }
}

ControlPipe::~ControlPipe()
{
    close(m_descriptor);
    if (m_made)
        unlink(m_path.c_str());
}

std::vector<std::string> ControlPipe::takeLines()
{
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = read(m_descriptor, buffer.data(), buffer.size())) > 0)
        m_pending.append(buffer.data(), static_cast<std::size_t>(count));
    std::vector<std::string> lines;
    std::size_t end = 0;
    while ((end = m_pending.find('\n')) != std::string::npos) {
        lines.push_back(m_pending.substr(0, end));
        m_pending.erase(0, end + 1);
    }
    if (m_pending.size() > longestLine)
        m_pending.clear();
    return lines;
}

} // namespace VirtualUnit
