#pragma once

#include "PollFailure.h"

namespace kestrin {

// The error type of the results that events carry.
struct PollFailureError {
    PollFailure failure;

    friend bool operator==(const PollFailureError&, const PollFailureError&) = default;
};

} // namespace kestrin
