#include "DatapointDelegate.h"
#include "DatapointPanel.h"
#include "DatapointTableModel.h"
#include "DatapointTableView.h"
#include "NoticeBanner.h"
#include "PollTab.h"
#include "PollTabBar.h"
#include "UIFixture.h"
#include "WritePopover.h"

#include <functional>
#include <set>

#include <QHeaderView>
#include <QPointer>
#include <QSignalSpy>
#include <QTableView>

namespace kestrin::UITesting {
namespace {

using Model = DatapointTableModel;
using Tone = Model::Tone;

PointStatus read(std::vector<std::uint16_t> raw, double seconds = 0.01) {
    return {raw.back(), std::move(raw), std::nullopt, QDateTime::currentDateTime(), seconds};
}

PointStatus failed(PollFailure failure, std::optional<std::uint16_t> last = std::nullopt) {
    PointStatus status = last ? read({*last}) : PointStatus{};
    status.failure = failure;
    return status;
}

// The value is muted after a failure and faint without one; its raw registers are the last read.
TEST(StatusLook, EachOutcomeHasItsSymbolColourAndTextAndTheValueItsTone) {
    using F = PollFailure;
    using S = Symbol;
    using T = Tone;
    using Row = std::tuple<std::optional<PointStatus>, bool, Model::StatusLook, Tone, std::string>;
    const Row rows[] = {
        {{}, true, {S::circleDashed, T::secondary, "Waiting…"}, T::tertiary, ""},
        {{}, false, {S::circleDashed, T::secondary, "—"}, T::tertiary, ""},
        {read({0, 0xD7}), true, {S::checkmark, T::green, "OK · 10 ms"}, T::primary, "0000 00D7"},
        {failed(F::exception(2)), true, {S::warning, T::orange, "Exception 02"}, T::tertiary, ""},
        {failed(F::timeout(), 9), true, {S::warning, T::red, "No response"}, T::secondary, "0009"},
        {failed(F::crcMismatch()), false, {S::warning, T::red, "CRC error"}, T::tertiary, ""},
    };
    for (const auto& [given, polling, look, value, raw] : rows) {
        SCOPED_TRACE(look.text);
        const PointStatus* status = given ? &*given : nullptr;
        EXPECT_EQ(Model::statusLook(status, polling), look);
        EXPECT_EQ(Model::valueTone(status), value);
        EXPECT_EQ(Model::rawRegistersHelp(status), raw.empty() ? "" : "Raw registers: " + raw);
    }
}

TEST(OverlapMarks, SameUnitAndTableWithIntersectingAddressesOrPastTheEnd) {
    using D = DataType;
    const auto hr = [](std::uint16_t address, DataType type = D::uint16, int unit = 1) {
        Datapoint point = datapoint("", RegisterTable::holdingRegister, address, type);
        point.unitID = static_cast<std::uint8_t>(unit);
        return point;
    };
    const std::tuple<const char*, std::vector<Datapoint>, std::vector<bool>> rows[] = {
        {"second register of an int32", {hr(10, D::int32), hr(11)}, {true, true}},
        {"just after the int32", {hr(10, D::int32), hr(12)}, {false, false}},
        {"same address, apart in the list", {hr(3), hr(4), hr(3)}, {true, false, true}},
        {"a long one over two later ones", {hr(0, D::float64), hr(1), hr(3)}, {true, true, true}},
        {"after a long one and a short one inside it",
         {hr(0, D::float64), hr(1), hr(4)},
         {true, true, false}},
        {"past 65535", {hr(65533, D::float64), hr(65532, D::float64, 2)}, {true, false}},
    };
    for (const auto& [layout, points, marks] : rows) {
        EXPECT_EQ(Model::overlapMarks(points), marks) << layout;
    }
}

// Opens the protected styling so a test sees the colours a cell is drawn with.
class DelegateProbe : public DatapointDelegate {
public:
    QColor textColour(const QModelIndex& index, const QPalette& palette) const {
        QStyleOptionViewItem option;
        option.palette = palette;
        initStyleOption(&option, index);
        EXPECT_FALSE(option.icon.isNull());
        return option.palette.color(QPalette::Text);
    }
};

// Every status comes from events the test hands to the model, for the poll the table shows.
using QuietTable = ModelTesting::QuietReading;

// Removing a row changes the rows; nothing else resets them, and the selection stays.
TEST_F(QuietTable, StatusesAndEditsArriveRowByRowInThePalettesColoursKeepingTheSelection) {
    model->setSelectedPollID(points);
    DatapointPanel panel(*model);
    Model& table = *panel.tableModel();
    QSignalSpy resets(&table, &QAbstractItemModel::modelReset);
    const auto text = [&](int row, int column) {
        return table.index(row, column).data().toString();
    };
    const QModelIndex status = table.index(0, Model::status);
    const auto drawnIn = [&](QColor (*colour)(const QPalette&)) {
        for (const QPalette& palette : {QPalette(Qt::white), darkPalette()}) {
            EXPECT_EQ(DelegateProbe().textColour(status, palette), colour(palette));
        }
    };
    EXPECT_EQ(text(0, Model::status), "Waiting…");
    answerBoth(215, 7);
    EXPECT_EQ(text(0, Model::status), "OK · 12 ms");
    EXPECT_EQ(text(1, Model::value), "7");
    drawnIn(&LogPalette::green);
    fail(PollFailure::exception(2));
    EXPECT_EQ(text(0, Model::status), "Exception 02");
    EXPECT_EQ(text(0, Model::value), "215");
    drawnIn(&LogPalette::orange);
    EXPECT_TRUE(status.data(Qt::ToolTipRole).toString().startsWith("Last read at "));
    fail(PollFailure::timeout());
    drawnIn(&LogPalette::red);

    panel.select({flow.id});
    table.setData(table.index(0, Model::name), "Tank", Qt::EditRole);
    EXPECT_EQ(model->polls()[1].datapoints[0].name, "Tank");
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(panel.selectedIDs(), std::set<Uuid>{flow.id});
    model->deleteDatapoints({level.id});
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(panel.selectedIDs(), std::set<Uuid>{flow.id});
}

// Reading on a line nobody answers within the test: every status is one the test hands to the
// model. Points holds HR 100 to 105 of unit 1.
class LiveTable : public TableFixture {
protected:
    QuietTerminal terminal;
    std::vector<Uuid> ids;
    Uuid points;

