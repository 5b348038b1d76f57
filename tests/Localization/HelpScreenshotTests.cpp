#include "HelpScreenshot.h"

#include <set>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(HelpScreenshot, FallsBackToEnglishThenToNothing) {
    struct Row {
        std::set<std::string> resources;
        Language language;
        std::optional<std::string> shown;
    };
    const Row rows[] = {
        {{"overview-en.png", "overview-de.png"}, Language::de, "overview-de.png"},
        {{"overview-en.png", "overview-de.png"}, Language::en, "overview-en.png"},
        {{"overview-en.png", "overview-de.png"}, Language::es, "overview-en.png"},
        {{"overview-en.png"}, Language::nl, "overview-en.png"},
        {{"overview-fr.png"}, Language::fr, "overview-fr.png"},
        {{"overview-fr.png"}, Language::es, std::nullopt},
        {{"chart-en.png", "chart-es.png"}, Language::es, std::nullopt},
        {{}, Language::en, std::nullopt},
    };
    for (const Row& row : rows) {
        const std::optional<std::string> shown =
            HelpScreenshot::resource("overview", row.language, [&](const std::string& file) {
                return row.resources.count(file) == 1;
            });
        EXPECT_EQ(shown, row.shown) << row.language.rawValue();
    }
}

} // namespace
} // namespace kestrin
