#pragma once

#include "NumberStyle.h"
#include "Value.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace kestrin {

// The CSV that a spreadsheet in the user's locale opens without asking: the separator, the
// decimal mark, the quoting and the line end that every exported file shares.
struct CSVDialect {
    // Whether a cell that begins or ends with white space is quoted, so that it is seen.
    enum class EdgeSpace : std::uint8_t { plain, quoted };

    char separator = ',';
    bool decimalComma = false;

    // ";" with decimal commas where the locale writes "," as its decimal separator; "," otherwise.
    static CSVDialect forStyle(const NumberStyle& style);
    static CSVDialect current() { return forStyle(NumberStyle::current()); }

    // A number written with "." as it goes into a cell: "," for "." with decimal commas.
    std::string decimal(std::string number) const;
    // The value in the digits another program reads back (NumberText::plain), then as decimal.
    std::string number(const Value& value) const;

    // The cell as it is, or in quotes with its quotes doubled where it holds the separator, a
    // quote or a line break.
    void appendCell(std::string& out, std::string_view cell, EdgeSpace edgeSpace) const;
    // The cells between separators, then the line end.
    void appendRow(std::string& out, std::span<const std::string_view> cells,
                   EdgeSpace edgeSpace) const;
    void appendRow(std::string& out, std::initializer_list<std::string_view> cells,
                   EdgeSpace edgeSpace) const {
        appendRow(out, std::span(cells.begin(), cells.size()), edgeSpace);
    }
    // CR LF, as spreadsheets on every platform write it.
    static constexpr std::string_view lineEnd = "\r\n";

    friend bool operator==(const CSVDialect&, const CSVDialect&) = default;
};

} // namespace kestrin
