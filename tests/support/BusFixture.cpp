// SPDX-License-Identifier: LicenseRef-Proprietary
#include "support/BusFixture.h"

#include "USB/PFlibusb.h"

#include <QThread>

using namespace VirtualUnit;

BusFixture::BusFixture()
{
    USB::LibUSB::instance().init();
}

P_Unit BusFixture::plug(const UnitSetup& setup, const std::vector<Fault>& faults)
{
    m_units.push_back(std::make_shared<Unit>(setup));
    const P_Unit unit = m_units.back();
    unit->adjust([](Overrides& overrides) {
        overrides.eraseTime = overrides.programTime = milliseconds(0);
        overrides.leaveDelay = milliseconds(10);
        overrides.returnDelay = milliseconds(120); // clients miss an absence below 100 ms
    });
    for (const Fault& fault : faults)
        unit->addFault(fault);
    m_bus.plug(unit);
    return unit;
}

P_Unit BusFixture::plugBootloader(Kind kind)
{
    return plug({kind, Mode::Bootloader, "Virtual unit", {}});
}

P_Unit BusFixture::plugApplication(const std::string& serial, const std::string& firmware,
                                   Kind kind)
{
    return plug({kind, Mode::Application, serial, firmware});
}

void BusFixture::unplugAll()
{
    for (const P_Unit& unit : m_units)
        m_bus.unplug(unit);
    m_units.clear();
}

USB::P_LibUsbDevice BusFixture::awaitRecord(quint16 productId)
{
    QList<USB::P_LibUsbDevice> found;
    waitFor([&] {
        found = USB::LibUSB::instance().find(0x16D0, productId);
        return found.size() == 1;
    });
    return found.value(0);
}

bool BusFixture::awaitGone(quint16 productId)
{
    return waitFor([&] { return USB::LibUSB::instance().find(0x16D0, productId).isEmpty(); });
}

bool waitFor(const std::function<bool()>& condition, int milliseconds)
{
    QElapsedTimer time;
    time.start();
    while (!condition()) {
        if (time.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::msleep(2);
    }
    return true;
}

QByteArray toByteArray(const Bytes& bytes)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()));
}
