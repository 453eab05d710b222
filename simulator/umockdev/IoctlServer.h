// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "umockdev/DeviceNode.h"
#include "umockdev/GObjectPtr.h"

#include <atomic>

namespace VirtualUnit {

/// How many clients have a node of the bus open, including nodes of removed units.
using P_ClientCount = std::shared_ptr<std::atomic<int>>;

/// Makes the object that the testbed calls for the ioctls of a node. It keeps the node alive, and
/// clients keep it alive. They are counted in @p clients while they have the node open.
GObjectPtr<UMockdevIoctlBase> serveIoctls(const std::shared_ptr<DeviceNode>& node,
                                          const P_ClientCount& clients);

} // namespace VirtualUnit