    void SetUp() override {
        std::vector<Datapoint> six;
        for (std::uint16_t address = 100; address <= 105; ++address) {
            six.push_back(
                datapoint("P" + std::to_string(address), RegisterTable::holdingRegister, address));
            ids.push_back(six.back().id);
        }
        PollerProject started = project({Testing::poll("Points", six)});
        started.timeoutMs = 5000;
        create(started);
        points = model->polls().front().id;
        startReading(terminal.path());
    }
    void send(const ReadBlock& block, const std::vector<std::uint16_t>& registers) {
        model->handleEvent(ModelTesting::answer(points, block, registers));
    }
    void fail(const ReadBlock& block) {
        model->handleEvent(ModelTesting::failedRead(points, block, PollFailure::timeout()));
    }
};

using Cells = std::set<std::pair<int, int>>;

Cells changedCells(const QSignalSpy& changes) {
    Cells cells;
    for (const QList<QVariant>& change : changes) {
        const auto first = change[0].value<QModelIndex>();
        const auto last = change[1].value<QModelIndex>();
        for (int row = first.row(); row <= last.row(); ++row) {
            for (int column = first.column(); column <= last.column(); ++column) {
                cells.insert({row, column});
            }
        }
    }
    return cells;
}

// A value in the wrong row is the worst a Modbus master can show: after every kind of edit the
// rows are renumbered, and an answer must still reach exactly its datapoints' value and status
// cells, without a reset.
TEST_F(LiveTable, AnAnswerChangesExactlyItsDatapointsCellsAfterRowsAreAddedRemovedAndMoved) {
    Model table(*model);
    const ReadBlock middle{1, RegisterTable::holdingRegister, 101, 4};
    const std::pair<const char*, std::function<void()>> edits[] = {
        {"as loaded", [] {}},
        {"the third removed", [&] { model->deleteDatapoints({ids[2]}); }},
        {"one added after the first", [&] { model->addDatapoint(ids[0]); }},
        {"one duplicated", [&] { model->duplicateDatapoints({ids[4]}); }},
        {"the rows reversed",
         [&] {
             std::vector<Poll> polls = model->polls();
             std::ranges::reverse(polls.front().datapoints);
             model->setPolls(polls);
         }},
    };
    std::uint16_t round = 0;
    for (const auto& [edit, apply] : edits) {
        SCOPED_TRACE(edit);
        apply();
        ++round;
        const std::vector<std::uint16_t> registers{
            std::uint16_t(round * 10 + 1), std::uint16_t(round * 10 + 2),
            std::uint16_t(round * 10 + 3), std::uint16_t(round * 10 + 4)};
        QSignalSpy resets(&table, &QAbstractItemModel::modelReset);
        QSignalSpy changes(&table, &QAbstractItemModel::dataChanged);
        send(middle, registers);
        Cells answered;
        for (int row = 0; row < table.rowCount(); ++row) {
            const Datapoint* point = table.datapoint(row);
            ASSERT_NE(point, nullptr);
            if (middle.covers(*point)) {
                answered.insert({{row, Model::value}, {row, Model::status}});
                EXPECT_EQ(table.index(row, Model::value).data().toString(),
                          QString::number(registers[point->address - 101u]))
                    << point->name;
            }
        }
        EXPECT_EQ(changedCells(changes), answered);
        EXPECT_EQ(resets.count(), 0);
    }
    QSignalSpy changes(&table, &QAbstractItemModel::dataChanged);
    emit model->statusChanged({});
    EXPECT_EQ(changedCells(changes).size(), 2u * static_cast<std::size_t>(table.rowCount()))
        << "every status cleared";
}

// The dot reflects each datapoint's latest result, through failures, recoveries and removals.
TEST_F(LiveTable, TheTabDotFollowsTheLatestResultOfEachDatapoint) {
    PollTabBar bar(*model);
    const ReadBlock all{1, RegisterTable::holdingRegister, 100, 6};
    const ReadBlock first{1, RegisterTable::holdingRegister, 100, 1};
    const ReadBlock second{1, RegisterTable::holdingRegister, 101, 1};
    const ReadBlock third{1, RegisterTable::holdingRegister, 102, 1};
    const auto readAll = [&] { send(all, {1, 2, 3, 4, 5, 6}); };
    const std::tuple<const char*, std::function<void()>, TabDot> steps[] = {
        {"nothing read yet", [] {}, TabDot::grey},
        {"all read", readAll, TabDot::green},
        {"all failed", [&] { fail(all); }, TabDot::orange},
        {"all read again", readAll, TabDot::green},
        {"the first failed", [&] { fail(first); }, TabDot::orange},
        {"the failed one removed", [&] { model->deleteDatapoints({ids[0]}); }, TabDot::green},
        {"the second failed", [&] { fail(second); }, TabDot::orange},
        {"the failed one moved to another address",
         [&] {
             Datapoint moved = *model->datapoint(ids[1]);
             moved.address = 300;
             model->updateDatapoint(moved);
         },
         TabDot::green},
        {"the third also in a second poll",
         [&] {
             std::vector<Poll> polls = model->polls();
             Poll copy;
             copy.name = "Copy";
             copy.datapoints = {*model->datapoint(ids[2])};
             polls.push_back(copy);
             model->setPolls(polls);
         },
         TabDot::green},
        {"the third failed", [&] { fail(third); }, TabDot::orange},
        // A paused poll is not being read, whatever its datapoints last showed.
        {"the poll paused",
         [&] {
             std::vector<Poll> polls = model->polls();
             polls.front().enabled = false;
             model->setPolls(polls);
         },
         TabDot::grey},
        {"stopped", [&] { model->stop(); }, TabDot::grey},
    };
    for (const auto& [step, apply, dot] : steps) {
        apply();
        EXPECT_EQ(bar.tab(points)->dot(), dot) << step;
    }
}

class DatapointTable : public TableFixture {
protected:
    std::unique_ptr<DatapointPanel> panel;

