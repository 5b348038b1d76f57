#include "HelpTopic.h"
#include "LanguageForTesting.h"
#include "QtTranslation.h"
#include "UIFixture.h"

#include <algorithm>

#include <QDialogButtonBox>
#include <QKeySequence>

namespace kestrin {
namespace {

// What the menus show for a shortcut with Qt's translation of the current language installed.
std::string menuText(const char* portable) {
    return QKeySequence(QString::fromLatin1(portable))
        .toString(QKeySequence::NativeText)
        .toStdString();
}

TEST(QtTranslation, TextsAndHelpWriteShortcutsAsTheMenusDoInEveryLanguage) {
    for (Language language : Language::allCases) {
        SCOPED_TRACE(language.rawValue());
        const QtTranslation translation(language);
        // Qt's English needs no translation; its file is empty and installs nothing.
        ASSERT_TRUE(translation.installed() || language == Language::en)
            << "qt6-translations-l10n is missing";
        L10n::withLanguageForTesting(language, [] {
            struct Quote {
                std::string text;
                const char* shortcut;
            };
            const Quote quotes[] = {
                {L10n::texts().header.startHelp(), "Ctrl+R"},
                {L10n::texts().header.stopHelp(), "Ctrl+R"},
                {L10n::texts().notice.emptySteps(), "Ctrl+R"},
                {L10n::texts().notice.startFirst(), "Ctrl+R"},
                {L10n::texts().footer.saveHelp(), "Ctrl+S"},
                {L10n::texts().footer.clearHelp(), "Ctrl+K"},
                {L10n::texts().table.addHelp(), "Ctrl+Shift+D"},
                {L10n::texts().polls.addHelp(), "Ctrl+T"},
            };
            for (const Quote& quote : quotes) {
                EXPECT_NE(quote.text.find("(" + menuText(quote.shortcut) + ")"), std::string::npos)
                    << quote.text;
            }

            const std::vector<HelpTopic> topics = HelpTopic::all();
            for (const auto& [id, shortcut] :
                 {std::pair{"start", "Ctrl+R"}, std::pair{"start", "Ctrl+Shift+S"},
                  std::pair{"polls", "Ctrl+T"}}) {
                const auto found = HelpTopic::matching(topics, "(" + menuText(shortcut) + ")");
                EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                                        [&](const HelpTopic& t) { return t.id == id; }))
                    << id << " " << menuText(shortcut);
            }

            std::vector<std::string> keys;
            for (const HelpRow& row :
                 std::get<HelpBlock::Table>(topics.back().blocks.front().value).rows) {
                keys.push_back(row.key);
            }
            const std::string projects =
                menuText("Ctrl+N") + " / " + menuText("Ctrl+O") + " / " + menuText("Ctrl+Shift+S");
            EXPECT_EQ(keys, (std::vector<std::string>{
                                menuText("Ctrl+R"), menuText("Ctrl+T"), menuText("Ctrl+Shift+D"),
                                menuText("Del"),
                                menuText("Ctrl+Shift+I") + " / " + menuText("Ctrl+Shift+E"),
                                projects, menuText("Ctrl+F"), menuText("Ctrl+S"),
                                menuText("Ctrl+K"), menuText("F1")}));
        });
    }
}

TEST(QtTranslation, StandardButtonsSpeakTheChosenLanguage) {
    const QtTranslation translation(Language::de);
    QDialogButtonBox buttons(QDialogButtonBox::Cancel);
    EXPECT_EQ(buttons.button(QDialogButtonBox::Cancel)->text(), "Abbrechen");
}

} // namespace
} // namespace kestrin
