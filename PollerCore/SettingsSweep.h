#pragma once

#include "Result.h"
#include "SerialConfiguration.h"
#include "SerialLinkError.h"
#include "UnitScan.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kestrin {

class WakeSignal;

// The baud rate and frame a silent device listens at: the line is opened at one setting after
// another, the most common first, until one of a few units answers. Like UnitScan it runs on the
// caller's thread and ends at once when cancel is raised.
namespace SettingsSweep {

// The settings in the order tried: 9600, 19200, 38400 and 115200 each with 8E1, 8N1 and 8N2,
// then odd parity and the rarer rates. Every one keeps base's RS-485 direction.
std::vector<SerialConfiguration> candidates(const SerialConfiguration& base);

// The port to open at each setting.
struct Line {
    std::string path;
    bool allowsTestDevice = false;
    // Raised from another thread to end the sweep; may be null.
    const WakeSignal* cancel = nullptr;
};

struct Found {
    SerialConfiguration serial;
    UnitScan::Answer answer;
};

struct Progress {
    int done = 0;
    int total = 0;
    double remainingSeconds = 0;
    // The setting just tried.
    SerialConfiguration serial;
};

using ProgressCallback = std::function<void(const Progress&)>;

// Seconds the settings take when nothing answers at any, each scanned as UnitScan::silentSeconds
// says: timeout, when given, replaces each setting's UnitScan::defaultTimeout.
double silentSeconds(std::span<const SerialConfiguration> settings, std::size_t units,
                     std::optional<double> timeout);

// Tries each candidate of base on units until one answers, in time or late (within twice its
// time-out, then marked late: polls need a longer time-out). timeout, when given, replaces each
// setting's UnitScan::defaultTimeout. A rate the adapter refuses is passed over; any other
// failure to open or use the port ends the sweep.
Result<std::optional<Found>, SerialLinkError> run(const Line& line, const SerialConfiguration& base,
                                                  const std::vector<std::uint8_t>& units,
                                                  std::optional<double> timeout,
                                                  const ProgressCallback& progress);

} // namespace SettingsSweep
} // namespace kestrin
