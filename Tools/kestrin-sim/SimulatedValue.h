#pragma once

#include "Simulation.h"

#include <cstdint>

namespace kestrin::SimulatedValue {

// The value an animated datapoint holds `seconds` after the simulator started. Pure: the same
// arguments give the same value, so tests can step through time.
//   counter: minimum, minimum + 1, ... one step a second, back to minimum after maximum;
//   ramp:    from minimum up to maximum over each period, then back to minimum;
//   sine:    one full wave between minimum and maximum per period, starting halfway up;
//   random:  a new value between minimum and maximum every second, drawn from seed;
//   toggle:  minimum for the first half of each period, maximum for the second half.
// A period that is not positive freezes the periodic kinds at their start. Kind none has no
// animation: it returns minimum, and the device keeps whatever was written instead.
double at(const Simulation& simulation, double seconds, std::uint64_t seed) noexcept;

// Whether a value lights a coil or discrete input: the upper half of the simulation's range, so
// every kind switches a bit on and off.
bool isOn(const Simulation& simulation, double value) noexcept;

} // namespace kestrin::SimulatedValue
