#include "DatapointTableModel.h"

#include "Datapoint.h"
#include "L10n.h"
#include "NumberStyle.h"
#include "NumberText.h"
#include "PollerModel.h"
#include "QtText.h"
#include "RTUFrame.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <map>

#include <QDateTime>
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLocale>

namespace kestrin {

namespace {

// The time of day in the user's long time format, without the time zone it usually carries.
QString timeOfDay(const QDateTime& time) {
    const QLocale locale = QLocale::system();
    QString format = locale.timeFormat(QLocale::LongFormat);
    format.remove(QLatin1Char('t'));
    return locale.toString(time.toLocalTime().time(), format.trimmed());
}

// A datapoint with no status yet is waited for while reading, and while listening until the other
// master asks for it; stopped or without its port, nothing will come.
bool awaitsValues(const PollerModel& model) {
    return model.state() == PollerState::running || model.state() == PollerState::listening;
}

QFont monospaced() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

// The status text is a size smaller than the table's body text.
QFont callout() {
    QFont font = QGuiApplication::font();
    font.setPointSizeF(font.pointSizeF() * 12.0 / 13.0);
    return font;
}

std::optional<double> numberOf(const QString& text) {
    return toDouble(Datapoint::parseNumber(text.toStdString()));
}

std::optional<int> wholeNumberOf(const QString& text, int first, int last) {
    const std::optional<double> parsed = numberOf(text);
    if (!parsed || *parsed != std::floor(*parsed) || *parsed < first || *parsed > last) {
        return std::nullopt;
    }
    return static_cast<int>(*parsed);
}

std::optional<int> unitIDOf(const QString& text) {
    return wholeNumberOf(text, RTUFrame::unitRange.first, RTUFrame::unitRange.last);
}

std::optional<int> addressOf(const QString& text) {
    return wholeNumberOf(text, 0, 65535);
}

// Every shown value is multiplied by the scale, so only a finite one is usable.
std::optional<double> scaleOf(const QString& text) {
    const std::optional<double> parsed = numberOf(text);
    return parsed && std::isfinite(*parsed) ? parsed : std::nullopt;
}

// The case a picker's row index stands for; nothing for an index outside the cases.
template <typename Enumeration>
std::optional<Enumeration> caseAt(const QVariant& input) {
    bool ok = false;
    const int index = input.toInt(&ok);
    if (!ok || index < 0 || index >= static_cast<int>(Enumeration::allCases.size())) {
        return std::nullopt;
    }
    return Enumeration::allCases[static_cast<std::size_t>(index)];
}

// Takes a parsed value into the datapoint's field; a text that did not parse changes nothing.
template <typename Field, typename Value>
bool assign(Field& field, const std::optional<Value>& parsed) {
    if (!parsed) {
        return false;
    }
    field = static_cast<Field>(*parsed);
    return true;
}

QVariant fontOf(int column) {
    using Model = DatapointTableModel;
    if (column == Model::unitID || column == Model::value) {
        return monospaced();
    }
    return column == Model::status ? QVariant(callout()) : QVariant();
}

QVariant alignmentOf(int column) {
    using Model = DatapointTableModel;
    return column == Model::unitID || column == Model::address || column == Model::scale
               ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
               : QVariant();
}

} // namespace

DatapointTableModel::StatusLook DatapointTableModel::statusLook(const PointStatus* status,
                                                                bool polling) {
    if (status == nullptr) {
        return {Symbol::circleDashed, Tone::secondary,
                polling ? L10n::texts().table.waiting() : "—"};
    }
    if (!status->failure) {
        const int ms = static_cast<int>(std::lround(status->duration * 1000));
        return {Symbol::checkmark, Tone::green, L10n::Table::ok(ms)};
    }
    const bool exception = status->failure->kind == PollFailure::Kind::exception;
    return {Symbol::warning, exception ? Tone::orange : Tone::red,
            L10n::Log::shortFailure(*status->failure)};
}

DatapointTableModel::Tone DatapointTableModel::valueTone(const PointStatus* status) {
    if (status == nullptr || !status->value) {
        return Tone::tertiary;
    }
    return status->failure ? Tone::secondary : Tone::primary;
}

std::string DatapointTableModel::rawRegistersHelp(const PointStatus* status) {
    if (status == nullptr || status->raw.empty()) {
        return {};
    }
    std::string registers;
    for (const std::uint16_t word : status->raw) {
        std::array<char, 8> hex{};
        std::snprintf(hex.data(), hex.size(), "%04X", static_cast<unsigned>(word));
        registers += registers.empty() ? "" : " ";
        registers += hex.data();
    }
    return L10n::texts().table.rawHelp(registers);
}

std::vector<bool> DatapointTableModel::overlapMarks(const std::vector<Datapoint>& datapoints) {
    std::vector<bool> marks(datapoints.size(), false);
    // Grouped by unit and table and sorted by first address, a datapoint overlaps an earlier one
    // when it starts before the farthest end so far, and a later one when the next starts before
    // its own end: two passes, however many datapoints share an address.
    std::map<std::pair<int, int>, std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < datapoints.size(); ++i) {
        const Datapoint& point = datapoints[i];
        groups[{point.unitID, static_cast<int>(point.table())}].push_back(i);
        marks[i] = !point.lastAddress().has_value();
    }
    for (auto& [key, members] : groups) {
        std::stable_sort(members.begin(), members.end(), [&](std::size_t a, std::size_t b) {
            return datapoints[a].address < datapoints[b].address;
        });
        int reach = -1;
        for (std::size_t i = 0; i < members.size(); ++i) {
            const auto range = datapoints[members[i]].addressRange();
            const bool afterNext = i + 1 < members.size() &&
                                   datapoints[members[i + 1]].addressRange().first <= range.last;
            if (range.first <= reach || afterNext) {
                marks[members[i]] = true;
            }
            reach = std::max(reach, range.last);
        }
    }
    return marks;
}

