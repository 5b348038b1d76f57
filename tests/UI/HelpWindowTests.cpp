#include "HelpPage.h"
#include "HelpTopic.h"
#include "HelpWindow.h"
#include "QtTranslation.h"
#include "Screenshot.h"
#include "UIFixture.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QImage>
#include <QKeySequence>
#include <QListWidget>
#include <QTextBrowser>

namespace kestrin::UITesting {
namespace {

QStringList titles(const QListWidget& list) {
    QStringList titles;
    for (int row = 0; row < list.count(); ++row) {
        titles << list.item(row)->text();
    }
    return titles;
}

QString titleOf(const std::string& id) {
    const std::vector<HelpTopic> topics = HelpTopic::all();
    const auto found = std::ranges::find(topics, id, &HelpTopic::id);
    return found != topics.end() ? QString::fromStdString(found->title) : QString();
}

// The selection moves only when the search leaves it out; with no match at all the page stays.
// Opened again, the window comes back as it was left.
TEST(HelpWindow, SearchKeepsTheSelectionWhileItMatchesAndThePageWhenNothingDoes) {
    const std::string onlyInShortcuts = "Open this help";
    const std::vector<HelpTopic> found = HelpTopic::search(onlyInShortcuts);
    ASSERT_EQ(found.size(), 1U);
    ASSERT_EQ(found.front().id, "shortcuts");

    QWidget owner;
    HelpWindow::showSingle(&owner);
    ASSERT_NE(HelpWindow::single(), nullptr);
    HelpWindow& window = *HelpWindow::single();
    auto* search = child<QLineEdit>(window, "helpSearch");
    auto* list = child<QListWidget>(window, "helpTopics");
    auto* noResults = child<QLabel>(window, "helpNoResults");
    const auto pageTitle = [&] {
        return child<QTextBrowser>(window, "helpPage")->document()->firstBlock().text();
    };
    EXPECT_EQ(window.selection(), "start");
    EXPECT_EQ(pageTitle(), titleOf("start"));
    EXPECT_EQ(list->currentRow(), 0);
    QTest::keyClicks(search, QString::fromStdString(onlyInShortcuts));
    EXPECT_EQ(window.selection(), "shortcuts");
    EXPECT_EQ(titles(*list), QStringList{titleOf("shortcuts")});
    EXPECT_EQ(pageTitle(), titleOf("shortcuts"));

    // Clearing the search keeps the selection.
    search->clear();
    EXPECT_EQ(window.selection(), "shortcuts");
    EXPECT_EQ(list->count(), 9);
    EXPECT_EQ(list->currentItem()->text(), titleOf("shortcuts"));

    window.select("troubleshooting");
    search->setText("cdab");
    EXPECT_EQ(window.selection(), "troubleshooting");
    EXPECT_EQ(titles(*list),
              (QStringList{titleOf("datapoints"), titleOf("csv"), titleOf("troubleshooting")}));
    EXPECT_EQ(list->currentItem()->text(), titleOf("troubleshooting"));

    search->clear();
    window.select("writing");
    search->setText("zzqx no such words");
    EXPECT_TRUE(noResults->isVisible());
    EXPECT_FALSE(list->isVisible());
    EXPECT_EQ(noResults->text(), QString::fromStdString(L10n::texts().help.noResults()));
    EXPECT_EQ(window.selection(), "writing");
    EXPECT_EQ(pageTitle(), titleOf("writing"));

    search->setText("cdab");
    EXPECT_TRUE(list->isVisible());
    EXPECT_FALSE(noResults->isVisible());
    window.close();
    HelpWindow::showSingle(&owner);
    EXPECT_EQ(HelpWindow::single(), &window);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(search->text(), "cdab");
}

TEST(HelpPage, InlineMarkup) {
    const std::pair<const char*, const char*> rows[] = {
        {"Click **Start** now", "Click <b>Start</b> now"},
        {"address `0`", "address <code>0</code>"},
        {"**File ▸ Save** (`8E1`)", "<b>File ▸ Save</b> (<code>8E1</code>)"},
        {"**bold with `code`**", "<b>bold with <code>code</code></b>"},
        {"a **dangling mark", "a **dangling mark"},
        {"value × scale * 2", "value × scale * 2"},
        {"`<b>` & more", "<code>&lt;b&gt;</code> &amp; more"},
        {"one ` tick", "one ` tick"},
    };
    for (const auto& [text, html] : rows) {
        EXPECT_EQ(HelpPage::inlineHtml(text), QString::fromUtf8(html)) << text;
    }
}

TEST(HelpPage, ScreenshotShowsTheImageOnlyWhenOneIsFound) {
    const HelpTopic topic{"chart",
                          "Chart",
                          "chart.xyaxis.line",
                          {HelpBlock{HelpBlock::Screenshot{"chart", "The temperature"}}}};
    std::string askedFor;
    const auto html = [&](std::optional<QString> found) {
        const auto find = [&](std::string_view name) {
            askedFor = name;
            return found;
        };
        return HelpPage::html(topic, find, 600, QPalette());
    };
    const QString without = html(std::nullopt);
    EXPECT_FALSE(without.contains("<img"));
    EXPECT_TRUE(without.contains("The temperature"));
    const QString with = html(QStringLiteral(":/kestrin/help/chart-en.png"));
    EXPECT_EQ(askedFor, "chart");
    EXPECT_TRUE(with.contains("src=\":/kestrin/help/chart-en.png\""));
    EXPECT_TRUE(with.contains("alt=\"The temperature\""));
}

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
            const std::pair<std::string, const char*> quotes[] = {
                {L10n::texts().header.startHelp(), "Ctrl+R"},
                {L10n::texts().header.stopHelp(), "Ctrl+R"},
                {L10n::texts().header.listenHelp(), "Ctrl+L"},
                {L10n::texts().header.stopListeningHelp(), "Ctrl+L"},
                {L10n::texts().notice.stopListeningFirst(), "Ctrl+L"},
                {L10n::texts().notice.emptySteps(), "Ctrl+R"},
                {L10n::texts().notice.startFirst(), "Ctrl+R"},
                {L10n::texts().footer.saveHelp(), "Ctrl+S"},
                {L10n::texts().footer.clearHelp(), "Ctrl+K"},
                {L10n::texts().table.addHelp(), "Ctrl+Shift+D"},
                {L10n::texts().polls.addHelp(), "Ctrl+T"},
            };
            for (const auto& [text, shortcut] : quotes) {
                EXPECT_NE(text.find("(" + menuText(shortcut) + ")"), std::string::npos) << text;
            }

