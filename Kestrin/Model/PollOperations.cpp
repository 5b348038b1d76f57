#include "PollOperations.h"

#include "L10n.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

namespace kestrin::PollOperations {

namespace {

constexpr int lastProtocolAddress = 65535;

std::vector<Poll>::iterator findPoll(std::vector<Poll>& polls, const Uuid& pollID) {
    return std::find_if(polls.begin(), polls.end(),
                        [&](const Poll& poll) { return poll.id == pollID; });
}

// Runs edit on the poll with the id, if there is one.
template <typename Edit>
std::vector<Poll> editPoll(std::vector<Poll> polls, const Uuid& pollID, Edit edit) {
    if (auto poll = findPoll(polls, pollID); poll != polls.end()) {
        edit(*poll);
    }
    return polls;
}

// The address right after the datapoint, when a datapoint of count registers still fits there.
std::optional<std::uint16_t> nextAddress(const Datapoint& datapoint, int count) {
    const int next = datapoint.addressRange().last + 1;
    if (next + count - 1 > lastProtocolAddress) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(next);
}

} // namespace

Selection addPoll(std::vector<Poll> polls) {
    Poll poll;
    poll.name = L10n::texts().polls.newName(static_cast<int>(polls.size()) + 1);
    const Uuid selected = poll.id;
    polls.push_back(std::move(poll));
    return {std::move(polls), selected};
}

std::optional<Selection> duplicatePoll(std::vector<Poll> polls, const Uuid& pollID) {
    auto original = findPoll(polls, pollID);
    if (original == polls.end()) {
        return std::nullopt;
    }
    Poll copy = *original;
    copy.id = Uuid::random();
    copy.name = L10n::texts().polls.copyName(original->name);
    std::map<Uuid, Uuid> newIDs;
    for (Datapoint& datapoint : copy.datapoints) {
        datapoint.id = newIDs[datapoint.id] = Uuid::random();
    }
    // Chart entries of ids without a datapoint have nothing to follow and are left behind.
    copy.plotted.clear();
    for (const Uuid& plotted : original->plotted) {
        if (auto mapped = newIDs.find(plotted); mapped != newIDs.end()) {
            copy.plotted.insert(mapped->second);
        }
    }
    const Uuid selected = copy.id;
    polls.insert(std::next(original), std::move(copy));
    return Selection{std::move(polls), selected};
}

std::optional<Selection> removePoll(std::vector<Poll> polls, const Uuid& pollID,
                                    std::optional<Uuid> selectedPollID) {
    auto removed = findPoll(polls, pollID);
    if (removed == polls.end() || polls.size() < 2) {
        return std::nullopt;
    }
    const auto index = static_cast<std::size_t>(std::distance(polls.begin(), removed));
    polls.erase(removed);
    if (selectedPollID == pollID) {
        selectedPollID = polls[index == 0 ? 0 : index - 1].id;
    }
    return Selection{std::move(polls), selectedPollID};
}

std::vector<Poll> renamePoll(std::vector<Poll> polls, const Uuid& pollID, std::string name) {
    return editPoll(std::move(polls), pollID, [&](Poll& poll) { poll.name = std::move(name); });
}

std::vector<Poll> setInterval(std::vector<Poll> polls, const Uuid& pollID,
                              std::int64_t intervalMs) {
    return editPoll(std::move(polls), pollID, [&](Poll& poll) { poll.intervalMs = intervalMs; });
}

std::vector<Poll> setEnabled(std::vector<Poll> polls, const Uuid& pollID, bool enabled) {
    return editPoll(std::move(polls), pollID, [&](Poll& poll) { poll.enabled = enabled; });
}

std::vector<Poll> setPlotted(std::vector<Poll> polls, const Uuid& pollID, const Uuid& datapointID,
                             bool plotted) {
    return editPoll(std::move(polls), pollID, [&](Poll& poll) {
        if (plotted) {
            poll.plotted.insert(datapointID);
        } else {
            poll.plotted.erase(datapointID);
        }
    });
}

std::optional<AddedDatapoint> addDatapoint(std::vector<Poll> polls, const Uuid& pollID,
                                           std::optional<Uuid> selectedDatapointID) {
    auto poll = findPoll(polls, pollID);
    if (poll == polls.end()) {
        return std::nullopt;
    }
    std::vector<Datapoint>& datapoints = poll->datapoints;
    auto base = datapoints.end();
    if (selectedDatapointID) {
        base = std::find_if(datapoints.begin(), datapoints.end(), [&](const Datapoint& datapoint) {
            return datapoint.id == *selectedDatapointID;
        });
    }
    if (base == datapoints.end() && !datapoints.empty()) {
        base = std::prev(datapoints.end());
    }

    Datapoint added;
    auto insertAt = datapoints.end();
    if (base != datapoints.end()) {
        added.unitID = base->unitID;
        added.setTable(base->table());
        // A bit table keeps the bool that setTable gave it.
        if (!base->table().isBit()) {
            added.dataType = base->dataType;
        }
        added.wordOrder = base->wordOrder;
        added.address = nextAddress(*base, added.count()).value_or(0);
        insertAt = std::next(base);
    }
    added.name = L10n::Table::newName(added.table(), added.address);
    const Uuid id = added.id;
    datapoints.insert(insertAt, std::move(added));
    return AddedDatapoint{std::move(polls), id};
}

std::vector<Poll> duplicateDatapoints(std::vector<Poll> polls, const Uuid& pollID,
                                      const std::set<Uuid>& datapointIDs) {
    return editPoll(std::move(polls), pollID, [&](Poll& poll) {
        std::vector<Datapoint> datapoints;
        datapoints.reserve(poll.datapoints.size() * 2);
        for (const Datapoint& datapoint : poll.datapoints) {
            datapoints.push_back(datapoint);
            if (datapointIDs.contains(datapoint.id)) {
                Datapoint copy = datapoint;
                copy.id = Uuid::random();
                copy.address =
                    nextAddress(datapoint, datapoint.count()).value_or(datapoint.address);
                datapoints.push_back(std::move(copy));
            }
        }
        poll.datapoints = std::move(datapoints);
    });
}

std::vector<Poll> deleteDatapoints(std::vector<Poll> polls, const Uuid& pollID,
                                   const std::set<Uuid>& datapointIDs) {
    return editPoll(std::move(polls), pollID, [&](Poll& poll) {
        std::erase_if(poll.datapoints, [&](const Datapoint& datapoint) {
            return datapointIDs.contains(datapoint.id);
        });
        for (const Uuid& id : datapointIDs) {
            poll.plotted.erase(id);
        }
    });
}

std::vector<Poll> importDatapoints(std::vector<Poll> polls, const Uuid& pollID,
                                   std::vector<Datapoint> imported, ImportChoice choice) {
    return editPoll(std::move(polls), pollID, [&](Poll& poll) {
        if (choice == ImportChoice::replace) {
            poll.datapoints.clear();
            poll.plotted.clear();
        }
        std::move(imported.begin(), imported.end(), std::back_inserter(poll.datapoints));
    });
}

} // namespace kestrin::PollOperations
