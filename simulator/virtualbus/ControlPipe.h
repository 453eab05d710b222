#pragma once

#include <string>
#include <vector>

namespace VirtualUnit {

/// A FIFO into which others write lines while a command runs.
class ControlPipe
{
public:
    /// Opens the FIFO at @p path, or makes one and removes it again at the end. Throws
    /// std::invalid_argument with a text for the user when something else is there.
    explicit ControlPipe(const std::string& path);
    ControlPipe(const ControlPipe&) = delete;
    ControlPipe& operator=(const ControlPipe&) = delete;
    ~ControlPipe();

    /// For poll(): readable when lines may have come.
    int descriptor() const { return m_descriptor; }

    /// The complete lines that have come. A line over 64 KiB is dropped.
    std::vector<std::string> takeLines();

private:
    std::string m_path;
    std::string m_pending;
    int m_descriptor = -1;
    bool m_made = false;
};

} // namespace VirtualUnit
