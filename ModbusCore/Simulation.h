#pragma once

#include "JSONValue.h"
#include "Result.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace kestrin {

// How the sibling simulator program animates a datapoint. Kestrin never computes simulated
// values: it keeps the record unchanged through copies, JSON and duplication.
struct Simulation {
    class Kind {
    public:
        enum Case : std::uint8_t { none, counter, ramp, sine, random, toggle };
        static constexpr std::array allCases{none, counter, ramp, sine, random, toggle};

        constexpr Kind() noexcept = default;
        constexpr Kind(Case c) noexcept
            : case_(c) {}
        constexpr operator Case() const noexcept { return case_; }

        std::string_view rawValue() const noexcept;
        static std::optional<Kind> fromRawValue(std::string_view text) noexcept;

    private:
        Case case_ = none;
    };

    Kind kind = Kind::none;
    double minimum = 0;
    double maximum = 100;
    double period = 10; // seconds

    constexpr bool isActive() const noexcept { return kind != Kind::none; }

    // The object {"kind", "minimum", "maximum", "period"}; decoding needs all four keys (null
    // counts as missing), and a failure names the key.
    nlohmann::json json() const;
    static Result<Simulation, JSONValue::Error> fromJSON(const nlohmann::json& object);

    friend constexpr bool operator==(const Simulation& a, const Simulation& b) noexcept {
        return a.kind == b.kind && a.minimum == b.minimum && a.maximum == b.maximum &&
               a.period == b.period;
    }
};

} // namespace kestrin
