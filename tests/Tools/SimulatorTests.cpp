#include "../ModbusCore/HexBytes.h"
#include "ChildProcess.h"
#include "Faults.h"
#include "RTUFrame.h"
#include "ServedLine.h"
#include "Simulator.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <set>
#include <termios.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kestrin {
namespace {

using test::hexBytes;
using Clock = std::chrono::steady_clock;
using Kind = Faults::Kind;

TEST(Faults, ParsesProbabilitiesPerKindAndRefusesMalformedFaultLists) {
    const Result<Faults, std::string> faults =
        Faults::parse("drop=0.5,wrong-unit=0.25,delay=0,late=0.125,noise=0.0625", 1);
    ASSERT_TRUE(faults.ok());
    EXPECT_EQ(faults.value().probability(Kind::drop), 0.5);
    EXPECT_EQ(faults.value().probability(Kind::wrongUnit), 0.25);
    EXPECT_EQ(faults.value().probability(Kind::crc), 0);
    EXPECT_EQ(faults.value().probability(Kind::late), 0.125);
    EXPECT_EQ(faults.value().probability(Kind::noise), 0.0625);
    EXPECT_TRUE(Faults::parse("", 1).value().isEmpty());
    for (const char* text : {"drop", "drop=", "drop=x", "drop=1.5", "drop=-0.1", "lag=0.1",
                             "drop=0.6,crc=0.6", "drop=0.1,"}) {
        EXPECT_FALSE(Faults::parse(text, 1).ok()) << text;
    }
}

TEST(Faults, DrawsEachKindAndLatenessAtTheirRatesAndRepeatsWithTheSeed) {
    Faults faults = Faults::parse("drop=0.3,crc=0.2", 7).value();
    Faults again = Faults::parse("drop=0.3,crc=0.2", 7).value();
    int drops = 0;
    int crcs = 0;
    for (int i = 0; i < 2000; ++i) {
        const std::optional<Kind> kind = faults.draw();
        EXPECT_EQ(again.draw(), kind);
        drops += kind == Kind::drop;
        crcs += kind == Kind::crc;
    }
    EXPECT_NEAR(drops, 600, 90);
    EXPECT_NEAR(crcs, 400, 80);

    Faults always = Faults::parse("garbage=1", 3).value();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(always.draw(), Kind::garbage);
    }

    // A late answer waits one to two time-outs, spread over that range.
    Faults lateness(5);
    Faults sameSeed(5);
    double earliest = 1;
    double latest = 0;
    for (int i = 0; i < 1000; ++i) {
        const double late = lateness.lateBy(0.1);
        EXPECT_EQ(sameSeed.lateBy(0.1), late);
        EXPECT_GE(late, 0.1);
        EXPECT_LT(late, 0.2);
        earliest = std::min(earliest, late);
        latest = std::max(latest, late);
    }
    EXPECT_LT(earliest, 0.11);
    EXPECT_GT(latest, 0.19);
}

TEST(Faults, EachKindSpoilsTheAnswerItsOwnWay) {
    Faults faults(1);
    const Bytes answer = RTUFrame::build(1, hexBytes("03 02 12 34"));

    EXPECT_TRUE(faults.apply(Kind::drop, answer).empty());
    EXPECT_EQ(faults.apply(Kind::delay, answer), answer);
    EXPECT_EQ(faults.apply(Kind::late, answer), answer);

    const Bytes broken = faults.apply(Kind::crc, answer);
    EXPECT_EQ(broken.size(), answer.size());
    EXPECT_FALSE(RTUFrame::hasValidCRC(broken));

    EXPECT_EQ(faults.apply(Kind::wrongUnit, answer), RTUFrame::build(2, hexBytes("03 02 12 34")));
    EXPECT_EQ(faults.apply(Kind::wrongUnit, RTUFrame::build(247, hexBytes("83 02"))),
              RTUFrame::build(1, hexBytes("83 02")));

    const Bytes garbage = faults.apply(Kind::garbage, answer);
    EXPECT_EQ(garbage.size(), answer.size());
    EXPECT_NE(garbage, answer);

    // Noise: one to three bytes before the intact answer.
    std::set<std::size_t> lengths;
    for (int i = 0; i < 60; ++i) {
        const Bytes noisy = faults.apply(Kind::noise, answer);
        ASSERT_GT(noisy.size(), answer.size());
        const std::size_t extra = noisy.size() - answer.size();
        EXPECT_TRUE(std::equal(answer.begin(), answer.end(), noisy.begin() + extra));
        lengths.insert(extra);
    }
    EXPECT_EQ(lengths, (std::set<std::size_t>{1, 2, 3}));
}

