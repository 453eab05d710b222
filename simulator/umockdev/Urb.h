// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Response.h"

#include <memory>
#include <umockdev.h>

namespace VirtualUnit {

struct IoctlDataUnref
{
    void operator()(UMockdevIoctlData* data) const { umockdev_ioctl_data_unref(data); }
};
using P_IoctlData = std::unique_ptr<UMockdevIoctlData, IoctlDataUnref>;

/// The @p size bytes that the argument of the client's ioctl points to; null when it points
/// nowhere.
P_IoctlData resolveArgument(UMockdevIoctlClient* client, std::size_t size);

/// One control request that a client has submitted and not yet reaped: the URB in the client's
/// memory and its buffer. Reads and writes of the client's memory go through the socket on which
/// the client waits for its ioctl, so they are made on the bus's thread, while an ioctl is handled.
class Urb
{
public:
    /// Takes the URB from the client's SUBMITURB. Returns errno, and leaves @p urb empty, when the
    /// kernel would refuse it.
    static int fetch(UMockdevIoctlClient* client, std::shared_ptr<Urb>& urb);

    UMockdevIoctlClient* client() const { return m_client; }
    unsigned long address() const { return m_urb->client_addr; }
    const SetupPacket& setup() const { return m_setup; }
    const Bytes& payload() const { return m_payload; }

    /// Completes the request with the unit's response; does nothing for silence. Touches no client
    /// memory.
    void complete(const Response& response);
    /// Completes the request with a negative errno, as the kernel reports it. Touches no client
    /// memory.
    void fail(int status);
    bool isComplete() const { return m_complete; }

    /// Writes the result to the client's memory.
    void deliver();
    UMockdevIoctlData* data() const { return m_urb.get(); }

private:
    Urb() = default;

    UMockdevIoctlClient* m_client = nullptr;
    P_IoctlData m_urb;
    P_IoctlData m_buffer;
    SetupPacket m_setup;
    Bytes m_payload;
    bool m_complete = false;
    int m_status = 0;
    Bytes m_received;
};

} // namespace VirtualUnit
