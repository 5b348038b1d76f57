#include "ChildProcess.h"
#include "PDU.h"
#include "PollerEngine.h"
#include "RTUFrame.h"
#include "ScriptedDevice.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using ChildProcess::SimulatorProcess;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;
constexpr RegisterTable holding = RegisterTable::holdingRegister;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Holding registers 0-499 of unit 1, each holding its own address.
std::string registerList() {
    std::string csv = "Name,Unit ID,Table,Address,Data type,Value\n";
    for (int address = 0; address < 500; ++address) {
        const std::string text = std::to_string(address);
        csv += "r" + text + ",1,HR," + text + ",uint16," + text + "\n";
    }
    return csv;
}

std::vector<PollerEvent::Read> readsOf(const std::vector<PollerEvent>& events, const Uuid& poll) {
    std::vector<PollerEvent::Read> reads;
    for (const PollerEvent& event : events) {
        if (const auto* read = event.as<PollerEvent::Read>(); read && read->poll == poll) {
            reads.push_back(*read);
        }
    }
    return reads;
}

class EventLog {
public:
    void record(const PollerEvent& event) {
        const std::lock_guard lock(mutex_);
        events_.push_back(event);
        condition_.notify_all();
    }
    // The events once done holds for them, or all there are after the time limit.
    std::vector<PollerEvent>
    waitUntil(const std::function<bool(const std::vector<PollerEvent>&)>& done, double seconds) {
        std::unique_lock lock(mutex_);
        condition_.wait_for(lock, std::chrono::duration<double>(seconds),
                            [&] { return done(events_); });
        return events_;
    }
    std::vector<PollerEvent> waitFor(std::size_t count, double seconds = 10) {
        return waitUntil([&](const auto& events) { return events.size() >= count; }, seconds);
    }
    std::vector<PollerEvent::Read> waitForReads(const Uuid& poll, std::size_t count) {
        const auto enough = [&](const auto& events) {
            return readsOf(events, poll).size() >= count;
        };
        return readsOf(waitUntil(enough, 10), poll);
    }
    std::vector<PollerEvent> all() { return waitFor(0); }
    void clear() {
        const std::lock_guard lock(mutex_);
        events_.clear();
    }

private:
    std::mutex mutex_;
    std::condition_variable condition_;
    std::vector<PollerEvent> events_;
};

std::size_t lineCount(const std::string& path) {
    std::ifstream file(path);
    return static_cast<std::size_t>(std::count(std::istreambuf_iterator<char>(file), {}, '\n'));
}

// Waits until the simulator has received count requests.
bool waitForRequests(const std::string& ledger, std::size_t count) {
    const auto start = Clock::now();
    while (lineCount(ledger) < count && secondsSince(start) < 10) {
        std::this_thread::sleep_for(5ms);
    }
    return lineCount(ledger) >= count;
}

PollPlan plan(double interval, std::vector<std::uint16_t> addresses) {
    PollPlan result{Uuid::random(), interval, {}, {}};
    for (const std::uint16_t address : addresses) {
        result.blocks.push_back({1, holding, address, 1});
    }
    return result;
}

// A simulator serving registerList, an engine on it at 9600 8E1 and the events it reported.
class EngineTest : public testing::Test {
protected:
    void startSimulator(std::vector<std::string> options = {}, double timeout = 1.0,
                        const std::string& served = registerList()) {
        options.insert(options.begin(), KESTRIN_SIM);
        std::ofstream(list) << served;
        options.insert(options.end(), {"--csv", list, "--ledger", ledger});
        simulator = std::make_unique<SimulatorProcess>(options);
        ASSERT_FALSE(simulator->port().empty());
        engine = std::make_unique<PollerEngine>(
            simulator->port(), SerialConfiguration{}, timeout, true,
            [this](const PollerEvent& event) { events.record(event); });
    }

    void TearDown() override {
        engine.reset();
        simulator.reset();
        std::remove(list.c_str());
        std::remove(ledger.c_str());
    }

    // Files of this process alone: ctest runs the tests side by side.
    static std::string scratch(const std::string& name) {
        return testing::TempDir() + "kestrin-engine-" + std::to_string(::getpid()) + "-" + name;
    }

