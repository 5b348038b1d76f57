#pragma once

#include <array>
#include <cstdint>

namespace kestrin {

enum class PollerState : std::uint8_t { stopped, running, serialLost };

// Request counters since the last start or clearing of the log.
struct PollerStatistics {
    std::int64_t requests = 0;
    std::int64_t responses = 0;
    std::int64_t timeouts = 0;
    std::int64_t exceptions = 0;
    std::int64_t errors = 0;

    friend bool operator==(const PollerStatistics&, const PollerStatistics&) = default;
};

} // namespace kestrin
