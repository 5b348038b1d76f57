#include "Text.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace std::literals;

TEST(Text, FoldsTheLettersOfTheFiveLanguagesAndKeepsEverythingElse) {
    struct Row {
        std::string_view text;
        std::string_view folded;
    };
    const Row rows[] = {
        {"Hello, World 42!", "hello, world 42!"},
        {"ÀÉÎÕÜÇÑÅÆØÞ àéü", "àéîõüçñåæøþ àéü"},
        {"Œuvre ŸSER", "œuvre ÿser"},
        // Latin Extended-A changes which parity is upper case twice.
        {"ĀĂĄĆČĎĒĚĞĪĮ", "āăąćčďēěğīį"},
        {"ĲĴĶ", "ĳĵķ"},
        {"ĹĻĽĿŁŃŅŇ", "ĺļľŀłńņň"},
        {"ŊŌŐŒŔŘŚŞŠŢŤŪŮŰŲŴŶ", "ŋōőœŕřśşšţťūůűųŵŷ"},
        {"ŹŻŽ", "źżž"},
        {"İ ſ", "i s"},
        {"Straße STRAẞE", "strasse strasse"},
        // Letters without a partner must not be paired with a neighbour; × and ÷ sit 0x20 apart
        // like a letter pair, but are signs; other scripts stay.
        {"ĸ ŉ ı ×÷ Ω", "ĸ ŉ ı ×÷ Ω"},
        // Bytes that are not UTF-8 stay, and the letters after them still fold.
        {"\xC3", "\xC3"},
        {"\xC3\x41", "\xC3\x61"}, // a lone lead byte before "A"
        {"\xC4\xC4\x80", "\xC4\xC4\x81"},
        {"\xFF\xFE\x41\x42", "\xFF\xFE\x61\x62"}, // "AB"
        {"\xE1\xBA", "\xE1\xBA"},
        {"\xC1\x81", "\xC1\x81"},
        {"A\0B"sv, "a\0b"sv},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Text::folded(row.text), row.folded) << row.text;
    }
}

} // namespace
} // namespace kestrin
