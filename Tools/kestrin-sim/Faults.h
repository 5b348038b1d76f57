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
    };
    static constexpr std::array allKinds{Kind::drop, Kind::crc, Kind::garbage, Kind::wrongUnit,
                                         Kind::delay};

    // "drop", "crc", "garbage", "wrong-unit", "delay": the names of the --fault option.
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

    // The bytes that go out instead of the answer frame; a drop leaves nothing, a delay the answer
    // unchanged (the caller holds it back).
    Bytes apply(Kind kind, Bytes answer);

private:
    std::array<double, allKinds.size()> probabilities_{};
    std::mt19937_64 random_;
};

} // namespace kestrin
