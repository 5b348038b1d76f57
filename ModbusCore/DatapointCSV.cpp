#include "DatapointCSV.h"

#include "Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace kestrin::DatapointCSV {

namespace {

constexpr std::array<std::string_view, 11> headers{
    "Name",  "Unit ID", "Table",  "Address", "Data type",  "Word order",
    "Scale", "Unit",    "Format", "Value",   "Description"};

constexpr std::array<std::string_view, 3> nameAliases{"name", "naam", "tag"};
constexpr std::array<std::string_view, 7> unitIDAliases{
    "unitid", "unit-id", "slave", "slaveid", "slaveaddress", "device", "id"};
constexpr std::array<std::string_view, 5> tableAliases{"table", "tabel", "registertype", "area",
                                                       "type"};
constexpr std::array<std::string_view, 4> addressAliases{"address", "adres", "register", "offset"};
constexpr std::array<std::string_view, 4> dataTypeAliases{"datatype", "data-type", "datatyp",
                                                          "format(type)"};
constexpr std::array<std::string_view, 5> wordOrderAliases{"wordorder", "byteorder", "order",
                                                           "woordvolgorde", "endianness"};
constexpr std::array<std::string_view, 4> scaleAliases{"scale", "schaal", "factor", "multiplier"};
constexpr std::array<std::string_view, 6> engineeringUnitAliases{
    "unit", "eenheid", "einheit", "unité", "unidad", "engineeringunit"};
constexpr std::array<std::string_view, 3> formatAliases{"format", "display", "weergave"};
constexpr std::array<std::string_view, 5> valueAliases{"value", "waarde", "wert", "valeur",
                                                       "valor"};
constexpr std::array<std::string_view, 6> notesAliases{
    "description", "omschrijving", "beschrijving", "notes", "comment", "opmerking"};

constexpr std::array<std::span<const std::string_view>, 11> aliasLists{
    nameAliases,     unitIDAliases,    tableAliases, addressAliases,
    dataTypeAliases, wordOrderAliases, scaleAliases, engineeringUnitAliases,
    formatAliases,   valueAliases,     notesAliases};

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string headerKey(std::string_view text) {
    return Text::removingSpaces(Text::folded(text));
}

// The separator a spreadsheet used, from the first line: ";" unless tab or "," is more frequent.
char detectedSeparator(std::string_view text) {
    const auto lineEnd = text.find_first_of("\r\n");
    const std::string_view firstLine = text.substr(0, lineEnd);
    char choice = ';';
    auto best = std::count(firstLine.begin(), firstLine.end(), ';');
    for (char candidate : {'\t', ','}) {
        auto occurrences = std::count(firstLine.begin(), firstLine.end(), candidate);
        if (occurrences > best) {
            choice = candidate;
            best = occurrences;
        }
    }
    return choice;
}

// A decimal integer in [0, maximum] with an optional sign; "-0" is 0, as unsigned readers have it.
std::optional<unsigned> decimalInteger(std::string_view text, unsigned maximum) {
    bool negative = false;
    if (text.starts_with('+') || text.starts_with('-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty() ||
        !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return std::nullopt;
    }
    unsigned result = 0;
    auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    if (error != std::errc() || stop != text.data() + text.size() || result > maximum ||
        (negative && result != 0)) {
        return std::nullopt;
    }
    return result;
}

// The character at text[i] inside quotes, added to the cell; returns the index of the last
// character it took. A doubled quote is one quote, a single one closes the quotes, and line
// breaks are kept and counted.
std::size_t readQuoted(std::string_view text, std::size_t i, Field& cell, bool& inQuotes,
                       int& line) {
    const char c = text[i];
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (c == '"') {
        if (next == '"') {
            cell.fields += '"';
            return i + 1;
        }
        inQuotes = false;
        return i;
    }
    if (c == '\r' && next == '\n') {
        cell.fields += "\r\n";
        ++line;
        return i + 1;
    }
    if (c == '\n') {
        ++line;
    }
    cell.fields += c;
    return i;
}

// Cells of one record by column; absent columns and short records read as empty.
class RecordReader {
public:
    RecordReader(const Record& record, const std::array<std::optional<std::size_t>, 11>& columns)
        : record_(record)
        , columns_(columns) {}

    const Field* field(Column column) const {
        const auto& index = columns_[column];
        if (!index || *index >= record_.size()) {
            return nullptr;
        }
        return &record_[*index];
    }
    // Trimmed, quoted or not: spreadsheets pad cells, and a name is never meant to begin with a
    // space.
    std::string_view cell(Column column) const {
        const Field* found = field(column);
        return found == nullptr ? std::string_view() : Text::trimmed(found->fields);
    }

private:
    const Record& record_;
    const std::array<std::optional<std::size_t>, 11>& columns_;
};

Result<Datapoint, Problem> datapoint(const RecordReader& reader) {
    const std::string_view tableCell = reader.cell(Column::table);
    const auto table = RegisterTable::fromText(tableCell);
    if (!table) {
        return Problem::invalidTable(std::string(tableCell));
    }
    const std::string_view addressCell = reader.cell(Column::address);
    const auto address = decimalInteger(addressCell, 65535);
    if (!address) {
        return Problem::invalidAddress(std::string(addressCell));
    }
    const std::string_view unitCell = reader.cell(Column::unitID);
    unsigned unit = 1;
    if (!unitCell.empty()) {
        // 1…247: 0 is the broadcast address and 248…255 are reserved (Modbus over Serial Line
        // V1.02, section 2.2).
        auto parsed = decimalInteger(unitCell, 255);
        if (!parsed || *parsed < 1 || *parsed > 247) {
            return Problem::invalidUnit(std::string(unitCell));
        }
        unit = *parsed;
    }
    const std::string_view typeCell = reader.cell(Column::dataType);
    DataType type = table->isBit() ? DataType::boolean : DataType::uint16;
    if (!typeCell.empty()) {
        auto parsed = DataType::fromText(typeCell);
        if (!parsed || !parsed->isAllowed(*table)) {
            return Problem::invalidDataType(std::string(typeCell));
        }
        type = *parsed;
    }
    const std::string_view scaleCell = reader.cell(Column::scale);
    double scale = 1;
    if (!scaleCell.empty()) {
        // "nan" and "inf" read as numbers, but no shown value could be computed with them.
        auto parsed = Datapoint::parseNumber(scaleCell);
        if (!parsed || *parsed == 0 || !std::isfinite(parsed->toDouble())) {
            return Problem::invalidNumber(std::string(scaleCell));
        }
        scale = parsed->toDouble();
    }
    const std::string_view valueCell = reader.cell(Column::value);
    Value value;
    if (!valueCell.empty()) {
        auto parsed = Datapoint::parseNumber(valueCell);
        if (!parsed) {
            return Problem::invalidNumber(std::string(valueCell));
        }
        value = *parsed;
    }
    return Datapoint(
        Uuid::random(), std::string(reader.cell(Column::name)), static_cast<std::uint8_t>(unit),
        *table, static_cast<std::uint16_t>(*address), type,
        WordOrder::fromText(reader.cell(Column::wordOrder)).value_or(WordOrder::abcd), scale,
        std::string(reader.cell(Column::engineeringUnit)),
        DisplayFormat::fromText(reader.cell(Column::format)).value_or(DisplayFormat::decimal),
        value, std::string(reader.cell(Column::notes)), Simulation{});
}

} // namespace

std::string_view Column::rawValue() const noexcept {
    return headers[case_];
}

std::span<const std::string_view> Column::aliases() const noexcept {
    return aliasLists[case_];
}

std::optional<Column> Column::fromHeader(std::string_view text) {
    const std::string key = headerKey(text);
    for (Case c : allCases) {
        if (headerKey(Column(c).rawValue()) == key) {
            return Column(c);
        }
    }
    for (Case c : allCases) {
        const auto names = Column(c).aliases();
        if (std::find(names.begin(), names.end(), key) != names.end()) {
            return Column(c);
        }
    }
    return std::nullopt;
}

std::vector<Record> records(std::string_view text, char separator) {
    std::vector<Record> result;
    Record record;
    Field cell;
    bool inQuotes = false;
    int line = 1;
    // Every cell carries the line its record begins on, not the line it begins on.
    int recordLine = 1;

    auto closeCell = [&] {
        record.push_back(std::move(cell));
        cell = Field{{}, recordLine};
    };
    auto closeRecord = [&] {
        closeCell();
        // A blank line is a record of one empty cell.
        if (!(record.size() == 1 && record.front().fields.empty())) {
            result.push_back(std::move(record));
        }
        record.clear();
        recordLine = ++line;
        cell.line = recordLine;
    };

    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool crlf = c == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (inQuotes) {
            i = readQuoted(text, i, cell, inQuotes, line);
        } else if (c == '"' && cell.fields.empty()) {
            inQuotes = true;
        } else if (c == separator) {
            closeCell();
        } else if (c == '\n' || c == '\r') {
            closeRecord();
            if (crlf) {
                ++i;
            }
        } else {
            cell.fields += c;
        }
    }
    if (!cell.fields.empty() || !record.empty()) {
        closeRecord();
    }
    return result;
}

