#include "Language.h"

#include <cstdlib>
#include <latch>
#include <map>
#include <thread>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(Language, RawValuesMatchExactly) {
    for (Language language : Language::allCases) {
        EXPECT_EQ(Language::fromRawValue(language.rawValue()), language);
    }
    for (std::string_view text : {"EN", "De", "nl-BE", "de_DE", "pt", "", " fr"}) {
        EXPECT_EQ(Language::fromRawValue(text), std::nullopt) << text;
    }
}

TEST(Language, FirstSupportedLanguageWinsElseEnglish) {
    struct Row {
        std::vector<std::string> preferred;
        Language chosen;
    };
    const Row rows[] = {
        {{"nl_BE.UTF-8"}, Language::nl},
        {{"nl-BE", "en-US"}, Language::nl},
        {{"pt_BR.UTF-8", "de_AT.UTF-8"}, Language::de},
        {{"pt", "de"}, Language::de},
        {{"fr_CA"}, Language::fr},
        {{"es-419"}, Language::es},
        {{"de_CH@euro"}, Language::de},
        {{"ja_JP.UTF-8"}, Language::en},
        {{}, Language::en},
        {{"C"}, Language::en},
        {{"POSIX"}, Language::en},
        {{"C.UTF-8", "fr_FR.UTF-8"}, Language::fr},
        {{"", "es_ES"}, Language::es},
        {{"ger", "d", "deu_DE", "nld"}, Language::en},
        {{"en_GB", "de_DE"}, Language::en},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Language::choose(row.preferred), row.chosen)
            << ::testing::PrintToString(row.preferred);
    }
}

TEST(Language, PreferencesAreLANGUAGEThenTheFirstMessagesLocale) {
    using Environment = std::map<std::string, std::string>;
    struct Row {
        Environment environment;
        std::vector<std::string> preferred;
    };
    const Row rows[] = {
        {{{"LANGUAGE", "pt:de"}, {"LANG", "fr_FR.UTF-8"}}, {"pt", "de", "fr_FR.UTF-8"}},
        {{{"LANGUAGE", "fr"}, {"LC_ALL", "de_DE.UTF-8"}}, {"fr", "de_DE.UTF-8"}},
        {{{"LANGUAGE", ":es::nl:"}}, {"es", "nl"}},
        {{{"LANGUAGE", ""}, {"LANG", "nl_BE.UTF-8"}}, {"nl_BE.UTF-8"}},
        {{{"LC_ALL", "de_CH@euro"}, {"LC_MESSAGES", "fr_FR"}, {"LANG", "es_ES"}}, {"de_CH@euro"}},
        {{{"LC_ALL", ""}, {"LC_MESSAGES", "fr_FR"}, {"LANG", "es_ES"}}, {"fr_FR"}},
        {{{"LC_MESSAGES", ""}, {"LANG", "es_ES"}}, {"es_ES"}},
        // Only the locale that governs messages counts, even when it names no language.
        {{{"LC_ALL", "C"}, {"LANG", "de_DE.UTF-8"}}, {"C"}},
        {{{"LANG", "POSIX"}}, {"POSIX"}},
        {{{"LANG", "ja_JP.UTF-8"}}, {"ja_JP.UTF-8"}},
        {{}, {}},
    };
    for (const Row& row : rows) {
        const std::vector<std::string> preferred =
            Language::preferredLanguages([&](const char* name) -> const char* {
                const auto entry = row.environment.find(name);
                return entry == row.environment.end() ? nullptr : entry->second.c_str();
            });
        EXPECT_EQ(preferred, row.preferred) << ::testing::PrintToString(row.environment);
    }
}

TEST(Language, CurrentIsChosenOnceForAllThreads) {
    constexpr int threadCount = 8;
    std::vector<Language> seen(threadCount);
    std::latch ready(threadCount);
    {
        std::vector<std::jthread> threads;
        threads.reserve(threadCount);
        for (int i = 0; i < threadCount; ++i) {
            threads.emplace_back([&, i] {
                ready.arrive_and_wait();
                seen[i] = Language::current();
            });
        }
    }
    for (Language language : seen) {
        EXPECT_EQ(language, seen.front());
    }
    EXPECT_EQ(seen.front(), Language::choose(Language::preferredLanguages(
                                [](const char* name) { return std::getenv(name); })));

    // A later change of the environment waits for the next start of the program.
    const char* previous = std::getenv("LANGUAGE");
    const std::string saved = previous != nullptr ? previous : "";
    const Language other = seen.front() == Language::de ? Language::fr : Language::de;
    ASSERT_EQ(setenv("LANGUAGE", std::string(other.rawValue()).c_str(), 1), 0);
    EXPECT_EQ(Language::current(), seen.front());
    EXPECT_EQ(previous != nullptr ? setenv("LANGUAGE", saved.c_str(), 1) : unsetenv("LANGUAGE"), 0);
}

} // namespace
} // namespace kestrin
