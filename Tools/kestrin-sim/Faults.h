#pragma once

#include "Bytes.h"
#include "Result.h"

#include <array>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace kestrin {

// Misbehaviour on purpose, so that every failure path of a master can be driven end to end. Each
// answer suffers at most one fault, drawn from a generator seeded by the user so that a run can
// be repeated.
class Faults {
public:
    enum class Kind : std::uint8_t {
        drop,      // no answer at all: the master times out
        crc,       // the answer with its CRC broken
        garbage,   // line noise of the answer's length instead of the answer
        wrongUnit, // the answer from the next unit address, with a valid CRC
        delay,     // the answer, but late by delayMs
        late,      // the answer after the master has given up on it: one to two of its time-outs
        noise,     // the answer behind one to three bytes of line noise
    };
    // New kinds go last: each kind's slice of a draw stays put, so a seeded run repeats.
    static constexpr std::array allKinds{Kind::drop,  Kind::crc,  Kind::garbage, Kind::wrongUnit,
                                         Kind::delay, Kind::late, Kind::noise};

    // "drop", "crc", "garbage", "wrong-unit", "delay", "late", "noise": the names of the --fault
    // option.
    static std::string_view name(Kind kind) noexcept;

    // "drop=0.1,crc=0.05": each named kind with its probability per answer, 0 to 1, together at
    // most 1. The error is a message for the user.
    static Result<Faults, std::string> parse(std::string_view spec, std::uint64_t seed);

    Faults() = default;
    explicit Faults(std::uint64_t seed)
        : random_(seed) {}

    double probability(Kind kind) const noexcept {
        return probabilities_[static_cast<std::size_t>(kind)];
    }
    bool isEmpty() const noexcept;

    // The fault this answer suffers, if any. Draws once per call when any fault is enabled.
    std::optional<Kind> draw();

    // The bytes that go out instead of the answer frame; a drop leaves nothing, a delay or a late
    // answer the answer unchanged (the caller holds it back).
    Bytes apply(Kind kind, Bytes answer);

    // How long a late answer is held back: uniform in [1, 2) times the master's time-out, so that
    // it always misses the request it answers and arrives while the master waits for the next.
    double lateBy(double masterTimeout);

private:
    std::array<double, allKinds.size()> probabilities_{};
    std::mt19937_64 random_;
};

} // namespace kestrin
