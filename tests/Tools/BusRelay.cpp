#include "BusRelay.h"

#include "Bytes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace kestrin {

namespace {

template <typename Line>
std::optional<ServedLine> opened(Line line) {
    return line ? std::optional<ServedLine>(std::move(line).value()) : std::nullopt;
}

} // namespace

// A pseudo-terminal has no wire, so the frame of the device's port is the plain one.
BusRelay::BusRelay(const std::string& devicePath)
    : master_(opened(ServedLine::pseudoTerminal()))
    , tap_(opened(ServedLine::pseudoTerminal()))
    , device_(opened(ServedLine::port(devicePath, SerialConfiguration{.parity = Parity::none})))
    , stop_(::eventfd(0, EFD_CLOEXEC)) {
    if (master_ && tap_ && device_ && stop_ != -1) {
        thread_ = std::thread([this] { relay(); });
    }
}

BusRelay::~BusRelay() {
    if (thread_.joinable()) {
        const std::uint64_t one = 1;
        (void)::write(stop_, &one, sizeof one);
        thread_.join();
    }
    if (stop_ != -1) {
        ::close(stop_);
    }
}

std::string BusRelay::masterPath() const {
    return ready() ? master_->path() : std::string();
}

std::string BusRelay::tapPath() const {
    return ready() ? tap_->path() : std::string();
}

void BusRelay::relay() const {
    std::array<pollfd, 4> watched{{{master_->fd(), POLLIN, 0},
                                   {device_->fd(), POLLIN, 0},
                                   {tap_->fd(), POLLIN, 0},
                                   {stop_, POLLIN, 0}}};
    const std::array<int, 3> destination{device_->fd(), master_->fd(), -1};
    std::array<std::uint8_t, 512> chunk{};
    while (true) {
        if (::poll(watched.data(), watched.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        if (watched[3].revents != 0) {
            return;
        }
        for (std::size_t side = 0; side < destination.size(); ++side) {
            const short events = watched[side].revents;
            const ssize_t count =
                (events & POLLIN) != 0 ? ::read(watched[side].fd, chunk.data(), chunk.size()) : 0;
            // A full queue is waited out briefly, then dropped, as a station that does not read
            // loses what the line carried.
            const ByteView bytes(chunk.data(),
                                 static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
            if (count > 0 && destination[side] != -1) {
                (void)writeAll(destination[side], bytes);
                (void)writeAll(tap_->fd(), bytes);
            } else if (count <= 0 && (events & (POLLHUP | POLLERR)) != 0) {
                // A device that went away is heard no more, rather than reported over and over.
                watched[side].fd = -1;
            }
        }
    }
}

} // namespace kestrin