    std::string list = scratch("list.csv");
    std::string ledger = scratch("ledger.jsonl");
    std::unique_ptr<SimulatorProcess> simulator;
    EventLog events;
    std::unique_ptr<PollerEngine> engine;
};

TEST_F(EngineTest, AnOverrunningPollIsReadAgainAtOnce) {
    // Each block takes over 500 ms, so a reading of three blocks overruns its 1 s interval.
    startSimulator({"--wire-timing", "--turnaround-ms", "500"});
    const PollPlan overrunning = plan(1.0, {0, 1, 2});
    const auto start = Clock::now();
    ASSERT_TRUE(engine->start({overrunning}).ok());
    // Three readings back to back take about 4.7 s; a second of rest after each would take 6.7.
    const auto all = events.waitFor(1 + 9, 6.0);
    EXPECT_EQ(readsOf(all, overrunning.id).size(), 9U) << secondsSince(start) << " s";
}

// Three writes queued while the first block is read: one goes out after each block, the rest
// before the poll, due again at once, is read anew; each is answered with its echo, and the block
// written to reads the value last written. The trace names reads by address=value, writes by
// their place in the queue.
TEST_F(EngineTest, QueuedWritesWaitOnlyForTheBlockInProgressAndGoInQueueOrder) {
    startSimulator({"--wire-timing", "--turnaround-ms", "300"});
    ASSERT_TRUE(engine->start({plan(0.01, {0, 10})}).ok());
    ASSERT_TRUE(waitForRequests(ledger, 1));
    const std::array tokens{Uuid::random(), Uuid::random(), Uuid::random()};
    for (std::uint16_t i = 0; i < tokens.size(); ++i) {
        engine->write(PDU::writeSingleRegister(10, i + 1), 1, tokens[i]);
    }
    const auto all = events.waitFor(1 + 7);
    engine->stop();
    std::string trace;
    for (std::size_t i = 1; i < std::min<std::size_t>(all.size(), 8); ++i) {
        if (const auto* read = all[i].as<PollerEvent::Read>()) {
            const auto& data = std::get<ReadData::Registers>(read->result.value().value).values;
            trace += "R" + std::to_string(read->block.address) + "=" + std::to_string(data.at(0));
        } else if (const auto* wrote = all[i].as<PollerEvent::Wrote>()) {
            EXPECT_TRUE(wrote->result.ok());
            EXPECT_EQ(wrote->response, wrote->request);
            trace += "W" + std::to_string(std::ranges::find(tokens, wrote->token) - tokens.begin());
        }
        trace += " ";
    }
    EXPECT_EQ(trace, "R0=0 W0 R10=1 W1 W2 R0=0 R10=3 ");
}

// A receiver that handles events late still dates them right: a read carries the moment its
// answer ended or its time-out struck, not when it was sent nor when it was handled.
TEST_F(EngineTest, AReadIsStampedWhenItsAnswerEndedOrItsTimeOutStruck) {
    using std::chrono::system_clock;
    const struct {
        std::vector<std::string> options;
        double timeout;
    } rows[] = {
        {{"--wire-timing", "--turnaround-ms", "300"}, 1.0},
        {{"--fault", "drop=1"}, 0.3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options.front());
        startSimulator(row.options, row.timeout);
        const auto before = system_clock::now();
        ASSERT_TRUE(engine->start({plan(60, {0})}).ok());
        const auto all = events.waitFor(2);
        const auto after = system_clock::now();
        ASSERT_GE(all.size(), 2U);
        EXPECT_TRUE(all[0].is<PollerEvent::Started>());
        EXPECT_TRUE(before <= all[0].time && all[0].time <= all[1].time);
        ASSERT_TRUE(all[1].is<PollerEvent::Read>());
        EXPECT_TRUE(all[1].time >= before + 300ms && all[1].time <= after)
            << std::chrono::duration<double>(all[1].time - before).count() << " s";
        engine.reset();
        simulator.reset();
        events.clear();
    }
}

