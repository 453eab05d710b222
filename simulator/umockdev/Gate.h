#pragma once

#include <string>

namespace VirtualUnit {

/// The device node that a client polls: a FIFO. usbfs reports "writeable" when there is a finished
/// request to collect; a pipe of one page with a byte in it is full, hence not writeable, so the
/// byte stands for "nothing to collect". Not thread-safe.
class Gate
{
public:
    /// Makes the FIFO at \a path, and the folders above it. Throws std::system_error.
    explicit Gate(const std::string& path);
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    /// Removes the FIFO; clients that have it open keep it.
    ~Gate();

    void set(bool open);

private:
    std::string m_path;
    int m_descriptor = -1;
    bool m_open = true;
};

} // namespace VirtualUnit
