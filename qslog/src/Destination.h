// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/Level.h"

#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

namespace QsLogging {

/// A place where log lines go. Shared by the loggers that write to it and by the registry; lives
/// until the process ends. Two loggers may enter one destination at once: an implementation
/// serialises its own writes where that matters.
class Destination
{
public:
    Destination() = default;
    Destination(const Destination&) = delete;
    Destination& operator=(const Destination&) = delete;
    virtual ~Destination();

    /// Writes one finished line, without its line end. Never throws; a destination that cannot
    /// write drops the line. Any thread.
    virtual void write(const QString& message, Level level) = 0;

    /// Whether the destination can take lines at present. Any thread.
    virtual bool isValid() = 0;

    /// Starts a new, empty log where the destination has such a notion. True on success; the base
    /// does nothing and returns true. Any thread.
    virtual bool rotate();

    /// Whether colour escapes are kept, for destinations that can show them. Initially false.
    bool colours() const { return m_colours; }
    void setColours(bool colours) { m_colours = colours; }

protected:
    std::mutex m_mutex;

private:
    std::atomic<bool> m_colours{false};
};

using P_Destination = std::shared_ptr<Destination>;

/// The text without its ANSI colour escapes: ESC [ digits and semicolons m. Any thread.
QString withoutColours(const QString& text);

} // namespace QsLogging
