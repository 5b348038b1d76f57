#pragma once

#include "SystemRoot.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestrin::AdapterFacts {

// The kernel's name of the device a path leads to once its links are followed inside root
// ("/dev/serial/by-id/usb-FTDI_FT232R_A10K1234-if00-port0" -> "ttyUSB0"). Absent when nothing
// is there.
std::optional<std::string> deviceName(std::string_view path,
                                      const SystemRoot& root = SystemRoot::machine());

// The kernel driver bound to the port ("ftdi_sio", "ch341-uart", "cp210x", "serial8250"), or
// absent for a device without one (a pseudo-terminal).
std::optional<std::string> driver(std::string_view path,
                                  const SystemRoot& root = SystemRoot::machine());

// How long a usb-serial adapter holds received bytes back before passing them on, when it has
// such a timer (FTDI chips do; most others do not).
struct LatencyTimer {
    int milliseconds = 0;
    // Whether this process may change it now.
    bool writable = false;
    friend bool operator==(const LatencyTimer&, const LatencyTimer&) = default;
};
// Where the timer of the device with the kernel name deviceName ("ttyUSB0") is, as a system path.
std::string latencyAttribute(std::string_view deviceName);
std::optional<LatencyTimer> latencyTimer(std::string_view path,
                                         const SystemRoot& root = SystemRoot::machine());

// Sets the timer until the adapter is unplugged. Nothing on success, else the errno (ENOENT when
// the port has no such timer, EINVAL outside the 0 to 255 ms the chips take).
std::optional<int> setLatencyTimer(std::string_view path, int milliseconds,
                                   const SystemRoot& root = SystemRoot::machine());

// The udev rule that sets 1 ms on every FTDI adapter as it is plugged in, one line, and the
// file it belongs in.
std::string latencyUdevRule();
std::string_view latencyRulePath();

} // namespace kestrin::AdapterFacts
