#include "AdministratorCapability.h"
#include "ExactBaudRate.h"
#include "RTUFrame.h"
#include "SerialLink.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

const Bytes request = RTUFrame::build(1, Bytes{0x03, 0x00, 0x00, 0x00, 0x02});
// 01 03 04 00 0A 00 0B + CRC: two registers; the byte count gives the length 9.
const Bytes answer = RTUFrame::build(1, Bytes{0x03, 0x04, 0x00, 0x0A, 0x00, 0x0B});

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The test plays the device on the master side of a pseudo-terminal; the link opens the slave.
// 1200 baud 8E1 makes the inter-frame silence 11 x 3.5 / 1200 = 32 ms, long enough to observe.
class PseudoTerminal : public testing::Test {
protected:
    void SetUp() override {
        master = posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_GE(master, 0);
        ASSERT_EQ(grantpt(master), 0);
        ASSERT_EQ(unlockpt(master), 0);
        std::array<char, 64> name{};
        ASSERT_EQ(ptsname_r(master, name.data(), name.size()), 0);
        path = name.data();
        link =
            std::make_unique<SerialLink>(path, SerialConfiguration{1200, 8, Parity::even, 1}, true);
        ASSERT_TRUE(link->open().ok());
    }
    void TearDown() override {
        if (device.joinable()) {
            device.join();
        }
        if (master >= 0) {
            ::close(master);
        }
    }

