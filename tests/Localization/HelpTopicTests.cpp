#include "HelpScreenshot.h"
#include "HelpTopic.h"
#include "L10n.h"
#include "LanguageForTesting.h"
#include "Overloaded.h"
#include "Texts.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// What must not differ between languages: kinds and sizes of blocks, screenshot names.
std::vector<std::string> shape(const HelpTopic& topic) {
    std::vector<std::string> parts{topic.id, topic.symbol};
    for (const HelpBlock& block : topic.blocks) {
        parts.push_back(std::visit(
            Overloaded{
                [](const HelpBlock::Paragraph&) { return std::string("paragraph"); },
                [](const HelpBlock::Heading&) { return std::string("heading"); },
                [](const HelpBlock::Bullets& b) {
                    return "bullets " + std::to_string(b.items.size());
                },
                [](const HelpBlock::Table& t) { return "table " + std::to_string(t.rows.size()); },
                [](const HelpBlock::Tip&) { return std::string("tip"); },
                [](const HelpBlock::Screenshot& s) { return "screenshot " + s.name; },
            },
            block.value));
    }
    return parts;
}

std::vector<std::string> texts(const HelpTopic& topic) {
    std::vector<std::string> all{topic.title};
    for (const HelpBlock& block : topic.blocks) {
        std::visit(Overloaded{
                       [&](const HelpBlock::Bullets& b) {
                           all.insert(all.end(), b.items.begin(), b.items.end());
                       },
                       [&](const HelpBlock::Table& t) {
                           for (const HelpRow& row : t.rows) {
                               all.push_back(row.key);
                               all.push_back(row.value);
                           }
                       },
                       [&](const HelpBlock::Screenshot& s) { all.push_back(s.caption); },
                       [&](const auto& single) { all.push_back(single.text); },
                   },
                   block.value);
    }
    return all;
}

TEST(HelpTopic, EveryLanguageHasTheEnglishStructureAndNoEmptyText) {
    const std::vector<HelpTopic> english = HelpTopic::all(Language::en);
    for (Language language : Language::allCases) {
        SCOPED_TRACE(language.rawValue());
        const std::vector<HelpTopic> topics = HelpTopic::all(language);
        ASSERT_EQ(topics.size(), english.size());
        for (std::size_t i = 0; i < topics.size(); ++i) {
            EXPECT_EQ(shape(topics[i]), shape(english[i]));
            for (const std::string& text : texts(topics[i])) {
                EXPECT_FALSE(text.empty()) << topics[i].id;
            }
        }
    }
}

std::vector<std::string> ids(const std::vector<HelpTopic>& topics) {
    std::vector<std::string> list;
    std::ranges::transform(topics, std::back_inserter(list), &HelpTopic::id);
    return list;
}

TEST(HelpTopic, SearchFindsTextInAnyCaseButNotWithoutItsAccentsKeepingTheOrder) {
    using Ids = std::vector<std::string>;
    // The nine topics in their fixed order.
    const Ids everything = {"start", "polls", "datapoints",      "writing",  "chart",
                            "csv",   "log",   "troubleshooting", "shortcuts"};
    struct Row {
        std::string_view search;
        Ids found;
    };
    const Row rows[] = {
        {"cdab", {"datapoints", "csv", "troubleshooting"}},
        {"\tCDAB \n", {"datapoints", "csv", "troubleshooting"}},
        {"EXCEPTION", {"polls", "writing", "log"}},
        {"", everything},
        {" \t\r\n", everything},
        {"getting STARTED", {"start"}},
        {"ctrl+shift+d", {"shortcuts"}},
        {"the temperature over the last minutes", {"chart"}},
        // Emphasis and code marks are not part of what the reader sees.
        {"Value column", {"start", "writing"}},
        {"for example 8E1", {"start"}},
        // The title and the first paragraph are separate texts.
        {"Getting started Kestrin", {}},
        {"no such words here", {}},
    };
    const std::vector<HelpTopic> topics = HelpTopic::all(Language::en);
    for (const Row& row : rows) {
        EXPECT_EQ(ids(HelpTopic::matching(topics, row.search)), row.found) << row.search;
    }
    const std::vector<HelpTopic> accented = {
        {"de", "Für die Pumpe", "", {{HelpBlock::Paragraph{"Die STRAẞE"}}}},
        {"fr", "Registre", "", {{HelpBlock::Tip{"Élément de données"}}}},
    };
    const Row accents[] = {
        {"pumpe", {"de"}},   {"FÜR", {"de"}}, {"fur", {}},         {"straße", {"de"}},
        {"élément", {"fr"}}, {"element", {}}, {"ÉLÉMENT", {"fr"}},
    };
    for (const Row& row : accents) {
        EXPECT_EQ(ids(HelpTopic::matching(accented, row.search)), row.found) << row.search;
    }
}

TEST(HelpTopic, EveryLanguageFindsItsOwnTitlesAndTheSameCodes) {
    for (Language language : Language::allCases) {
        SCOPED_TRACE(language.rawValue());
        const std::vector<HelpTopic> topics = HelpTopic::all(language);
        for (const HelpTopic& topic : topics) {
            const std::vector<std::string> found = ids(HelpTopic::matching(topics, topic.title));
            EXPECT_NE(std::find(found.begin(), found.end(), topic.id), found.end()) << topic.id;
        }
        EXPECT_EQ(ids(HelpTopic::matching(topics, "cdab")),
                  (std::vector<std::string>{"datapoints", "csv", "troubleshooting"}));
        L10n::withLanguageForTesting(language, [&] {
            EXPECT_EQ(HelpTopic::search("Modbus"), HelpTopic::matching(topics, "Modbus"));
        });
    }
}

// Topics send the reader to these controls and texts by name, so a renamed one must not leave
// the help pointing at a label the window no longer shows.
TEST(HelpTopic, NamesControlsAsTheWindowDoes) {
    for (Language language : Language::allCases) {
        SCOPED_TRACE(language.rawValue());
        const L10n::Texts& window = L10n::texts(language);
        const std::vector<HelpTopic> topics = HelpTopic::all(language);
        const std::pair<const char*, std::vector<std::string>> rows[] = {
            {"troubleshooting",
             {window.settings.rs485(), window.settings.rtsWhileSending(),
              window.settings.delayBeforeSend(), window.settings.delayAfterSend(),
              window.adapter.setToOneMs(), window.adapter.fixForGood()}},
            {"start",
             {window.header.listen(), window.header.stopListening(), window.table.waiting()}},
        };
        for (const auto& [id, names] : rows) {
            const auto topic = std::ranges::find(topics, id, &HelpTopic::id);
            ASSERT_NE(topic, topics.end());
            std::string help;
            for (const std::string& text : texts(*topic)) {
                help += text + '\n';
            }
            for (const std::string& name : names) {
                EXPECT_NE(help.find("**" + name + "**"), std::string::npos) << id << ": " << name;
            }
        }
    }
}

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
