#include "HelpPage.h"
#include "HelpWindow.h"
#include "UIFixture.h"

#include <QListWidget>
#include <QTextBlock>
#include <QTextBrowser>

namespace kestrin {
namespace {

struct HelpWindowParts {
    explicit HelpWindowParts(HelpWindow& window)
        : search(child<QLineEdit>(window, "helpSearch"))
        , list(child<QListWidget>(window, "helpTopics"))
        , noResults(child<QLabel>(window, "helpNoResults"))
        , page(child<QTextBrowser>(window, "helpPage")) {}

    QString pageTitle() const { return page->document()->firstBlock().text(); }
    QStringList listed() const {
        QStringList titles;
        for (int row = 0; row < list->count(); ++row) {
            titles << list->item(row)->text();
        }
        return titles;
    }

    QLineEdit* search;
    QListWidget* list;
    QLabel* noResults;
    QTextBrowser* page;
};

QString titleOf(const std::string& id) {
    for (const HelpTopic& topic : HelpTopic::all()) {
        if (topic.id == id) {
            return QString::fromStdString(topic.title);
        }
    }
    return {};
}

// The selection moves only when the search leaves it out; with no match at all the page stays.
TEST(HelpWindow, SearchKeepsTheSelectionWhileItMatchesAndThePageWhenNothingDoes) {
    const std::string onlyInShortcuts = "Open this help";
    const std::vector<HelpTopic> found = HelpTopic::search(onlyInShortcuts);
    ASSERT_EQ(found.size(), 1U);
    ASSERT_EQ(found.front().id, "shortcuts");

    HelpWindow window;
    window.show();
    HelpWindowParts parts(window);
    EXPECT_EQ(window.selection(), "start");
    EXPECT_EQ(parts.pageTitle(), titleOf("start"));
    EXPECT_EQ(parts.list->currentRow(), 0);
    QTest::keyClicks(parts.search, QString::fromStdString(onlyInShortcuts));
    EXPECT_EQ(window.selection(), "shortcuts");
    EXPECT_EQ(parts.listed(), QStringList{titleOf("shortcuts")});
    EXPECT_EQ(parts.pageTitle(), titleOf("shortcuts"));

    // Clearing the search keeps the selection.
    parts.search->clear();
    EXPECT_EQ(window.selection(), "shortcuts");
    EXPECT_EQ(parts.list->count(), 9);
    EXPECT_EQ(parts.list->currentItem()->text(), titleOf("shortcuts"));

    window.select("troubleshooting");
    parts.search->setText("cdab");
    EXPECT_EQ(window.selection(), "troubleshooting");
    EXPECT_EQ(parts.listed(),
              (QStringList{titleOf("datapoints"), titleOf("csv"), titleOf("troubleshooting")}));
    EXPECT_EQ(parts.list->currentItem()->text(), titleOf("troubleshooting"));

    parts.search->clear();
    window.select("writing");
    parts.search->setText("zzqx no such words");
    EXPECT_TRUE(parts.noResults->isVisible());
    EXPECT_FALSE(parts.list->isVisible());
    EXPECT_EQ(parts.noResults->text(), QString::fromStdString(L10n::texts().help.noResults()));
    EXPECT_EQ(window.selection(), "writing");
    EXPECT_EQ(parts.pageTitle(), titleOf("writing"));

    parts.search->setText("");
    EXPECT_TRUE(parts.list->isVisible());
    EXPECT_FALSE(parts.noResults->isVisible());
}

TEST(HelpWindow, OpeningTwiceBringsBackTheSameWindowWithItsSearch) {
    QWidget owner;
    HelpWindow::showSingle(&owner);
    HelpWindow* first = HelpWindow::single();
    ASSERT_NE(first, nullptr);
    HelpWindowParts(*first).search->setText("cdab");
    first->close();
    HelpWindow::showSingle(&owner);
    EXPECT_EQ(HelpWindow::single(), first);
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(HelpWindowParts(*first).search->text(), "cdab");
}

TEST(HelpPage, InlineMarkup) {
    const struct {
        const char* text;
        const char* html;
    } rows[] = {
        {"Click **Start** now", "Click <b>Start</b> now"},
        {"address `0`", "address <code>0</code>"},
        {"**File ▸ Save** (`8E1`)", "<b>File ▸ Save</b> (<code>8E1</code>)"},
        {"**bold with `code`**", "<b>bold with <code>code</code></b>"},
        {"a **dangling mark", "a **dangling mark"},
        {"value × scale * 2", "value × scale * 2"},
        {"`<b>` & more", "<code>&lt;b&gt;</code> &amp; more"},
        {"one ` tick", "one ` tick"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(HelpPage::inlineHtml(row.text), QString::fromUtf8(row.html)) << row.text;
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

} // namespace
} // namespace kestrin
