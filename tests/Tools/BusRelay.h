#pragma once

#include "ServedLine.h"

#include <optional>
#include <string>
#include <thread>

namespace kestrin {

// Stands between a master and a device as the wiring of an RS-485 line does, with a third
// station on it: the master opens masterPath() as its port, and the relay passes the master's
// bytes to the device's port and the device's back as they come, while it copies both
// directions in the order they arrive, and so with their timing, to tapPath(), where a listener
// hears the line. Bytes sent to the tap are dropped.
class BusRelay {
public:
    explicit BusRelay(const std::string& devicePath);
    ~BusRelay();
    BusRelay(const BusRelay&) = delete;
    BusRelay& operator=(const BusRelay&) = delete;

    // False when a pseudo-terminal or the device could not be opened; the paths are then empty.
    bool ready() const noexcept { return thread_.joinable(); }
    std::string masterPath() const;
    std::string tapPath() const;

private:
    void relay() const;

    std::optional<ServedLine> master_;
    std::optional<ServedLine> tap_;
    std::optional<ServedLine> device_;
    // Readable once the relay is to end.
    int stop_ = -1;
    std::thread thread_;
};

} // namespace kestrin
