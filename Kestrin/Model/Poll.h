#pragma once

#include "Datapoint.h"
#include "JSONValue.h"
#include "Result.h"
#include "Uuid.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace kestrin {

// A group of datapoints read together at one interval; one tab of the window.
struct Poll {
    static constexpr std::int64_t defaultIntervalMs = 1000;

    Uuid id = Uuid::random();
    std::string name;
    // Used as it stands, also when the tab bar does not offer it.
    std::int64_t intervalMs = defaultIntervalMs;
    bool enabled = true;
    std::vector<Datapoint> datapoints; // in table order
    // The datapoints drawn in the chart; sorted so that saving is deterministic.
    std::set<Uuid> plotted;

    // All six keys; plotted ids as canonical text.
    nlohmann::json json() const;
    // Absent or null keys take their defaults (a fresh id among them); a wrong type fails at its
    // path ("datapoints[2].address").
    static Result<Poll, JSONValue::Error> fromJSON(const nlohmann::json& object);

    friend bool operator==(const Poll&, const Poll&) = default;
};

} // namespace kestrin
