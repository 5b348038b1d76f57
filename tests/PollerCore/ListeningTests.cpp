#include "PDU.h"
#include "PollerEngine.h"
#include "RTUFrame.h"
#include "TrafficDecoder.h"

#include <condition_variable>
#include <cstdio>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <sstream>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

Bytes frame(std::uint8_t unit, Bytes pdu) {
    return RTUFrame::build(unit, pdu);
}

Bytes brokenAnswer() {
    Bytes bytes = frame(1, {0x03, 0x04, 0x00, 0x0A, 0x00, 0x0B});
    bytes.back() ^= 0xFF;
    return bytes;
}

Bytes largeAnswer() {
    Bytes pdu{0x03, 250};
    for (int i = 0; i < 250; ++i) {
        pdu.push_back(static_cast<std::uint8_t>(i));
    }
    return frame(1, pdu);
}

// The frames the recorded streams are written in, by name.
const std::map<std::string, Bytes>& frames() {
    static const std::map<std::string, Bytes> named{
        {"read", frame(1, PDU::read(RegisterTable::holdingRegister, 0, 2))},
        {"answer", frame(1, {0x03, 0x04, 0x00, 0x0A, 0x00, 0x0B})},
        {"exception", frame(1, {0x83, 0x02})},
        {"broken", brokenAnswer()},
        {"read2", frame(2, PDU::read(RegisterTable::holdingRegister, 0, 1))},
        {"answer2", frame(2, {0x03, 0x02, 0x00, 0x07})},
        {"readAll", frame(1, PDU::read(RegisterTable::holdingRegister, 0, 125))},
        {"answerAll", largeAnswer()},
        {"w06", frame(1, PDU::writeSingleRegister(1, 1234))},
        {"w16", frame(1, PDU::writeMultipleRegisters(0, std::vector<std::uint16_t>{1, 2, 3}))},
        {"ack16", frame(1, {0x10, 0x00, 0x00, 0x00, 0x03})},
        {"coilOn", frame(1, PDU::writeSingleCoil(3, true))},
        {"w15", frame(1, PDU::writeMultipleCoils(0, {true, true, true, true, false, false, false,
                                                     false, false, true}))},
        {"ack15", frame(1, {0x0F, 0x00, 0x00, 0x00, 0x0A})},
        {"rw23", frame(1, {0x17, 0, 0, 0, 2, 0, 0x10, 0, 1, 2, 0, 5})},
        {"answer23", frame(1, {0x17, 0x04, 0x00, 0x01, 0x00, 0x02})},
        {"diag", frame(1, {0x08, 0x00, 0x00, 0x12, 0x34})},
        {"broadcast", frame(0, PDU::writeSingleRegister(1, 5))},
        {"identify", frame(1, {0x2B, 0x0E, 0x01, 0x00})},
        {"identity", frame(1, {0x2B, 0x0E, 0x01, 0x01, 0x00, 0x00, 0x01, 0x00, 0x01, 0x4B})},
    };
    return named;
}

// "read", "w16[4:9]" (bytes 4 to 8 of a frame), "FF" (one byte).
Bytes bytesOf(const std::string& text) {
    Bytes bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const auto bracket = word.find('[');
        const auto named = frames().find(word.substr(0, bracket));
        if (named == frames().end()) {
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(word, nullptr, 16)));
            continue;
        }
        std::size_t from = 0;
        std::size_t to = named->second.size();
        if (bracket != std::string::npos) {
            const auto colon = word.find(':');
            from = colon > bracket + 1 ? std::stoul(word.substr(bracket + 1)) : 0;
            to = word[colon + 1] != ']' ? std::stoul(word.substr(colon + 1)) : to;
        }
        bytes.insert(bytes.end(), named->second.begin() + static_cast<std::ptrdiff_t>(from),
                     named->second.begin() + static_cast<std::ptrdiff_t>(to));
    }
    return bytes;
}

