#include "Faults.h"

#include "RTUFrame.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>

namespace kestrin {

namespace {

constexpr std::array<std::string_view, Faults::allKinds.size()> names{
    "drop", "crc", "garbage", "wrong-unit", "delay", "late", "noise"};

std::optional<double> probabilityFrom(std::string_view text) {
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || !(value >= 0 && value <= 1)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::string_view Faults::name(Kind kind) noexcept {
    return names[static_cast<std::size_t>(kind)];
}

Result<Faults, std::string> Faults::parse(std::string_view spec, std::uint64_t seed) {
    Faults faults(seed);
    // Every comma separates two items: "drop=0.1," has an empty, unknown second one.
    for (bool more = !spec.empty(); more;) {
        const std::size_t comma = spec.find(',');
        const std::string_view item = spec.substr(0, comma);
        more = comma != std::string_view::npos;
        spec = more ? spec.substr(comma + 1) : std::string_view();

        const std::size_t equals = item.find('=');
        const std::string_view key = item.substr(0, equals);
        std::optional<std::size_t> index;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i] == key) {
                index = i;
            }
        }
        if (!index || equals == std::string_view::npos) {
            return std::string("unknown fault '") + std::string(item) +
                   "' (use drop, crc, garbage, wrong-unit, delay, late or noise with =P)";
        }
        const std::optional<double> probability = probabilityFrom(item.substr(equals + 1));
        if (!probability) {
            return std::string("the probability of ") + std::string(key) +
                   " must be a number from 0 to 1";
        }
        faults.probabilities_[*index] = *probability;
    }
    const double total =
        std::accumulate(faults.probabilities_.begin(), faults.probabilities_.end(), 0.0);
    if (total > 1) {
        return std::string("the fault probabilities add up to more than 1");
    }
    return faults;
}

bool Faults::isEmpty() const noexcept {
    return std::all_of(probabilities_.begin(), probabilities_.end(),
                       [](double p) { return p == 0; });
}

std::optional<Faults::Kind> Faults::draw() {
    if (isEmpty()) {
        return std::nullopt;
    }
    // One draw picks at most one fault: the kinds take consecutive slices of [0, 1).
    const double roll = std::uniform_real_distribution<double>(0, 1)(random_);
    double upTo = 0;
    for (Kind kind : allKinds) {
        upTo += probability(kind);
        if (roll < upTo) {
            return kind;
        }
    }
    return std::nullopt;
}

Bytes Faults::apply(Kind kind, Bytes answer) {
    switch (kind) {
    case Kind::drop:
        return {};
    case Kind::crc:
        // Inverting the CRC's high byte always breaks it.
        answer.back() ^= 0xFF;
        return answer;
    case Kind::garbage:
        for (std::uint8_t& byte : answer) {
            byte = static_cast<std::uint8_t>(random_());
        }
        return answer;
    case Kind::wrongUnit: {
        const std::uint8_t unit = answer.front();
        const std::uint8_t other =
            unit >= RTUFrame::unitRange.last ? RTUFrame::unitRange.first : unit + 1;
        return RTUFrame::build(other, ByteView(answer).subspan(1, answer.size() - 3));
    }
    case Kind::noise: {
        const int count = std::uniform_int_distribution<int>(1, 3)(random_);
        Bytes noisy;
        noisy.reserve(answer.size() + 3);
        for (int i = 0; i < count; ++i) {
            noisy.push_back(static_cast<std::uint8_t>(random_()));
        }
        noisy.insert(noisy.end(), answer.begin(), answer.end());
        return noisy;
    }
    case Kind::delay:
    case Kind::late:
        break;
    }
    return answer;
}

double Faults::lateBy(double masterTimeout) {
    // The clamp keeps the open end open: rounding may carry a canonical draw up to 1.
    const double timeouts =
        std::min(std::uniform_real_distribution<double>(1, 2)(random_), std::nextafter(2.0, 1.0));
    return timeouts * masterTimeout;
}

} // namespace kestrin
