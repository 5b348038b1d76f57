#pragma once

#include "Value.h"

#include <QDateTime>

namespace kestrin {

// One recorded value with the time the engine stamped on the answer that carried it, in UTC, so
// that samples compare and sort without time-zone lookups.
struct Sample {
    QDateTime time;
    Value value;

    friend bool operator==(const Sample& a, const Sample& b) {
        return a.time == b.time && a.value == b.value;
    }
};

} // namespace kestrin
