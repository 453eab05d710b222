// In the place of the product's: a fuzzed update asks nothing of the machine that it runs on.
#include "update/SleepInhibitor.h"

namespace AquenSolvar {

class SleepInhibitor::Locks
{
};

SleepInhibitor::SleepInhibitor(const QString&) {}

SleepInhibitor::~SleepInhibitor() = default;

} // namespace AquenSolvar
