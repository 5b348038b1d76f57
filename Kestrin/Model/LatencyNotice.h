#pragma once

#include "PollPlan.h"
#include "PortIdentity.h"
#include "SerialConfiguration.h"
#include "SystemRoot.h"

#include <optional>
#include <span>
#include <string>

namespace kestrin {

// A USB adapter that holds every answer back longer than it needs to (its latency timer), and
// what that costs the polls being read.
struct LatencyNotice {
    // The lowest timer the chips take; every millisecond above it is added to each answer.
    static constexpr int bestTimerMs = 1;

    // The port as reading opened it.
    std::string path;
    int timerMs = 0;
    // Requests a second the line carries for the polls being read, with the timer as it is and
    // at bestTimerMs.
    int requestsPerSecond = 0;
    int requestsPerSecondAtBest = 0;
    // Whether this process may set the timer itself.
    bool writable = false;
    // The adapter as a dismissal remembers it (adapterKey).
    std::string adapter;

    // Nothing when the port has no latency timer, has it at bestTimerMs or below, or the plans
    // read nothing.
    static std::optional<LatencyNotice> check(const std::string& path, std::string adapter,
                                              std::span<const PollPlan> plans,
                                              const SerialConfiguration& serial,
                                              const SystemRoot& root);

    // "0403:6001:A10K1234" for an adapter with a serial number, which it keeps under any path;
    // the path for any other, as nothing else tells two of them apart.
    static std::string adapterKey(const std::optional<PortIdentity>& identity,
                                  const std::string& path);

    // What the notice says: the timer, the port and the requests it costs.
    std::string text() const;

    friend bool operator==(const LatencyNotice&, const LatencyNotice&) = default;
};

} // namespace kestrin
