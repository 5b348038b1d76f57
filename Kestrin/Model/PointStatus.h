#pragma once

#include "PollFailure.h"
#include "Value.h"

#include <cstdint>
#include <optional>
#include <vector>

#include <QDateTime>

namespace kestrin {

// The latest outcome for one datapoint. A failure keeps the last good value and its registers, so
// the table can show what the device said before it stopped answering.
struct PointStatus {
    std::optional<Value> value;
    std::vector<std::uint16_t> raw; // the registers (or bits) behind value
    std::optional<PollFailure> failure;
    std::optional<QDateTime> updated; // when the last attempt ended
    double duration = 0;              // seconds, of the last successful read

    friend bool operator==(const PointStatus&, const PointStatus&) = default;
};

} // namespace kestrin
