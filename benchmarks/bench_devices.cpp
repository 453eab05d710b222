// SPDX-License-Identifier: LicenseRef-Proprietary
#include "dfu/DfuSeLayout.h"

#include <benchmark/benchmark.h>

namespace {

void parseLayoutString(benchmark::State& state)
{
    const QString text = QStringLiteral("@Internal Flash  /0x08000000/07*002Ka,121*002Kg");
    for (auto _ : state)
        benchmark::DoNotOptimize(AquenSolvar::Device::parseMemoryLayout(text));
}
BENCHMARK(parseLayoutString);

} // namespace
