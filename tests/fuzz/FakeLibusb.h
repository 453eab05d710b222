#pragma once

#include "USB/LibUsbDevice.h"
#include "unit/SetupPacket.h"

#include <string>

namespace Fuzz {

/// How a control transfer ends.
struct ControlEnd
{
    int submission = 0;  ///< libusb's error when it is not even accepted
    int events = 0;      ///< libusb's error while its end is waited for, once
    bool silent = false; ///< it ends only when it is called off
    libusb_transfer_status status = LIBUSB_TRANSFER_COMPLETED;
    VirtualUnit::Bytes data{}; ///< of an IN request; what is beyond wLength does not arrive
};

/// The unit behind the fake: what the functions of libusb that the product calls answer. Errors are
/// libusb's negative codes.
class FakeUnit
{
public:
    enum class Call
    {
        DeviceDescriptor,
        Open,
        GetConfiguration,
        SetConfiguration,
        Claim,
        Release,
        AlternateSetting,
        ConfigurationDescriptor
    };

    virtual ~FakeUnit() = default;

    virtual quint16 productId() const = 0;
    virtual int result(Call call) = 0;
    /// The number of the active configuration.
    virtual int activeConfiguration() { return 1; }
    /// The configuration descriptor as the operating system keeps it: the bytes of USB 2.0, 9.6.3.
    virtual VirtualUnit::Bytes configuration() = 0;
    virtual int readString(std::uint8_t index, std::string& text) = 0;
    virtual ControlEnd control(const VirtualUnit::SetupPacket& setup,
                               const VirtualUnit::Bytes& data) = 0;
};

/// Stands in for the whole of libusb, at link time: a program with FakeLibusb.cpp has one device on
/// its bus, and no call reaches the system. It ends the process as a crash where libusb itself
/// would be undone: a handle used after its close, a transfer freed in flight, a reference given
/// back twice or never.
///
/// One unit and one thread at a time.
class FakeBus
{
public:
    /// @param unit answers from now on; outlives the bus
    explicit FakeBus(FakeUnit& unit);
    FakeBus(const FakeBus&) = delete;
    FakeBus& operator=(const FakeBus&) = delete;
    /// Everything must have been given back.
    ~FakeBus();

    /// A record as a listing of the bus makes it.
    USB::P_LibUsbDevice record() const;
};

} // namespace Fuzz
