// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibUsbDevice.h"
#include "umockdev/VirtualBus.h"
#include "unit/Unit.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <functional>

/// A bus of virtual units in this process, seen through the real libusb. One per program, made
/// before anything uses libusb. Main thread.
class BusFixture
{
public:
    BusFixture();

    /// Makes a unit that works without delays worth waiting for, and plugs it in.
    VirtualUnit::P_Unit plug(const VirtualUnit::UnitSetup& setup,
                             const std::vector<VirtualUnit::Fault>& faults = {});
    VirtualUnit::P_Unit plugBootloader(VirtualUnit::Kind kind = VirtualUnit::Kind::Aquen);
    VirtualUnit::P_Unit plugApplication(const std::string& serial, const std::string& firmware,
                                        VirtualUnit::Kind kind = VirtualUnit::Kind::Aquen);
    void unplug(const VirtualUnit::P_Unit& unit) { m_bus.unplug(unit); }
    void unplugAll();

    /// The record of the one attached device of that product id; null when it does not come.
    USB::P_LibUsbDevice awaitRecord(quint16 productId);
    bool awaitGone(quint16 productId);

    VirtualUnit::VirtualBus& bus() { return m_bus; }
    const VirtualUnit::VirtualBus& bus() const { return m_bus; }

private:
    VirtualUnit::VirtualBus m_bus;
    std::vector<VirtualUnit::P_Unit> m_units;
};

/// Serves this thread's events until the condition holds; false after @p milliseconds.
bool waitFor(const std::function<bool()>& condition, int milliseconds = 30000);

/// Bytes of the simulator as the product has them.
QByteArray toByteArray(const VirtualUnit::Bytes& bytes);
