#pragma once

#include <cstdint>

namespace kestrin {

// The outcome of one failed transaction, as the engine reports it and the log and status column
// show it. Cases are in the order the texts and counters list them.
struct PollFailure {
    enum class Kind : std::uint8_t {
        unexpectedUnit,     // value: the unit address that answered
        unexpectedFunction, // value: the function code byte received
        exception,          // value: the exception code byte received
        timeout,
        crcMismatch,
        malformed,
    };

    Kind kind = Kind::timeout;
    // The associated byte of the first three kinds; always 0 for the others, so equality holds.
    std::uint8_t value = 0;

    static constexpr PollFailure unexpectedUnit(std::uint8_t unit) noexcept {
        return {Kind::unexpectedUnit, unit};
    }
    static constexpr PollFailure unexpectedFunction(std::uint8_t function) noexcept {
        return {Kind::unexpectedFunction, function};
    }
    static constexpr PollFailure exception(std::uint8_t code) noexcept {
        return {Kind::exception, code};
    }
    static constexpr PollFailure timeout() noexcept { return {Kind::timeout, 0}; }
    static constexpr PollFailure crcMismatch() noexcept { return {Kind::crcMismatch, 0}; }
    static constexpr PollFailure malformed() noexcept { return {Kind::malformed, 0}; }

    friend constexpr bool operator==(const PollFailure&, const PollFailure&) = default;
};

} // namespace kestrin