std::string nameOf(const Bytes& bytes) {
    for (const auto& [name, value] : frames()) {
        if (value == bytes) {
            return name;
        }
    }
    return bytes.empty() ? "-" : hexString(bytes);
}

std::string milliseconds(std::chrono::system_clock::time_point time) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2f",
                  std::chrono::duration<double, std::milli>(time.time_since_epoch()).count());
    return text.data();
}

std::string valuesOf(const ReadData& data) {
    std::string text;
    std::visit(
        [&](const auto& values) {
            for (const auto value : values.values) {
                text += (text.empty() ? "" : ",") + std::to_string(static_cast<int>(value));
            }
        },
        data.value);
    return " [" + text + "]";
}

std::string outcomeOf(const PollerEvent::Heard& heard) {
    if (heard.outcome) {
        return heard.outcome.value() ? "ok" + valuesOf(*heard.outcome.value()) : "ok";
    }
    // In the order of PollFailure::Kind; an exception adds its code.
    constexpr std::array kinds{"unit", "function", "exception ", "timeout", "crc", "malformed"};
    const PollFailure failure = heard.outcome.error().failure;
    return kinds[static_cast<std::size_t>(failure.kind)] +
           (failure.kind == PollFailure::Kind::exception ? std::to_string(failure.value) : "");
}

// "read -> answer: 1 HR 0+2 ok [10,11] @16.00/16.00": the event's time, then the request's.
std::string describe(const PollerEvent& event) {
    if (const auto* unmatched = event.as<PollerEvent::Unmatched>()) {
        return "unmatched " + nameOf(unmatched->bytes) + " @" + milliseconds(event.time);
    }
    const auto& heard = *event.as<PollerEvent::Heard>();
    std::string range = "none";
    if (heard.range) {
        range = std::to_string(heard.range->unit) + " " + std::string(heard.range->table.code()) +
                " " + std::to_string(heard.range->address) + "+" +
                std::to_string(heard.range->count);
    }
    return nameOf(heard.request) + " -> " + nameOf(heard.response) + ": " + range + " " +
           outcomeOf(heard) + (heard.isWrite ? " write" : "") + " @" + milliseconds(event.time) +
           "/" + milliseconds(heard.requestTime);
}

struct Chunk {
    double ms = 0;
    std::string bytes;
};

// Both clocks start at their epoch, so the events' times read as milliseconds from the start. The
// line falls quiet a second after the last chunk: anything held longer shows as missing.
std::vector<PollerEvent> replay(const std::vector<Chunk>& chunks) {
    TrafficDecoder decoder(115200, 11, 0.1);
    std::vector<PollerEvent> events;
    const auto keep = [&](std::vector<PollerEvent> more) {
        events.insert(events.end(), more.begin(), more.end());
    };
    Arrival at;
    for (const Chunk& chunk : chunks) {
        at = Arrival{} + std::chrono::duration_cast<Clock::duration>(
                             std::chrono::duration<double, std::milli>(chunk.ms));
        keep(decoder.hear(bytesOf(chunk.bytes), at));
    }
    keep(decoder.pass(at.steady + 1s));
    return events;
}

// The registers of largeAnswer: its bytes 0, 1, 2... taken two at a time.
std::string largeValues() {
    std::string values;
    for (int i = 0; i < 125; ++i) {
        values += (i > 0 ? "," : "") + std::to_string(2 * i * 256 + 2 * i + 1);
    }
    return values;
}

