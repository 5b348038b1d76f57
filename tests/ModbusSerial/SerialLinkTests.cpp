#include "RTUFrame.h"
#include "RawTerminal.h"
#include "SerialLink.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <deque>
#include <map>
#include <string>
#include <sys/ioctl.h>
#include <thread>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// One scripted outcome: a result with its errno, the bytes a read delivers, poll's events.
struct Step {
    int result = 0;
    int error = 0;
    Bytes data = {};
    short revents = POLLIN;
};

// Plays every POSIX call from a script; a call without a scripted step succeeds (poll times out).
class ScriptedTerminal final : public PosixTerminal {
public:
    std::map<std::string, std::deque<Step>, std::less<>> script;
    std::vector<std::string> calls;
    std::vector<termios> applied;
    Bytes sent;

    int open(const char*, int) override { return take("open", 3).result; }
    int close(int) override { return take("close", 0).result; }
    int ioctl(int, unsigned long request) override {
        return take(request == TIOCEXCL ? "TIOCEXCL" : "TIOCNXCL", 0).result;
    }
    int tcgetattr(int, termios* attributes) override {
        *attributes = termios{};
        attributes->c_cflag = HUPCL;
        return take("tcgetattr", 0).result;
    }
    int tcsetattr(int, int, const termios* attributes) override {
        applied.push_back(*attributes);
        return take("tcsetattr", 0).result;
    }
    int setExactBaudRate(int, int) override { return take("speed", 0).result; }
    int tcflush(int, int) override { return take("tcflush", 0).result; }
    int tcdrain(int) override { return take("tcdrain", 0).result; }
    int poll(pollfd* fds, nfds_t, int timeoutMs) override {
        if (script["poll"].empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(timeoutMs));
        }
        const Step step = take("poll", 0);
        fds->revents = step.revents;
        return step.result;
    }
    ssize_t read(int, void* buffer, std::size_t size) override {
        const Step step = take("read", 0);
        const std::size_t count = std::min(size, step.data.size());
        std::copy_n(step.data.begin(), count, static_cast<std::uint8_t*>(buffer));
        return count > 0 ? static_cast<ssize_t>(count) : step.result;
    }
    ssize_t write(int, const void* bytes, std::size_t size) override {
        const Step step = take("write", static_cast<int>(size));
        if (step.result > 0) {
            const auto* first = static_cast<const std::uint8_t*>(bytes);
            sent.insert(sent.end(), first, first + step.result);
        }
        return step.result;
    }

private:
    Step take(const std::string& call, int fallback) {
        calls.push_back(call);
        std::deque<Step>& steps = script[call];
        if (steps.empty()) {
            return Step{fallback};
        }
        Step step = steps.front();
        steps.pop_front();
        errno = step.error;
        return step;
    }
};

const Bytes request = RTUFrame::build(1, Bytes{0x03, 0x00, 0x00, 0x00, 0x02});
// 01 06 00 01 00 03 + CRC: a write echo, whose length (8) the function code alone gives.
const Bytes answer = RTUFrame::build(1, Bytes{0x06, 0x00, 0x01, 0x00, 0x03});
const std::string port = "/dev/ttyUSB0";

SerialLinkError failure(SerialLinkError::Case value) {
    return SerialLinkError{std::move(value)};
}

TEST(SerialLink, PathsMustNameASerialDevice) {
    const std::string longName = "/dev/tty" + std::string(120, 'x'); // 123 characters after /dev/
    const std::pair<std::string, bool> rows[] = {
        {"/dev/ttyUSB0", true},      {"/dev/ttyACM0", true},    {"/dev/ttyS0", true},
        {"/dev/ttyAMA0", true},      {"/dev/ttymxc1", true},    {longName, true},
        {longName + "xxxxx", false}, {"/dev/tty", false},       {"/dev/tty1", false},
        {"/dev/tty63", false},       {"/dev/ttyUSB0/x", false}, {"/dev/tty..x", false},
        {"/dev/pts/3", false},       {"/tmp/ttyUSB0", false},   {"/dev/cu.usbserial", false}};
    for (const auto& [path, valid] : rows) {
        EXPECT_EQ(SerialLink::isValidPath(path), valid) << path;
    }
    ScriptedTerminal terminal;
    EXPECT_EQ(SerialLink("/dev/tty1", {}, false, terminal).open(),
              failure(SerialLinkError::InvalidPath{"/dev/tty1"}));
    EXPECT_TRUE(terminal.calls.empty());
}

