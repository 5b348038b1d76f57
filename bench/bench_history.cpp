// Recording history: every answer records one sample per datapoint, on the main thread.

#include "History.h"
#include "Uuid.h"

#include <malloc.h>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

namespace kestrin {
namespace {

constexpr std::size_t datapoints = 1000;
constexpr std::size_t samples = 20'000'000;

std::vector<Uuid> ids() {
    std::vector<Uuid> result;
    for (std::size_t index = 0; index < datapoints; ++index) {
        result.push_back(Uuid::random());
    }
    return result;
}

// One answer time per round over all datapoints, as when one poll covers them all.
// Heap in use, large blocks served by mmap included.
std::size_t heapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void recordRounds(History& history, const std::vector<Uuid>& ids, std::size_t rounds,
                  qint64 firstMs) {
    for (std::size_t round = 0; round < rounds; ++round) {
        const QDateTime time =
            QDateTime::fromMSecsSinceEpoch(firstMs + static_cast<qint64>(round) * 100, Qt::UTC);
        for (const Uuid& id : ids) {
            benchmark::DoNotOptimize(history.record(id, {time, static_cast<double>(round)}));
        }
    }
}

// 20,000,000 samples over 1,000 datapoints from empty: every ring grows to its cap exactly.
void recordFromEmpty(benchmark::State& state) {
    const std::vector<Uuid> keys = ids();
    double heapPerSample = 0;
    double reservedPerSample = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const std::size_t heapBefore = heapInUse();
        auto history = std::make_unique<History>();
        state.ResumeTiming();
        recordRounds(*history, keys, samples / datapoints, 1'700'000'000'000);
        state.PauseTiming();
        heapPerSample = static_cast<double>(heapInUse() - heapBefore) / samples;
        reservedPerSample = static_cast<double>(history->allocatedBytes()) / samples;
        history.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * samples));
    state.counters["ns/sample"] = benchmark::Counter(
        static_cast<double>(state.iterations() * samples),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert, benchmark::Counter::kIs1000);
    state.counters["heapB/sample"] = heapPerSample;
    state.counters["ringB/sample"] = reservedPerSample;
}
BENCHMARK(recordFromEmpty)->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);

// The steady state after half an hour of fast polling: every sample overwrites the oldest.
void recordIntoFullHistory(benchmark::State& state) {
    const std::vector<Uuid> keys = ids();
    History history;
    recordRounds(history, keys, History::defaultCapacity, 1'600'000'000'000);
    for (auto _ : state) {
        recordRounds(history, keys, samples / datapoints, 1'700'000'000'000);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * samples));
    state.counters["ns/sample"] = benchmark::Counter(
        static_cast<double>(state.iterations() * samples),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert, benchmark::Counter::kIs1000);
}
BENCHMARK(recordIntoFullHistory)->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kestrin

BENCHMARK_MAIN();
