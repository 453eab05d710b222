#pragma once

#include <string>

namespace VirtualUnit {

/// The device node that a client polls: a FIFO. usbfs reports "writeable" when there is a finished
/// request to collect; a pipe of one page with a byte in it is full, hence not writeable, so the
/// byte stands for "nothing to collect". Not thread-safe.
class PollFifo
{
public:
    /// Makes the FIFO at @p path, and the folders above it. Throws std::system_error.
    explicit PollFifo(const std::string& path);
    PollFifo(const PollFifo&) = delete;
    PollFifo& operator=(const PollFifo&) = delete;
    /// Removes the FIFO; clients that have it open keep it.
    ~PollFifo();

    void set(bool open);

private:
    std::string m_path;
    int m_descriptor = -1;
    bool m_open = true;
};

} // namespace VirtualUnit
