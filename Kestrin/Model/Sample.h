#pragma once

#include "Value.h"

#include <QDateTime>

namespace kestrin {

// One recorded value with the time of the answer that carried it. Times recorded in UTC
// (QDateTime::currentDateTimeUtc()) compare and sort without time-zone lookups.
struct Sample {
    QDateTime time;
    Value value;

    friend bool operator==(const Sample& a, const Sample& b) {
        return a.time == b.time && a.value == b.value;
    }
};

} // namespace kestrin
