#pragma once

#include <string>
#include <string_view>

namespace kestrin::Text {

// Text helpers for the lenient readers of user and file input. They work on UTF-8 and only ever
// change ASCII characters and the Latin-1 letters of the five languages Kestrin speaks.

// Without white space (space, tab, CR, LF, VT, FF, no-break space) at both ends.
std::string_view trimmed(std::string_view text) noexcept;
// ASCII and Latin-1 upper-case letters (À…Þ) in lower case, so "UNITÉ" matches "unité".
std::string lowercased(std::string_view text);
// Every ASCII space removed; other white space stays.
std::string removingSpaces(std::string_view text);

} // namespace kestrin::Text
