#include "DatapointImport.h"
#include "L10n.h"
#include "PollOperations.h"

#include <string>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace PollOperations;
constexpr RegisterTable coil = RegisterTable::coil;
constexpr RegisterTable discrete = RegisterTable::discreteInput;
constexpr RegisterTable holding = RegisterTable::holdingRegister;
constexpr RegisterTable input = RegisterTable::inputRegister;

Datapoint point(RegisterTable table, int address, DataType type = DataType::uint16) {
    Datapoint datapoint;
    datapoint.setTable(table);
    datapoint.address = static_cast<std::uint16_t>(address);
    datapoint.dataType = table.isBit() ? datapoint.dataType : type;
    datapoint.name = "P" + std::to_string(address);
    return datapoint;
}

Poll poll(std::string name, std::vector<Datapoint> datapoints = {}) {
    Poll result;
    result.name = std::move(name);
    result.datapoints = std::move(datapoints);
    return result;
}

// The datapoint as it would be with another id and address.
Datapoint moved(Datapoint datapoint, const Uuid& id, int address) {
    datapoint.id = id;
    datapoint.address = static_cast<std::uint16_t>(address);
    return datapoint;
}

TEST(PollOperations, AddPollAppendsANumberedPollAndSelectsIt) {
    const Selection added = addPoll({poll("Meter"), poll("Pump")});
    ASSERT_EQ(added.polls.size(), 3u);
    Poll expected = poll(L10n::texts().polls.newName(3));
    expected.id = added.polls[2].id;
    EXPECT_EQ(added.polls[2], expected);
    EXPECT_EQ(added.selectedPollID, expected.id);
}

TEST(PollOperations, DuplicatePollCopiesWithNewIdsAndKeepsTheChartOnTheCopies) {
    Poll meter = poll("Meter", {point(holding, 0), point(input, 4, DataType::float32)});
    meter.intervalMs = 250;
    meter.enabled = false;
    meter.plotted = {meter.datapoints[1].id};
    const Poll other = poll("Other");
    const auto duplicated = duplicatePoll({meter, other}, meter.id);
    ASSERT_TRUE(duplicated);
    ASSERT_EQ(duplicated->polls.size(), 3u);
    const Poll& copy = duplicated->polls[1];
    EXPECT_EQ(duplicated->selectedPollID, copy.id);
    // The copy with the original's ids is the original but for the name.
    Poll withOldIDs = copy;
    withOldIDs.id = meter.id;
    withOldIDs.datapoints[0].id = meter.datapoints[0].id;
    withOldIDs.datapoints[1].id = meter.datapoints[1].id;
    withOldIDs.plotted = meter.plotted;
    withOldIDs.name = meter.name;
    EXPECT_EQ(withOldIDs, meter);
    EXPECT_EQ(copy.name, L10n::texts().polls.copyName("Meter"));
    EXPECT_EQ(copy.plotted, std::set<Uuid>{copy.datapoints[1].id});
    const std::set<Uuid> ids{meter.id,
                             copy.id,
                             meter.datapoints[0].id,
                             meter.datapoints[1].id,
                             copy.datapoints[0].id,
                             copy.datapoints[1].id};
    EXPECT_EQ(ids.size(), 6u);
    EXPECT_EQ(duplicated->polls[0], meter);
    EXPECT_EQ(duplicated->polls[2], other);
    EXPECT_FALSE(duplicatePoll({meter}, Uuid::random()));
}

