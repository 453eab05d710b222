// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QString>

#include <functional>

/// What the action writes to the platform's diagnostic channel, see DebugOutputDestination. One
/// thread at a time.
QString debugOutputOf(const std::function<void()>& action);
