// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/FirmwareImage.h"
#include "unit/Unit.h"

#include <QtTest>

using namespace VirtualUnit;

namespace {

constexpr auto data = Response::Kind::Data;
constexpr auto ack = Response::Kind::Acknowledge;
constexpr auto stall = Response::Kind::Stall;
constexpr auto silence = Response::Kind::Silence;

/// Drives a unit's model without a bus, as a host would. Time stands still unless moved.
struct Driver
{
    Clock::time_point now;
    Unit unit;

    explicit Driver(const UnitSetup& setup = {})
        : unit(setup, [this] { return now; })
    {
        unit.arrive();
    }

    Response download(std::uint16_t block, const Bytes& bytes)
    {
        return unit.control({0x21, 1, block, 0, static_cast<std::uint16_t>(bytes.size())}, bytes);
    }

    /// Numbers are hexadecimal: "set:ADDRESS", "erase:ADDRESS", "write:BLOCK:LENGTH[:BYTE]",
    /// "wait:MILLISECONDS", "st" (GETSTATUS), and "work" for what ends a
    /// download.
    Response step(const QString& text)
    {
        static const std::map<QString, SetupPacket> requests = {{"st", {0xA1, 3, 0, 0, 6}},
                                                                {"end", {0x21, 1}},
                                                                {"clear", {0x21, 4}},
                                                                {"abort", {0x21, 6}}};
        const QString verb = text.section(':', 0, 0);
        const auto number = [&text](int at) {
            return text.section(':', at, at).toUInt(nullptr, 16);
        };
        const auto block = static_cast<std::uint16_t>(number(1));
        if (verb == "work")
            return steps("st wait:14 st");
        if (verb == "write")
            return download(block, Bytes(number(2), static_cast<std::uint8_t>(number(3))));
        if (verb == "set" || verb == "erase") {
            Bytes command = {static_cast<std::uint8_t>(verb == "set" ? 0x21 : 0x41), 0, 0, 0, 0};
            writeNumber(&command[1], 4, number(1));
            return download(0, command);
        }
        if (verb != "wait")
            return unit.control(requests.at(verb), {});
        now += milliseconds(number(1));
        return {};
    }

    Response steps(const QString& all)
    {
        Response last;
        for (const QString& text : all.split(' '))
            last = step(text);
        return last;
    }
};

} // namespace

Q_DECLARE_METATYPE(VirtualUnit::Response::Kind)

/// The model alone: as strict as the hardware, or the updater would pass here and fail there.
class tst_unit : public QObject
{
    Q_OBJECT

private slots:
    void bootloader_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<Response::Kind>("outcome"); // of the last step
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("state");
        const auto row = [](const char* name, const char* steps, Response::Kind outcome, int status,
                            int state) {
            QTest::newRow(name) << steps << outcome << status << state;
        };
        row("busy as long as the work takes", "erase:08003800 st wait:13 st", data, 0, 4);
        row("done when the work is", "erase:08003800 st wait:14 st", data, 0, 5);
        row("no download over another", "erase:08003800 erase:08004000", stall, 15, 10);
        row("no request while busy", "erase:08003800 st abort", stall, 15, 10);
        row("no end without a download", "end", stall, 15, 10);
        row("an error is cleared", "clear clear", ack, 0, 2);
        row("block 1 is reserved", "write:1:10", stall, 15, 10);
        row("unknown command", "write:0:1:92", stall, 15, 10);
        row("block over the transfer size", "set:08003800 work write:2:801", stall, 15, 10);
        row("erase in the bootloader", "erase:080037FF work", data, 3, 10);
        row("write in the bootloader", "set:080037FF work write:2:10 work", data, 3, 10);
        row("erase outside", "erase:08040000 work", data, 1, 10);
        row("write over the end", "set:0803FFF8 work write:2:9 work", data, 1, 10);
        row("write to the end", "set:0803FFF8 work write:2:8 work", data, 0, 5);
        row("sets no bits", "set:08003800 work write:2:9:5A work write:2:9:4F work", data, 6, 10);
        row("erased bits are set",
            "set:08003800 work write:2:9 work erase:08003FFF work write:2:9:5A work", data, 0, 5);
        row("only that page is erased",
            "set:08003800 work write:2:9 work erase:08004000 work write:2:9:5A work", data, 6, 10);
        row("the end begins the manifestation", "set:08003800 work end st", data, 0, 7);
        row("then it is deaf", "set:08003800 work end st st", silence, 0, 7);
    }

    void bootloader()
    {
        QFETCH(QString, steps);
        QFETCH(int, status);
        QFETCH(int, state);
        Driver driver;
        const Response last = driver.steps(steps);
        QTEST(last.kind, "outcome");
        QCOMPARE(static_cast<int>(driver.unit.dfuState()), state);
        QCOMPARE(last.departure.has_value(), steps.endsWith("end st") || steps == "detach");
        if (last.kind == silence)
            return;
        // GETSTATUS moves on from some states: where it was the last step its response counts.
        const Bytes report = last.data.size() == 6 ? last.data : driver.step("st").data;
        QCOMPARE(static_cast<int>(report.at(0)), status);
    }

    void flashing()
    {
        UnitSetup setup;
        setup.firmware = "1.2.0";
        Driver driver(setup);
        Unit& unit = driver.unit;
        QCOMPARE(unit.control({0xC1, 0x24, 0, 0, 8}, {}).data,
                 (Bytes{'1', '.', '2', '.', '0', 0, 0, 0}));
        // A request to drop to the bootloader is forgotten when the power fails.
        for (const auto reason : {Unit::Reason::Unplugged, Unit::Reason::Restarted}) {
            QCOMPARE(unit.productId(), std::uint16_t{0x0C07});
            QVERIFY(unit.control({0x41, 0x26, 0, 0, 0}, {}).departure);
            unit.leave(reason);
            unit.arrive();
        }
        QCOMPARE(unit.productId(), std::uint16_t{0x0C05});
        QCOMPARE(unit.control({0xA1, 3, 0, 1, 6}, {}).kind, stall); // no such interface
        driver.step("clear");
        const Bytes image = makeImage(4000, "1.3.1");
        for (std::uint16_t page = 0; page < 2; ++page) {
            const auto first = image.begin() + page * 2048;
            driver.steps(page == 0 ? "erase:08003800 work" : "erase:08004000 work");
            driver.steps("set:08003800 work");
            driver.download(2 + page, Bytes(first, page == 0 ? first + 2048 : image.end()));
            driver.step("work");
            unit.leave(Unit::Reason::Unplugged); // half an image starts nothing
            unit.arrive();
            QCOMPARE(unit.mode(), page == 0 ? Mode::Bootloader : Mode::Application);
        }
        QCOMPARE(unit.firmwareVersion(), std::string("1.3.1"));
        QVERIFY(unit.applicationContent() == image);
    }
};

QTEST_GUILESS_MAIN(tst_unit)
#include "tst_unit.moc"
