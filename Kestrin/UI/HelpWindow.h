#pragma once

#include "HelpTopic.h"

#include <optional>
#include <string>
#include <vector>

#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QTextBrowser;

namespace kestrin {

// The help: a sidebar with a search field and the matching topics, and the selected topic as a
// page. One window at a time; closing hides it, so search and selection stay for the next opening.
class HelpWindow : public QWidget {
    Q_OBJECT

public:
    // Where the screenshots live: "overview-de.png" is ":/kestrin/help/overview-de.png".
    static constexpr const char* screenshotFolder = ":/kestrin/help/";

    explicit HelpWindow(QWidget* parent = nullptr);

    // Opens the help, or brings the open one to the front.
    static void showSingle(QWidget* parent);
    // The window showSingle opened, if it still exists.
    static HelpWindow* single();

    const std::optional<std::string>& selection() const { return selection_; }
    void setSearchText(const QString& text);
    // Selects a topic by id, as a click in the list does.
    void select(const std::string& topicID);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // The search field over the topics, or over the note that none matches.
    QWidget* buildSidebar();
    void setUpPage();
    // The sidebar and the page side by side.
    void layOut(QWidget* sidebar);
    void searchChanged(const QString& text);
    void fillList();
    // keepPlace: the same page again (narrower or in new colours), where the reader was.
    void showPage(bool keepPlace = false);
    const HelpTopic& shownTopic() const;

    std::vector<HelpTopic> topics_;
    std::vector<HelpTopic> matches_;
    std::optional<std::string> selection_;
    QLineEdit* search_;
    QListWidget* list_;
    QLabel* noResults_;
    QTextBrowser* page_;
    int shownWidth_ = 0; // of the page's column when it was last laid out
    bool relayoutPending_ = false;
};

} // namespace kestrin
