#include "../ModbusCore/HexBytes.h"
#include "ChildProcess.h"
#include "RecordedStream.h"
#include "SerialTiming.h"
#include "TextFileReader.h"
#include "ToolOutput.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

// kestrin-sim --record and --replay: what a recording holds after a poll session, and what a
// reader of a replayed stream gets, and when.

namespace kestrin {
namespace {

using ChildProcess::SimulatorProcess;
using Clock = std::chrono::steady_clock;
using RecordedStream::Chunk;
using test::hexBytes;

const std::string fixtures = KESTRIN_TOOLS_FIXTURES;

using ToolOutput::temporaryPath;

std::vector<Chunk> recording(const std::string& path) {
    const auto parsed = RecordedStream::parse(TextFileReader::read(path).value());
    EXPECT_TRUE(parsed.ok()) << path;
    return parsed ? parsed.value() : std::vector<Chunk>{};
}

// Two cycles of boiler.csv at 115200 8E1 on the emulated wire. The sim is stopped as a script
// stops it, by SIGTERM, which must leave the whole recording behind.
TEST(SimulatorStream, RecordsEveryRequestAndAnswerAtTheEmulatedWireTimes) {
    const std::string path = temporaryPath("session.txt");
    SimulatorProcess sim(
        ChildProcess::sim({"--csv", fixtures + "/every-type.csv", "--baud", "115200",
                           "--wire-timing", "--turnaround-ms", "3", "--record", path}));
    ASSERT_FALSE(sim.port().empty());
    const ChildProcess::ProcessResult poll = ChildProcess::run(ChildProcess::cliOn(
        sim.port(), "poll",
        "--csv " + fixtures +
            "/boiler.csv --baud 115200 --frame 8E1 --cycles 2 --timeout-ms 3000"));
    ASSERT_EQ(poll.exitCode, 0) << poll.err;
    sim.end(SIGTERM);

    const Bytes holding = hexBytes("01 03 00 00 00 02 C4 0B");
    const Bytes holdingAnswer = hexBytes("01 03 04 12 34 FB 2E 7D A9");
    const Bytes input = hexBytes("01 04 00 00 00 01 31 CA");
    const Bytes inputAnswer = hexBytes("01 04 02 00 EA 38 BF");
    const std::vector<Chunk> chunks = recording(path);
    const std::vector<Bytes> expected{holding, holdingAnswer, input, inputAnswer,
                                      holding, holdingAnswer, input, inputAnswer};
    ASSERT_EQ(chunks.size(), expected.size());
    for (std::size_t i = 0; i < chunks.size(); i += 2) {
        SCOPED_TRACE(i);
        EXPECT_EQ(chunks[i].bytes, expected[i]);
        EXPECT_EQ(chunks[i + 1].bytes, expected[i + 1]);
        // A request is written once its last byte crossed the wire and its answer once the
        // answer's did: the turnaround and the answer's wire time apart, to the microsecond.
        const double answerWire =
            SerialTiming::transmissionTime(static_cast<int>(expected[i + 1].size()), 115200, 11);
        EXPECT_NEAR(chunks[i + 1].seconds - chunks[i].seconds, 0.003 + answerWire, 2e-6);
    }
    EXPECT_EQ(std::remove(path.c_str()), 0);
}

// The chunks of a replay as a reader gets them: the bytes of each read and when it came.
struct Arrival {
    Clock::time_point time;
    Bytes bytes;
};

std::vector<Arrival> readFor(int fd, std::chrono::milliseconds span) {
    std::vector<Arrival> arrivals;
    const Clock::time_point end = Clock::now() + span;
    while (Clock::now() < end) {
        pollfd input{fd, POLLIN, 0};
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        if (poll(&input, 1, static_cast<int>(left.count())) != 1) {
            continue;
        }
        EXPECT_EQ(input.revents & POLLHUP, 0) << "the replay hung the line up";
        std::uint8_t buffer[256];
        const ssize_t count = ::read(fd, buffer, sizeof buffer);
        if (count > 0) {
            arrivals.push_back({Clock::now(), Bytes(buffer, buffer + count)});
        }
    }
    return arrivals;
}

// Chunks far enough apart that a loaded machine keeps them apart; a replay that ignored the
// timing would deliver them all at once.
TEST(SimulatorStream, ReplayGivesTheReaderEachChunkAtItsTimeAndKeepsTheLineOpen) {
    const std::string path = temporaryPath("replay.txt");
    std::ofstream(path) << "# a request, its answer and a later request\n"
                           "0.000000 01 03 00 00 00 02 C4 0B\n"
                           "\n"
                           "0.200000 01 03 04 12 34 FB 2E 7D A9\n"
                           "0.500000 01 04 00 00 00 01 31 CA\n";
    const std::vector<Chunk> chunks = recording(path);
    SimulatorProcess sim(ChildProcess::sim({"--replay", path, "--replay-delay-ms", "0"}));
    ASSERT_FALSE(sim.port().empty());
    const int fd = ::open(sim.port().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_GE(fd, 0);
    // Past the last chunk, so that a line hung up after it would show.
    const std::vector<Arrival> arrivals = readFor(fd, std::chrono::milliseconds(800));
    ::close(fd);

    Bytes all;
    Bytes received;
    for (const Chunk& chunk : chunks) {
        all.insert(all.end(), chunk.bytes.begin(), chunk.bytes.end());
    }
    for (const Arrival& arrival : arrivals) {
        received.insert(received.end(), arrival.bytes.begin(), arrival.bytes.end());
    }
    EXPECT_EQ(received, all);
    ASSERT_FALSE(arrivals.empty());
    // When the first byte of each chunk arrived, from the first chunk's arrival: never
    // much earlier than recorded, and not so late that it merged with the next.
    std::size_t offset = 0;
    std::size_t arrival = 0;
    std::size_t taken = 0;
    for (const Chunk& chunk : chunks) {
        while (arrival < arrivals.size() && taken + arrivals[arrival].bytes.size() <= offset) {
            taken += arrivals[arrival++].bytes.size();
        }
        ASSERT_LT(arrival, arrivals.size());
        const double at =
            std::chrono::duration<double>(arrivals[arrival].time - arrivals.front().time).count();
        EXPECT_GT(at, chunk.seconds - 0.02) << hexString(chunk.bytes);
        EXPECT_LT(at, chunk.seconds + 0.15) << hexString(chunk.bytes);
        offset += chunk.bytes.size();
    }
    EXPECT_EQ(std::remove(path.c_str()), 0);
}

TEST(SimulatorStream, RefusesAMalformedStreamNamingItsLine) {
    const std::string path = temporaryPath("malformed.txt");
    std::ofstream(path) << "# fine\n0.1 01 03\n0.2 01 G3\n";
    const ChildProcess::ProcessResult result =
        ChildProcess::run(ChildProcess::sim({"--replay", path}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "kestrin-sim: " + path + ": Line 3: 'G3' is not a byte (two hex digits)\n");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(std::remove(path.c_str()), 0);
}

} // namespace
} // namespace kestrin
