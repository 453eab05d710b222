// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <string>

namespace VirtualUnit {

/// The device node that a client polls: a FIFO. usbfs reports "writeable" when there is a finished
/// request to reap; a pipe of one page with a byte in it is full, hence not writeable, so the byte
/// means "nothing to reap". Not thread-safe.
class PollFifo
{
public:
    /// Makes the FIFO at @p path, and the folders above it. Throws std::system_error.
    explicit PollFifo(const std::string& path);
    PollFifo(const PollFifo&) = delete;
    PollFifo& operator=(const PollFifo&) = delete;
    /// Removes the FIFO; clients that have it open keep it.
    ~PollFifo();

    /// Makes the FIFO writeable or not; it is not at first.
    void setWriteable(bool writeable);

private:
    std::string m_path;
    int m_descriptor = -1;
    bool m_writeable = true;
};

} // namespace VirtualUnit