    // The request as the device received it; empty when the line went away first.
    Bytes receive(std::size_t count) const {
        Bytes bytes(count);
        for (std::size_t done = 0; done < count;) {
            const ssize_t n = ::read(master, bytes.data() + done, count - done);
            if (n <= 0) {
                return {};
            }
            done += static_cast<std::size_t>(n);
        }
        return bytes;
    }
    void send(const Bytes& bytes) const {
        EXPECT_EQ(::write(master, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    // The device answers each request with these pieces, pausing between them.
    void answerWith(std::vector<Bytes> pieces, std::chrono::milliseconds pause = 0ms) {
        device = std::thread([this, pieces = std::move(pieces), pause] {
            EXPECT_EQ(receive(request.size()), request);
            for (std::size_t i = 0; i < pieces.size(); ++i) {
                std::this_thread::sleep_for(i > 0 ? pause : 0ms);
                send(pieces[i]);
            }
        });
    }

    int master = -1;
    std::string path;
    std::unique_ptr<SerialLink> link;
    std::thread device;
};

TEST_F(PseudoTerminal, KnownLengthEndsTheAnswerAndDropsSurplusBytes) {
    Bytes withSurplus = answer;
    withSurplus.insert(withSurplus.end(), {0xAA, 0xBB});
    answerWith({withSurplus});
    EXPECT_EQ(link->transact(request, true, 2.0), answer);
}

TEST_F(PseudoTerminal, PiecesJoinAcrossPausesOnceTheLengthIsKnown) {
    answerWith({Bytes(answer.begin(), answer.begin() + 3), Bytes(answer.begin() + 3, answer.end())},
               100ms);
    EXPECT_EQ(link->transact(request, true, 2.0), answer);
}

TEST_F(PseudoTerminal, SilenceEndsAnAnswerOfUnknownLength) {
    const Bytes unknown{0x01, 0x2B, 0x00};
    answerWith({unknown});
    const auto start = Clock::now();
    EXPECT_EQ(link->transact(request, true, 2.0), unknown);
    EXPECT_LT(secondsSince(start), 0.5);
}

TEST_F(PseudoTerminal, BroadcastSendsAndReturnsNothingAfterTheTurnaround) {
    answerWith({answer});
    const auto start = Clock::now();
    EXPECT_EQ(link->transact(request, false, 2.0), Bytes{});
    EXPECT_GE(secondsSince(start), 0.1);
}

TEST_F(PseudoTerminal, NextRequestWaitsOutTheInterFrameSilence) {
    Clock::time_point answered, secondArrived;
    device = std::thread([&] {
        EXPECT_EQ(receive(request.size()), request);
        // Taken before sending: the link may read the answer before this thread runs again.
        answered = Clock::now();
        send(answer);
        EXPECT_EQ(receive(request.size()), request);
        secondArrived = Clock::now();
        send(answer);
    });
    ASSERT_EQ(link->transact(request, true, 2.0), answer);
    ASSERT_EQ(link->transact(request, true, 2.0), answer);
    device.join();
    EXPECT_GE(std::chrono::duration<double>(secondArrived - answered).count(),
              link->interFrameDelay());
}

TEST_F(PseudoTerminal, ClosedMasterIsADisconnectNotATimeout) {
    device = std::thread([this] {
        EXPECT_EQ(receive(request.size()), request);
        ::close(master);
        master = -1;
    });
    EXPECT_EQ(link->transact(request, true, 2.0), SerialLinkError{SerialLinkError::Disconnected{}});
}

TEST_F(PseudoTerminal, ALateAnswerIsCollectedForItsRequestAndNeverTakenByTheNext) {
    const Bytes second = RTUFrame::build(1, Bytes{0x03, 0x04, 0x00, 0x14, 0x00, 0x15});
    device = std::thread([&] {
        EXPECT_EQ(receive(request.size()), request);
        // 1.5 time-outs late, as a slow device does.
        std::this_thread::sleep_for(450ms);
        send(answer);
        EXPECT_EQ(receive(request.size()), request);
        send(second);
    });
    EXPECT_EQ(link->transact(request, true, 0.3), SerialLinkError{SerialLinkError::Timeout{}});
    EXPECT_EQ(link->lateAnswer(0.3), answer);
    EXPECT_EQ(link->transact(request, true, 0.3), second);
}

TEST_F(PseudoTerminal, NoAnswerTimesOutAndTheLateOneIsWaitedForTillTwoTimeOuts) {
    answerWith({});
    const auto start = Clock::now();
    ASSERT_EQ(link->transact(request, true, 0.2), SerialLinkError{SerialLinkError::Timeout{}});
    EXPECT_GE(secondsSince(start), 0.2);
    EXPECT_EQ(link->lateAnswer(0.2), Bytes{});
    EXPECT_GE(secondsSince(start), 0.4);
    EXPECT_LT(secondsSince(start), 1.0);
}

TEST_F(PseudoTerminal, TheRestOfADefectiveAnswerIsCollectedUntilTheLineIsQuiet) {
    // A noise byte in front makes the length come out short: FC 01 with byte count 01 is 6 bytes.
    const Bytes noisy{0x01, 0x01, 0x01, 0x03, 0x04, 0x00, 0x0A, 0x00, 0x0B, 0xAA};
    answerWith({Bytes(noisy.begin(), noisy.begin() + 6), Bytes(noisy.begin() + 6, noisy.end())},
               10ms);
    EXPECT_EQ(link->transact(request, true, 1.0), Bytes(noisy.begin(), noisy.begin() + 6));
    EXPECT_EQ(link->restOfAnswer(), Bytes(noisy.begin() + 6, noisy.end()));
}

TEST_F(PseudoTerminal, CancellingEndsEveryWaitAtOnce) {
    WakeSignal cancel;
    WakeSignal wake;
    link->cancelWith(cancel);
    answerWith({});
    std::thread stopper([&] {
        std::this_thread::sleep_for(100ms);
        cancel.raise();
    });
    const auto start = Clock::now();
    EXPECT_EQ(link->transact(request, true, 5.0), SerialLinkError{SerialLinkError::Cancelled{}});
    EXPECT_LT(secondsSince(start), 1.0);
    stopper.join();
    // Raised stays raised: nothing waits again on a stopped link.
    EXPECT_EQ(link->transact(request, true, 5.0), SerialLinkError{SerialLinkError::Cancelled{}});
    EXPECT_EQ(link->idle(std::nullopt, wake), SerialLinkError{SerialLinkError::Cancelled{}});
}

TEST_F(PseudoTerminal, IdleEndsOnAWakeUpOrAHangUpAndSendsNothing) {
    WakeSignal wake;
    wake.raise();
    EXPECT_TRUE(link->idle(std::nullopt, wake).ok());
    wake.clear();
    EXPECT_TRUE(link->idle(Clock::now() + 50ms, wake).ok()) << "the time is up";
    device = std::thread([this] {
        std::this_thread::sleep_for(100ms);
        ::close(master);
        master = -1;
    });
    const auto start = Clock::now();
    EXPECT_EQ(link->idle(Clock::now() + 60s, wake),
              SerialLinkError{SerialLinkError::Disconnected{}});
    EXPECT_LT(secondsSince(start), 5.0);
}

TEST_F(PseudoTerminal, SecondLinkOnTheSamePortIsBusy) {
    std::thread([this] {
        dropAdministratorCapability();
        SerialLink second(path, {}, true);
        EXPECT_EQ(second.open(), SerialLinkError{SerialLinkError::Busy{path}});
    }).join();
    link->close();
    std::thread([this] {
        dropAdministratorCapability();
        SerialLink third(path, {}, true);
        EXPECT_TRUE(third.open().ok()) << "close gives up exclusive use";
    }).join();
}

TEST(ExactBaudRate, TerminalTakesAnyRateAndOtherFilesRefuse) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(master, 0);
    EXPECT_EQ(ExactBaudRate::set(master, 12345), 0);
    EXPECT_EQ(ExactBaudRate::set(master, 0), -1);
    ::close(master);
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    EXPECT_EQ(ExactBaudRate::set(pipe[0], 9600), -1);
    EXPECT_EQ(errno, ENOTTY);
    ::close(pipe[0]);
    ::close(pipe[1]);
}

} // namespace
} // namespace kestrin
