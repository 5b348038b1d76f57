#include "CaseFolding.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(CaseFolding, ContainsIgnoresCaseButNotAccents) {
    struct Row {
        std::string_view text;
        std::string_view part;
        bool found;
    };
    const Row rows[] = {
        {"Pumpe", "PUMPE", true},
        {"Pumpe", "pumpe", true},
        {"für", "FÜR", true},
        {"FÜR", "für", true},
        {"für", "fur", false},
        {"fur", "für", false},
        {"ÀÉÎÕÜÇÑÅÆØÞ", "àéîõüçñåæøþ", true},
        {"échange", "ÉCHANGE", true},
        {"Œuvre", "œuvre", true},
        {"ŸSER", "ÿser", true},
        // Latin Extended-A changes which parity is upper case twice.
        {"ĀĂĄĆČĎĒĚĞĪĮ", "āăąćčďēěğīį", true},
        {"ĲĴĶ", "ĳĵķ", true},
        {"ĹĻĽĿŁŃŅŇ", "ĺļľŀłńņň", true},
        {"ŊŌŐŒŔŘŚŞŠŢŤŪŮŰŲŴŶ", "ŋōőœŕřśşšţťūůűųŵŷ", true},
        {"ŹŻŽ", "źżž", true},
        {"İ", "i", true},
        {"Straße", "STRASSE", true},
        {"STRAẞE", "straße", true},
        {"Strasse", "ß", true},
        // × and ÷ sit 0x20 apart like a letter pair, but are signs.
        {"3 × 4", "÷", false},
        {"é", "e", false},
        {"e", "é", false},
        {"Ω", "ω", false},
        {"", "", true},
        {"anything", "", true},
        {"", "a", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(CaseFolding::contains(row.text, row.part), row.found)
            << row.text << " / " << row.part;
    }
}

TEST(CaseFolding, KeepsWhatHasNoLowerCaseAndBytesThatAreNotUTF8) {
    using namespace std::literals;
    struct Row {
        std::string_view text;
        std::string_view folded;
    };
    const Row rows[] = {
        // Letters without a partner must not be paired with a neighbour.
        {"ĸ ŉ ı ß×÷", "ĸ ŉ ı ss×÷"},
        {"Hello, World 42!", "hello, world 42!"},
        {"\xC3", "\xC3"},
        {"\xC3"
         "A",
         "\xC3"
         "a"},
        {"\xC4\xC4\x80", "\xC4\xC4\x81"},
        {"\xFF\xFE"
         "AB",
         "\xFF\xFE"
         "ab"},
        {"\xE1\xBA", "\xE1\xBA"},
        {"\xC1\x81", "\xC1\x81"},
        {"A\0B"sv, "a\0b"sv},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(CaseFolding::folded(row.text), row.folded);
    }
}

} // namespace
} // namespace kestrin
