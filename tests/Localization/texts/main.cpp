// Prints every translated key with its text in each language as one Markdown table, so that a
// reviewer can read the translations side by side.
#include "L10n.h"
#include "TranslatedKeys.h"

#include <iostream>
#include <string>

namespace {

// Table cells cannot hold a raw "|" or a line break.
std::string cell(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '|') {
            out += "\\|";
        } else if (c == '\n') {
            out += "<br>";
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace

int main() {
    using namespace kestrin;
    std::cout << "| Key |";
    for (Language language : Language::allCases) {
        std::cout << ' ' << language.rawValue() << " |";
    }
    std::cout << "\n|---|";
    for (std::size_t i = 0; i < Language::allCases.size(); ++i) {
        std::cout << "---|";
    }
    std::cout << '\n';
    for (const TranslatedKey& key : translatedKeys()) {
        std::cout << "| " << key.name << " |";
        for (Language language : Language::allCases) {
            L10n::withLanguageForTesting(language,
                                         [&] { std::cout << ' ' << cell(key.text()) << " |"; });
        }
        std::cout << '\n';
    }
    return 0;
}
