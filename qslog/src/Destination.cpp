#include "qslog/Destination.h"

namespace QsLogging {

Destination::~Destination() = default;

bool Destination::rotate()
{
    return true;
}

} // namespace QsLogging
