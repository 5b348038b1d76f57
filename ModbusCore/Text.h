#pragma once

#include <string>
#include <string_view>

namespace kestrin::Text {

// Text helpers for the lenient readers of user and file input and for the help search. They work
// on UTF-8 without the platform's locale tables, and only ever change ASCII characters and the
// Latin letters of the five languages Kestrin speaks.

// Without white space (space, tab, CR, LF, VT, FF, no-break space) at both ends.
std::string_view trimmed(std::string_view text) noexcept;
// For caseless matching: ASCII, Latin-1 (À…Þ) and Latin Extended-A (Ā…ž, Œ, Ÿ) letters in lower
// case, ß and ẞ as "ss", so "UNITÉ" matches "unité" and "STRASSE" matches "Straße". Accents stay:
// "fur" never matches "für". Other scripts, Turkish dotless i rules and Unicode normalisation are
// left out (a decomposed "u" + U+0308 does not match "ü"); bytes that are not UTF-8 stay as they
// are.
std::string folded(std::string_view text);
// Every ASCII space removed; other white space stays.
std::string removingSpaces(std::string_view text);

} // namespace kestrin::Text
