#include "ExactBaudRate.h"
#include "RS485Mode.h"
#include "RTUFrame.h"
#include "RawTerminal.h"
#include "SerialConfiguration.h"
#include "SerialLink.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <fcntl.h>
#include <linux/capability.h>
#include <map>
#include <memory>
#include <string>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <thread>
#include <tuple>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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
    // Flags of the driver's own that the link must hand back unchanged.
    ScriptedTerminal() {
        serialInfo.flags = ASYNC_SPD_HI;
        rs485.flags = SER_RS485_RX_DURING_TX;
        rs485.delay_rts_before_send = 7;
    }

    std::map<std::string, std::deque<Step>, std::less<>> script;
    std::vector<std::string> calls;
    std::vector<termios> applied;
    Bytes sent;
    serial_struct serialInfo{};
    serial_rs485 rs485{};
    std::vector<serial_struct> serialInfosSet;
    std::vector<serial_rs485> rs485Set;

    int open(const char*, int) override { return take("open", 3).result; }
    int close(int) override { return take("close").result; }
    int ioctl(int, unsigned long request) override {
        return take(request == TIOCEXCL ? "TIOCEXCL" : "TIOCNXCL").result;
    }
    // The driver's settings are serialInfo and rs485; what the link sets is kept in order.
    int ioctl(int, unsigned long request, void* argument) override {
        switch (request) {
        case TIOCGSERIAL:
            *static_cast<serial_struct*>(argument) = serialInfo;
            return take("TIOCGSERIAL").result;
        case TIOCSSERIAL:
            serialInfosSet.push_back(*static_cast<serial_struct*>(argument));
            return take("TIOCSSERIAL").result;
        case TIOCGRS485:
            *static_cast<serial_rs485*>(argument) = rs485;
            return take("TIOCGRS485").result;
        case TIOCSRS485:
            rs485Set.push_back(*static_cast<serial_rs485*>(argument));
            return take("TIOCSRS485").result;
        default:
            ADD_FAILURE() << "unexpected ioctl request " << request;
            errno = ENOTTY;
            return -1;
        }
    }
    int flock(int, int) override { return take("flock").result; }
    int tcgetattr(int, termios* attributes) override {
        *attributes = termios{};
        attributes->c_cflag = HUPCL;
        return take("tcgetattr").result;
    }
    int tcsetattr(int, int, const termios* attributes) override {
        applied.push_back(*attributes);
        return take("tcsetattr").result;
    }
    int setExactBaudRate(int, int) override { return take("speed").result; }
    int tcflush(int, int) override { return take("tcflush").result; }
    int tcdrain(int) override { return take("tcdrain").result; }
    int poll(pollfd* fds, nfds_t, int timeoutMs) override {
        if (script["poll"].empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(timeoutMs));
        }
        const Step step = take("poll");
        fds->revents = step.revents;
        return step.result;
    }
    ssize_t read(int, void* buffer, std::size_t size) override {
        const Step step = take("read");
        const std::size_t count = std::min(size, step.data.size());
        std::copy_n(step.data.begin(), count, static_cast<std::uint8_t*>(buffer));
        return count > 0 ? static_cast<ssize_t>(count) : step.result;
    }
    ssize_t write(int, const void* bytes, std::size_t size) override {
        const Step step = take("write", static_cast<int>(size));
        const auto* first = static_cast<const std::uint8_t*>(bytes);
        sent.insert(sent.end(), first, first + std::max(step.result, 0));
        return step.result;
    }
    long count(const std::string& call) const { return std::ranges::count(calls, call); }

private:
    Step take(const std::string& call, int fallback = 0) {
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
        {{}, CS8 | PARENB, INPCK},
        {{.parity = Parity::none, .stopBits = 2}, CS8 | CSTOPB, 0},
        {{.dataBits = 7, .parity = Parity::odd}, CS7 | PARENB | PARODD, INPCK},
        {{.dataBits = 5, .parity = Parity::none, .stopBits = 3}, CS8, 0}};
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