ImportResult parse(std::string_view text) {
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    const std::vector<Record> all = records(text, detectedSeparator(text));
    ImportResult result;
    if (all.empty()) {
        return result;
    }

    std::array<std::optional<std::size_t>, 11> columns{};
    const Record& header = all.front();
    for (std::size_t index = 0; index < header.size(); ++index) {
        if (auto column = Column::fromHeader(header[index].fields)) {
            if (!columns[*column]) {
                columns[*column] = index;
            }
        }
    }
    if (!columns[Column::table] || !columns[Column::address]) {
        result.issues.push_back({1, Problem::missingColumns()});
        return result;
    }

    for (auto record = all.begin() + 1; record != all.end(); ++record) {
        const bool blank = std::all_of(record->begin(), record->end(), [](const Field& field) {
            return Text::trimmed(field.fields).empty();
        });
        if (blank) {
            continue;
        }
        auto made = datapoint(RecordReader(*record, columns));
        if (made.ok()) {
            result.datapoints.push_back(std::move(made).value());
        } else {
            result.issues.push_back({record->front().line, made.error()});
        }
    }
    return result;
}

std::string exportText(std::span<const Datapoint> datapoints, const CSVDialect& dialect) {
    // The import trims every cell, so white space at either end is quoted to show it is meant.
    constexpr auto quoted = CSVDialect::EdgeSpace::quoted;
    std::string out(byteOrderMark);
    dialect.appendRow(out, headers, quoted);
    for (const Datapoint& point : datapoints) {
        dialect.appendRow(
            out,
            {point.name, std::to_string(point.unitID), point.table().code(),
             std::to_string(point.address), point.dataType.rawValue(),
             point.dataType.usesWordOrder() ? point.wordOrder.label() : std::string_view(),
             dialect.number(point.scale), point.engineeringUnit, point.format.rawValue(),
             dialect.number(point.value), point.notes},
            quoted);
    }
    return out;
}

} // namespace kestrin::DatapointCSV
