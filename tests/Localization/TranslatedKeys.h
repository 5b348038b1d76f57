#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kestrin {

// A key of the catalogue and the values its text must show, each passed as a marker that no
// translation contains by itself.
struct TranslatedKey {
    std::string name;
    std::function<std::string()> text;
    std::vector<std::string> values = {};
};

// Every key that each language translates (aggregates cannot be iterated, so they are listed).
const std::vector<TranslatedKey>& translatedKeys();

} // namespace kestrin