TEST(PollOperations, RemovingTheSelectedPollSelectsTheOneBeforeIt) {
    const std::vector<Poll> polls{poll("A"), poll("B"), poll("C")};
    const struct {
        std::size_t removed;
        std::optional<std::size_t> selected, expected; // indexes into polls
    } rows[] = {{0, 0, 1}, {1, 1, 0}, {2, 2, 1}, {0, 2, 2}, {1, std::nullopt, std::nullopt}};
    const auto idAt = [&](std::optional<std::size_t> index) {
        return index ? std::optional<Uuid>(polls[*index].id) : std::nullopt;
    };
    for (const auto& row : rows) {
        const auto removed = removePoll(polls, polls[row.removed].id, idAt(row.selected));
        ASSERT_TRUE(removed) << row.removed;
        std::vector<Poll> left = polls;
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(row.removed));
        EXPECT_EQ(removed->polls, left);
        EXPECT_EQ(removed->selectedPollID, idAt(row.expected)) << row.removed;
    }
    EXPECT_FALSE(removePoll({polls[0]}, polls[0].id, polls[0].id));
    EXPECT_FALSE(removePoll(polls, Uuid::random(), polls[0].id));
}

// A new datapoint follows the selected one, else the last, in its unit, table and type, with the
// other settings fresh; past the end of the addresses it starts over at 0.
TEST(PollOperations, AddDatapointContinuesAfterTheBaseOrStartsOverAtZero) {
    const std::pair<Datapoint, int> rows[] = {{point(holding, 100, DataType::float32), 102},
                                              {point(coil, 5), 6},
                                              {point(discrete, 65534), 65535},
                                              {point(input, 65532, DataType::int32), 65534},
                                              {point(holding, 65533, DataType::float32), 0},
                                              {point(holding, 65532, DataType::float64), 0},
                                              {point(coil, 65535), 0}};
    for (const auto& [row, address] : rows) {
        Datapoint base = row;
        base.unitID = 17;
        base.wordOrder = WordOrder::cdab;
        base.scale = 0.1;
        base.engineeringUnit = "kW";
        // Selected, or last when nothing is.
        for (const bool selected : {false, true}) {
            const Poll target = poll("Meter", selected ? std::vector{base, point(coil, 0)}
                                                       : std::vector{point(coil, 0), base});
            const auto added =
                addDatapoint({target}, target.id, selected ? std::optional(base.id) : std::nullopt);
            ASSERT_TRUE(added);
            ASSERT_EQ(added->polls[0].datapoints.size(), 3u);
            const Datapoint& fresh = added->polls[0].datapoints[selected ? 1 : 2];
            const Datapoint expected(
                added->datapointID, L10n::Table::newName(base.table(), address), 17, base.table(),
                static_cast<std::uint16_t>(address), base.dataType, WordOrder::cdab, 1.0, "",
                DisplayFormat::decimal, 0, "", Simulation());
            EXPECT_EQ(fresh, expected) << base.name << selected;
            EXPECT_EQ(added->polls[0].datapoints[selected ? 2 : 0],
                      target.datapoints[selected ? 1 : 0]);
        }
    }
    const Poll empty = poll("Empty");
    const auto started = addDatapoint({empty}, empty.id, Uuid::random());
    ASSERT_TRUE(started);
    Datapoint expected;
    expected.id = started->datapointID;
    expected.name = L10n::Table::newName(holding, 0);
    EXPECT_EQ(started->polls[0].datapoints, std::vector<Datapoint>{expected});
    EXPECT_FALSE(addDatapoint({empty}, Uuid::random(), std::nullopt));
}

TEST(PollOperations, DuplicateDatapointsCopiesEachRightAfterItself) {
    const Datapoint counter = point(input, 10, DataType::uint32);
    const Datapoint mode = point(holding, 1);
    const Datapoint nearEnd = point(holding, 65533, DataType::int32);
    const Datapoint lastCoil = point(coil, 65535);
    const Poll target = poll("Meter", {counter, mode, nearEnd, lastCoil});

    const auto duplicated = duplicateDatapoints(
        {target}, target.id, {counter.id, nearEnd.id, lastCoil.id, Uuid::random()});
    const std::vector<Datapoint>& result = duplicated[0].datapoints;
    ASSERT_EQ(result.size(), 7u);
    EXPECT_EQ(result, (std::vector<Datapoint>{counter, moved(counter, result[1].id, 12), mode,
                                              nearEnd, moved(nearEnd, result[4].id, 65533),
                                              lastCoil, moved(lastCoil, result[6].id, 65535)}));
    EXPECT_NE(result[1].id, counter.id);
    EXPECT_EQ(duplicateDatapoints({target}, target.id, {Uuid::random()})[0], target);
}

