// Counting cycles of a large project: kestrin-cli poll builds the counter before its first request.

#include "CycleCounter.h"
#include "Poll.h"
#include "ReadPlanner.h"

#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace kestrin {
namespace {

// Datapoints scattered over ten units, all four tables and the whole address space, every type,
// dealt round the polls so that each poll plans thousands of blocks.
std::vector<Poll> scatteredProject(std::size_t datapoints, std::size_t polls) {
    std::mt19937 random(7);
    const auto between = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    std::vector<Poll> project(polls);
    for (std::size_t i = 0; i < datapoints; ++i) {
        Datapoint& datapoint = project[i % polls].datapoints.emplace_back();
        datapoint.unitID = static_cast<std::uint8_t>(between(1, 10));
        datapoint.setTable(RegisterTable::allCases[between(0, 3)]);
        datapoint.address = static_cast<std::uint16_t>(between(0, 65000));
        if (!datapoint.table().isBit()) {
            datapoint.dataType = DataType::allCases[between(1, 8)];
        }
    }
    return project;
}

void countCyclesOfScatteredProject(benchmark::State& state) {
    const std::vector<Poll> project = scatteredProject(static_cast<std::size_t>(state.range(0)),
                                                       static_cast<std::size_t>(state.range(1)));
    const int maxGap = static_cast<int>(state.range(2));
    for (auto _ : state) {
        CycleCounter counter(project, maxGap);
        benchmark::DoNotOptimize(counter.hasBlocks());
    }
    std::size_t blocks = 0;
    for (const Poll& poll : project) {
        blocks += ReadPlanner::blocks(poll.datapoints, maxGap).size();
    }
    state.counters["blocks"] = static_cast<double>(blocks);
}
BENCHMARK(countCyclesOfScatteredProject)
    ->ArgNames({"datapoints", "polls", "maxGap"})
    ->Args({10000, 1, 0})
    ->Args({10000, 4, 10})
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kestrin

BENCHMARK_MAIN();