TEST(RawTerminal, AttributesCarryTheFrameAndKeepOtherControlFlags) {
    const std::tuple<SerialConfiguration, tcflag_t, tcflag_t> rows[] = {
        {{9600, 8, Parity::even, 1}, CS8 | PARENB, INPCK},
        {{19200, 8, Parity::none, 2}, CS8 | CSTOPB, 0},
        {{9600, 7, Parity::odd, 1}, CS7 | PARENB | PARODD, INPCK},
        {{9600, 5, Parity::none, 3}, CS8, 0}};
    termios original{};
    original.c_cflag = HUPCL | CRTSCTS | CSTOPB | PARODD | CS5;
    original.c_iflag = IXON | IXOFF | ISTRIP | INPCK;
    for (const auto& [configuration, frame, parityCheck] : rows) {
        SCOPED_TRACE(configuration.shortDescription());
        const termios raw = RawTerminal::attributes(original, configuration);
        EXPECT_EQ(raw.c_cflag & (CSIZE | PARENB | PARODD | CSTOPB), frame);
        EXPECT_EQ(raw.c_cflag & (HUPCL | CLOCAL | CREAD | CRTSCTS), HUPCL | CLOCAL | CREAD);
        EXPECT_EQ(raw.c_iflag & (IXON | IXOFF | ISTRIP | INPCK), parityCheck);
        EXPECT_EQ(raw.c_cc[VMIN], 1);
    }
}

TEST(SerialLink, FailedOpenNamesTheCauseAndReleasesTheDescriptor) {
    struct Row {
        const char* call;
        int error;
        SerialLinkError expected;
    };
    const Row rows[] = {
        {"open", EBUSY, failure(SerialLinkError::Busy{port})},
        {"open", EACCES, failure(SerialLinkError::OpenFailed{port, EACCES})},
        {"TIOCEXCL", EBUSY, failure(SerialLinkError::Busy{port})},
        {"TIOCEXCL", ENOTTY, failure(SerialLinkError::ConfigurationFailed{ENOTTY})},
        {"tcgetattr", EIO, failure(SerialLinkError::ConfigurationFailed{EIO})},
        {"tcsetattr", EINVAL, failure(SerialLinkError::ConfigurationFailed{EINVAL})},
        {"speed", EINVAL, failure(SerialLinkError::UnsupportedBaudRate{9600})}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.call) + " " + std::strerror(row.error));
        ScriptedTerminal terminal;
        terminal.script[row.call].push_back({-1, row.error});
        SerialLink link(port, {}, false, terminal);
        EXPECT_EQ(link.open(), row.expected);
        EXPECT_FALSE(link.isOpen());
        const long opened = std::string(row.call) == "open" ? 0 : 1;
        EXPECT_EQ(std::count(terminal.calls.begin(), terminal.calls.end(), "close"), opened);
    }
    // Only a refused speed finds new attributes applied, so only then are the originals restored.
    ScriptedTerminal terminal;
    terminal.script["speed"].push_back({-1, EINVAL});
    EXPECT_FALSE(SerialLink(port, {}, false, terminal).open().ok());
    ASSERT_EQ(terminal.applied.size(), 2U);
    EXPECT_EQ(terminal.applied[1].c_cflag, tcflag_t{HUPCL});
    EXPECT_EQ(terminal.calls.back(), "close");
    EXPECT_EQ(SerialLink(port, {-1, 8, Parity::even, 1}, false, terminal).open(),
              failure(SerialLinkError::UnsupportedBaudRate{-1}));
}

TEST(SerialLink, TestDeviceCarriesOnWhereAPseudoTerminalRefuses) {
    const SerialConfiguration sevenOdd{9600, 7, Parity::odd, 1};
    ScriptedTerminal terminal;
    terminal.script["tcsetattr"].push_back({-1, EINVAL});
    terminal.script["speed"].push_back({-1, EINVAL});
    SerialLink link("/tmp/pty", sevenOdd, true, terminal);
    ASSERT_TRUE(link.open().ok());
    ASSERT_EQ(terminal.applied.size(), 2U);
    EXPECT_EQ(terminal.applied[1].c_cflag & (CSIZE | PARENB), tcflag_t{CS8});
    EXPECT_DOUBLE_EQ(link.interFrameDelay(), 10 * 3.5 / 9600);
}

