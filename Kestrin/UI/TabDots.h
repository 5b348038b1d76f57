#pragma once

#include "PollTab.h"
#include "Uuid.h"
#include "UuidHash.h"

#include <cstdint>
#include <vector>

#include <QHash>

namespace kestrin {

class PollerModel;
struct PointStatus;

// The dots of the poll tabs, from a count of each poll's results kept up to date status by
// status: a frame's batch of statuses then costs its own size, not the project's.
//
// A dot is grey while stopped, for a disabled poll, or before any datapoint has a result; orange
// when any result is a failure; green when every result so far succeeded.
class TabDots {
public:
    // Counts every datapoint afresh: after the polls or their datapoints changed, or after every
    // status was cleared.
    void recount(const PollerModel& model);
    // Takes in the current statuses of these datapoints.
    void update(const PollerModel& model, const std::vector<Uuid>& datapointIDs);
    // The dot of the poll at this place among the model's polls.
    TabDot dot(const PollerModel& model, std::size_t poll) const;

private:
    enum class Outcome : std::uint8_t { none, read, failed };
    struct Tally {
        int read = 0;
        int failed = 0;
    };
    struct Entry {
        std::size_t poll;
        Outcome outcome;
    };
    static Outcome outcomeOf(const PointStatus* status);
    void count(std::size_t poll, Outcome outcome, int by);

    // A hand-edited project may hold one id in several places, each of which counts.
    QMultiHash<Uuid, Entry> points_;
    std::vector<Tally> tallies_;
};

} // namespace kestrin