    DatapointPanel& shown() {
        panel = std::make_unique<DatapointPanel>(*model);
        showAt(*panel, 1300, 400);
        return *panel;
    }
    QModelIndex cell(int row, int column) const { return panel->tableModel()->index(row, column); }
};

TEST_F(DatapointTable, CellsThatDoNotApplyCannotBeEdited) {
    create(plant({datapoint("Pump", RegisterTable::coil, 0),
                  datapoint("Word", RegisterTable::holdingRegister, 0),
                  datapoint("Power", RegisterTable::inputRegister, 2, DataType::float32)}));
    const Model table(*model);
    const std::tuple<int, int, bool> cells[] = {
        {0, Model::dataType, false},  {0, Model::scale, false}, {0, Model::format, false},
        {0, Model::wordOrder, false}, {0, Model::table, true},  {1, Model::dataType, true},
        {1, Model::wordOrder, false}, {1, Model::format, true}, {2, Model::wordOrder, true},
        {2, Model::format, false},    {2, Model::scale, true},
    };
    for (const auto& [row, column, editable] : cells) {
        SCOPED_TRACE("row " + std::to_string(row) + " column " + std::to_string(column));
        const QModelIndex index = table.index(row, column);
        EXPECT_EQ((table.flags(index) & Qt::ItemIsEditable) != 0, editable);
        EXPECT_EQ(index.data(Model::InactiveRole).toBool(), !editable);
    }
    const std::vector<bool> pencils{true, true, false};
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(table.index(row, Model::value).data(Model::WritableRole).toBool(), pencils[row]);
    }
}

TEST_F(DatapointTable, NumberFieldsRefuseWhatDoesNotFitNamingTheRange) {
    create(plant({datapoint("Word", RegisterTable::holdingRegister, 10)}));
    Model table(*model);
    const std::string unitRange = "The unit ID is a whole number from 1 to 247.";
    const std::string addressRange = "The address is a whole number from 0 to 65535.";
    const std::string scaleRange = "The scale is a number, for example 0.1 or 10.";
    const std::tuple<int, const char*, std::optional<std::string>> rows[] = {
        {Model::unitID, "247", {}},           {Model::unitID, "0", unitRange},
        {Model::unitID, "300", unitRange},    {Model::unitID, "1.5", unitRange},
        {Model::address, "65535", {}},        {Model::address, "65536", addressRange},
        {Model::address, "-1", addressRange}, {Model::scale, "0,1", {}},
        {Model::scale, "inf", scaleRange},    {Model::scale, "ten", scaleRange},
    };
    for (const auto& [column, typed, refusal] : rows) {
        SCOPED_TRACE(typed);
        const Datapoint before = poll().datapoints[0];
        EXPECT_EQ(Model::refusal(column, typed), refusal);
        EXPECT_EQ(table.setData(table.index(0, column), typed, Qt::EditRole), !refusal);
        EXPECT_EQ(poll().datapoints[0] == before, refusal.has_value());
    }
    EXPECT_EQ(poll().datapoints[0].scale, 0.1);
}

// What the user sees after typing a number that does not fit and pressing Return, then one that
// does.
TEST_F(DatapointTable, ARefusedNumberKeepsItsFieldOpenAndSaysWhyAFittingOneIsTaken) {
    const QString reason = "The address is a whole number from 0 to 65535.";
    create(plant({datapoint("Word", RegisterTable::holdingRegister, 10)}));
    const Datapoint before = poll().datapoints[0];
    shown().tableView()->edit(cell(0, Model::address));
    auto* field = child<QLineEdit>(*panel->tableView(), "fieldEditor");
    typeIn(field, "70000");
    QApplication::processEvents();
    EXPECT_TRUE(field->isVisible());
    EXPECT_EQ(field->text(), "70000");
    EXPECT_EQ(field->toolTip(), reason);
    const auto* note = child<QLabel>(*panel->tableView(), "fieldNote");
    EXPECT_EQ(note->text(), reason);
    EXPECT_EQ(note->palette().color(note->foregroundRole()), LogPalette::red(note->palette()));
    EXPECT_TRUE(poll().datapoints[0] == before);

    typeIn(field, "12");
    // The view commits a Return on its next turn of the event loop.
    EXPECT_TRUE(waitUntil([&] { return poll().datapoints[0].address == 12; }));
}

TEST_F(DatapointTable, TabGoesFromOneEditableCellToTheNext) {
    create(plant({datapoint("Word", RegisterTable::holdingRegister, 10),
                  datapoint("Pump", RegisterTable::coil, 0)}));
    QTableView* view = shown().tableView();
    view->setFocus();
    view->setCurrentIndex(cell(0, Model::unit));
    const std::pair<int, int> expected[] = {
        {0, Model::format}, {0, Model::description}, {1, Model::name}, {1, Model::unitID},
        {1, Model::table},  {1, Model::address},     {1, Model::unit},
    };
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        QApplication::processEvents();
        return view->currentIndex();
    };
    for (const auto& [row, column] : expected) {
        EXPECT_EQ(press(Qt::Key_Tab), cell(row, column)) << "row " << row << " column " << column;
    }
    EXPECT_EQ(press(Qt::Key_Backtab), cell(1, Model::address));
}