// A failed open leaves the port as it was: the descriptor closed, the RS-485 settings given back
// once they were changed, and a port that someone else has locked without the exclusive flag.
TEST(SerialLink, FailedOpenNamesTheCauseAndLeavesThePortAsItWas) {
    struct Row {
        const char* call;
        int error;
        SerialLinkError expected;
        long directionSets = 0;
    };
    const Row rows[] = {
        {"open", EBUSY, failure(SerialLinkError::Busy{port})},
        {"open", EACCES, failure(SerialLinkError::OpenFailed{port, EACCES})},
        {"flock", EWOULDBLOCK, failure(SerialLinkError::Busy{port})},
        {"flock", ENOLCK, failure(SerialLinkError::ConfigurationFailed{ENOLCK})},
        {"TIOCEXCL", EBUSY, failure(SerialLinkError::Busy{port})},
        {"TIOCEXCL", ENOTTY, failure(SerialLinkError::ConfigurationFailed{ENOTTY})},
        {"TIOCGRS485", ENOTTY, failure(SerialLinkError::RS485Refused{ENOTTY})},
        {"TIOCSRS485", EINVAL, failure(SerialLinkError::RS485Refused{EINVAL}), 1},
        {"tcgetattr", EIO, failure(SerialLinkError::ConfigurationFailed{EIO}), 2},
        {"tcsetattr", EINVAL, failure(SerialLinkError::ConfigurationFailed{EINVAL}), 2},
        {"speed", EINVAL, failure(SerialLinkError::UnsupportedBaudRate{9600}), 2}};
    for (const Row& row : rows) {
        const std::string call = row.call;
        SCOPED_TRACE(call + " " + std::strerror(row.error));
        ScriptedTerminal terminal;
        terminal.script[call].push_back({-1, row.error});
        SerialLink link(port, {.rs485 = RS485Direction{}}, false, terminal);
        EXPECT_EQ(link.open(), row.expected);
        EXPECT_FALSE(link.isOpen());
        EXPECT_EQ(terminal.count("close"), call == "open" ? 0 : 1);
        EXPECT_EQ(terminal.count("TIOCEXCL") == 0, call == "open" || call == "flock");
        ASSERT_EQ(terminal.count("TIOCSRS485"), row.directionSets);
        if (row.directionSets == 2) {
            EXPECT_EQ(terminal.rs485Set.back().flags, terminal.rs485.flags);
        }
    }
    // Only a refused speed finds new attributes applied, so only then are the originals restored.
    ScriptedTerminal terminal;
    terminal.script["speed"].push_back({-1, EINVAL});
    EXPECT_FALSE(SerialLink(port, {}, false, terminal).open().ok());
    ASSERT_EQ(terminal.applied.size(), 2U);
    EXPECT_EQ(terminal.applied[1].c_cflag, tcflag_t{HUPCL});
    EXPECT_EQ(terminal.calls.back(), "close");
    EXPECT_EQ(SerialLink(port, {.baudRate = -1}, false, terminal).open(),
              failure(SerialLinkError::UnsupportedBaudRate{-1}));
}

TEST(SerialLink, TestDeviceCarriesOnWhereAPseudoTerminalRefuses) {
    const SerialConfiguration sevenOdd{
        .dataBits = 7, .parity = Parity::odd, .rs485 = RS485Direction{}};
    ScriptedTerminal terminal;
    terminal.script["TIOCSRS485"].push_back({-1, ENOTTY});
    terminal.script["tcsetattr"].push_back({-1, EINVAL});
    terminal.script["speed"].push_back({-1, EINVAL});
    SerialLink link("/tmp/pty", sevenOdd, true, terminal);
    ASSERT_TRUE(link.open().ok());
    ASSERT_EQ(terminal.applied.size(), 2U);
    EXPECT_EQ(terminal.applied[1].c_cflag & (CSIZE | PARENB), tcflag_t{CS8});
    EXPECT_DOUBLE_EQ(link.interFrameDelay(), 10 * 3.5 / 9600);
}

