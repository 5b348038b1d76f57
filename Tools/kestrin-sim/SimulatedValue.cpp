#include "SimulatedValue.h"

#include <cmath>
#include <numbers>

namespace kestrin::SimulatedValue {

namespace {

// splitmix64: a well-mixed 64-bit value from a counter, enough for test noise.
std::uint64_t mixed(std::uint64_t x) noexcept {
    x += 0x9E3779B97F4A7C15ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

// The position inside the current period, 0 up to (not including) 1.
double phase(double seconds, double period) noexcept {
    if (!(period > 0) || !std::isfinite(seconds)) {
        return 0;
    }
    const double cycles = seconds / period;
    return cycles - std::floor(cycles);
}

} // namespace

double at(const Simulation& simulation, double seconds, std::uint64_t seed) noexcept {
    const double minimum = simulation.minimum;
    const double span = simulation.maximum - minimum;
    const double wholeSeconds = seconds > 0 ? std::floor(seconds) : 0;
    switch (simulation.kind) {
    case Simulation::Kind::none:
        return minimum;
    case Simulation::Kind::counter: {
        const double steps = span >= 0 ? std::floor(span) + 1 : 1;
        return minimum + std::fmod(wholeSeconds, steps);
    }
    case Simulation::Kind::ramp:
        return minimum + span * phase(seconds, simulation.period);
    case Simulation::Kind::sine:
        return minimum + span * (0.5 + 0.5 * std::sin(2 * std::numbers::pi *
                                                      phase(seconds, simulation.period)));
    case Simulation::Kind::random: {
        const auto tick = static_cast<std::uint64_t>(wholeSeconds);
        // 53 random bits make a uniform double in [0, 1).
        const double unit = static_cast<double>(mixed(seed ^ mixed(tick)) >> 11) * 0x1.0p-53;
        return minimum + span * unit;
    }
    case Simulation::Kind::toggle:
        return phase(seconds, simulation.period) < 0.5 ? minimum : simulation.maximum;
    }
    return minimum;
}

bool isOn(const Simulation& simulation, double value) noexcept {
    return value > (simulation.minimum + simulation.maximum) / 2;
}

} // namespace kestrin::SimulatedValue