// With nothing to read the thread sleeps; a broadcast write wakes it, is applied without waiting
// for an answer, and a poll added later reads what it wrote.
TEST_F(EngineTest, EmptyPlansSleepUntilABroadcastWakesTheThreadAndIsNotAnswered) {
    startSimulator();
    ASSERT_TRUE(engine->start({plan(0.01, {})}).ok());
    timespec before{}, after{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &before);
    std::this_thread::sleep_for(1s);
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &after);
    const double busy =
        double(after.tv_sec - before.tv_sec) + 1e-9 * double(after.tv_nsec - before.tv_nsec);
    EXPECT_LT(busy, 0.05) << "the engine thread must sleep";
    EXPECT_EQ(events.all().size(), 1U);
    EXPECT_EQ(lineCount(ledger), 0U);

    const Uuid token = Uuid::random();
    const Bytes pdu = PDU::writeSingleRegister(5, 77);
    engine->write(pdu, RTUFrame::broadcastUnit, token);
    const auto all = events.waitFor(2, 2.0);
    ASSERT_EQ(all.size(), 2U);
    const auto* wrote = all[1].as<PollerEvent::Wrote>();
    ASSERT_NE(wrote, nullptr);
    EXPECT_EQ(*wrote,
              (PollerEvent::Wrote{
                  token, 0, {}, RTUFrame::build(0, pdu), {}, wrote->duration, wrote->waited}));
    // The pause the devices get to act on it holds the line as an answer would.
    EXPECT_GE(wrote->duration, 0.1);
    const PollPlan check = plan(60, {5});
    engine->update({check});
    EXPECT_EQ(events.waitForReads(check.id, 1).at(0).result.value(), ReadData::registers({77}));
}

TEST_F(EngineTest, ReplanningDropsAndAddsPollsAndKeepsTheRest) {
    startSimulator();
    const PollPlan kept = plan(60, {0});
    const PollPlan dropped = plan(0.05, {1});
    const PollPlan added = plan(60, {2});
    ASSERT_TRUE(engine->start({kept, dropped}).ok());
    events.waitForReads(dropped.id, 3);
    engine->update({kept, added});
    const std::size_t before = events.all().size();
    events.waitForReads(added.id, 1);
    std::this_thread::sleep_for(300ms);
    const auto all = events.all();
    const std::vector<PollerEvent> later(all.begin() + static_cast<std::ptrdiff_t>(before),
                                         all.end());
    EXPECT_LE(readsOf(later, dropped.id).size(), 1U) << "only the reading in progress";
    EXPECT_EQ(readsOf(later, added.id).size(), 1U);
    EXPECT_EQ(readsOf(all, kept.id).size(), 1U) << "a kept poll keeps its schedule";
}

// A time-out through the engine is the late answer's test below; how long one takes is the link's.
TEST_F(EngineTest, FailedRequestsAreReportedWithTheBytesAndReadingGoesOn) {
    startSimulator({"--fault", "crc=1"}, 0.3);
    const PollPlan failing = plan(0.05, {4});
    ASSERT_TRUE(engine->start({failing}).ok());
    const auto reads = events.waitForReads(failing.id, 2);
    engine->stop();
    ASSERT_GE(reads.size(), 2U);
    for (const PollerEvent::Read& read : reads) {
        EXPECT_EQ(read.result, (Result<ReadData, PollFailureError>(
                                   PollFailureError{PollFailure::crcMismatch()})));
        EXPECT_EQ(read.request, RTUFrame::build(1, PDU::read(holding, 4, 1)));
        EXPECT_EQ(read.response.size(), 7U);
    }
}

// A device whose holding registers hold their own address and exist at present; it stays silent
// when silent says so for the nth asking of a block, and with hangUpAfter hangs up that long
// afterwards.
ScriptedDevice::Script
registerDevice(std::vector<int> present,
               std::function<bool(const ReadBlock& asked, int nth)> silent,
               std::optional<std::chrono::milliseconds> hangUpAfter = std::nullopt) {
    return [=](const ScriptedDevice::Request& request) -> ScriptedDevice::Reply {
        const ReadBlock asked{request.frame[0], holding,
                              static_cast<std::uint16_t>(requestAddress(request.frame)),
                              requestCount(request.frame)};
        if (silent(asked, request.repeat)) {
            return {{}, hangUpAfter.value_or(0ms), hangUpAfter.has_value()};
        }
        return {registersAnswer(request.frame,
                                [&](int address) { return std::ranges::count(present, address); })};
    };
}

