#pragma once

#include "Datapoint.h"
#include "Poll.h"
#include "Uuid.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kestrin::PollOperations {

// The edits of polls and of a poll's datapoints, as pure functions from the polls of a project
// to the polls after the edit, so the model only has to store the result and react to it. An
// id that names nothing leaves the list unchanged; new names come from the current language.

// The polls after an edit and the poll it selects.
struct Selection {
    std::vector<Poll> polls;
    std::optional<Uuid> selectedPollID;

    friend bool operator==(const Selection&, const Selection&) = default;
};

struct AddedDatapoint {
    std::vector<Poll> polls;
    Uuid datapointID;
};

// Appends an empty poll named after its position ("Poll 3") and selects it.
Selection addPoll(std::vector<Poll> polls);
// Inserts a copy after the poll, with new ids throughout and the chart selection carried over to
// the copied datapoints, and selects it; nothing when the poll does not exist.
std::optional<Selection> duplicatePoll(std::vector<Poll> polls, const Uuid& pollID);
// Nothing when the poll does not exist or is the last one. Removing the selected poll selects
// the one before it, or the new first poll.
std::optional<Selection> removePoll(std::vector<Poll> polls, const Uuid& pollID,
                                    std::optional<Uuid> selectedPollID);

// The name is kept as typed, empty included (the tab shows a placeholder).
std::vector<Poll> renamePoll(std::vector<Poll> polls, const Uuid& pollID, std::string name);
std::vector<Poll> setInterval(std::vector<Poll> polls, const Uuid& pollID, std::int64_t intervalMs);
std::vector<Poll> setEnabled(std::vector<Poll> polls, const Uuid& pollID, bool enabled);
std::vector<Poll> setPlotted(std::vector<Poll> polls, const Uuid& pollID, const Uuid& datapointID,
                             bool plotted);

// A datapoint at the next free address after the base: the selected datapoint when it is in
// the poll, else the poll's last one. It takes the base's unit, table, type and word order,
// starts over at address 0 when it would run past 65535, is named after table and address
// ("HR 102") and is inserted after the base. Nothing when the poll does not exist.
std::optional<AddedDatapoint> addDatapoint(std::vector<Poll> polls, const Uuid& pollID,
                                           std::optional<Uuid> selectedDatapointID);
// Each chosen datapoint gets a copy right after it, with a new id, at the next free address
// when that still fits below 65536, else at the same address.
std::vector<Poll> duplicateDatapoints(std::vector<Poll> polls, const Uuid& pollID,
                                      const std::set<Uuid>& datapointIDs);
// Removes the datapoints and takes them out of the chart.
std::vector<Poll> deleteDatapoints(std::vector<Poll> polls, const Uuid& pollID,
                                   const std::set<Uuid>& datapointIDs);

enum class ImportChoice : std::uint8_t { add, replace };

// Add appends the imported datapoints; replace first empties the poll and its chart.
std::vector<Poll> importDatapoints(std::vector<Poll> polls, const Uuid& pollID,
                                   std::vector<Datapoint> imported, ImportChoice choice);

} // namespace kestrin::PollOperations