TEST_F(DatapointTable, ClickingTheChartCellTogglesPlottingAndATableChosenAdjustsTheType) {
    create(plant({datapoint("Word", RegisterTable::holdingRegister, 10, DataType::int32)}));
    QTableView* view = shown().tableView();
    const QPoint centre = view->visualRect(cell(0, Model::chart)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre);
    EXPECT_TRUE(poll().plotted.contains(poll().datapoints[0].id));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre);
    EXPECT_TRUE(poll().plotted.empty());

    view->edit(cell(0, Model::table));
    auto* picker = child<QComboBox>(*view, "pickerEditor");
    ASSERT_EQ(picker->count(), 4);
    choose(picker, static_cast<int>(RegisterTable::coil));
    EXPECT_EQ(poll().datapoints[0].table(), RegisterTable::coil);
    EXPECT_EQ(poll().datapoints[0].dataType, DataType::boolean);
    EXPECT_TRUE(cell(0, Model::dataType).data(Model::InactiveRole).toBool());
}

TEST_F(DatapointTable, OverlapTriangleComesAndGoesWithTheAddress) {
    create(plant({datapoint("Long", RegisterTable::holdingRegister, 10, DataType::int32),
                  datapoint("Short", RegisterTable::holdingRegister, 11)}));
    Model table(*model);
    const auto marked = [&](int row) {
        const QModelIndex at = table.index(row, Model::address);
        EXPECT_EQ(at.data(Model::SymbolRole).isValid(), at.data(Model::OverlapRole).toBool());
        return at.data(Model::OverlapRole).toBool();
    };
    EXPECT_TRUE(marked(0) && marked(1));
    table.setData(table.index(1, Model::address), "12", Qt::EditRole);
    EXPECT_FALSE(marked(0) || marked(1));
}

