// SPDX-License-Identifier: LicenseRef-Proprietary
// The duration of a whole download against its minimum: 50 ms for each status read that waits, with
// a unit that finishes each piece of work within one such pause. Needs the virtual bus preloaded:
// tests/support/on-virtual-bus bench_flash
#include "USB/PFlibusb.h"
#include "firmware/ImageSize.h"
#include "umockdev/VirtualBus.h"
#include "unit/FirmwareImage.h"
#include "unit/Unit.h"
#include "update/DFUDownloadJob.h"

#include <QCoreApplication>
#include <QThread>

#include <benchmark/benchmark.h>

namespace {

using namespace AquenSolvar::Device;

constexpr int imageSize = 100000;
constexpr int chunkSize = 2048;
constexpr int sleepsPerChunk = 7; // two to erase, two for the address, one more, two for the data
constexpr int sleepsAtTheEnd = 2; // the final address

USB::P_LibUsbDevice awaitBootloader()
{
    for (;;) {
        const auto found = USB::LibUSB::instance().find(0x16D0, 0x0C05);
        if (!found.isEmpty())
            return found.first();
        QThread::msleep(10);
    }
}

void flashImage(benchmark::State& state)
{
    VirtualUnit::VirtualBus bus;
    USB::LibUSB::instance().init();
    VirtualUnit::UnitSetup setup;
    setup.mode = VirtualUnit::Mode::Bootloader;
    const auto unit = std::make_shared<VirtualUnit::Unit>(setup);
    bus.plug(unit);
    const auto bytes = VirtualUnit::makeImage(imageSize, "1.3.1");
    const QByteArray image(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()));

    const QSharedPointer<DfuDevice> device(new DfuDevice(awaitBootloader()));
    device->init();
    DFUDownloadJob job(image, device, imageSizeBound);
    for (auto _ : state) {
        job.start();
        job.wait();
    }
    if (unit->applicationContent() != bytes)
        state.SkipWithError("the unit does not hold the image");
    const int chunks = (imageSize + chunkSize - 1) / chunkSize;
    const int sleeps = chunks * sleepsPerChunk + sleepsAtTheEnd;
    const auto pause = std::chrono::duration<double>(DfuTimes().pollSleep).count();
    state.counters["floor_s"] = sleeps * pause;
    device->close();
}
BENCHMARK(flashImage)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