            const std::vector<HelpTopic> topics = HelpTopic::all();
            for (const auto& [id, shortcut] :
                 {std::pair{"start", "Ctrl+R"}, std::pair{"start", "Ctrl+L"},
                  std::pair{"start", "Ctrl+Shift+S"}, std::pair{"polls", "Ctrl+T"}}) {
                const auto found = HelpTopic::matching(topics, "(" + menuText(shortcut) + ")");
                EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                                        [&, id = id](const HelpTopic& t) { return t.id == id; }))
                    << id << " " << menuText(shortcut);
            }

            std::vector<std::string> keys;
            std::ranges::transform(std::get<HelpBlock::Table>(topics.back().blocks[0].value).rows,
                                   std::back_inserter(keys), &HelpRow::key);
            const std::string projects =
                menuText("Ctrl+N") + " / " + menuText("Ctrl+O") + " / " + menuText("Ctrl+Shift+S");
            EXPECT_EQ(keys, (std::vector<std::string>{
                                menuText("Ctrl+R"), menuText("Ctrl+L"), menuText("Ctrl+T"),
                                menuText("Ctrl+Shift+D"), menuText("Del"),
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

// Every picture a help topic names, in every language, is compiled into the program.
TEST(Screenshot, EveryHelpPictureIsAResourceInEveryLanguage) {
    for (const Language language : Language::allCases) {
        for (const HelpTopic& topic : HelpTopic::all(language)) {
            for (const HelpBlock& block : topic.blocks) {
                const auto* shot = std::get_if<HelpBlock::Screenshot>(&block.value);
                if (shot == nullptr) {
                    continue;
                }
                const QString resource = QString::fromLatin1(HelpWindow::screenshotFolder) +
                                         QString::fromStdString(shot->name) + "-" +
                                         QString::fromLatin1(language.rawValue()) + ".png";
                EXPECT_TRUE(QFile::exists(resource)) << resource.toStdString();
                EXPECT_FALSE(QImage(resource).isNull()) << resource.toStdString();
            }
        }
    }
}

TEST(Screenshot, EveryViewRendersAPicture) {
    QTemporaryDir folder;
    const auto model = makeModel(PollerProject::firstRun(), portsAt({"/dev/ttyUSB0"}));
    MainWindow shown(*model);
    shown.show();
    const auto render = [&](const std::string& name, int maxWidth = 0) {
        const QString file = folder.filePath(QString::fromStdString(name) + ".png");
        const auto rendered = Screenshot::render(*model, shown, name, file, maxWidth);
        EXPECT_TRUE(rendered.ok()) << (rendered.ok() ? "" : rendered.error());
        return QImage(file);
    };
    const QImage plain = render("window");
    const QSize window = plain.size();
    ASSERT_FALSE(window.isEmpty());
    for (const std::string& name : Screenshot::names()) {
        const QImage image = render(name);
        EXPECT_FALSE(image.isNull()) << name;
        EXPECT_GE(image.width(), 600) << name;
        EXPECT_GE(image.height(), 300) << name;
    }
    // The chart is the bottom pane alone; the popovers are drawn into the whole window.
    EXPECT_EQ(render("chart").width(), window.width());
    EXPECT_LT(render("chart").height(), window.height());
    EXPECT_EQ(render("settings").size(), window);
    const QImage withPopover = render("write");
    ASSERT_EQ(withPopover.size(), window);
    EXPECT_NE(withPopover, plain);

    // A width scales down, never up.
    const QImage scaled = render("window", 632);
    EXPECT_EQ(scaled.width(), 632);
    EXPECT_NEAR(scaled.height(), window.height() * 632.0 / window.width(), 1);
    EXPECT_EQ(render("window", window.width() + 200).size(), window);
}

} // namespace
} // namespace kestrin::UITesting
