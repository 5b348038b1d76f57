#pragma once

#include <array>
#include <cstdint>

namespace kestrin {

// listening: the port is open and nothing is ever sent; the polls' values come from another
// master's traffic. A port lost while listening is serialLost as well, and listening resumes.
enum class PollerState : std::uint8_t { stopped, running, serialLost, listening };

// Request counters since the last start or clearing of the log; while listening they count the
// requests heard and what followed them.
struct PollerStatistics {
    std::int64_t requests = 0;
    std::int64_t responses = 0;
    std::int64_t timeouts = 0;
    std::int64_t exceptions = 0;
    std::int64_t errors = 0;

    friend bool operator==(const PollerStatistics&, const PollerStatistics&) = default;
};

} // namespace kestrin