TEST_F(DatapointTable, DuplicateAndDeleteWorkOnTheSelectionOnly) {
    create(plant({datapoint("A", RegisterTable::holdingRegister, 0),
                  datapoint("B", RegisterTable::holdingRegister, 1),
                  datapoint("C", RegisterTable::holdingRegister, 2)}));
    QTableView* view = shown().tableView();
    auto* duplicate = child<QToolButton>(*panel, "duplicateDatapointsButton");
    auto* remove = child<QToolButton>(*panel, "deleteDatapointsButton");
    EXPECT_FALSE(duplicate->isEnabled() || remove->isEnabled());
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Delete);
    EXPECT_EQ(poll().datapoints.size(), 3U);

    const Uuid b = poll().datapoints[1].id;
    panel->select({b});
    click(duplicate);
    ASSERT_EQ(poll().datapoints.size(), 4U);
    const Uuid copy = poll().datapoints[2].id;
    EXPECT_EQ(panel->selectedIDs(), std::set<Uuid>{copy});

    panel->select({b, copy});
    QTest::keyClick(view, Qt::Key_Delete);
    ASSERT_EQ(poll().datapoints.size(), 2U);
    EXPECT_EQ(poll().datapoints[1].name, "C");
    EXPECT_FALSE(remove->isEnabled());
}

