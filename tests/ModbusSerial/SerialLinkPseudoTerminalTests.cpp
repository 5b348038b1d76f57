#include "ExactBaudRate.h"
#include "RTUFrame.h"
#include "SerialLink.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <linux/capability.h>
#include <memory>
#include <optional>
#include <sys/syscall.h>
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

Bytes slice(const Bytes& bytes, std::size_t from, std::size_t to) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(from),
            bytes.begin() + static_cast<std::ptrdiff_t>(to)};
}

// Root bypasses TIOCEXCL through CAP_SYS_ADMIN; capabilities are per thread, so a thread that
// drops it sees the kernel's refusal as any user would.
void dropAdministratorCapability() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> data{};
    ASSERT_EQ(syscall(SYS_capget, &header, data.data()), 0);
    data[CAP_TO_INDEX(CAP_SYS_ADMIN)].effective &= ~CAP_TO_MASK(CAP_SYS_ADMIN);
    ASSERT_EQ(syscall(SYS_capset, &header, data.data()), 0);
}

// The test plays the device on the master side of a pseudo-terminal; the link opens the slave.
// 1200 baud 8E1 makes the inter-frame silence 11 x 3.5 / 1200 = 32 ms, long enough to observe.
class PseudoTerminal : public testing::Test {
protected:
    void SetUp() override { open(); }
    void TearDown() override { close(); }
    // A new line, after the previous device is done.
    void open() {
        close();
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
    void close() {
        if (device.joinable()) {
            device.join();
        }
        if (master >= 0) {
            ::close(master);
        }
        master = -1;
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
    // The device answers the request with these pieces, pausing between them.
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

// Each row on a line of its own: what the device sends, cut in two at split with a pause between;
// whether an answer is expected; what the link returns and within which time; and whether the
// line still has the rest of what was sent.
TEST_F(PseudoTerminal, AnAnswerEndsAtItsLengthOrInSilence) {
    const Bytes unknown{0x01, 0x2B, 0x00};
    // A noise byte in front makes the length come out short: FC 01 with byte count 01 is 6 bytes.
    const Bytes noisy{0x01, 0x01, 0x01, 0x03, 0x04, 0x00, 0x0A, 0x00, 0x0B, 0xAA};
    Bytes surplus = answer;
    surplus.insert(surplus.end(), {0xAA, 0xBB});
    struct Row {
        const char* name;
        Bytes sent;
        std::size_t split;
        std::chrono::milliseconds pause;
        bool expectsAnswer;
        Result<Bytes, SerialLinkError> returned;
        double atLeast, below;
        bool rest;
    };
    const Row rows[] = {
        {"a known length drops surplus bytes", surplus, 0, 0ms, true, answer, 0, 2, false},
        {"pieces join once the length is known", answer, 3, 100ms, true, answer, 0, 2, false},
        {"silence ends an unknown length", unknown, 0, 0ms, true, unknown, 0, 0.5, false},
        {"a broadcast waits the turnaround", answer, 0, 0ms, false, Bytes{}, 0.1, 2, false},
        {"a short length leaves a rest", noisy, 6, 10ms, true, slice(noisy, 0, 6), 0, 2, true}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        open();
        const std::size_t size = row.sent.size();
        answerWith(row.split == 0 ? std::vector<Bytes>{row.sent}
                                  : std::vector<Bytes>{slice(row.sent, 0, row.split),
                                                       slice(row.sent, row.split, size)},
                   row.pause);
        const auto start = Clock::now();
        EXPECT_EQ(link->transact(request, row.expectsAnswer, 2.0), row.returned);
        EXPECT_GE(secondsSince(start), row.atLeast);
        EXPECT_LT(secondsSince(start), row.below);
        if (row.rest) {
            EXPECT_EQ(link->restOfAnswer(), slice(row.sent, row.split, size));
        }
    }
}

// A late answer belongs to its own request and is never taken for the next one's, which waits out
// the inter-frame silence after it; when none comes, the link waits for it till two time-outs
// have passed since the request.
TEST_F(PseudoTerminal, ALateAnswerIsCollectedForItsRequestOrWaitedForTillTwoTimeOuts) {
    const Bytes second = RTUFrame::build(1, Bytes{0x03, 0x04, 0x00, 0x14, 0x00, 0x15});
    Clock::time_point answered, nextArrived;
    device = std::thread([&] {
        EXPECT_EQ(receive(request.size()), request);
        // 1.5 time-outs late, as a slow device does; the time is taken before sending, as the
        // link may read the answer before this thread runs again.
        std::this_thread::sleep_for(450ms);
        answered = Clock::now();
        send(answer);
        EXPECT_EQ(receive(request.size()), request);
        nextArrived = Clock::now();
        send(second);
        EXPECT_EQ(receive(request.size()), request);
    });
    EXPECT_EQ(link->transact(request, true, 0.3), SerialLinkError{SerialLinkError::Timeout{}});
    EXPECT_EQ(link->lateAnswer(0.3), answer);
    EXPECT_EQ(link->transact(request, true, 0.3), second);

    const auto start = Clock::now();
    ASSERT_EQ(link->transact(request, true, 0.2), SerialLinkError{SerialLinkError::Timeout{}});
    EXPECT_GE(secondsSince(start), 0.2);
    EXPECT_EQ(link->lateAnswer(0.2), Bytes{});
    EXPECT_GE(secondsSince(start), 0.4);
    EXPECT_LT(secondsSince(start), 1.0);
    device.join();
    EXPECT_GE(std::chrono::duration<double>(nextArrived - answered).count(),
              link->interFrameDelay());
}

// Idling sends nothing and ends on a wake-up, at its time or on a hang-up; a cancel ends every
// wait at once and stays raised, so nothing waits again on a stopped link.
TEST_F(PseudoTerminal, WaitsEndOnAWakeUpTheirTimeAHangUpOrACancel) {
    WakeSignal wake, cancel;
    wake.raise();
    EXPECT_TRUE(link->idle(std::nullopt, wake).ok());
    wake.clear();
    EXPECT_TRUE(link->idle(Clock::now() + 50ms, wake).ok()) << "the time is up";
    device = std::thread([this] {
        std::this_thread::sleep_for(100ms);
        ::close(master);
        master = -1;
    });
    auto start = Clock::now();
    EXPECT_EQ(link->idle(Clock::now() + 60s, wake),
              SerialLinkError{SerialLinkError::Disconnected{}});
    EXPECT_LT(secondsSince(start), 5.0);

    open();
    link->cancelWith(cancel);
    answerWith({});
    std::thread stopper([&] {
        std::this_thread::sleep_for(100ms);
        cancel.raise();
    });
    start = Clock::now();
    EXPECT_EQ(link->transact(request, true, 5.0), SerialLinkError{SerialLinkError::Cancelled{}});
    EXPECT_LT(secondsSince(start), 1.0);
    stopper.join();
    EXPECT_EQ(link->transact(request, true, 5.0), SerialLinkError{SerialLinkError::Cancelled{}});
    EXPECT_EQ(link->idle(std::nullopt, wake), SerialLinkError{SerialLinkError::Cancelled{}});
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
