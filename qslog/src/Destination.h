#pragma once

#include "qslog/Level.h"

#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

namespace QsLogging {

/// A place where log lines go. Shared by the loggers that write to it and by the registry; lives
/// until the process ends. Two loggers may enter one destination at once, so an implementation
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

    /// Whether the destination can take lines at present.
    virtual bool isValid() = 0;

    /// Starts a new, empty log where the destination has such a notion; true on success. The base
    /// does nothing and answers true.
    virtual bool rotate();

    /// Whether colour escapes are kept, for destinations that can show them; false at first.
    bool colours() const { return m_colours; }
    void setColours(bool colours) { m_colours = colours; }

protected:
    std::mutex m_mutex;

private:
    std::atomic<bool> m_colours{false};
};

using P_Destination = std::shared_ptr<Destination>;

} // namespace QsLogging