// At the main window's default width every title shows whole, the last one included.
TEST_F(DatapointTable, EveryTitleFitsItsColumnInEveryLanguage) {
    create(plant({datapoint("Level", RegisterTable::holdingRegister, 0)}));
    for (const Language language : Language::allCases) {
        L10n::withLanguageForTesting(language, [&] {
            shown().resize(1180, 400);
            QApplication::processEvents();
            const QTableView* view = panel->tableView();
            const QHeaderView* header = view->horizontalHeader();
            for (int column = 0; column < Model::columnCount_; ++column) {
                EXPECT_GE(view->columnWidth(column), header->sectionSizeHint(column))
                    << header->model()->headerData(column, Qt::Horizontal).toString().toStdString();
            }
            EXPECT_LE(header->length(), view->viewport()->width()) << language.rawValue();
        });
    }
}

TEST(ColumnWidths, TheRoomIsSharedByWhatEachColumnCanGiveUp) {
    using Width = DatapointTableView::ColumnWidth;
    const std::vector<Width> columns{{100, 150}, {40, 40}, {80, 140}};
    const std::pair<int, std::vector<int>> rows[] = {
        {400, {150, 40, 140}}, // room for all
        {330, {150, 40, 140}}, // exactly
        {300, {136, 40, 124}}, // 30 short: 50 and 60 of slack give up 14 and 16
        {220, {100, 40, 80}},  // the floors
        {100, {100, 40, 80}},  // never below the floors: the table scrolls
    };
    for (const auto& [available, widths] : rows) {
        EXPECT_EQ(DatapointTableView::shared(columns, available), widths) << available;
    }
}

// An unreadable or missing file asks nothing, which the test would block on, and says why.
TEST_F(DatapointTable, ImportAddsReplacesOrLeavesTheListAsChosenAndRefusesWhatItCannotRead) {
    const char* csv = "Name,Unit ID,Table,Address,Data type\n"
                      "Imported A,1,HR,10,uint16\nImported B,1,HR,11,uint16\n";
    // The file's contents, none for a missing one; the answer, none when nothing is asked.
    const std::tuple<const char*, const char*, std::vector<std::string>> rows[] = {
        {csv, "Add", {"Level", "Imported A", "Imported B"}},
        {csv, "Replace", {"Imported A", "Imported B"}},
        {csv, "Cancel", {"Level"}},
        {csv, "", {"Level"}}, // Escape
        {"no,header,here\n1,2,3\n", nullptr, {"Level"}},
        {nullptr, nullptr, {"Level"}},
    };
    for (const auto& [contents, choice, kept] : rows) {
        SCOPED_TRACE(choice ? choice : contents ? "unreadable" : "missing");
        panel.reset(); // before the model it draws
        create(plant({datapoint("Level", RegisterTable::holdingRegister, 0)}));
        shown();
        QFile::remove(file("points.csv"));
        if (contents != nullptr) {
            Testing::put(file("points.csv"), contents);
        }
        if (choice != nullptr) {
            answerQuestion("importQuestion", choice);
        }
        panel->importFile(file("points.csv"));
        std::vector<std::string> names;
        std::ranges::transform(poll().datapoints, std::back_inserter(names), &Datapoint::name);
        EXPECT_EQ(names, kept);
        EXPECT_EQ(model->errorMessage().has_value(), choice == nullptr);
    }
}

TEST_F(DatapointTable, AnEmptyPollOffersToAddAndTheNewRowIsSelected) {
    create(plant({}));
    auto* empty = child(shown(), "emptyTable");
    EXPECT_TRUE(empty->isVisible());
    click(child<QPushButton>(*panel, "emptyAddButton"));
    ASSERT_EQ(poll().datapoints.size(), 1U);
    EXPECT_FALSE(empty->isVisible());
    EXPECT_EQ(panel->selectedIDs(), std::set<Uuid>{poll().datapoints[0].id});
}

using WritePopoverTest = TableFixture;

