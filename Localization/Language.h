#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin {

// The languages of the user interface. Persisted nowhere; the raw value is the two-letter code.
class Language {
public:
    enum Case : std::uint8_t { en, nl, de, fr, es };
    static constexpr std::array allCases{en, nl, de, fr, es};

    constexpr Language() noexcept = default;
    constexpr Language(Case c) noexcept
        : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }

    std::string_view rawValue() const noexcept;
    // Exact, case-sensitive match of the two-letter code.
    static std::optional<Language> fromRawValue(std::string_view text) noexcept;

    // The language of this process: chosen from the environment on first use, then fixed.
    // Safe to call from any thread.
    static Language current();

    // The first supported language among locale names in order of preference ("nl_BE.UTF-8",
    // "de", "pt-BR"); English when none is supported. "C" and "POSIX" name no language.
    static Language choose(const std::vector<std::string>& preferred);

    // Reads one environment variable; null when it is not set.
    using Environment = std::function<const char*(const char*)>;
    // The preference list of a Linux session: the entries of LANGUAGE, then the locale that
    // governs messages (LC_ALL, else LC_MESSAGES, else LANG), as gettext resolves it.
    static std::vector<std::string> preferredLanguages(const Environment& environment);

private:
    Case case_ = en;
};

} // namespace kestrin

template <>
struct std::hash<kestrin::Language> {
    std::size_t operator()(kestrin::Language language) const noexcept {
        return static_cast<std::size_t>(static_cast<kestrin::Language::Case>(language));
    }
};
