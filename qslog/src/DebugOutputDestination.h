#pragma once

#include "qslog/Destination.h"

namespace QsLogging {

/// Writes lines to the platform's debugger output channel, with colours only when colours() is set.
/// Takes no lock; the channel serialises by itself. Any thread.
class DebugOutputDestination : public Destination
{
public:
    void write(const QString& message, Level level) override;
    bool isValid() override { return true; }
};

/// A new destination with colours off. The caller keeps it and shares it.
std::shared_ptr<DebugOutputDestination> debugOutputDestination();

} // namespace QsLogging