struct Stream {
    const char* name;
    std::vector<Chunk> chunks;
    std::vector<std::string> expected;
};
// 115200 baud 8E1, a time-out of 100 ms.
const Stream streams[] = {
    {"a read and its answer in one USB burst",
     {{16, "read answer"}},
     {"read -> answer: 1 HR 0+2 ok [10,11] @16.00/16.00"}},
    {"a request split over bursts with gaps longer than 3.5 characters",
     {{0, "w16[:4]"}, {4, "w16[4:9]"}, {8, "w16[9:]"}, {12, "ack16"}},
     {"w16 -> ack16: 1 HR 0+3 ok [1,2,3] write @12.00/8.00"}},
    {"an answer in 62-byte bursts 6 ms apart",
     {{0, "readAll"},
      {6, "answerAll[:62]"},
      {12, "answerAll[62:124]"},
      {18, "answerAll[124:186]"},
      {24, "answerAll[186:248]"},
      {30, "answerAll[248:]"}},
     {"readAll -> answerAll: 1 HR 0+125 ok [" + largeValues() + "] @30.00/0.00"}},
    {"coils written one and many",
     {{0, "coilOn"}, {3, "coilOn"}, {10, "w15"}, {13, "ack15"}},
     {"coilOn -> coilOn: 1 CO 3+1 ok [1] write @3.00/0.00",
      "w15 -> ack15: 1 CO 0+10 ok [1,1,1,1,0,0,0,0,0,1] write @13.00/10.00"}},
    {"a read/write counts as its read",
     {{0, "rw23"}, {3, "answer23"}},
     {"rw23 -> answer23: 1 HR 0+2 ok [1,2] @3.00/0.00"}},
    {"other functions have no range, whether their answers' length is known or not",
     {{0, "diag"}, {3, "diag"}, {10, "identify"}, {13, "identity"}},
     {"diag -> diag: none ok @3.00/0.00", "identify -> identity: none ok @13.00/10.00"}},
    {"an exception",
     {{0, "read"}, {3, "exception"}},
     {"read -> exception: 1 HR 0+2 exception 2 @3.00/0.00"}},
    {"a CRC-broken answer is the request's, dated by its arrival",
     {{0, "read"}, {3, "broken"}},
     {"read -> broken: 1 HR 0+2 crc @3.00/0.00"}},
    {"a request nobody answers in time times out, its late answer fits none, the next is paired",
     {{0, "read"}, {150, "answer"}, {160, "read"}, {163, "answer"}},
     {"read -> -: 1 HR 0+2 timeout @100.00/0.00", "unmatched answer @150.00",
      "read -> answer: 1 HR 0+2 ok [10,11] @163.00/160.00"}},
    {"a broken answer just before the time-out",
     {{0, "read"}, {99.5, "broken"}},
     {"read -> broken: 1 HR 0+2 crc @99.50/0.00"}},
    {"an answer begun before the time-out and ended after it",
     {{0, "readAll"}, {80, "answerAll[:62]"}, {104, "answerAll[62:]"}},
     {"readAll -> answerAll: 1 HR 0+125 ok [" + largeValues() + "] @104.00/0.00"}},
    {"a single write's late echo after the time-out is no new request",
     {{0, "w06"}, {150, "w06"}},
     {"w06 -> -: 1 HR 1+1 timeout write @100.00/0.00", "unmatched w06 @150.00"}},
    {"an answer whose first 8 bytes check as a request",
     {{0, "read"}, {3, "01 03 04 00 00 00 44 FA 00"}},
     {"read -> 01 03 04 00 00 00 44 FA 00: 1 HR 0+2 ok [0,68] @3.00/0.00"}},
    {"an answer of unknown length in USB bursts",
     {{0, "identify"}, {3, "identity[:9]"}, {6, "identity[9:]"}},
     {"identify -> identity: none ok @6.00/0.00"}},
    {"noise that reads as a long FIFO answer",
     {{0, "01 18 FF FF"}, {10, "read"}, {13, "answer"}},
     {"unmatched 01 18 FF FF @0.00", "read -> answer: 1 HR 0+2 ok [10,11] @13.00/10.00"}},
    {"stray bytes while a request waits are reported after it",
     {{0, "read"}, {2, "answer2"}, {5, "answer"}},
     {"read -> answer: 1 HR 0+2 ok [10,11] @5.00/0.00", "unmatched answer2 @2.00"}},
    {"a broadcast is reported at once and leaves nothing waiting",
     {{0, "broadcast"}, {5, "read"}, {8, "answer"}},
     {"broadcast -> -: 0 HR 1+1 ok write @0.00/0.00",
      "read -> answer: 1 HR 0+2 ok [10,11] @8.00/5.00"}},
    {"noise before a request",
     {{0, "FF 00 read"}, {4, "answer"}},
     {"unmatched FF 00 @0.00", "read -> answer: 1 HR 0+2 ok [10,11] @4.00/0.00"}},
    {"two masters' requests back to back: the second ends the first's wait",
     {{0, "read read2"}, {4, "answer2"}},
     {"read -> -: 1 HR 0+2 timeout @0.00/0.00", "read2 -> answer2: 2 HR 0+1 ok [7] @4.00/0.00"}},
};