// What open changed is given back before the port is released, the driver's own flags with it.
TEST(SerialLink, CloseRestoresThenReleasesOnceAndOpenIsIdempotent) {
    ScriptedTerminal terminal;
    {
        SerialLink link(port, {.rs485 = RS485Direction{false, 3, 4}}, false, terminal);
        EXPECT_EQ(link.transact(request, true, 1.0), failure(SerialLinkError::NotOpen{}));
        ASSERT_TRUE(link.open().ok());
        ASSERT_TRUE(link.open().ok());
        link.close();
        link.close();
        ASSERT_TRUE(link.open().ok());
    }
    const std::vector<std::string> closing{"TIOCSSERIAL", "TIOCSRS485", "tcsetattr", "TIOCNXCL",
                                           "close"};
    EXPECT_EQ(terminal.count("open"), 2);
    EXPECT_EQ(terminal.count("close"), 2);
    EXPECT_TRUE(std::equal(closing.rbegin(), closing.rend(), terminal.calls.rbegin()));
    EXPECT_EQ(terminal.applied.back().c_cflag, tcflag_t{HUPCL});

    ASSERT_EQ(terminal.rs485Set.size(), 4U);
    EXPECT_EQ(terminal.rs485Set[0].flags, SER_RS485_ENABLED | SER_RS485_RTS_AFTER_SEND);
    EXPECT_EQ(terminal.rs485Set[0].delay_rts_before_send, 3U);
    EXPECT_EQ(terminal.rs485Set[0].delay_rts_after_send, 4U);
    EXPECT_EQ(terminal.rs485Set[1].flags, terminal.rs485.flags);
    EXPECT_EQ(terminal.rs485Set[1].delay_rts_before_send, 7U);
    EXPECT_EQ(RS485Mode::settings(terminal.rs485, {}).flags,
              SER_RS485_ENABLED | SER_RS485_RTS_ON_SEND);
    ASSERT_EQ(terminal.serialInfosSet.size(), 4U);
    EXPECT_EQ(terminal.serialInfosSet[0].flags, ASYNC_SPD_HI | ASYNC_LOW_LATENCY);
    EXPECT_EQ(terminal.serialInfosSet[1].flags, ASYNC_SPD_HI);
}

// Low latency is given back only where the link changed it, never over the driver's own setting;
// the close test above shows it taken and given back.
TEST(SerialLink, LowLatencyIsGivenBackOnlyWhereItWasTaken) {
    const std::tuple<const char*, int, const char*, long> rows[] = {
        {"already low", ASYNC_LOW_LATENCY, "", 0},
        {"unknown to the driver", 0, "TIOCGSERIAL", 0},
        {"refused", 0, "TIOCSSERIAL", 1}};
    for (const auto& [name, driverFlags, refusing, sets] : rows) {
        SCOPED_TRACE(name);
        ScriptedTerminal terminal;
        terminal.serialInfo.flags = driverFlags;
        terminal.script[refusing].push_back({-1, ENOTTY});
        SerialLink link(port, {}, false, terminal);
        ASSERT_TRUE(link.open().ok());
        link.close();
        EXPECT_EQ(terminal.count("TIOCSSERIAL"), sets);
    }
}

