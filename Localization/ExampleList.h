#pragma once

#include "Datapoint.h"
#include "Language.h"

#include <vector>

namespace kestrin::ExampleList {

// The seven datapoints of a small example device (two measurements, a counter, a setpoint, a
// mode, a pump output and an alarm) over all four tables, that a new project starts with and
// the companion simulator serves. Every call makes fresh ids; only the names are translated.
std::vector<Datapoint> datapoints();
std::vector<Datapoint> datapoints(Language language);

// The example poll reads every second and charts the first datapoint.
inline constexpr int intervalMs = 1000;

} // namespace kestrin::ExampleList
