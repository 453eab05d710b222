#include "umockdev/IoctlServer.h"

namespace VirtualUnit {

namespace {

struct Served
{
    std::shared_ptr<DeviceNode> node;
    std::shared_ptr<ClientCount> clients;
};

/// What is remembered of a client until it goes.
struct Watch
{
    std::weak_ptr<DeviceNode> node;
    std::shared_ptr<ClientCount> clients;
};

gboolean onIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer served)
{
    static_cast<Served*>(served)->node->handleIoctl(client);
    return TRUE;
}

void onVanished(gpointer watch, GObject* client)
{
    const std::unique_ptr<Watch> ended(static_cast<Watch*>(watch));
    if (const auto node = ended->node.lock())
        node->clientVanished(client);
    ended->clients->change(-1);
}

void onConnected(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer served)
{
    // The testbed has a signal for a client that goes, but never emits it.
    const auto* self = static_cast<Served*>(served);
    self->clients->change(1);
    g_object_weak_ref(G_OBJECT(client), &onVanished, new Watch{self->node, self->clients});
}

void drop(gpointer served, GClosure*)
{
    delete static_cast<Served*>(served);
}

} // namespace

GObjectPtr<UMockdevIoctlBase> serveIoctls(const std::shared_ptr<DeviceNode>& node,
                                          const std::shared_ptr<ClientCount>& clients)
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