// The reads of a device whose registers hold their own address: a split by its block, missing
// runs and refusals, a read by address (=value, E for exception 02), the end of a block's parts
// by *.
std::string trace(const std::vector<PollerEvent>& events, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count && i < events.size(); ++i) {
        if (const auto* split = events[i].as<PollerEvent::ReadInParts>()) {
            const ReadBlock& block = split->block;
            EXPECT_EQ(split->request,
                      RTUFrame::build(1, PDU::read(holding, block.address, block.count)));
            EXPECT_GT(split->duration, 0.0) << "the refused reads held the line";
            text += "P" + std::to_string(block.address) + ":";
            for (const ReadBlock& run : split->missing) {
                text += std::to_string(run.address) + "-" + std::to_string(run.lastAddress());
            }
            text += "/" + std::to_string(split->refusals) + " ";
        } else if (const auto* read = events[i].as<PollerEvent::Read>()) {
            text += "R" + std::to_string(read->block.address) +
                    (read->result ? "=" + std::to_string(read->block.address) : "E") + " ";
        } else if (events[i].is<PollerEvent::PartsRead>()) {
            text += "* ";
        } else if (events[i].is<PollerEvent::Wrote>()) {
            text += "W ";
        }
    }
    return text;
}

// A device that has only HR 0, 10, 20 and 30 refuses the bridged blocks HR 0-10 and 20-30 whole.
// The first reading splits them, says so once before the parts, and reads the parts; later
// readings go straight to the parts, and so do those after an update that left the blocks alone.
// A datapoint added inside a block splits it anew.
TEST_F(EngineTest, ARefusedBlockIsReadInPartsFromThenOn) {
    std::string served = "Name,Unit ID,Table,Address,Data type,Value\n";
    for (const int address : {0, 10, 20, 30}) {
        served += "r,1,HR," + std::to_string(address) + ",uint16," + std::to_string(address) + "\n";
    }
    startSimulator({}, 1.0, served);
    PollPlan bridged = plan(0.02, {0, 10, 20, 25, 30});
    bridged.pieces = bridged.blocks;
    bridged.blocks = {{1, holding, 0, 11}, {1, holding, 20, 11}};
    ASSERT_TRUE(engine->start({bridged}).ok());
    const std::string learnt = "P0:1-9/1 R0=0 R10=10 * P20:25-25/2 R20=20 R25E R30=30 * ";
    const std::string known = "R0=0 R10=10 * R20=20 R25E R30=30 * ";
    EXPECT_EQ(trace(events.waitFor(1 + 9 + 7), 1 + 9 + 7), learnt + known);

    engine->update({bridged});
    events.waitFor(1 + 9 + 14);
    bridged.pieces.insert(bridged.pieces.begin() + 1, ReadBlock{1, holding, 5, 1});
    engine->update({bridged});
    const std::string relearnt = "P0:5-5/2 R0=0 R5E R10=10 * ";
    const auto all = events.waitUntil(
        [&](const auto& all) { return trace(all, all.size()).find(relearnt) != std::string::npos; },
        10);
    engine->stop();
    const std::string text = trace(all, all.size());
    EXPECT_NE(text.find(relearnt), std::string::npos) << text;
    EXPECT_EQ(std::ranges::count(text, 'P'), 3) << text;
}

