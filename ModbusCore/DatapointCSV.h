#pragma once

#include "CSVDialect.h"
#include "Datapoint.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin::DatapointCSV {

// Datapoint lists as spreadsheet CSV: a tolerant import that reports every skipped record, and
// an export that a spreadsheet in the user's locale opens without asking.

// The exported columns, in order; the raw value is the exported header text.
class Column {
public:
    enum Case : std::uint8_t {
        name,
        unitID,
        table,
        address,
        dataType,
        wordOrder,
        scale,
        engineeringUnit,
        format,
        value,
        notes,
    };
    static constexpr std::array allCases{name,     unitID,    table, address,
                                         dataType, wordOrder, scale, engineeringUnit,
                                         format,   value,     notes};

    constexpr Column(Case c) noexcept
        : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }

    // "Name", "Unit ID", "Table", "Address", "Data type", "Word order", "Scale", "Unit",
    // "Format", "Value", "Description".
    std::string_view rawValue() const noexcept;
    // Further header texts accepted on import, lower-case and without spaces.
    std::span<const std::string_view> aliases() const noexcept;
    // The column a header cell names: first by raw value, then by alias, both compared
    // lower-cased and without spaces.
    static std::optional<Column> fromHeader(std::string_view text);

private:
    Case case_;
};

// One cell as read.
struct Field {
    std::string fields; // the cell's text without its quotes
    int line = 1;       // the 1-based line on which the cell's record begins

    friend bool operator==(const Field&, const Field&) = default;
};

// Why a record was skipped; every kind but missingColumns carries the offending cell's text.
struct Problem {
    enum class Kind : std::uint8_t {
        invalidTable,
        invalidAddress,
        invalidUnit,
        invalidDataType,
        invalidNumber,
        missingColumns,
    };

    Kind kind = Kind::missingColumns;
    std::string text;

    static Problem invalidTable(std::string text) { return {Kind::invalidTable, std::move(text)}; }
    static Problem invalidAddress(std::string text) {
        return {Kind::invalidAddress, std::move(text)};
    }
    static Problem invalidUnit(std::string text) { return {Kind::invalidUnit, std::move(text)}; }
    static Problem invalidDataType(std::string text) {
        return {Kind::invalidDataType, std::move(text)};
    }
    static Problem invalidNumber(std::string text) {
        return {Kind::invalidNumber, std::move(text)};
    }
    static Problem missingColumns() { return {Kind::missingColumns, {}}; }

    friend bool operator==(const Problem&, const Problem&) = default;
};

struct ImportIssue {
    int line = 1;
    Problem problem;

    friend bool operator==(const ImportIssue&, const ImportIssue&) = default;
};

struct ImportResult {
    std::vector<Datapoint> datapoints; // in file order, each with a new id
    std::vector<ImportIssue> issues;   // in file order
};

using Record = std::vector<Field>;

// Splits CSV text into records of cells. Quotes may hold separators, doubled quotes and line
// breaks; LF, CR and CR LF end records; blank lines are dropped; nothing is trimmed.
std::vector<Record> records(std::string_view text, char separator);

// Reads a datapoint list in any dialect: the separator is detected from the first line, the
// header names the columns, and every rejected record becomes one issue.
ImportResult parse(std::string_view text);

// The list as CSV text: byte-order mark, header row, one row per datapoint, CR LF line ends.
std::string exportText(std::span<const Datapoint> datapoints, const CSVDialect& dialect);

} // namespace kestrin::DatapointCSV
