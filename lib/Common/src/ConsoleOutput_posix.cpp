// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/ConsoleOutput.h"

namespace Common {

struct ConsoleOutput::Restored
{
};

ConsoleOutput::ConsoleOutput() = default;
ConsoleOutput::~ConsoleOutput() = default;

} // namespace Common
