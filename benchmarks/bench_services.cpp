// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/SimpleCipher.h"
#include "firmware/FirmwareBundle.h"
#include "firmware/ImageSize.h"
#include "qslog/FileDestination.h"
#include "qslog/Log.h"
#include "qslog/LoggerRegistry.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using Common::SimpleCipher;
using QsLogging::Level;

// The largest image, half of it hard to compress.
QByteArray image()
{
    QByteArray bytes(AquenSolvar::Device::imageSizeBound - 1, '\xFF');
    unsigned value = 1;
    for (int i = 0; i < bytes.size() / 2; ++i) {
        value = value * 1103515245 + 12345;
        bytes[i] = static_cast<char>(value >> 16);
    }
    return bytes;
}

void suppressedLogCall(benchmark::State& state)
{
    QsLogging::getLogger("bench_services")->setLoggingLevel(Level::Info);
    for (auto _ : state)
        QLOG_DEBUG() << "Serial name:" << 42;
}
BENCHMARK(suppressedLogCall);

void writtenLogLine(benchmark::State& state)
{
    const QTemporaryDir directory;
    const auto file = QsLogging::fileDestinationFor(directory.filePath("bench.log"));
    const auto logger = QsLogging::getLogger("bench_services");
    logger->setLoggingLevel(Level::Info);
    logger->addDestination(file);
    for (auto _ : state)
        QLOG_INFO() << "Serial name:" << 42;
    logger->removeDestination(file);
}
BENCHMARK(writtenLogLine);

void encipherImage(benchmark::State& state)
{
    const QByteArray plain = image();
    SimpleCipher cipher(Common::defaultCipherKey);
    for (auto _ : state)
        benchmark::DoNotOptimize(cipher.encryptToByteArray(plain));
    state.SetBytesProcessed(state.iterations() * plain.size());
}
BENCHMARK(encipherImage)->Unit(benchmark::kMicrosecond);

void decipherImage(benchmark::State& state)
{
    const QByteArray plain = image();
    SimpleCipher cipher(Common::defaultCipherKey);
    const QByteArray envelope = cipher.encryptToByteArray(plain);
    for (auto _ : state) {
        if (cipher.decryptToByteArray(envelope).size() != plain.size())
            state.SkipWithError("the image differs");
    }
    state.SetBytesProcessed(state.iterations() * plain.size());
}
BENCHMARK(decipherImage)->Unit(benchmark::kMicrosecond);

void chooseAmongBundles(benchmark::State& state)
{
    const QTemporaryDir directory;
    const QByteArray plain = image();
    for (int version = 1; version <= 100; ++version) {
        QFile file(directory.filePath(QStringLiteral("aquen-v%1.tarnware").arg(version)));
        if (!file.open(QIODevice::WriteOnly) ||
            file.write(AquenSolvar::Device::packFirmwareBundle(version, plain)) <= 0)
            state.SkipWithError("cannot write a bundle");
    }
    for (auto _ : state) {
        const auto newest = AquenSolvar::Device::newestFirmwareBundle(
            directory.path(), QStringLiteral("aquen-v*.tarnware"));
        if (newest.version != 100)
            state.SkipWithError("not the newest");
    }
}
BENCHMARK(chooseAmongBundles)->Unit(benchmark::kMillisecond);

} // namespace
