#include "HelpWindow.h"

#include "FaintText.h"
#include "HelpPage.h"
#include "HelpScreenshot.h"
#include "Icons.h"
#include "L10n.h"
#include "LogPalette.h"
#include "QtText.h"

#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBrowser>
#include <QTimer>
#include <QVBoxLayout>

namespace kestrin {

namespace {

constexpr int columnWidth = 680;
constexpr int pagePadding = 24;

QPointer<HelpWindow>& singleWindow() {
    static QPointer<HelpWindow> window;
    return window;
}

// The topics' symbol names drawn with the symbols the window has.
Symbol symbolFor(const std::string& name) {
    struct Entry {
        const char* name;
        Symbol symbol;
    };
    static constexpr Entry table[] = {
        {"play.circle", Symbol::play},        {"square.stack", Symbol::book},
        {"tablecells", Symbol::tableCells},   {"pencil", Symbol::pencil},
        {"chart.xyaxis.line", Symbol::chart}, {"doc.text", Symbol::log},
        {"text.alignleft", Symbol::log},      {"wrench.and.screwdriver", Symbol::sliders},
        {"keyboard", Symbol::info},
    };
    for (const Entry& entry : table) {
        if (name == entry.name) {
            return entry.symbol;
        }
    }
    return Symbol::questionMark;
}

std::optional<QString> screenshotPath(std::string_view name) {
    const std::optional<std::string> file =
        HelpScreenshot::resource(name, L10n::language(), [](const std::string& candidate) {
            return QFile::exists(QString::fromLatin1(HelpWindow::screenshotFolder) + qt(candidate));
        });
    if (!file) {
        return std::nullopt;
    }
    return QString::fromLatin1(HelpWindow::screenshotFolder) + qt(*file);
}

} // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window)
    , topics_(HelpTopic::all())
    , search_(new QLineEdit(this))
    , list_(new QListWidget(this))
    , noResults_(new QLabel(this))
    , page_(new QTextBrowser(this)) {
    setObjectName("helpWindow");
    setWindowTitle(qt(L10n::texts().help.windowTitle()));
    setMinimumSize(720, 460);
    resize(900, 640);
    if (!topics_.empty()) {
        selection_ = topics_.front().id;
    }
    matches_ = topics_;
    QWidget* sidebar = buildSidebar();
    setUpPage();
    layOut(sidebar);

    connect(search_, &QLineEdit::textChanged, this, &HelpWindow::searchChanged);
    connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0 && row < static_cast<int>(matches_.size())) {
            selection_ = matches_[static_cast<std::size_t>(row)].id;
            showPage();
        }
    });
    fillList();
    showPage();
}

QWidget* HelpWindow::buildSidebar() {
    auto* sidebar = new QWidget(this);
    auto* column = new QVBoxLayout(sidebar);
    column->setContentsMargins(8, 8, 0, 8);
    search_->setObjectName("helpSearch");
    search_->setPlaceholderText(qt(L10n::texts().help.searchPrompt()));
    search_->setClearButtonEnabled(true);
    search_->addAction(Icons::symbol(Symbol::magnifyingGlass), QLineEdit::LeadingPosition);
    column->addWidget(search_);
    list_->setObjectName("helpTopics");
    list_->setFrameShape(QFrame::NoFrame);
    list_->setIconSize(QSize(16, 16));
    column->addWidget(list_, 1);
    noResults_->setObjectName("helpNoResults");
    noResults_->setText(qt(L10n::texts().help.noResults()));
    noResults_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    FaintText::fade(*noResults_);
    noResults_->hide();
    column->addWidget(noResults_, 1);
    sidebar->setMinimumWidth(190);
    return sidebar;
}

void HelpWindow::setUpPage() {
    page_->setObjectName("helpPage");
    page_->setFrameShape(QFrame::NoFrame);
    page_->setOpenLinks(false);
    page_->setLineWrapMode(QTextEdit::FixedPixelWidth);
    // Text wraps and pictures shrink to the column, so nothing lies beside it.
    page_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    page_->document()->setDocumentMargin(pagePadding);
    page_->viewport()->installEventFilter(this);
}