std::optional<std::string> DatapointTableModel::refusal(int column, const QString& text) {
    switch (column) {
    case unitID:
        return unitIDOf(text) ? std::nullopt : std::optional(L10n::texts().table.unitIDInvalid());
    case address:
        return addressOf(text) ? std::nullopt : std::optional(L10n::texts().table.addressInvalid());
    case scale:
        return scaleOf(text) ? std::nullopt : std::optional(L10n::texts().table.scaleInvalid());
    default:
        return std::nullopt;
    }
}

DatapointTableModel::DatapointTableModel(PollerModel& model, QObject* parent)
    : QAbstractTableModel(parent)
    , model_(model) {
    setRows(currentRowIDs());
    refreshOverlaps();
    connect(&model_, &PollerModel::pollsChanged, this, &DatapointTableModel::pollsChanged);
    connect(&model_, &PollerModel::selectedPollIDChanged, this, &DatapointTableModel::pollsChanged);
    connect(&model_, &PollerModel::statusChanged, this, &DatapointTableModel::statusChanged);
    connect(&model_, &PollerModel::stateChanged, this, &DatapointTableModel::stateChanged);
}

std::vector<Uuid> DatapointTableModel::currentRowIDs() const {
    std::vector<Uuid> ids;
    if (const Poll* poll = model_.selectedPoll()) {
        ids.reserve(poll->datapoints.size());
        for (const Datapoint& point : poll->datapoints) {
            ids.push_back(point.id);
        }
    }
    return ids;
}

void DatapointTableModel::setRows(std::vector<Uuid> ids) {
    rows_ = std::move(ids);
    rowOf_.clear();
    rowOf_.reserve(static_cast<qsizetype>(rows_.size()));
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        rowOf_.insert(rows_[i], static_cast<int>(i));
    }
}

void DatapointTableModel::refreshOverlaps() {
    const Poll* poll = model_.selectedPoll();
    overlaps_ = poll != nullptr ? overlapMarks(poll->datapoints) : std::vector<bool>();
}

void DatapointTableModel::pollsChanged() {
    std::vector<Uuid> ids = currentRowIDs();
    if (ids != rows_) {
        beginResetModel();
        setRows(std::move(ids));
        refreshOverlaps();
        endResetModel();
        return;
    }
    refreshOverlaps();
    if (!rows_.empty()) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount_ - 1));
    }
}

// A frame's batch can hold hundreds of statuses: their rows go out as runs of neighbours, two
// ranges a run, so that the view repaints a few rectangles instead of one per datapoint.
void DatapointTableModel::statusChanged(const std::vector<Uuid>& datapointIDs) {
    if (rows_.empty()) {
        return;
    }
    // No list means every status was cleared.
    if (datapointIDs.empty()) {
        liveCellsChanged(0, rowCount() - 1);
        return;
    }
    std::vector<int> changed;
    changed.reserve(datapointIDs.size());
    for (const Uuid& id : datapointIDs) {
        if (const std::optional<int> found = row(id)) {
            changed.push_back(*found);
        }
    }
    std::sort(changed.begin(), changed.end());
    for (std::size_t first = 0; first < changed.size();) {
        std::size_t last = first;
        while (last + 1 < changed.size() && changed[last + 1] <= changed[last] + 1) {
            ++last;
        }
        liveCellsChanged(changed[first], changed[last]);
        first = last + 1;
    }
}

void DatapointTableModel::liveCellsChanged(int firstRow, int lastRow) {
    for (const int column : {value, status}) {
        emit dataChanged(index(firstRow, column), index(lastRow, column));
    }
}

void DatapointTableModel::stateChanged() {
    if (!rows_.empty()) {
        emit dataChanged(index(0, status), index(rowCount() - 1, status));
    }
}

int DatapointTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int DatapointTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCount_;
}

const Datapoint* DatapointTableModel::datapoint(int row) const {
    if (row < 0 || row >= rowCount()) {
        return nullptr;
    }
    const Poll* poll = model_.selectedPoll();
    if (poll == nullptr || static_cast<std::size_t>(row) >= poll->datapoints.size()) {
        return nullptr;
    }
    const Datapoint& point = poll->datapoints[static_cast<std::size_t>(row)];
    return point.id == rows_[static_cast<std::size_t>(row)] ? &point : nullptr;
}

std::optional<int> DatapointTableModel::row(const Uuid& datapointID) const {
    const auto found = rowOf_.constFind(datapointID);
    return found != rowOf_.cend() ? std::optional(found.value()) : std::nullopt;
}

QVariant DatapointTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    switch (static_cast<Column>(section)) {
    case name:
        return qt(L10n::texts().table.name());
    case unitID:
        return qt(L10n::texts().table.unitID());
    case table:
        return qt(L10n::texts().table.table());
    case address:
        return qt(L10n::texts().table.address());
    case dataType:
        return qt(L10n::texts().table.dataType());
    case wordOrder:
        return qt(L10n::texts().table.wordOrder());
    case scale:
        return qt(L10n::texts().table.scale());
    case value:
        return qt(L10n::texts().table.value());
    case unit:
        return qt(L10n::texts().table.unit());
    case status:
        return qt(L10n::texts().table.status());
    case chart:
        return qt(L10n::texts().pane.chart());
    case format:
        return qt(L10n::texts().table.format());
    case description:
        return qt(L10n::texts().table.description());
    case columnCount_:
        break;
    }
    return {};
}

bool DatapointTableModel::isInactive(const Datapoint& point, int column) const {
    switch (column) {
    case dataType:
    case scale:
        return point.table().isBit();
    case wordOrder:
        return !point.dataType.usesWordOrder();
    case format:
        return point.table().isBit() || point.dataType.isFloat();
    default:
        return false;
    }
}

QVariant DatapointTableModel::display(const Datapoint& point, int column) const {
    const PointStatus* pointStatus = model_.status(point.id);
    switch (static_cast<Column>(column)) {
    case name:
        return qt(point.name);
    case unitID:
        return QString::number(point.unitID);
    case table:
        return qt(L10n::Table::tableName(point.table()));
    case address:
        return QString::number(point.address);
    case dataType:
        return qt(L10n::Table::dataTypeName(point.dataType));
    case wordOrder:
        return QString::fromUtf8(point.wordOrder.label().data(),
                                 static_cast<int>(point.wordOrder.label().size()));
    case scale:
        return qt(NumberStyle::current().localized(NumberText::plain(point.scale)));
    case value:
        if (pointStatus != nullptr && pointStatus->value) {
            return qt(point.formatted(*pointStatus->value, NumberStyle::current()));
        }
        return QStringLiteral("—");
    case unit:
        return qt(point.engineeringUnit);
    case status:
        return qt(statusLook(pointStatus, awaitsValues(model_)).text);
    case format:
        return qt(L10n::Table::formatName(point.format));
    case description:
        return qt(point.notes);
    case chart:
    case columnCount_:
        break;
    }
    return {};
}

QVariant DatapointTableModel::edit(const Datapoint& point, int column) const {
    switch (static_cast<Column>(column)) {
    case unitID:
        return static_cast<int>(point.unitID);
    case table:
        return static_cast<int>(point.table());
    case address:
        return static_cast<int>(point.address);
    case dataType:
        return static_cast<int>(point.dataType);
    case wordOrder:
        return static_cast<int>(point.wordOrder);
    case format:
        return static_cast<int>(point.format);
    default:
        return display(point, column);
    }
}

QVariant DatapointTableModel::toolTip(const Datapoint& point, int column) const {
    switch (column) {
    case unitID:
        return qt(L10n::texts().table.unitIDHelp());
    case address:
        return qt(L10n::texts().table.addressHelp(point.modiconAddress()));
    case wordOrder:
        return qt(L10n::texts().table.wordOrderHelp());
    case scale:
        return qt(L10n::texts().table.scaleHelp());
    case chart:
        return qt(L10n::texts().table.plotHelp());
    case value: {
        // The whole value too: a 64-bit one is often wider than its column.
        const PointStatus* pointStatus = model_.status(point.id);
        const std::string help = rawRegistersHelp(pointStatus);
        if (help.empty() || !pointStatus->value) {
            return {};
        }
        return qt(point.formatted(*pointStatus->value, NumberStyle::current()) + "\n" + help);
    }
    case status: {
        const PointStatus* pointStatus = model_.status(point.id);
        if (pointStatus == nullptr || !pointStatus->updated) {
            return {};
        }
        return qt(L10n::texts().table.updatedHelp(timeOfDay(*pointStatus->updated).toStdString()));
    }
    default:
        return {};
    }
}

