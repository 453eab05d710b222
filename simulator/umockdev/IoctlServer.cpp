// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/IoctlServer.h"

namespace VirtualUnit {

namespace {

struct Served
{
    std::shared_ptr<DeviceNode> node;
    P_ClientCount clients;
};

gboolean onIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer served)
{
    static_cast<Served*>(served)->node->handleIoctl(client);
    return TRUE;
}

void onVanished(gpointer served, GObject* client)
{
    const std::unique_ptr<Served> owner(static_cast<Served*>(served));
    owner->node->clientVanished(client);
    --*owner->clients;
}

void onConnected(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer served)
{
    // The testbed has a signal for a client that disconnects, but never emits it.
    const auto* self = static_cast<Served*>(served);
    ++*self->clients;
    g_object_weak_ref(G_OBJECT(client), &onVanished, new Served(*self));
}

void drop(gpointer served, GClosure*)
{
    delete static_cast<Served*>(served);
}

} // namespace

GObjectPtr<UMockdevIoctlBase> serveIoctls(const std::shared_ptr<DeviceNode>& node,
                                          const P_ClientCount& clients)
{
    GObjectPtr<UMockdevIoctlBase> handler(umockdev_ioctl_base_new());
    const auto connect = [&](const char* signal, GCallback callback) {
        g_signal_connect_data(handler.get(), signal, callback, new Served{node, clients}, &drop,
                              static_cast<GConnectFlags>(0));
    };
    connect("handle-ioctl", G_CALLBACK(&onIoctl));
    connect("client-connected", G_CALLBACK(&onConnected));
    return handler;
}

} // namespace VirtualUnit