TEST(Listening, RecordedStreamsArePairedIntoRequestsWithTheirAnswers) {
    for (const Stream& row : streams) {
        SCOPED_TRACE(row.name);
        std::vector<std::string> described;
        for (const auto& event : replay(row.chunks)) {
            described.push_back(describe(event));
            if (const auto* heard = event.as<PollerEvent::Heard>();
                heard && !heard->response.empty()) {
                EXPECT_DOUBLE_EQ(
                    heard->duration,
                    std::chrono::duration<double>(event.time - heard->requestTime).count());
            }
        }
        EXPECT_EQ(described, row.expected);
    }
}

// The engine listening on a pseudo-terminal while the test plays the other master and its
// device on the far side: what they say is reported, and nothing ever comes back to the line,
// not even for a write asked of the engine meanwhile. A hang-up is the loss of the port.
TEST(Listening, TheEngineReportsWhatItHearsAndNeverSends) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<PollerEvent> events;
    PollerEngine engine(
        ptsname(master), SerialConfiguration{.baudRate = 115200}, 0.5, true,
        [&](const PollerEvent& event) {
            const std::lock_guard lock(mutex);
            events.push_back(event);
            changed.notify_all();
        },
        PollerEngine::Mode::listening);
    ASSERT_TRUE(engine.start({}).ok());
    engine.write(PDU::writeSingleRegister(1, 1), 1, Uuid{});
    const std::vector<std::pair<std::chrono::milliseconds, Bytes>> chunks{{0ms, bytesOf("read")},
                                                                          {4ms, bytesOf("answer")},
                                                                          {20ms, bytesOf("w06")},
                                                                          {24ms, bytesOf("w06")},
                                                                          {30ms, bytesOf("read")}};
    const auto start = Clock::now();
    for (const auto& [at, bytes] : chunks) {
        std::this_thread::sleep_until(start + at);
        ASSERT_EQ(::write(master, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    const auto waitFor = [&](std::size_t count) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, 5s, [&] { return events.size() >= count; });
    };
    ASSERT_TRUE(waitFor(4)) << events.size() << " events";
    ::fcntl(master, F_SETFL, ::fcntl(master, F_GETFL) | O_NONBLOCK);
    std::array<std::uint8_t, 1> sent{};
    EXPECT_EQ(::read(master, sent.data(), sent.size()), -1) << "the engine put a byte on the line";
    ::close(master);
    ASSERT_TRUE(waitFor(5));
    engine.stop();
    const std::lock_guard lock(mutex);
    ASSERT_EQ(events.size(), 5U);
    EXPECT_TRUE(events[0].is<PollerEvent::Started>());
    const auto untimed = [&](std::size_t i) {
        const std::string text = describe(events[i]);
        return text.substr(0, text.find(" @"));
    };
    EXPECT_EQ(untimed(1), "read -> answer: 1 HR 0+2 ok [10,11]");
    EXPECT_EQ(untimed(2), "w06 -> w06: 1 HR 1+1 ok [1234] write");
    EXPECT_EQ(untimed(3), "read -> -: 1 HR 0+2 timeout");
    EXPECT_EQ(events[4], (PollerEvent{PollerEvent::SerialLost{engine.path()}, events[4].time}));
}

} // namespace
} // namespace kestrin
