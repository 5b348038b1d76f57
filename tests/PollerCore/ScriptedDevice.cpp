#include "ScriptedDevice.h"

#include "ExceptionPDU.h"
#include "RTUFrame.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace kestrin {

namespace {

// The master side of a new pseudo-terminal, ready for its slave to be opened; throws when there
// is none, as a device without a line would leave every test of it waiting for nothing.
int openMaster() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    if (master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0 &&
        ptsname(master) != nullptr) {
        return master;
    }
    const int error = errno;
    if (master >= 0) {
        ::close(master);
    }
    throw std::system_error(error, std::generic_category(), "no pseudo-terminal");
}

} // namespace

ScriptedDevice::ScriptedDevice(Script script)
    : script_(std::move(script))
    , master_(openMaster()) {
    path_ = ptsname(master_);
    // Raw, so that an answer written while no link is open is not echoed back as a request; a
    // link restores these settings when it closes.
    slave_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY);
    termios raw{};
    EXPECT_TRUE(slave_ >= 0 && tcgetattr(slave_, &raw) == 0);
    cfmakeraw(&raw);
    EXPECT_EQ(tcsetattr(slave_, TCSANOW, &raw), 0);
    thread_ = std::thread([this] { serve(); });
}

ScriptedDevice::~ScriptedDevice() {
    stop_.raise();
    thread_.join();
    ::close(slave_);
    if (master_ >= 0) {
        ::close(master_);
    }
}

std::unique_ptr<SerialLink> ScriptedDevice::link(const SerialConfiguration& serial) const {
    auto link = std::make_unique<SerialLink>(path_, serial, true);
    EXPECT_TRUE(link->open());
    return link;
}

std::size_t ScriptedDevice::requests() {
    const std::lock_guard lock(mutex_);
    return asked_.size();
}

void ScriptedDevice::serve() {
    Bytes frame(8);
    while (readRequest(frame)) {
        Request request{frame, 0, 0};
        {
            const std::lock_guard lock(mutex_);
            asked_.push_back(frame);
            request.nth = static_cast<int>(asked_.size());
            request.repeat = static_cast<int>(std::ranges::count(asked_, frame));
        }
        const Reply reply = script_(request);
        if (!wait(reply.delay)) {
            return;
        }
        if (!reply.bytes.empty() && ::write(master_, reply.bytes.data(), reply.bytes.size()) < 0) {
            return;
        }
        if (reply.hangUp) {
            ::close(master_);
            master_ = -1;
            return;
        }
    }
}

bool ScriptedDevice::readRequest(Bytes& request) const {
    for (std::size_t done = 0; done < request.size();) {
        std::array<pollfd, 2> fds{{{master_, POLLIN, 0}, {stop_.fd(), POLLIN, 0}}};
        const int ready = ::poll(fds.data(), fds.size(), -1);
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready < 0 || fds[1].revents != 0) {
            return false;
        }
        const ssize_t n = ::read(master_, request.data() + done, request.size() - done);
        if (n <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool ScriptedDevice::wait(std::chrono::milliseconds delay) const {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point until = Clock::now() + delay;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
        pollfd stop{stop_.fd(), POLLIN, 0};
        const int ready = ::poll(&stop, 1, static_cast<int>(std::max<long>(0, left.count())));
        // An interrupted wait goes on; a poll that fails otherwise would fail every time.
        const bool failed = ready < 0 && errno != EINTR;
        if (failed || stop_.isRaised()) {
            return false;
        }
        if (ready == 0) {
            return true;
        }
    }
}

int requestAddress(ByteView request) {
    return request[2] << 8 | request[3];
}

int requestCount(ByteView request) {
    return request[4] << 8 | request[5];
}

Bytes registersAnswer(ByteView request, const std::function<bool(int address)>& present) {
    if (request[1] == 0x06) {
        return Bytes(request.begin(), request.end());
    }
    const int count = requestCount(request);
    Bytes pdu{0x03, static_cast<std::uint8_t>(2 * count)};
    for (int address = requestAddress(request); address < requestAddress(request) + count;
         ++address) {
        if (!present(address)) {
            pdu = ExceptionPDU::make(0x03, ModbusException::illegalDataAddress);
            break;
        }
        pdu.insert(pdu.end(),
                   {static_cast<std::uint8_t>(address >> 8), static_cast<std::uint8_t>(address)});
    }
    return RTUFrame::build(request[0], pdu);
}

} // namespace kestrin