TEST(PollOperations, DeleteDatapointsAlsoTakesThemOutOfTheChart) {
    const Datapoint keep = point(holding, 0);
    const Datapoint drop = point(holding, 1);
    Poll target = poll("Meter", {keep, drop});
    target.plotted = {keep.id, drop.id};
    const auto deleted = deleteDatapoints({target}, target.id, {drop.id, Uuid::random()});
    EXPECT_EQ(deleted[0].datapoints, std::vector<Datapoint>{keep});
    EXPECT_EQ(deleted[0].plotted, std::set<Uuid>{keep.id});
}

TEST(PollOperations, ImportAddsAfterTheListOrReplacesListAndChart) {
    const Datapoint existing = point(holding, 0);
    Poll target = poll("Meter", {existing});
    target.plotted = {existing.id};
    const Poll other = poll("Other");
    const std::vector<Datapoint> imported{point(coil, 3), point(input, 7)};

    const auto added = importDatapoints({target, other}, target.id, imported, ImportChoice::add);
    EXPECT_EQ(added[0].datapoints, (std::vector<Datapoint>{existing, imported[0], imported[1]}));
    EXPECT_EQ(added[0].plotted, target.plotted);
    EXPECT_EQ(added[1], other);
    const auto replaced =
        importDatapoints({target, other}, target.id, imported, ImportChoice::replace);
    EXPECT_EQ(replaced[0].datapoints, imported);
    EXPECT_TRUE(replaced[0].plotted.empty());
}

TEST(DatapointImport, KeepsUTF8AndReadsAnythingElseAsLatin1) {
    EXPECT_EQ(DatapointImport::decodedText("Temp\xC3\xA9rature;\xC2\xB0\x43"), "Température;°C");
    EXPECT_EQ(DatapointImport::decodedText("Temp\xE9rature;\xB0\x43"), "Température;°C");
}

DatapointCSV::ImportResult found(int datapoints, int issues) {
    DatapointCSV::ImportResult result;
    result.datapoints.resize(static_cast<std::size_t>(datapoints));
    for (int line = 2; line < issues + 2; ++line) {
        result.issues.push_back(
            {line, DatapointCSV::Problem::invalidAddress(std::to_string(line))});
    }
    return result;
}

TEST(DatapointImport, AsksWithTheCountAndAtMostFiveSkippedLines) {
    const std::string question =
        "Do you want to add them to the current list, or replace the list?";
    EXPECT_EQ(DatapointImport::question(found(1, 0)).value(),
              (DatapointImport::Question{"1 datapoint found", question}));
    const auto skipped = DatapointImport::question(found(3, 7));
    EXPECT_EQ(skipped.value().title, "3 datapoints found");
    EXPECT_EQ(skipped.value().text,
              question + "\n\n7 line(s) skipped:\nLine 2: invalid address '2' (0 to 65535)\n"
                         "Line 3: invalid address '3' (0 to 65535)\n"
                         "Line 4: invalid address '4' (0 to 65535)\n"
                         "Line 5: invalid address '5' (0 to 65535)\n"
                         "Line 6: invalid address '6' (0 to 65535)");
}

TEST(DatapointImport, NothingFoundNamesTheFirstProblem) {
    EXPECT_EQ(
        DatapointImport::question(found(0, 2)).error(),
        L10n::texts().errors.importNothing(L10n::Errors::describe(found(0, 2).issues.front())));
    EXPECT_EQ(DatapointImport::question(found(0, 0)).error(),
              L10n::texts().errors.importNothing(""));
}

} // namespace
} // namespace kestrin
