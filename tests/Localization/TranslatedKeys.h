#pragma once

#include "Texts.h"

#include <string>
#include <vector>

namespace kestrin {

// A key of the catalogue with its text in one language. A text with values is called with one
// marker per value, which no translation contains by itself: "<1>", "<2>" for texts, 101, 202
// for numbers.
struct TranslatedKey {
    std::string name; // "table.tableNames.coil"
    std::string text;
    std::vector<std::string> values;
};

// Every key of texts in declaration order, the same order for every language.
std::vector<TranslatedKey> translatedKeys(const L10n::Texts& texts);

} // namespace kestrin
