#include "../ModbusCore/HexBytes.h"
#include "RTUFrame.h"
#include "ServedLine.h"
#include "Simulator.h"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;
using Clock = std::chrono::steady_clock;

// A simulator serving holding registers 0 and 1 of unit 1 on a pseudo-terminal, on its own
// thread, and the master's end of the line.
class RunningSimulator {
public:
    RunningSimulator(SimulatorTiming timing, const std::string& faults = "")
        : line_(ServedLine::pseudoTerminal().value())
        , device_({Datapoint(Uuid::random(), "", 1, RegisterTable::holdingRegister, 0,
                             DataType::uint32, WordOrder::abcd, 1, "", DisplayFormat::decimal,
                             0x00010002, "", Simulation())}) {
        // One file per test: ctest may run tests side by side.
        ledgerPath_ = ::testing::TempDir() + "kestrin-sim-" +
                      ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".jsonl";
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

    // Everything that arrives until `count` bytes are in or the limit passes.
    Bytes receive(std::size_t count, std::chrono::milliseconds limit) {
        Bytes received;
        const Clock::time_point deadline = Clock::now() + limit;
        while (received.size() < count && Clock::now() < deadline) {
            pollfd input{master_, POLLIN, 0};
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
            if (poll(&input, 1, static_cast<int>(left.count()) + 1) == 1) {
                std::uint8_t buffer[256];
                const ssize_t n = ::read(master_, buffer, sizeof buffer);
                if (n > 0) {
                    received.insert(received.end(), buffer, buffer + n);
                }
            }
        }
        return received;
    }

    std::vector<std::string> ledgerLines() const {
        std::ifstream file(ledgerPath_);
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

private:
    ServedLine line_;
    SlaveDevice device_;
    Ledger ledger_;
    std::string ledgerPath_;
    int master_ = -1;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

const Bytes readRequest = RTUFrame::build(1, hexBytes("03 00 00 00 02"));
const Bytes readAnswer = RTUFrame::build(1, hexBytes("03 04 00 01 00 02"));

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
    const double elapsed = std::chrono::duration<double>(Clock::now() - sent).count();
    EXPECT_GE(elapsed, expected);
    EXPECT_LT(elapsed, expected + 0.5);
}

TEST(Simulator, DiscardsNoiseAfterSilenceAndAnswersTheRequestBehindIt) {
    RunningSimulator simulator(SimulatorTiming{});
    Bytes noisy = hexBytes("FF FE");
    noisy.insert(noisy.end(), readRequest.begin(), readRequest.end());
    simulator.send(noisy);
    EXPECT_EQ(simulator.receive(readAnswer.size(), std::chrono::seconds(5)), readAnswer);

    const std::vector<std::string> ledger = simulator.ledgerLines();
    ASSERT_EQ(ledger.size(), 2U);
    EXPECT_NE(ledger[0].find(R"("action":"discarded")"), std::string::npos) << ledger[0];
    EXPECT_NE(ledger[0].find(R"("received":"FF FE")"), std::string::npos) << ledger[0];
    EXPECT_NE(ledger[1].find(R"("action":"answered")"), std::string::npos) << ledger[1];
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

    const std::vector<std::string> ledger = simulator.ledgerLines();
    ASSERT_EQ(ledger.size(), 1U);
    EXPECT_NE(ledger[0].find(R"("fault":"delay")"), std::string::npos) << ledger[0];
}

} // namespace
} // namespace kestrin