QVariant DatapointTableModel::checkState(const Datapoint& point, int column) const {
    const Poll* poll = model_.selectedPoll();
    if (column != chart || poll == nullptr) {
        return {};
    }
    return poll->plotted.contains(point.id) ? Qt::Checked : Qt::Unchecked;
}

QVariant DatapointTableModel::tone(const Datapoint& point, int column) const {
    const PointStatus* pointStatus = model_.status(point.id);
    if (column == value) {
        return static_cast<int>(valueTone(pointStatus));
    }
    if (column == status) {
        return static_cast<int>(statusLook(pointStatus, awaitsValues(model_)).tone);
    }
    return {};
}

QVariant DatapointTableModel::symbol(const Datapoint& point, int row, int column) const {
    if (column == status) {
        return static_cast<int>(statusLook(model_.status(point.id), awaitsValues(model_)).symbol);
    }
    if (overlaps(row, column)) {
        return static_cast<int>(Symbol::warning);
    }
    return {};
}

bool DatapointTableModel::overlaps(int row, int column) const {
    return column == address && static_cast<std::size_t>(row) < overlaps_.size() &&
           overlaps_[static_cast<std::size_t>(row)];
}

QVariant DatapointTableModel::data(const QModelIndex& index, int role) const {
    const Datapoint* point = index.isValid() ? datapoint(index.row()) : nullptr;
    if (point == nullptr) {
        return {};
    }
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return display(*point, column);
    case Qt::EditRole:
        return edit(*point, column);
    case Qt::ToolTipRole:
        return toolTip(*point, column);
    case Qt::CheckStateRole:
        return checkState(*point, column);
    case Qt::FontRole:
        return fontOf(column);
    case Qt::TextAlignmentRole:
        return alignmentOf(column);
    case ToneRole:
        return tone(*point, column);
    case SymbolRole:
        return symbol(*point, index.row(), column);
    case InactiveRole:
        return isInactive(*point, column);
    case OverlapRole:
        return overlaps(index.row(), column);
    case WritableRole:
        return column == value && point->table().isWritable();
    case DatapointRole:
        return qt(point->id.text());
    default:
        return {};
    }
}

Qt::ItemFlags DatapointTableModel::flags(const QModelIndex& index) const {
    const Datapoint* point = index.isValid() ? datapoint(index.row()) : nullptr;
    if (point == nullptr) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const int column = index.column();
    if (column == chart) {
        return flags | Qt::ItemIsUserCheckable;
    }
    if (column != value && column != status && !isInactive(*point, column)) {
        flags |= Qt::ItemIsEditable;
    }
    return flags;
}

bool DatapointTableModel::apply(Datapoint& point, int column, const QVariant& input) const {
    switch (static_cast<Column>(column)) {
    case name:
        point.name = input.toString().toStdString();
        return true;
    case unit:
        point.engineeringUnit = input.toString().toStdString();
        return true;
    case description:
        point.notes = input.toString().toStdString();
        return true;
    case unitID:
        return assign(point.unitID, unitIDOf(input.toString()));
    case address:
        return assign(point.address, addressOf(input.toString()));
    case scale:
        return assign(point.scale, scaleOf(input.toString()));
    case table: {
        const auto chosen = caseAt<RegisterTable>(input);
        if (chosen) {
            point.setTable(*chosen);
        }
        return chosen.has_value();
    }
    case dataType: {
        const auto chosen = caseAt<DataType>(input);
        return chosen && chosen->isAllowed(point.table()) && assign(point.dataType, chosen);
    }
    case wordOrder:
        return assign(point.wordOrder, caseAt<WordOrder>(input));
    case format:
        return assign(point.format, caseAt<DisplayFormat>(input));
    case value:
    case status:
    case chart:
    case columnCount_:
        break;
    }
    return false;
}

bool DatapointTableModel::setData(const QModelIndex& index, const QVariant& input, int role) {
    const Datapoint* point = index.isValid() ? datapoint(index.row()) : nullptr;
    const Poll* poll = model_.selectedPoll();
    if (point == nullptr || poll == nullptr) {
        return false;
    }
    if (index.column() == chart && role == Qt::CheckStateRole) {
        const bool plotted = input.toInt() == Qt::Checked;
        model_.setPlotted(poll->id, point->id, plotted);
        emit dataChanged(index, index, {Qt::CheckStateRole});
        return true;
    }
    if (role != Qt::EditRole || isInactive(*point, index.column())) {
        return false;
    }
    Datapoint changed = *point;
    if (!apply(changed, index.column(), input)) {
        return false;
    }
    if (!(changed == *point)) {
        model_.updateDatapoint(changed);
    }
    return true;
}

} // namespace kestrin
