#include "CSVDialect.h"

#include "NumberText.h"
#include "Text.h"

#include <utility>

namespace kestrin {

CSVDialect CSVDialect::forStyle(const NumberStyle& style) {
    if (style.usesDecimalComma()) {
        return {';', true};
    }
    return {',', false};
}

std::string CSVDialect::decimal(std::string number) const {
    return NumberStyle{decimalComma ? "," : "."}.localized(std::move(number));
}

std::string CSVDialect::number(const Value& value) const {
    return decimal(NumberText::plain(value));
}

void CSVDialect::appendCell(std::string& out, std::string_view cell, EdgeSpace edgeSpace) const {
    const bool needsQuotes =
        cell.find_first_of(std::string{separator, '"', '\n', '\r'}) != std::string_view::npos ||
        (edgeSpace == EdgeSpace::quoted && Text::trimmed(cell).size() != cell.size());
    if (!needsQuotes) {
        out += cell;
        return;
    }
    out += '"';
    for (const char c : cell) {
        if (c == '"') {
            out += '"';
        }
        out += c;
    }
    out += '"';
}

void CSVDialect::appendRow(std::string& out, std::span<const std::string_view> cells,
                           EdgeSpace edgeSpace) const {
    bool first = true;
    for (const std::string_view cell : cells) {
        if (!first) {
            out += separator;
        }
        first = false;
        appendCell(out, cell, edgeSpace);
    }
    out += lineEnd;
}

} // namespace kestrin