// A simulator serving holding registers 0 and 1 of unit 1 on a pseudo-terminal, on its own
// thread, and the master's end of the line. One ledger per test: ctest may run tests side by side.
class RunningSimulator {
public:
    RunningSimulator(SimulatorTiming timing, const std::string& faults = "")
        : line_(ServedLine::pseudoTerminal().value())
        , device_({Datapoint(Uuid::random(), "", 1, RegisterTable::holdingRegister, 0,
                             DataType::uint32, WordOrder::abcd, 1, "", DisplayFormat::decimal,
                             0x00010002, "", Simulation())}) {
        EXPECT_TRUE(ledger_.open(ledgerPath_));
        master_ = ::open(line_.path().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        sigset_t mask;
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
        thread_ = std::thread([this, timing, faults, mask] {
            Simulator simulator(line_.fd(), device_, Faults::parse(faults, 1).value(), ledger_,
                                timing);
            simulator.run(stop_, mask);
        });
    }

    ~RunningSimulator() {
        stop_ = true;
        // Any byte wakes the loop so that it sees the stop.
        const std::uint8_t wake = 0;
        (void)::write(master_, &wake, 1);
        thread_.join();
        ::close(master_);
    }

    void send(const Bytes& bytes) {
        ASSERT_EQ(::write(master_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

    // Everything that arrives until count bytes are in or the limit passes.
    Bytes receive(std::size_t count, std::chrono::milliseconds limit) {
        Bytes received;
        const Clock::time_point deadline = Clock::now() + limit;
        while (received.size() < count && Clock::now() < deadline) {
            pollfd input{master_, POLLIN, 0};
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
            std::uint8_t buffer[256];
            const ssize_t n = poll(&input, 1, static_cast<int>(left.count())) == 1
                                  ? ::read(master_, buffer, sizeof buffer)
                                  : 0;
            received.insert(received.end(), buffer, buffer + std::max<ssize_t>(n, 0));
        }
        return received;
    }

    std::vector<nlohmann::json> ledgerEntries() const {
        std::ifstream file(ledgerPath_);
        std::vector<nlohmann::json> entries;
        for (std::string line; std::getline(file, line);) {
            entries.push_back(nlohmann::json::parse(line));
        }
        return entries;
    }

private:
    ServedLine line_;
    SlaveDevice device_;
    Ledger ledger_;
    std::string ledgerPath_ =
        ::testing::TempDir() + "kestrin-sim-" + std::to_string(::getpid()) + "-" +
        ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".jsonl";
    int master_ = -1;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

const Bytes readRequest = RTUFrame::build(1, hexBytes("03 00 00 00 02"));
const Bytes readAnswer = RTUFrame::build(1, hexBytes("03 04 00 01 00 02"));

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

TEST(Simulator, AnswersOnlyAfterTheWireTimeOfRequestAndAnswer) {
    SimulatorTiming timing;
    timing.wireTiming = true;
    timing.baudRate = 9600;
    timing.bitsPerCharacter = 11;
    timing.turnaround = 0.005;
    RunningSimulator simulator(timing);

    const Clock::time_point sent = Clock::now();
    simulator.send(readRequest);
    EXPECT_EQ(simulator.receive(readAnswer.size(), std::chrono::seconds(5)), readAnswer);
    // 8 + 9 characters of 11 bits at 9600 baud, plus 5 ms.
    const double expected = 17 * 11 / 9600.0 + 0.005;
    const double elapsed = secondsSince(sent);
    EXPECT_GE(elapsed, expected);
    EXPECT_LT(elapsed, expected + 0.5);
}

TEST(Simulator, DiscardsNoiseAfterSilenceAndAnswersTheRequestBehindIt) {
    RunningSimulator simulator(SimulatorTiming{});
    Bytes noisy = hexBytes("FF FE");
    noisy.insert(noisy.end(), readRequest.begin(), readRequest.end());
    simulator.send(noisy);
    EXPECT_EQ(simulator.receive(readAnswer.size(), std::chrono::seconds(5)), readAnswer);

    const std::vector<nlohmann::json> ledger = simulator.ledgerEntries();
    ASSERT_EQ(ledger.size(), 2U);
    EXPECT_EQ(ledger[0]["action"], "discarded");
    EXPECT_EQ(ledger[0]["received"], "FF FE");
    EXPECT_EQ(ledger[1]["action"], "answered");
}

TEST(Simulator, DelayFaultHoldsTheAnswerBackAndLedgerSaysSo) {
    SimulatorTiming timing;
    timing.delay = 0.3;
    RunningSimulator simulator(timing, "delay=1");

    const Clock::time_point sent = Clock::now();
    simulator.send(readRequest);
    EXPECT_TRUE(simulator.receive(1, std::chrono::milliseconds(200)).empty());
    EXPECT_EQ(simulator.receive(readAnswer.size(), std::chrono::seconds(5)), readAnswer);
    EXPECT_GE(Clock::now() - sent, std::chrono::milliseconds(300));

    const std::vector<nlohmann::json> ledger = simulator.ledgerEntries();
    ASSERT_EQ(ledger.size(), 1U);
    EXPECT_EQ(ledger[0]["fault"], "delay");
}

// Half duplex: a request that comes while a late answer is held back is heard by nobody, so the
// late answer is all the master gets until the device listens again.
TEST(Simulator, LateAnswerComesOneToTwoTimeOutsLateAndDeafensTheDeviceMeanwhile) {
    SimulatorTiming timing;
    timing.masterTimeout = 0.1;
    RunningSimulator simulator(timing, "late=1");
    // Two registers, then one, so that the answers differ.
    const Bytes oneRegister = RTUFrame::build(1, hexBytes("03 00 00 00 01"));
    const Bytes oneAnswer = RTUFrame::build(1, hexBytes("03 02 00 01"));

    const Clock::time_point sent = Clock::now();
    simulator.send(readRequest);
    EXPECT_TRUE(simulator.receive(1, std::chrono::milliseconds(50)).empty());
    simulator.send(oneRegister);
    EXPECT_EQ(simulator.receive(readAnswer.size(), std::chrono::seconds(5)), readAnswer);
    const double lateBy = secondsSince(sent);
    EXPECT_GE(lateBy, timing.masterTimeout);
    EXPECT_LT(lateBy, 2 * timing.masterTimeout + 0.5);
    // Long past the latest moment an answer to the second request could come.
    EXPECT_TRUE(simulator.receive(1, std::chrono::milliseconds(400)).empty());

    simulator.send(oneRegister);
    EXPECT_EQ(simulator.receive(oneAnswer.size(), std::chrono::seconds(5)), oneAnswer);

    const std::vector<nlohmann::json> ledger = simulator.ledgerEntries();
    ASSERT_EQ(ledger.size(), 3U);
    EXPECT_EQ(ledger[0]["fault"], "late");
    EXPECT_GE(ledger[0]["delayMs"].get<double>(), 100);
    EXPECT_LT(ledger[0]["delayMs"].get<double>(), 200);
    EXPECT_LE(ledger[0]["delayMs"].get<double>(), lateBy * 1000);
    EXPECT_EQ(ledger[1]["action"], "ignored");
    EXPECT_EQ(ledger[1]["sent"], "");
    EXPECT_TRUE(ledger[1].contains("reason"));
    EXPECT_EQ(ledger[2]["action"], "answered");
}

// Serving an existing device: raw, with the frame asked for, or the reason it cannot be.
TEST(ServedLine, PortIsRawWithItsFrameOrSaysWhyNot) {
    const ServedLine terminal = ServedLine::pseudoTerminal().value();
    const auto served = ServedLine::port(terminal.path(), {19200, 7, Parity::odd, 2});
    ASSERT_TRUE(served.ok()) << served.error();
    termios applied{};
    ASSERT_EQ(tcgetattr(served.value().fd(), &applied), 0);
    EXPECT_EQ(applied.c_lflag & (ECHO | ICANON), 0U);
    // A pseudo-terminal keeps 8N whatever it is asked for; the stop bits it takes.
    EXPECT_EQ(applied.c_cflag & CSTOPB, tcflag_t{CSTOPB});
    EXPECT_EQ(ServedLine::port("/dev/ttyKestrinMissing", {}).error(),
              "cannot open /dev/ttyKestrinMissing: No such file or directory");
}

TEST(Simulator, RefusesBadOptionValuesWithUsage) {
    const struct {
        std::vector<std::string> options;
        std::string message;
    } rows[] = {
        {{"--master-timeout-ms", "0"}, "invalid value '0' for --master-timeout-ms"},
        {{"--delay-ms", "-1"}, "invalid value '-1' for --delay-ms"},
        {{"--baud", "0"},
         "cannot use the baud rate '0': give a positive whole number, usually one "
         "of 1200, 2400, 4800, 9600, 14400, 19200, 38400, 57600, 115200, 230400"},
        {{"--frame=9Z1"}, "invalid value '9Z1' for --frame"},
        {{"--max-registers", "126"}, "invalid value '126' for --max-registers"},
        {{"--max-registers", "16,quiet"}, "invalid value '16,quiet' for --max-registers"},
        {{"--fault", "noise=2"}, "the probability of noise must be a number from 0 to 1"},
        {{"--csv", "a", "--project", "b"}, "--csv and --project exclude each other"},
        {{"--replay", "a", "--record", "b"}, "--replay and --record exclude each other"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        const ChildProcess::ProcessResult result =
            ChildProcess::run(ChildProcess::sim(row.options));
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_TRUE(result.err.starts_with("kestrin-sim: " + row.message + "\n")) << result.err;
        EXPECT_EQ(result.out, "");
    }
}

} // namespace
} // namespace kestrin
