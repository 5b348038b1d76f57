// Recording history: every answer records one sample per datapoint, on the main thread. Exporting
// it: 2,000,000 samples to a file.

#include "CSVDialect.h"
#include "History.h"
#include "HistoryExport.h"
#include "Uuid.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <new>
#include <vector>

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

// Every operator new counted, so that an export's peak above the history is known. Qt's own
// containers allocate with malloc and are not counted; the export's rows and chunks are.
namespace {
std::atomic<std::size_t> liveBytes{0};
std::atomic<std::size_t> peakBytes{0};
std::atomic<std::size_t> allocations{0};
} // namespace

void* operator new(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++allocations;
    const std::size_t live = liveBytes += malloc_usable_size(block);
    std::size_t peak = peakBytes.load();
    while (live > peak && !peakBytes.compare_exchange_weak(peak, live)) {
    }
    return block;
}

void operator delete(void* block) noexcept {
    if (block != nullptr) {
        liveBytes -= malloc_usable_size(block);
        std::free(block);
    }
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

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

void exportHistory(const QString& path, const std::vector<Poll>& polls, History& history,
                   const CSVDialect& dialect) {
    HistoryExport exported(path, polls, history, dialect);
    while (!exported.step(std::chrono::steady_clock::time_point::max()).done) {
    }
    if (!exported.commit().ok()) {
        std::abort();
    }
}

// 100 datapoints with full rings of 20,000 samples, as after half an hour of reading at 10 Hz.
void exportToFile(benchmark::State& state) {
    constexpr std::size_t exportedDatapoints = 100;
    std::vector<Poll> polls(1);
    polls[0].name = "Boiler";
    for (std::size_t index = 0; index < exportedDatapoints; ++index) {
        Datapoint point;
        point.name = "Datapoint " + std::to_string(index);
        point.engineeringUnit = "°C";
        point.scale = 0.1;
        point.address = static_cast<std::uint16_t>(index);
        polls[0].datapoints.push_back(point);
    }
    History history;
    for (std::size_t round = 0; round < History::defaultCapacity; ++round) {
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(
            1'700'000'000'000 + static_cast<qint64>(round) * 100, Qt::UTC);
        for (const Datapoint& point : polls[0].datapoints) {
            (void)history.record(point.id, {time, static_cast<double>(round % 1000) * 0.1});
        }
    }
    const QTemporaryDir folder;
    const CSVDialect dialect{',', false};
    double extraBytes = 0;
    double allocationsPerSample = 0;
    for (auto _ : state) {
        const std::size_t before = liveBytes.load();
        peakBytes = before;
        const std::size_t allocationsBefore = allocations.load();
        exportHistory(folder.filePath("history.csv"), polls, history, dialect);
        extraBytes = static_cast<double>(peakBytes.load() - before);
        allocationsPerSample = static_cast<double>(allocations.load() - allocationsBefore) /
                               (exportedDatapoints * History::defaultCapacity);
    }
    state.counters["extraMB"] = extraBytes / 1e6;
    state.counters["news/sample"] = allocationsPerSample;
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * exportedDatapoints *
                                                      History::defaultCapacity));
}
BENCHMARK(exportToFile)->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kestrin

BENCHMARK_MAIN();
