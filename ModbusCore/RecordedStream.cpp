#include "RecordedStream.h"

#include "NumberText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace kestrin::RecordedStream {

namespace {

constexpr int timeDecimals = 6;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Plain decimal seconds: digits, then optionally a point and more digits. No sign, exponent or
// infinity: a recording only ever counts forward from its start.
std::optional<double> seconds(std::string_view text) {
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction =
        point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
    const auto digits = [](std::string_view part) {
        return std::all_of(part.begin(), part.end(), isDigit);
    };
    if (whole.empty() || !digits(whole) || !digits(fraction) ||
        (point != std::string_view::npos && fraction.empty())) {
        return std::nullopt;
    }
    double value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || stop != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::uint8_t> byte(std::string_view text) {
    if (text.size() != 2 || !std::isxdigit(static_cast<unsigned char>(text[0])) ||
        !std::isxdigit(static_cast<unsigned char>(text[1]))) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(*NumberText::unsignedInteger(text, 16));
}

bool isBlank(std::string_view line) {
    return std::all_of(line.begin(), line.end(), [](char c) { return c == ' ' || c == '\t'; });
}

// One chunk line, or what is wrong with it (its line number left for the caller).
Result<Chunk, Issue> chunk(std::string_view line) {
    const std::size_t space = line.find(' ');
    if (space == 0 || space == std::string_view::npos || space + 1 == line.size()) {
        return Issue{0, Problem::notTimeAndBytes, std::string(line)};
    }
    Chunk result;
    const std::string_view time = line.substr(0, space);
    const std::optional<double> value = seconds(time);
    if (!value) {
        return Issue{0, Problem::invalidTime, std::string(time)};
    }
    result.seconds = *value;
    std::string_view rest = line.substr(space + 1);
    while (true) {
        const std::size_t next = rest.find(' ');
        const std::string_view word = rest.substr(0, next);
        if (word.empty()) {
            return Issue{0, Problem::notTimeAndBytes, std::string(line)};
        }
        const std::optional<std::uint8_t> parsed = byte(word);
        if (!parsed) {
            return Issue{0, Problem::invalidByte, std::string(word)};
        }
        result.bytes.push_back(*parsed);
        if (next == std::string_view::npos) {
            return result;
        }
        rest = rest.substr(next + 1);
    }
}

} // namespace

Result<std::vector<Chunk>, Issue> parse(std::string_view text) {
    std::vector<Chunk> chunks;
    int number = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        ++number;
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (isBlank(line) || line.starts_with('#')) {
            continue;
        }
        Result<Chunk, Issue> parsed = chunk(line);
        if (!parsed) {
            Issue issue = parsed.error();
            issue.line = number;
            return issue;
        }
        if (!chunks.empty() && parsed.value().seconds < chunks.back().seconds) {
            return Issue{number, Problem::timeGoesBack,
                         std::string(line.substr(0, line.find(' ')))};
        }
        chunks.push_back(std::move(parsed).value());
    }
    return chunks;
}

std::string line(const Chunk& chunk) {
    return NumberText::fixed(chunk.seconds, timeDecimals) + " " + hexString(chunk.bytes);
}

} // namespace kestrin::RecordedStream
