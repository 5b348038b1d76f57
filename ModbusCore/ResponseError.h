#pragma once

#include "PollFailure.h"

#include <cstdint>

namespace kestrin {

// A defect of an answer PDU: an exception answer, or anything short, mislabelled or miscounted.
struct ResponseError {
    enum class Kind : std::uint8_t { exception, malformed };

    Kind kind = Kind::malformed;
    std::uint8_t code = 0; // the exception code byte; 0 when malformed

    static constexpr ResponseError exception(std::uint8_t code) noexcept {
        return {Kind::exception, code};
    }
    static constexpr ResponseError malformed() noexcept { return {Kind::malformed, 0}; }

    constexpr PollFailure pollFailure() const noexcept {
        return kind == Kind::exception ? PollFailure::exception(code) : PollFailure::malformed();
    }

    friend constexpr bool operator==(const ResponseError&, const ResponseError&) = default;
};

} // namespace kestrin