void HelpWindow::layOut(QWidget* sidebar) {
    auto* split = new QSplitter(this);
    split->addWidget(sidebar);
    split->addWidget(page_);
    split->setStretchFactor(1, 1);
    split->setSizes({210, 690});
    split->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split);
}

void HelpWindow::showSingle(QWidget* parent) {
    QPointer<HelpWindow>& window = singleWindow();
    if (window.isNull()) {
        window = new HelpWindow(parent);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

HelpWindow* HelpWindow::single() {
    return singleWindow().data();
}

void HelpWindow::setSearchText(const QString& text) {
    search_->setText(text);
}

void HelpWindow::select(const std::string& topicID) {
    for (std::size_t row = 0; row < matches_.size(); ++row) {
        if (matches_[row].id == topicID) {
            list_->setCurrentRow(static_cast<int>(row));
            return;
        }
    }
}

void HelpWindow::searchChanged(const QString& text) {
    std::vector<HelpTopic> found = HelpTopic::matching(topics_, text.toStdString());
    const bool none = found.empty();
    list_->setVisible(!none);
    noResults_->setVisible(none);
    // With nothing found the page of the last selection stays.
    if (none) {
        return;
    }
    matches_ = std::move(found);
    const bool selectionFound =
        selection_ && std::any_of(matches_.begin(), matches_.end(),
                                  [this](const HelpTopic& t) { return t.id == *selection_; });
    if (!selectionFound) {
        selection_ = matches_.front().id;
    }
    fillList();
    showPage();
}

void HelpWindow::fillList() {
    const QSignalBlocker quiet(list_);
    list_->clear();
    for (const HelpTopic& topic : matches_) {
        auto* item =
            new QListWidgetItem(Icons::symbol(symbolFor(topic.symbol)), qt(topic.title), list_);
        item->setData(Qt::UserRole, qt(topic.id));
    }
    for (std::size_t row = 0; row < matches_.size(); ++row) {
        if (selection_ && matches_[row].id == *selection_) {
            list_->setCurrentRow(static_cast<int>(row));
        }
    }
}

const HelpTopic& HelpWindow::shownTopic() const {
    for (const HelpTopic& topic : topics_) {
        if (selection_ && topic.id == *selection_) {
            return topic;
        }
    }
    return topics_.front();
}

void HelpWindow::showPage(bool keepPlace) {
    if (topics_.empty()) {
        return;
    }
    QTextDocument* document = page_->document();
    const QColor yellow = LogPalette::isDark(palette()) ? QColor(0xFFD60A) : QColor(0xE0A800);
    document->addResource(QTextDocument::ImageResource, QUrl(HelpPage::tipSymbolSource),
                          Icons::tinted(Symbol::info, yellow).pixmap(32, 32).toImage());
    // Pictures as wide as the column, which narrows with the window: a wider one would need a
    // horizontal scroll bar to be seen whole.
    shownWidth_ = std::min(columnWidth, page_->viewport()->width());
    const int pictureWidth = std::max(shownWidth_ - 2 * pagePadding, 1);
    const int scrolled = page_->verticalScrollBar()->value();
    page_->setHtml(HelpPage::html(shownTopic(), screenshotPath, pictureWidth, palette()));
    page_->setLineWrapColumnOrWidth(shownWidth_);
    page_->verticalScrollBar()->setValue(keepPlace ? scrolled : 0);
}

bool HelpWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == page_->viewport() && event->type() == QEvent::Resize &&
        std::min(columnWidth, page_->viewport()->width()) != shownWidth_ && !relayoutPending_) {
        // Not from inside the viewport's own resize: the page is laid out again once it is done.
        relayoutPending_ = true;
        QTimer::singleShot(0, this, [this] {
            relayoutPending_ = false;
            showPage(true);
        });
    }
    return QWidget::eventFilter(watched, event);
}

void HelpWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        showPage(true);
    }
}

} // namespace kestrin
