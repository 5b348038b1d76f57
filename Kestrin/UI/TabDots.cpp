#include "TabDots.h"

#include "PollerModel.h"

namespace kestrin {

TabDots::Outcome TabDots::outcomeOf(const PointStatus* status) {
    if (status == nullptr) {
        return Outcome::none;
    }
    return status->failure ? Outcome::failed : Outcome::read;
}

void TabDots::count(std::size_t poll, Outcome outcome, int by) {
    Tally& tally = tallies_[poll];
    if (outcome == Outcome::read) {
        tally.read += by;
    } else if (outcome == Outcome::failed) {
        tally.failed += by;
    }
}

void TabDots::recount(const PollerModel& model) {
    const std::vector<Poll>& polls = model.polls();
    points_.clear();
    tallies_.assign(polls.size(), {});
    std::size_t datapoints = 0;
    for (const Poll& poll : polls) {
        datapoints += poll.datapoints.size();
    }
    points_.reserve(static_cast<qsizetype>(datapoints));
    for (std::size_t poll = 0; poll < polls.size(); ++poll) {
        for (const Datapoint& point : polls[poll].datapoints) {
            const Outcome outcome = outcomeOf(model.status(point.id));
            points_.insert(point.id, Entry{poll, outcome});
            count(poll, outcome, 1);
        }
    }
}

void TabDots::update(const PollerModel& model, const std::vector<Uuid>& datapointIDs) {
    for (const Uuid& id : datapointIDs) {
        auto [entry, end] = points_.equal_range(id);
        if (entry == end) {
            continue;
        }
        const Outcome now = outcomeOf(model.status(id));
        for (; entry != end; ++entry) {
            count(entry->poll, entry->outcome, -1);
            count(entry->poll, now, 1);
            entry->outcome = now;
        }
    }
}

TabDot TabDots::dot(const PollerModel& model, std::size_t poll) const {
    if (model.state() == PollerState::stopped || poll >= tallies_.size() ||
        poll >= model.polls().size() || !model.polls()[poll].enabled) {
        return TabDot::grey;
    }
    const Tally& tally = tallies_[poll];
    if (tally.failed > 0) {
        return TabDot::orange;
    }
    return tally.read > 0 ? TabDot::green : TabDot::grey;
}

} // namespace kestrin
