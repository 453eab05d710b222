// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/VirtualBus.h"

#include <QtTest>

#include <ctime>
#include <libusb.h>

using namespace VirtualUnit;

/// The bus as clients of the real libusb see it; what the updater itself does there is tested with
/// it.
class tst_virtualbus : public QObject
{
    Q_OBJECT

private slots:
    void clientsOfOneUnit()
    {
        auto bus = std::make_unique<VirtualBus>();
        const P_Unit unit = std::make_shared<Unit>(UnitSetup());
        bus->plug(unit);
        libusb_device_handle* handles[2] = {};
        libusb_context* contexts[2] = {};
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(libusb_init(&contexts[i]), 0);
            handles[i] = libusb_open_device_with_vid_pid(contexts[i], 0x16D0, 0x0C05);
            QVERIFY(handles[i] != nullptr);
        }
        const auto status = [&handles](int i, unsigned timeout) {
            unsigned char bytes[6] = {};
            return libusb_control_transfer(handles[i], 0xA1, 3, 0, 0, bytes, 6, timeout);
        };
        // A claim excludes others, also from requests to the interface, until it is released.
        QCOMPARE(libusb_claim_interface(handles[0], 0), 0);
        QCOMPARE(libusb_claim_interface(handles[1], 0), int(LIBUSB_ERROR_BUSY));
        QVERIFY(status(1, 5000) < 0);
        QCOMPARE(status(0, 5000), 6);
        QCOMPARE(libusb_release_interface(handles[0], 0), 0);
        QCOMPARE(libusb_claim_interface(handles[1], 0), 0);

        // A late response comes; a cancelled request does not disturb the next one.
        unit->addFault(Fault::on("getstatus", Fault::Action::Delay, 60));
        QCOMPARE(status(1, 5000), 6);
        unit->addFault(Fault::on("getstatus", Fault::Action::Silence));
        QCOMPARE(status(1, 100), int(LIBUSB_ERROR_TIMEOUT));
        unit->addFault(Fault::on("getstatus", Fault::Action::Delay, 300));
        QCOMPARE(status(1, 100), int(LIBUSB_ERROR_TIMEOUT));
        unit->addFault(Fault::on("getstatus", Fault::Action::Stall));
        QCOMPARE(status(1, 5000), int(LIBUSB_ERROR_PIPE));
        QCOMPARE(status(1, 5000), 6);

        // Nothing pending: a client that waits for events sleeps.
        const std::clock_t before = std::clock();
        timeval half{0, 500000};
        libusb_handle_events_timeout_completed(contexts[1], &half, nullptr);
        QVERIFY(std::clock() - before < CLOCKS_PER_SEC / 10);

        // The unit returns with another number; a client that has the old one open loses it.
        const int number = bus->address(unit).device;
        bus->replug(unit, milliseconds(0));
        QVERIFY(bus->waitUntilSettled(milliseconds(5000)) && bus->isPlugged(unit));
        QVERIFY(bus->address(unit).device != number);
        QCOMPARE(status(1, 5000), int(LIBUSB_ERROR_NO_DEVICE));
        bus.reset();
        QVERIFY(status(1, 5000) < 0);
        for (int i = 0; i < 2; ++i) {
            libusb_close(handles[i]);
            libusb_exit(contexts[i]);
        }
    }
};

QTEST_GUILESS_MAIN(tst_virtualbus)
#include "tst_virtualbus.moc"
