#pragma once

#include <chrono>

namespace kestrin {

// When bytes were heard: by the steady clock, which measures silences and durations, and by the
// system clock, which dates the events the user sees.
struct Arrival {
    std::chrono::steady_clock::time_point steady{};
    std::chrono::system_clock::time_point wall{};

    static Arrival now() noexcept {
        return {std::chrono::steady_clock::now(), std::chrono::system_clock::now()};
    }
    // The same moment shifted by d on both clocks.
    Arrival operator+(std::chrono::steady_clock::duration d) const noexcept {
        return {steady + d,
                wall + std::chrono::duration_cast<std::chrono::system_clock::duration>(d)};
    }

    friend bool operator==(const Arrival&, const Arrival&) = default;
};

} // namespace kestrin