// A split cut short by a stop or by the loss of the port still reports what went on the wire:
// the refused block with its refusals and the parts read so far, the loss once and last. The
// device has HR 0 and 10 and never answers for HR 10; it hangs up while the engine waits for a
// late answer to that read.
TEST(PollerEngine, ASplitCutShortReportsThePartsReadAndEndsWithTheLoss) {
    const struct {
        std::string name;
        std::optional<std::chrono::milliseconds> hangUpAfter;
        std::string trace;
    } rows[] = {
        {"stopped while HR 10 is asked", std::nullopt, "P0:/1 R0=0 "},
        {"lost while waiting for HR 10's late answer", 450ms, "P0:/1 R0=0 R10E "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ScriptedDevice device(registerDevice(
            {0, 10}, [](const ReadBlock& asked, int) { return asked.address == 10; },
            row.hangUpAfter));
        EventLog events;
        PollerEngine engine(device.path(), {}, row.hangUpAfter ? 0.3 : 5.0, true,
                            [&](const PollerEvent& event) { events.record(event); });
        PollPlan refused = plan(60, {0, 10});
        refused.pieces = refused.blocks;
        refused.blocks = {{1, holding, 0, 11}};
        ASSERT_TRUE(engine.start({refused}).ok());
        const auto lost = [](const PollerEvent& event) {
            return event.is<PollerEvent::SerialLost>();
        };
        if (row.hangUpAfter) {
            events.waitUntil([&](const auto& all) { return std::ranges::any_of(all, lost); }, 5);
        } else {
            const auto start = Clock::now();
            while (device.requests() < 3 && secondsSince(start) < 5) {
                std::this_thread::sleep_for(5ms);
            }
        }
        engine.stop();
        const auto all = events.all();
        ASSERT_FALSE(all.empty());
        EXPECT_EQ(trace({all.begin() + 1, all.end()}, all.size()), row.trace);
        EXPECT_EQ(std::ranges::count_if(all, lost), row.hangUpAfter ? 1 : 0);
        EXPECT_EQ(lost(all.back()), row.hangUpAfter.has_value());
    }
}

// A write queued while a refused block is split goes out after the part under way, not after the
// whole split, and is reported in that place. HR 0 does not answer at first, which gives the test
// time to queue the write.
TEST(PollerEngine, AWriteGoesOutBetweenTheParts) {
    ScriptedDevice device(registerDevice({0, 10, 20, 30}, [](const ReadBlock& asked, int nth) {
        return asked == ReadBlock{1, holding, 0, 1} && nth == 1;
    }));
    EventLog events;
    PollerEngine engine(device.path(), {}, 0.3, true,
                        [&](const PollerEvent& event) { events.record(event); });
    PollPlan refused = plan(60, {0, 10, 20, 30});
    refused.pieces = refused.blocks;
    refused.blocks = {{1, holding, 0, 31}};
    ASSERT_TRUE(engine.start({refused}).ok());
    const auto start = Clock::now();
    while (device.requests() < 3 && secondsSince(start) < 5) {
        std::this_thread::sleep_for(5ms);
    }
    engine.write(PDU::writeSingleRegister(10, 7), 1, Uuid::random());
    const auto all = events.waitFor(1 + 1 + 4 + 1 + 1);
    engine.stop();
    EXPECT_EQ(trace({all.begin() + 1, all.end()}, all.size()),
              "P0:21-29/3 R0E W R10=10 R20=20 R30=30 * ");
}

// A part of several pieces that does not answer at all may hide the missing address: the split
// is not kept, so the next reading splits the block again and reads HR 10 by itself.
TEST(PollerEngine, APartThatFailedOtherwiseIsSplitAgainAtTheNextReading) {
    ScriptedDevice device(registerDevice({0, 10}, [](const ReadBlock& asked, int nth) {
        return asked == ReadBlock{1, holding, 10, 11} && nth == 1;
    }));
    EventLog events;
    PollerEngine engine(device.path(), {}, 0.2, true,
                        [&](const PollerEvent& event) { events.record(event); });
    PollPlan refused = plan(0.02, {0, 10, 20});
    refused.pieces = refused.blocks;
    refused.blocks = {{1, holding, 0, 21}};
    ASSERT_TRUE(engine.start({refused}).ok());
    const auto tenRead = [](const auto& all) {
        return std::ranges::any_of(all, [](const PollerEvent& event) {
            const auto* read = event.as<PollerEvent::Read>();
            return read != nullptr && read->block.address == 10 && read->result.ok();
        });
    };
    const auto all = events.waitUntil(tenRead, 5);
    engine.stop();
    const std::string text = trace({all.begin() + 1, all.end()}, all.size());
    EXPECT_EQ(text.substr(0, text.find("P0", 1)), "P0:/1 R0=0 R10E * ") << text.substr(0, 200);
    EXPECT_TRUE(tenRead(all)) << text.substr(0, 200);
}

TEST_F(EngineTest, StopEndsTheTransactionUnderWayAndFreesThePortAtOnce) {
    startSimulator({"--fault", "drop=1"}, 5.0);
    ASSERT_TRUE(engine->start({plan(0.05, {0})}).ok());
    ASSERT_TRUE(waitForRequests(ledger, 1));
    const auto stopping = Clock::now();
    engine->stop();
    EXPECT_LT(secondsSince(stopping), 1.0) << "not the 5 s time-out";
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(events.all().size(), 1U) << "only started: the cancelled read is not reported";
    PollerEngine next(simulator->port(), {}, 1.0, true, [](const PollerEvent&) {});
    EXPECT_TRUE(next.start({}).ok()) << "the port is closed when stop returns";
    const auto destroying = Clock::now();
    engine.reset();
    EXPECT_LT(secondsSince(destroying), 0.5) << "the destructor does not wait again";
}

TEST(PollerEngine, AStartThatCannotOpenThePortReturnsWhyAndReportsNothing) {
    const std::string missing = "/dev/ttyKestrinMissing";
    EventLog events;
    PollerEngine engine(missing, {}, 1.0, false,
                        [&](const PollerEvent& event) { events.record(event); });
    EXPECT_EQ(engine.start({plan(0.1, {0})}), (Result<void, SerialLinkError>(SerialLinkError{
                                                  SerialLinkError::OpenFailed{missing, ENOENT}})));
    engine.stop();
    EXPECT_TRUE(events.all().empty());
}

// Whether a poll is due at once or only in a minute, the loss is reported once, within seconds,
// with nothing after it, and a write waiting at the time is dropped.
TEST_F(EngineTest, LosingThePortReportsOneSerialLostAndNothingAfter) {
    for (const double interval : {60.0, 0.02}) {
        SCOPED_TRACE(interval);
        engine.reset();
        events.clear();
        startSimulator();
        const PollPlan running = plan(interval, {0});
        ASSERT_TRUE(engine->start({running}).ok());
        events.waitForReads(running.id, 1);
        engine->write(PDU::writeSingleRegister(1, 1), 1, Uuid::random());
        simulator->end(SIGKILL);
        const auto lost = [](const PollerEvent& event) {
            return event.is<PollerEvent::SerialLost>();
        };
        events.waitUntil([&](const auto& all) { return std::any_of(all.begin(), all.end(), lost); },
                         5);
        std::this_thread::sleep_for(300ms);
        const auto all = events.all();
        ASSERT_EQ(std::count_if(all.begin(), all.end(), lost), 1);
        EXPECT_EQ(all.back().value,
                  (PollerEvent::Case{PollerEvent::SerialLost{simulator->port()}}));
        const auto stopping = Clock::now();
        engine->stop();
        EXPECT_LT(secondsSince(stopping), 0.5);
    }
}

// The answer comes 300 ms after the request, past the 200 ms time-out: it is reported right after
// its own timed-out read, which counts the time the link listened for it. That it never lands on
// the next request is the link's test.
TEST_F(EngineTest, ALateAnswerIsReportedRightAfterItsTimedOutRead) {
    startSimulator({"--fault", "delay=1", "--delay-ms", "300"}, 0.2);
    ASSERT_TRUE(engine->start({plan(60, {2})}).ok());
    const auto all = events.waitFor(1 + 2);
    engine->stop();
    ASSERT_EQ(all.size(), 3U);
    const auto* read = all[1].as<PollerEvent::Read>();
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->block.address, 2);
    EXPECT_EQ(read->result,
              (Result<ReadData, PollFailureError>(PollFailureError{PollFailure::timeout()})));
    EXPECT_GE(read->duration + read->listenedAfter, 0.3);
    const auto* late = all[2].as<PollerEvent::LateAnswer>();
    ASSERT_NE(late, nullptr);
    EXPECT_EQ(late->bytes, RTUFrame::build(1, Bytes{0x03, 0x02, 0x00, 0x02}));
}

} // namespace
} // namespace kestrin
