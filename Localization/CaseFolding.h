#pragma once

#include <string>
#include <string_view>

namespace kestrin::CaseFolding {

// Caseless matching of UTF-8 text in the five languages of the user interface, without the
// platform's locale tables. Folds ASCII, Latin-1 (À…Þ) and Latin Extended-A (Ā…ž, Œ, Ÿ) letters
// to lower case and ß and ẞ to "ss"; accents stay, so "fur" never matches "für". Out of scope:
// other scripts (Greek, Cyrillic), Turkish dotless i rules, Unicode normalisation (a decomposed
// "u" + U+0308 does not match "ü"). Bytes that are not valid UTF-8 are kept as they are.

// The text with every letter above folded.
std::string folded(std::string_view text);

// Whether part occurs in text when both are folded; an empty part occurs everywhere.
bool contains(std::string_view text, std::string_view part);

} // namespace kestrin::CaseFolding