TEST(SerialLink, CloseRestoresThenReleasesOnceAndOpenIsIdempotent) {
    ScriptedTerminal terminal;
    {
        SerialLink link(port, {}, false, terminal);
        EXPECT_EQ(link.transact(request, true, 1.0), failure(SerialLinkError::NotOpen{}));
        ASSERT_TRUE(link.open().ok());
        ASSERT_TRUE(link.open().ok());
        link.close();
        link.close();
        ASSERT_TRUE(link.open().ok());
    }
    const std::vector<std::string> closing{"tcsetattr", "TIOCNXCL", "close"};
    EXPECT_EQ(std::count(terminal.calls.begin(), terminal.calls.end(), "open"), 2);
    EXPECT_EQ(std::count(terminal.calls.begin(), terminal.calls.end(), "close"), 2);
    EXPECT_TRUE(std::equal(closing.rbegin(), closing.rend(), terminal.calls.rbegin()));
    EXPECT_EQ(terminal.applied.back().c_cflag, tcflag_t{HUPCL});
}

// Writes are sent without expecting an answer, reads answer a request; a disconnect signal ends
// either at once, transient failures are tried again.
TEST(SerialLink, TransientFailuresAreRetriedAndEveryOtherIsMapped) {
    const Step ready{1};
    // Data that would be read if an event alone did not end the answer.
    const Step readable{0, 0, answer};
    const auto disconnected = failure(SerialLinkError::Disconnected{});
    struct Row {
        const char* name;
        std::vector<Step> writes, polls, reads;
        Result<Bytes, SerialLinkError> expected;
    };
    const Row rows[] = {
        {"write interrupted, then in pieces", {{-1, EINTR}, {3}, {2}}, {}, {}, Bytes{}},
        {"write full, then writable", {{-1, EAGAIN}}, {{1, 0, {}, POLLOUT}}, {}, Bytes{}},
        {"write full for a second", {{-1, EAGAIN}}, {{0}}, {}, failure(SerialLinkError::Timeout{})},
        {"write I/O error", {{-1, EIO}}, {}, {}, disconnected},
        {"write device gone", {{-1, ENXIO}}, {}, {}, disconnected},
        {"write other error", {{-1, EPIPE}}, {}, {}, failure(SerialLinkError::WriteFailed{EPIPE})},
        {"write nothing taken", {{0}}, {}, {}, failure(SerialLinkError::WriteFailed{0})},
        {"hang-up", {}, {{1, 0, {}, POLLIN | POLLHUP}}, {readable}, disconnected},
        {"error event", {}, {{1, 0, {}, POLLERR}}, {readable}, disconnected},
        {"invalid descriptor", {}, {{1, 0, {}, POLLNVAL}}, {readable}, disconnected},
        {"poll fails", {}, {{-1, EBADF}}, {}, disconnected},
        {"end of file", {}, {ready}, {{0}}, disconnected},
        {"read I/O error", {}, {ready}, {{-1, EIO}}, disconnected},
        {"read device gone", {}, {ready}, {{-1, ENXIO}}, disconnected},
        {"poll interrupted", {}, {{-1, EINTR}, ready}, {{0, 0, answer}}, answer},
        {"read would block", {}, {ready, ready}, {{-1, EAGAIN}, {0, 0, answer}}, answer},
        {"read interrupted", {}, {ready, ready}, {{-1, EINTR}, {0, 0, answer}}, answer}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ScriptedTerminal terminal;
        SerialLink link(port, {}, false, terminal);
        ASSERT_TRUE(link.open().ok());
        terminal.script["write"].assign(row.writes.begin(), row.writes.end());
        terminal.script["poll"].assign(row.polls.begin(), row.polls.end());
        terminal.script["read"].assign(row.reads.begin(), row.reads.end());
        const bool isWrite = !row.writes.empty();
        EXPECT_EQ(link.transact(request, !isWrite, isWrite ? 1.0 : 0.05), row.expected);
        if (isWrite && row.expected.ok()) {
            EXPECT_EQ(terminal.sent, request);
        }
    }
}

} // namespace
} // namespace kestrin
