// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <cstdint>

/// The numbers of a unit's protocols.
namespace VirtualUnit {

/// USB 2.0, tables 9-4 and 9-5.
namespace Standard {
constexpr std::uint8_t GetStatus = 0;
constexpr std::uint8_t GetDescriptor = 6;
constexpr std::uint8_t GetConfiguration = 8;
constexpr std::uint8_t SetConfiguration = 9;
constexpr std::uint8_t GetInterface = 10;
constexpr std::uint8_t SetInterface = 11;

constexpr std::uint8_t DeviceDescriptor = 1;
constexpr std::uint8_t ConfigurationDescriptor = 2;
constexpr std::uint8_t StringDescriptor = 3;
} // namespace Standard

/// The units' own requests in application mode.
namespace Vendor {
constexpr std::uint8_t FirmwareVersion = 0x24;
constexpr std::uint8_t FirmwareRevision = 0x25;
constexpr std::uint8_t DropToBootloader = 0x26;
constexpr std::uint8_t ConfigurationPage = 0x27;
constexpr std::uint8_t SchemaVersion = 0x29;
} // namespace Vendor

/// USB Device Firmware Upgrade 1.1, table 3.2 and section 6.1.2: what the units use of it.
namespace Dfu {
constexpr std::uint8_t Detach = 0;
constexpr std::uint8_t Download = 1;
constexpr std::uint8_t Upload = 2;
constexpr std::uint8_t GetStatus = 3;
constexpr std::uint8_t ClearStatus = 4;
constexpr std::uint8_t GetState = 5;
constexpr std::uint8_t Abort = 6;

enum class Status : std::uint8_t
{
    Ok = 0,
    ErrTarget = 1,
    ErrWrite = 3,
    ErrProg = 6,
    ErrAddress = 8,
    ErrVendor = 11,
    ErrStalledPacket = 15,
};

enum class State : std::uint8_t
{
    Idle = 2,
    DownloadSync = 3,
    DownloadBusy = 4,
    DownloadIdle = 5,
    ManifestSync = 6,
    Manifest = 7,
    UploadIdle = 9,
    Error = 10,
};
} // namespace Dfu

/// The DfuSe commands, carried by a download of block 0.
namespace DfuSe {
constexpr std::uint8_t GetCommands = 0x00;
constexpr std::uint8_t SetAddress = 0x21;
constexpr std::uint8_t Erase = 0x41;
constexpr std::uint16_t FirstDataBlock = 2;
} // namespace DfuSe

} // namespace VirtualUnit
