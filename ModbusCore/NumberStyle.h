#pragma once

#include <string>

namespace kestrin {

// How the user's locale writes numbers for display and export. Passed in as a value so that
// formatting stays pure; parsing never depends on it.
struct NumberStyle {
    std::string decimalSeparator = ".";

    // Read once from the process environment's numeric locale (LC_ALL, LC_NUMERIC, LANG);
    // "." when the locale is unknown or has no decimal separator.
    static const NumberStyle& current();

    bool usesDecimalComma() const noexcept { return decimalSeparator == ","; }
    // A number written with "." as this style writes it.
    std::string localized(std::string number) const;

    friend bool operator==(const NumberStyle&, const NumberStyle&) = default;
};

} // namespace kestrin
