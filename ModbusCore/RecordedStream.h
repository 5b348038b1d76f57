#pragma once

#include "Bytes.h"
#include "Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace kestrin::RecordedStream {

// Bytes as they crossed a line, with their timing, as a text file that tests, benchmarks and
// kestrin-sim --record / --replay share. UTF-8 lines; blank lines and lines starting with '#' are
// ignored; every other line is one chunk as it arrived on (or was sent to) the line:
//   0.004010 01 03 00 00 00 02 C4 0B
// the seconds since the start in decimal, then the bytes as two hex digits each, single spaces
// apart. Chunks are in time order.

struct Chunk {
    double seconds = 0;
    Bytes bytes;

    friend bool operator==(const Chunk&, const Chunk&) = default;
};

enum class Problem {
    notTimeAndBytes, // a line with no bytes after the time, or words not single-space apart
    invalidTime,     // not plain decimal digits with an optional fraction
    invalidByte,     // not two hex digits
    timeGoesBack,    // earlier than the line before
};

// The first line that breaks the format, counted from 1, and the word at fault (the whole line
// for notTimeAndBytes).
struct Issue {
    int line = 0;
    Problem problem = Problem::notTimeAndBytes;
    std::string text;

    friend bool operator==(const Issue&, const Issue&) = default;
};

// Every chunk of the text, or the first line that breaks the format. Line ends may be "\r\n".
Result<std::vector<Chunk>, Issue> parse(std::string_view text);

// The chunk's line without its line break, the time to the microsecond.
std::string line(const Chunk& chunk);

} // namespace kestrin::RecordedStream
