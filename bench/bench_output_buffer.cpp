// Appending log lines: with a 100 ms poll the log takes a line per answer and trims itself.

#include "OutputBuffer.h"

#include <string>

#include <benchmark/benchmark.h>

namespace kestrin {
namespace {

constexpr std::int64_t lines = 1'000'000;

// The segments of a timestamped answer line of ten registers, as the model appends it.
LogLineSegments answerLine(std::int64_t number) {
    using Kind = LogSegment::Kind;
    return {{Kind::timestamp, "12:34:56.789  "},
            {Kind::response, "← "},
            {Kind::response, "Unit 1 · FC 03"},
            {Kind::meta, " Read holding registers · "},
            {Kind::response, "14 00 01 00 02 00 03 00 04 00 05 00 06 00 07 00 08 00 09 00 0A"},
            {Kind::meta, "  (" + std::to_string(number % 50) + " ms)"}};
}

// Argument 1: a view mirrors the buffer through its signals; 0: headless.
void appendLines(benchmark::State& state) {
    const bool mirrored = state.range(0) != 0;
    std::int64_t trims = 0;
    for (auto _ : state) {
        OutputBuffer buffer;
        qsizetype mirroredUnits = 0;
        if (mirrored) {
            QObject::connect(&buffer, &OutputBuffer::appended, [&](const QList<StyledRun>& runs) {
                for (const StyledRun& run : runs) {
                    mirroredUnits += run.text.size();
                }
            });
        }
        QObject::connect(&buffer, &OutputBuffer::trimmed, [&](qsizetype) { ++trims; });
        for (std::int64_t number = 0; number < lines; ++number) {
            buffer.append(answerLine(number));
        }
        benchmark::DoNotOptimize(mirroredUnits);
        benchmark::DoNotOptimize(buffer.length());
    }
    state.SetItemsProcessed(state.iterations() * lines);
    state.counters["lines/s"] = benchmark::Counter(static_cast<double>(state.iterations() * lines),
                                                   benchmark::Counter::kIsRate);
    state.counters["trims"] = static_cast<double>(trims) / static_cast<double>(state.iterations());
}
BENCHMARK(appendLines)
    ->Arg(0)
    ->Arg(1)
    ->Iterations(1)
    ->Repetitions(5)
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kestrin

BENCHMARK_MAIN();
