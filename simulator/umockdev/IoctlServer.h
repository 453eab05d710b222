#pragma once

#include "umockdev/ClientCount.h"
#include "umockdev/DeviceNode.h"

namespace VirtualUnit {

/// Makes the object that the testbed calls for the ioctls of a node. It keeps the node alive, and
/// clients keep it. They are counted in @p clients while they have the node open.
GObjectPtr<UMockdevIoctlBase> serveIoctls(const std::shared_ptr<DeviceNode>& node,
                                          const std::shared_ptr<ClientCount>& clients);

} // namespace VirtualUnit
