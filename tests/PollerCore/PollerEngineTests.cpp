#include "ChildProcess.h"
#include "PDU.h"
#include "PollerEngine.h"
#include "RTUFrame.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <mutex>
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
        {
            const std::lock_guard lock(mutex_);
            events_.push_back(event);
        }
        condition_.notify_all();
    }
    // The events once there are at least count of them, or all there are after the time limit.
    std::vector<PollerEvent> waitFor(std::size_t count, double seconds = 10) {
        return waitUntil([&](const auto& events) { return events.size() >= count; }, seconds);
    }
    std::vector<PollerEvent>
    waitUntil(const std::function<bool(const std::vector<PollerEvent>&)>& done, double seconds) {
        std::unique_lock lock(mutex_);
        condition_.wait_for(lock, std::chrono::duration<double>(seconds),
                            [&] { return done(events_); });
        return events_;
    }
    // The readings of poll once there are at least count of them.
    std::vector<PollerEvent::Read> waitForReads(const Uuid& poll, std::size_t count) {
        const auto enough = [&](const auto& events) {
            return readsOf(events, poll).size() >= count;
        };
        return readsOf(waitUntil(enough, 10), poll);
    }
    std::vector<PollerEvent> all() {
        const std::lock_guard lock(mutex_);
        return events_;
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
    while (lineCount(ledger) < count) {
        if (secondsSince(start) > 10) {
            return false;
        }
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

PollPlan plan(double interval, std::vector<std::uint16_t> addresses) {
    PollPlan result{Uuid::random(), interval, {}};
    for (const std::uint16_t address : addresses) {
        result.blocks.push_back({1, holding, address, 1});
    }
    return result;
}

// A simulator serving registerList, an engine on it at 9600 8E1 and the events it posted.
class EngineTest : public testing::Test {
protected:
    void startSimulator(std::vector<std::string> options = {}, double timeout = 1.0) {
        options.insert(options.begin(), KESTRIN_SIM);
        std::ofstream(list) << registerList();
        options.insert(options.end(), {"--csv", list, "--ledger", ledger});
        simulator = std::make_unique<SimulatorProcess>(options);
        ASSERT_FALSE(simulator->port().empty());
        engine = std::make_unique<PollerEngine>(
            simulator->port(), SerialConfiguration{}, timeout, true,
            [this](const PollerEvent& event) { events.record(event); },
            // Delivered at once on the engine's thread: the order is what the engine produced.
            [](std::function<void()> task) { task(); });
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

TEST_F(EngineTest, AWriteWaitsOnlyForTheBlockInProgress) {
    startSimulator({"--wire-timing", "--turnaround-ms", "300"});
    const PollPlan five = plan(60, {0, 10, 20, 30, 40});
    ASSERT_TRUE(engine->start({five}).ok());
    ASSERT_TRUE(waitForRequests(ledger, 1));
    const Uuid token = Uuid::random();
    engine->write(PDU::writeSingleRegister(100, 7), 1, token);
    const auto all = events.waitFor(1 + 6);
    ASSERT_EQ(all.size(), 7U);
    EXPECT_EQ(all[1].as<PollerEvent::Read>()->block.address, 0);
    const auto* wrote = all[2].as<PollerEvent::Wrote>();
    ASSERT_NE(wrote, nullptr);
    EXPECT_EQ(wrote->token, token);
    EXPECT_TRUE(wrote->result.ok());
    EXPECT_EQ(wrote->response, wrote->request) << "FC06 is answered with an echo";
    for (std::size_t i = 3; i < 7; ++i) {
        EXPECT_EQ(all[i].as<PollerEvent::Read>()->block.address, 10 * (i - 2));
    }
}

TEST_F(EngineTest, QueuedWritesGoFirstInQueueOrder) {
    startSimulator();
    const std::array tokens{Uuid::random(), Uuid::random(), Uuid::random()};
    for (std::uint16_t i = 0; i < tokens.size(); ++i) {
        engine->write(PDU::writeSingleRegister(10, i + 1), 1, tokens[i]);
    }
    const PollPlan due = plan(60, {10});
    ASSERT_TRUE(engine->start({due}).ok());
    const auto all = events.waitFor(1 + 4);
    ASSERT_EQ(all.size(), 5U);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        EXPECT_EQ(all[1 + i].as<PollerEvent::Wrote>()->token, tokens[i]);
    }
    EXPECT_EQ(all[4].as<PollerEvent::Read>()->result.value(), ReadData::registers({3}));
}

TEST_F(EngineTest, ABroadcastIsAppliedWithoutWaitingForAnAnswer) {
    startSimulator();
    ASSERT_TRUE(engine->start({}).ok());
    const Uuid token = Uuid::random();
    const Bytes pdu = PDU::writeSingleRegister(5, 77);
    engine->write(pdu, RTUFrame::broadcastUnit, token);
    const auto all = events.waitFor(2);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[1],
              (PollerEvent{PollerEvent::Wrote{token, 0, {}, RTUFrame::build(0, pdu), {}, 0.0}}));
    const PollPlan check = plan(60, {5});
    engine->update({check});
    EXPECT_EQ(events.waitForReads(check.id, 1).at(0).result.value(), ReadData::registers({77}));
}

TEST_F(EngineTest, EmptyPlansSleepUntilAWriteWakesTheThread) {
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

    engine->write(PDU::writeSingleRegister(1, 1), 1, Uuid::random());
    EXPECT_TRUE(events.waitFor(2, 2.0).at(1).is<PollerEvent::Wrote>());
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

TEST_F(EngineTest, FailedRequestsAreReportedWithTheBytesAndReadingGoesOn) {
    struct Row {
        std::string fault;
        PollFailure failure;
        std::size_t responseSize;
    };
    const Row rows[] = {
        {"drop=1", PollFailure::timeout(), 0},
        {"crc=1", PollFailure::crcMismatch(), 7},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.fault);
        engine.reset();
        startSimulator({"--fault", row.fault}, 0.3);
        const PollPlan failing = plan(0.05, {4});
        ASSERT_TRUE(engine->start({failing}).ok());
        const auto reads = events.waitForReads(failing.id, 2);
        engine->stop();
        ASSERT_GE(reads.size(), 2U);
        for (const PollerEvent::Read& read : reads) {
            EXPECT_EQ(read.result,
                      (Result<ReadData, PollFailureError>(PollFailureError{row.failure})));
            EXPECT_EQ(read.request, RTUFrame::build(1, PDU::read(holding, 4, 1)));
            EXPECT_EQ(read.response.size(), row.responseSize);
        }
        if (row.responseSize == 0) {
            EXPECT_GE(reads[0].duration, 0.3);
            EXPECT_LT(reads[0].duration, 1.0);
        }
    }
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

TEST_F(EngineTest, APortLostWhileNothingIsDueIsNoticedWithoutWaitingForThePoll) {
    startSimulator();
    const PollPlan rare = plan(60, {0});
    ASSERT_TRUE(engine->start({rare}).ok());
    events.waitForReads(rare.id, 1);
    simulator->end(SIGKILL);
    const auto all = events.waitUntil(
        [](const auto& seen) {
            return !seen.empty() && seen.back().template is<PollerEvent::SerialLost>();
        },
        5);
    EXPECT_TRUE(all.back().is<PollerEvent::SerialLost>());
}

TEST(PollerEngine, AStartThatCannotOpenThePortReturnsWhyAndPostsNothing) {
    const std::string missing = "/dev/ttyKestrinMissing";
    EventLog events;
    PollerEngine engine(missing, {}, 1.0, false,
                        [&](const PollerEvent& event) { events.record(event); });
    EXPECT_EQ(engine.start({plan(0.1, {0})}), (Result<void, SerialLinkError>(SerialLinkError{
                                                  SerialLinkError::OpenFailed{missing, ENOENT}})));
    engine.stop();
    EXPECT_TRUE(events.all().empty());
}

TEST_F(EngineTest, LosingThePortPostsOneSerialLostAndNothingAfter) {
    startSimulator();
    const PollPlan running = plan(0.02, {0});
    ASSERT_TRUE(engine->start({running}).ok());
    events.waitFor(1 + 3);
    engine->write(PDU::writeSingleRegister(1, 1), 1, Uuid::random());
    simulator->end(SIGKILL);
    const auto lost = [](const PollerEvent& event) { return event.is<PollerEvent::SerialLost>(); };
    events.waitUntil([&](const auto& all) { return std::any_of(all.begin(), all.end(), lost); }, 5);
    std::this_thread::sleep_for(300ms);
    const auto all = events.all();
    ASSERT_EQ(std::count_if(all.begin(), all.end(), lost), 1);
    EXPECT_EQ(all.back(), (PollerEvent{PollerEvent::SerialLost{simulator->port()}}));
    const auto stopping = Clock::now();
    engine->stop();
    EXPECT_LT(secondsSince(stopping), 0.5);
}

// Every answer comes 300 ms after the request, past the 200 ms time-out: each is reported right
// after its own timed-out read and never taken for the next block's.
TEST_F(EngineTest, ALateAnswerIsReportedAfterItsReadAndNeverLandsOnTheNextBlock) {
    startSimulator({"--fault", "delay=1", "--delay-ms", "300"}, 0.2);
    ASSERT_TRUE(engine->start({plan(60, {0, 2})}).ok());
    const auto all = events.waitFor(1 + 4);
    engine->stop();
    ASSERT_EQ(all.size(), 5U);
    for (std::uint8_t address : {0, 2}) {
        SCOPED_TRACE(address);
        const auto* read = all[1 + address].as<PollerEvent::Read>();
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(read->block.address, address);
        EXPECT_EQ(read->result,
                  (Result<ReadData, PollFailureError>(PollFailureError{PollFailure::timeout()})));
        const auto* late = all[2 + address].as<PollerEvent::LateAnswer>();
        ASSERT_NE(late, nullptr);
        EXPECT_EQ(late->bytes, RTUFrame::build(1, Bytes{0x03, 0x02, 0x00, address}));
    }
}

} // namespace
} // namespace kestrin
