// Listening to a saturated line: the engine thread must decode what it hears faster than the line
// can carry it, 10,473 bytes a second at 115200 baud 8E1, or the adapter's buffer overflows.

#include "PDU.h"
#include "RTUFrame.h"
#include "SerialTiming.h"
#include "TrafficDecoder.h"

#include <vector>

#include <benchmark/benchmark.h>

namespace kestrin {
namespace {

constexpr int baudRate = 115200;
constexpr int bitsPerCharacter = 11;
// A USB adapter passes bytes on in packets of 62, or fewer once its latency timer runs out.
constexpr std::size_t packetSize = 62;
constexpr double latencyTimer = 0.016;

struct Chunk {
    Bytes bytes;
    Arrival at;
};

Arrival after(double seconds) {
    return Arrival{} + SerialTiming::duration(seconds);
}

// Reads of 1 to 125 registers from four units, answered at once: requests and answers back to
// back, each after the inter-frame silence only.
std::vector<Bytes> saturatedFrames(double seconds, int& requests) {
    const int counts[] = {1, 2, 10, 32, 60, 125};
    const double character = SerialTiming::transmissionTime(1, baudRate, bitsPerCharacter);
    const double silence = SerialTiming::interFrameDelay(baudRate, bitsPerCharacter);
    std::vector<Bytes> frames;
    for (double line = 0; line < seconds; ++requests) {
        const int count = counts[requests % 6];
        const auto unit = static_cast<std::uint8_t>(1 + requests % 4);
        Bytes answer{0x03, static_cast<std::uint8_t>(2 * count)};
        for (int i = 0; i < 2 * count; ++i) {
            answer.push_back(static_cast<std::uint8_t>(i));
        }
        frames.push_back(
            RTUFrame::build(unit, PDU::read(RegisterTable::holdingRegister, 100, count)));
        frames.push_back(RTUFrame::build(unit, answer));
        line += character *
                    static_cast<double>(frames[frames.size() - 2].size() + frames.back().size()) +
                2 * silence;
    }
    return frames;
}

// The frames as the adapter delivers them, with their arrival times.
std::vector<Chunk> delivered(const std::vector<Bytes>& frames) {
    const double character = SerialTiming::transmissionTime(1, baudRate, bitsPerCharacter);
    const double silence = SerialTiming::interFrameDelay(baudRate, bitsPerCharacter);
    std::vector<Chunk> chunks;
    Chunk packet;
    double line = 0;
    double first = 0;
    for (const Bytes& frame : frames) {
        for (const std::uint8_t byte : frame) {
            line += character;
            if (!packet.bytes.empty() && line - first > latencyTimer) {
                packet.at = after(first + latencyTimer);
                chunks.push_back(std::move(packet));
                packet = {};
            }
            first = packet.bytes.empty() ? line : first;
            packet.bytes.push_back(byte);
            if (packet.bytes.size() == packetSize) {
                packet.at = after(line);
                chunks.push_back(std::move(packet));
                packet = {};
            }
        }
        line += silence;
    }
    if (!packet.bytes.empty()) {
        packet.at = after(line);
        chunks.push_back(std::move(packet));
    }
    return chunks;
}

// Every answered read decoded, or nothing to measure.
int answeredReads(const std::vector<Chunk>& chunks) {
    TrafficDecoder decoder(baudRate, bitsPerCharacter, 1.0);
    int answered = 0;
    const auto count = [&](const std::vector<PollerEvent>& events) {
        for (const PollerEvent& event : events) {
            const auto* heard = event.as<PollerEvent::Heard>();
            answered += heard != nullptr && heard->outcome.ok() ? 1 : 0;
        }
    };
    for (const Chunk& chunk : chunks) {
        count(decoder.hear(chunk.bytes, chunk.at));
    }
    count(decoder.pass(std::chrono::steady_clock::time_point::max()));
    return answered;
}

void decodeSaturatedLine(benchmark::State& state) {
    int requests = 0;
    const std::vector<Chunk> chunks = delivered(saturatedFrames(1.0, requests));
    std::size_t bytes = 0;
    for (const Chunk& chunk : chunks) {
        bytes += chunk.bytes.size();
    }
    if (answeredReads(chunks) != requests) {
        state.SkipWithError("the stream did not decode into its reads");
        return;
    }
    for (auto _ : state) {
        TrafficDecoder decoder(baudRate, bitsPerCharacter, 1.0);
        std::size_t events = 0;
        for (const Chunk& chunk : chunks) {
            events += decoder.hear(chunk.bytes, chunk.at).size();
        }
        events += decoder.pass(std::chrono::steady_clock::time_point::max()).size();
        benchmark::DoNotOptimize(events);
    }
    state.counters["bytes_per_second"] = benchmark::Counter(
        static_cast<double>(bytes * state.iterations()), benchmark::Counter::kIsRate);
    state.counters["line_bytes"] = static_cast<double>(bytes);
    state.counters["reads"] = requests;
}
BENCHMARK(decodeSaturatedLine)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kestrin

BENCHMARK_MAIN();
