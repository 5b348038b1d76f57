#pragma once

#include "ReadBlock.h"
#include "Uuid.h"

#include <vector>

namespace kestrin {

// What the engine needs to read one poll.
struct PollPlan {
    // The poll's id: the engine keys its schedule by it and reports it with every read.
    Uuid id;
    // Seconds between the starts of two readings of the poll.
    double interval = 1.0;
    // ReadPlanner::blocks of the poll's datapoints, in that order.
    std::vector<ReadBlock> blocks;
    // ReadPlanner::pieces of the same datapoints: what a block the device refuses whole may be
    // split into. Without them a block is never split.
    std::vector<ReadBlock> pieces;

    friend bool operator==(const PollPlan&, const PollPlan&) = default;
};

} // namespace kestrin
