// Planning a large poll: the model replans on every edit while reading, on the main thread.

#include "Datapoint.h"
#include "ReadPlanner.h"

#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace kestrin {
namespace {

// Datapoints scattered over ten units, all four tables and the whole address space, every type.
std::vector<Datapoint> scattered(std::size_t count) {
    std::mt19937 random(7);
    const auto between = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    std::vector<Datapoint> datapoints(count);
    for (Datapoint& datapoint : datapoints) {
        datapoint.unitID = static_cast<std::uint8_t>(between(1, 10));
        datapoint.setTable(RegisterTable::allCases[between(0, 3)]);
        datapoint.address = static_cast<std::uint16_t>(between(0, 65000));
        if (!datapoint.table().isBit()) {
            datapoint.dataType = DataType::allCases[between(1, 8)];
        }
    }
    return datapoints;
}

void planScatteredDatapoints(benchmark::State& state) {
    const std::vector<Datapoint> datapoints = scattered(static_cast<std::size_t>(state.range(0)));
    const int maxGap = static_cast<int>(state.range(1));
    std::size_t blocks = 0;
    for (auto _ : state) {
        const auto planned = ReadPlanner::blocks(datapoints, maxGap);
        blocks = planned.size();
        benchmark::DoNotOptimize(planned.data());
    }
    state.counters["blocks"] = static_cast<double>(blocks);
}
BENCHMARK(planScatteredDatapoints)
    ->Args({10000, 0})
    ->Args({10000, 10})
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kestrin

BENCHMARK_MAIN();
