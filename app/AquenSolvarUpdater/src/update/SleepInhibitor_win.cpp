// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/Log.h"
#include "update/SleepInhibitor.h"

#include <windows.h>

namespace AquenSolvar {

class SleepInhibitor::Locks
{
public:
    Locks()
    {
        if (SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED) == 0)
            QLOG_INFO() << "The system does not promise to stay awake.";
    }
    ~Locks() { SetThreadExecutionState(ES_CONTINUOUS); }
};

SleepInhibitor::SleepInhibitor(const QString& /*reason*/)
    : m_locks(std::make_unique<Locks>())
{
}

SleepInhibitor::~SleepInhibitor() = default;

} // namespace AquenSolvar