// Which text fits which type is the codec's test; here what the editor does with its answer. The
// model is stopped: a value that gets through ends as its start-reading-first answer.
TEST_F(WritePopoverTest, StartsFromTheCurrentValueRefusesWhatDoesNotFitAndWritesWhatDoes) {
    create(plant({}));
    Datapoint scaled = datapoint("Temperature", RegisterTable::holdingRegister, 0, DataType::int16);
    scaled.scale = 0.1;
    QWidget anchor;
    const auto open = [&](const Datapoint& point, std::optional<double> current = {}) {
        auto* popover = new WritePopover(*model, point, current);
        popover->showBelow(&anchor);
        return QPointer<WritePopover>(popover);
    };
    const QPointer<WritePopover> empty = open(scaled);
    EXPECT_EQ(child<QLineEdit>(*empty, "writeValue")->text(), "");
    delete empty.data();

    const QPointer<WritePopover> popover = open(scaled, 21.5);
    auto* field = child<QLineEdit>(*popover, "writeValue");
    EXPECT_EQ(field->text().replace(',', '.'), "21.5");
    typeIn(field, "99999");
    const auto* message = child<QLabel>(*popover, "writeMessage");
    EXPECT_TRUE(popover->isInvalid() && popover->isVisible());
    EXPECT_EQ(message->text(), "This value does not fit in Int16.");
    EXPECT_FALSE(model->writeError());
    QTest::keyClick(field, Qt::Key_Backspace);
    EXPECT_FALSE(popover->isInvalid());
    EXPECT_EQ(message->text(),
              "Type a value and press Enter. Hex (0x1F) or binary (0b101) works too.");

    typeIn(field, "0x1F");
    EXPECT_FALSE(popover->isVisible());
    EXPECT_EQ(model->writeError(), "Start reading first (Ctrl+R) to write values.");
    delete popover.data();
}

// Clicks the pencil of the row's value cell and returns the editor it opened.
WritePopover& clickPencil(const DatapointPanel& panel, int row) {
    QTableView* view = panel.tableView();
    const QRect cell = view->visualRect(panel.tableModel()->index(row, Model::value));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      DatapointDelegate::pencilRect(cell).center());
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* popover = qobject_cast<WritePopover*>(widget);
            popover != nullptr && popover->isVisible()) {
            return *popover;
        }
    }
    throw std::runtime_error("the pencil opened no editor");
}

using WritingToTheSimulator = TableFixture;

// The simulator serves Setpoint and Pump; the table also holds Missing, which it does not have.
TEST_F(WritingToTheSimulator, ValuesAndCoilsReachTheDeviceAndARefusedWriteShowsTheBanner) {
    const Datapoint setpoint =
        datapoint("Setpoint", RegisterTable::holdingRegister, 0, DataType::uint16, 100);
    const Datapoint pump = datapoint("Pump", RegisterTable::coil, 0);
    const auto simulator = serve(plant({setpoint, pump}));
    ASSERT_FALSE(simulator->port().empty());
    create(plant({setpoint, pump, datapoint("Missing", RegisterTable::holdingRegister, 500)}));
    DatapointPanel panel(*model);
    showAt(panel, 1300, 400);
    startReading(simulator->port());
    const auto reads = [&](const Datapoint& point, std::uint16_t value) {
        return waitUntil([&] {
            const PointStatus* status = model->status(point.id);
            return status != nullptr && status->raw == std::vector<std::uint16_t>{value};
        });
    };
    ASSERT_TRUE(reads(setpoint, 100));
    auto* field = child<QLineEdit>(clickPencil(panel, 0), "writeValue");
    EXPECT_EQ(field->text(), "100");
    typeIn(field, "1234");
    // The written value is shown at once; the registers change only when read back.
    EXPECT_TRUE(reads(setpoint, 1234));
    EXPECT_FALSE(model->writeError());

    ASSERT_TRUE(reads(pump, 0));
    WritePopover& on = clickPencil(panel, 1);
    EXPECT_EQ(on.findChild<QLineEdit*>("writeValue"), nullptr);
    click(child(on, "writeOn"));
    ASSERT_TRUE(reads(pump, 1));
    click(child(clickPencil(panel, 1), "writeOff"));
    EXPECT_TRUE(reads(pump, 0));

    auto* banner = child<NoticeBanner>(panel, "writeErrorBanner");
    EXPECT_FALSE(banner->isVisible());
    typeIn(child<QLineEdit>(clickPencil(panel, 2), "writeValue"), "5");
    ASSERT_TRUE(waitUntil([&] { return banner->isVisible(); }));
    EXPECT_TRUE(banner->text().startsWith("Writing Missing failed: "))
        << banner->text().toStdString();
    click(child(*banner, "noticeDismiss"));
    EXPECT_FALSE(banner->isVisible());
    EXPECT_FALSE(model->writeError());
    model->stop();
}

} // namespace
} // namespace kestrin::UITesting
