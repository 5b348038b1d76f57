#include "Language.h"

#include <cstdlib>

namespace kestrin {

namespace {
constexpr std::array<std::string_view, 5> rawValues{"en", "nl", "de", "fr", "es"};

// The language part of a locale name: "nl" of "nl_BE.UTF-8@euro" and of "nl-BE".
std::string languageCode(std::string_view identifier) {
    const std::size_t end = identifier.find_first_of("_-.@");
    std::string code(identifier.substr(0, end));
    for (char& c : code) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return code;
}

void appendSplit(std::vector<std::string>& list, std::string_view text, char separator) {
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        if (end != 0) {
            list.emplace_back(text.substr(0, end));
        }
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + 1);
    }
}
} // namespace

std::string_view Language::rawValue() const noexcept {
    return rawValues[case_];
}

std::optional<Language> Language::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return Language(c);
        }
    }
    return std::nullopt;
}

Language Language::choose(const std::vector<std::string>& preferred) {
    for (const std::string& identifier : preferred) {
        if (auto language = fromRawValue(languageCode(identifier))) {
            return *language;
        }
    }
    return en;
}

std::vector<std::string> Language::preferredLanguages(const Environment& environment) {
    std::vector<std::string> list;
    if (const char* language = environment("LANGUAGE")) {
        appendSplit(list, language, ':');
    }
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = environment(name);
        if (value != nullptr && *value != '\0') {
            list.emplace_back(value);
            break;
        }
    }
    return list;
}

Language Language::current() {
    // Chosen once even when threads race here; later changes of the environment are ignored.
    static const Language language = choose(
        preferredLanguages([](const char* name) -> const char* { return std::getenv(name); }));
    return language;
}

} // namespace kestrin