TEST(RS485Mode, ProbeTellsWhetherTheDriverHasTheMode) {
    using enum RS485Mode::Support;
    const std::tuple<const char*, int, RS485Mode::Support> rows[] = {
        {"open", EACCES, unknown},
        {"TIOCGRS485", 0, yes},
        {"TIOCGRS485", EINVAL, no},
        {"TIOCGRS485", EIO, unknown},
        // The serial core answers the read for every UART; only the driver answers the write.
        {"TIOCSRS485", ENOTTY, no}};
    for (const auto& [call, code, support] : rows) {
        SCOPED_TRACE(std::string(call) + " " + std::strerror(code));
        ScriptedTerminal terminal;
        terminal.script[call].push_back({code == 0 ? 0 : -1, code});
        EXPECT_EQ(RS485Mode::probe(port, terminal), support);
        EXPECT_EQ(terminal.count("close"), std::string(call) == "open" ? 0 : 1);
    }
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

// The bits a character takes on the line set the inter-frame silence.
TEST(SerialConfiguration, FrameTextIsTheInverseOfTheDescriptionAndGivesTheBitsPerCharacter) {
    const SerialConfiguration base{.baudRate = 19200, .parity = Parity::none};
    const std::pair<const char*, int> frames[] = {
        {"8E1", 11}, {"8N2", 11}, {"7O1", 10}, {"7N1", 9}, {"8O2", 12}};
    for (const auto& [text, bits] : frames) {
        const auto serial = base.withFrame(text);
        ASSERT_TRUE(serial.has_value()) << text;
        EXPECT_EQ(serial->frameDescription(), text);
        EXPECT_EQ(serial->shortDescription(), std::string("19200 ") + text);
        EXPECT_EQ(serial->bitsPerCharacter(), bits) << text;
    }
    EXPECT_EQ(base.withFrame(" 8e1 ")->frameDescription(), "8E1");
    for (const char* text : {"", "8E", "9E1", "6N1", "8X1", "8E3", "8E10", "E81"}) {
        EXPECT_EQ(base.withFrame(text), std::nullopt) << text;
    }
}

// A file without "rs485" is one from before the setting and leaves the port's mode alone.
TEST(SerialConfiguration, DecodingFailsNamingTheBadKey) {
    const nlohmann::json before = SerialConfiguration().json();
    ASSERT_FALSE(before.contains("rs485"));
    EXPECT_EQ(SerialConfiguration::fromJSON(before).value(), SerialConfiguration());
    const nlohmann::json valid = SerialConfiguration{.rs485 = RS485Direction{}}.json();
    // A key with a bad value (null removes it) must be named; "a.b" is b inside a.
    const auto refused = [&](const std::string& key, const nlohmann::json& value) {
        SCOPED_TRACE(key + " = " + value.dump());
        std::string pointer = "/" + key;
        std::ranges::replace(pointer, '.', '/');
        const nlohmann::json::json_pointer at(pointer);
        nlohmann::json object = valid;
        if (value.is_null()) {
            object[at.parent_pointer()].erase(at.back());
        } else {
            object[at] = value;
        }
        const auto decoded = SerialConfiguration::fromJSON(object);
        ASSERT_FALSE(decoded.ok());
        EXPECT_EQ(decoded.error().path, key);
    };
    const std::pair<std::string, nlohmann::json> rows[] = {
        {"baudRate", nullptr}, {"dataBits", nullptr},   {"parity", nullptr}, {"stopBits", nullptr},
        {"parity", "mark"},    {"parity", "Even"},      {"parity", 1},       {"baudRate", "9600"},
        {"baudRate", 9600.5},  {"baudRate", 1LL << 40}, {"rs485", true}};
    const std::pair<std::string, nlohmann::json> direction[] = {{"rtsWhileSending", nullptr},
                                                                {"rtsWhileSending", "HIGH"},
                                                                {"delayAfterSendMs", nullptr},
                                                                {"delayBeforeSendMs", -1}};
    for (const auto& [key, value] : rows) {
        refused(key, value);
    }
    for (const auto& [key, value] : direction) {
        refused("rs485." + key, value);
    }
    EXPECT_FALSE(SerialConfiguration::fromJSON(nlohmann::json::array()).ok());
}

// The real kernel's side of the line: a pseudo-terminal.

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// 01 03 04 00 0A 00 0B + CRC: two registers; the byte count gives the length 9.
const Bytes registers = RTUFrame::build(1, Bytes{0x03, 0x04, 0x00, 0x0A, 0x00, 0x0B});

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
        ASSERT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
        path = ptsname(master);
        link = std::make_unique<SerialLink>(path, SerialConfiguration{.baudRate = 1200}, true);
        ASSERT_TRUE(link->open().ok());
    }
    void close() {
        if (device.joinable()) {
            device.join();
        }
        ::close(master);
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
    Bytes surplus = registers;
    surplus.insert(surplus.end(), {0xAA, 0xBB});
    using Returned = Result<Bytes, SerialLinkError>;
    const std::tuple<const char*, Bytes, std::size_t, std::chrono::milliseconds, bool, Returned,
                     double, double, bool>
        rows[] = {
            {"a known length drops surplus bytes", surplus, 0, 0ms, true, registers, 0, 2, false},
            {"pieces join once the length is known", registers, 3, 100ms, true, registers, 0, 2,
             false},
            {"silence ends an unknown length", unknown, 0, 0ms, true, unknown, 0, 0.5, false},
            {"a broadcast waits the turnaround", registers, 0, 0ms, false, Bytes{}, 0.1, 2, false},
            {"a short length leaves a rest", noisy, 6, 10ms, true, slice(noisy, 0, 6), 0, 2, true}};
    for (const auto& [name, sent, split, pause, expectsAnswer, returned, atLeast, below, rest] :
         rows) {
        SCOPED_TRACE(name);
        open();
        const std::size_t size = sent.size();
        answerWith(split == 0 ? std::vector<Bytes>{sent}
                              : std::vector<Bytes>{slice(sent, 0, split), slice(sent, split, size)},
                   pause);
        const auto start = Clock::now();
        EXPECT_EQ(link->transact(request, expectsAnswer, 2.0), returned);
        EXPECT_GE(secondsSince(start), atLeast);
        EXPECT_LT(secondsSince(start), below);
        if (rest) {
            EXPECT_EQ(link->restOfAnswer(), slice(sent, split, size));
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
        send(registers);
        EXPECT_EQ(receive(request.size()), request);
        nextArrived = Clock::now();
        send(second);
        EXPECT_EQ(receive(request.size()), request);
    });
    EXPECT_EQ(link->transact(request, true, 0.3), SerialLinkError{SerialLinkError::Timeout{}});
    EXPECT_EQ(link->lateAnswer(0.3), registers);
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

// A link that only listens hands on whatever arrives as it comes, waits no longer than asked even
// below a millisecond, ends such a wait as bytes come, and refuses to send.
TEST_F(PseudoTerminal, AListenerHearsWhatArrivesAndSendsNothing) {
    link->refuseToSend();
    EXPECT_EQ(link->transact(request, true, 0.05), SerialLinkError{SerialLinkError::SendRefused{}});
    // The shortest of a few, so that a busy machine's scheduling delays do not count.
    double shortest = 1;
    for (int i = 0; i < 5; ++i) {
        const auto start = Clock::now();
        EXPECT_EQ(link->listen(200us), Bytes{});
        EXPECT_GE(secondsSince(start), 0.0002);
        shortest = std::min(shortest, secondsSince(start));
    }
    EXPECT_LT(shortest, 0.0009) << "not rounded up to a whole millisecond";
    send(registers);
    Bytes heard;
    shortest = 1;
    for (const auto start = Clock::now();
         heard.size() < registers.size() && secondsSince(start) < 2;) {
        const auto asked = Clock::now();
        auto chunk = link->listen(900us);
        ASSERT_TRUE(chunk.ok());
        if (!chunk.value().empty()) {
            shortest = std::min(shortest, secondsSince(asked));
        }
        heard.insert(heard.end(), chunk.value().begin(), chunk.value().end());
    }
    EXPECT_EQ(heard, registers);
    EXPECT_LT(shortest, 0.0009) << "bytes did not end a short wait";
    ::close(master);
    master = -1;
    EXPECT_EQ(link->listen(1s), SerialLinkError{SerialLinkError::Disconnected{}});
}

// The lock keeps a second opener out even as root, whom TIOCEXCL lets through; a port that another
// program has locked is busy too. Closing gives up both.
TEST_F(PseudoTerminal, SecondLinkOnTheSamePortIsBusy) {
    const auto isBusy = [this](const Result<void, SerialLinkError>& opened) {
        return !opened.ok() && opened.error().is<SerialLinkError::Busy>() &&
               std::get<SerialLinkError::Busy>(opened.error().value).path == path;
    };
    EXPECT_TRUE(isBusy(SerialLink(path, {}, true).open()));
    link->close();
    const int other = ::open(path.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    EXPECT_TRUE(isBusy(link->open()));
    // Unlocked but still open, so that an exclusive flag left behind would stay.
    ::flock(other, LOCK_UN);
    std::thread([this] {
        dropAdministratorCapability();
        EXPECT_TRUE(link->open().ok()) << "a failed open leaves no exclusive flag behind";
        SerialLink second(path, {}, true);
        EXPECT_FALSE(second.open().ok());
        link->close();
        EXPECT_TRUE(second.open().ok()) << "close gives up exclusive use";
    }).join();
    ::close(other);
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
