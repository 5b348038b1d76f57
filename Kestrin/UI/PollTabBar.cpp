#include "PollTabBar.h"

#include "CycleLabel.h"
#include "Icons.h"
#include "L10n.h"
#include "MessageBoxes.h"
#include "PollTab.h"
#include "PollerModel.h"
#include "QtText.h"

#include <algorithm>
#include <array>

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QToolButton>

namespace kestrin {

namespace {

constexpr std::array intervals{100, 250, 500, 1000, 2000, 5000, 10000, 30000, 60000};

QString title(const Poll& poll) {
    return poll.name.empty() ? qt(L10n::texts().polls.unnamed()) : qt(poll.name);
}

} // namespace

PollTabBar::PollTabBar(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , tabRow_(new QHBoxLayout)
    , add_(new QToolButton(this))
    , name_(new QLineEdit(this))
    , interval_(new QComboBox(this))
    , active_(new QCheckBox(qt(L10n::texts().polls.active()), this)) {
    setObjectName(QStringLiteral("pollTabBar"));
    setAutoFillBackground(true);
    buildTabScroller();
    setUpControls();
    layOutRow();
    connectControls();
    connectModel();
    dots_.recount(model_);
    rebuildTabs();
}

void PollTabBar::buildTabScroller() {
    auto* strip = new QWidget;
    strip->setLayout(tabRow_);
    tabRow_->setContentsMargins(0, 0, 0, 0);
    tabRow_->setSpacing(6);
    tabRow_->addStretch(1);
    auto* scroller = new QScrollArea(this);
    scroller->setObjectName(QStringLiteral("pollTabScroller"));
    scroller->setWidget(strip);
    scroller->setWidgetResizable(true);
    scroller->setFrameShape(QFrame::NoFrame);
    // No scroll bar under the row: the wheel scrolls it and the selected tab is kept in view.
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    scroller->setFixedHeight(PollTab(Uuid::random()).sizeHint().height() + 4);
    scroller_ = scroller;
    scroller->viewport()->setAutoFillBackground(false);
    strip->setAutoFillBackground(false);
}

void PollTabBar::setUpControls() {
    add_->setObjectName(QStringLiteral("addPollButton"));
    add_->setIcon(Icons::symbol(Symbol::plus));
    add_->setAutoRaise(true);
    add_->setFixedSize(20, 20);
    add_->setIconSize(QSize(14, 14));
    add_->setAccessibleName(qt(L10n::texts().polls.add()));
    add_->setToolTip(qt(L10n::texts().polls.addHelp()));

    name_->setObjectName(QStringLiteral("pollNameField"));
    name_->setFixedWidth(140);
    name_->setPlaceholderText(qt(L10n::texts().polls.namePlaceholder()));
    name_->setAccessibleName(qt(L10n::texts().table.name()));
    interval_->setObjectName(QStringLiteral("pollIntervalPicker"));
    interval_->setFixedWidth(120);
    interval_->setToolTip(qt(L10n::texts().polls.intervalHelp()));
    interval_->setAccessibleName(qt(L10n::texts().polls.interval()));
    for (const int ms : intervals) {
        interval_->addItem(qt(L10n::Polls::intervalLabel(ms)), ms);
    }
    active_->setObjectName(QStringLiteral("pollActiveToggle"));
    active_->setToolTip(qt(L10n::texts().polls.activeHelp()));
}

void PollTabBar::layOutRow() {
    auto* divider = new QFrame(this);
    divider->setFrameShape(QFrame::VLine);
    divider->setFrameShadow(QFrame::Sunken);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 4, 10, 4);
    row->setSpacing(8);
    row->addWidget(scroller_, 1);
    row->addWidget(add_);
    row->addWidget(divider);
    row->addWidget(new QLabel(qt(L10n::texts().table.name()), this));
    row->addWidget(name_);
    row->addWidget(new QLabel(qt(L10n::texts().polls.interval()), this));
    row->addWidget(interval_);
    row->addWidget(new CycleLabel(model_, this));
    row->addWidget(active_);
}

void PollTabBar::connectControls() {
    connect(add_, &QToolButton::clicked, &model_, &PollerModel::addPoll);
    connect(name_, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (const auto& id = model_.selectedPollID()) {
            model_.renamePoll(*id, text.toStdString());
        }
    });
    connect(interval_, &QComboBox::activated, this, [this](int index) {
        if (const auto& id = model_.selectedPollID()) {
            model_.setInterval(*id, interval_->itemData(index).toInt());
        }
    });
    connect(active_, &QCheckBox::toggled, this, [this](bool on) {
        if (const auto& id = model_.selectedPollID()) {
            model_.setEnabled(*id, on);
        }
    });
}

void PollTabBar::connectModel() {
    connect(&model_, &PollerModel::pollsChanged, this, [this] {
        dots_.recount(model_);
        rebuildTabs();
    });
    connect(&model_, &PollerModel::selectedPollIDChanged, this, &PollTabBar::rebuildTabs);
    connect(&model_, &PollerModel::stateChanged, this, &PollTabBar::refreshTabs);
    connect(&model_, &PollerModel::statusChanged, this, &PollTabBar::statusChanged);
}

// No list means every status was cleared.
void PollTabBar::statusChanged(const std::vector<Uuid>& datapointIDs) {
    if (datapointIDs.empty()) {
        dots_.recount(model_);
    } else {
        dots_.update(model_, datapointIDs);
    }
    refreshTabs();
}

PollTab* PollTabBar::tab(const Uuid& pollID) const {
    const auto found = std::find_if(tabs_.begin(), tabs_.end(),
                                    [&](const PollTab* tab) { return tab->pollID() == pollID; });
    return found == tabs_.end() ? nullptr : *found;
}

void PollTabBar::rebuildTabs() {
    const auto& polls = model_.polls();
    const bool same =
        std::equal(polls.begin(), polls.end(), tabs_.begin(), tabs_.end(),
                   [](const Poll& poll, const PollTab* tab) { return poll.id == tab->pollID(); });
    if (!same) {
        for (PollTab* tab : tabs_) {
            tab->deleteLater();
        }
        tabs_.clear();
        for (const Poll& poll : polls) {
            auto* tab = new PollTab(poll.id);
            tab->setToolTip(qt(L10n::texts().polls.tabHelp()));
            const Uuid id = poll.id;
            connect(tab, &PollTab::clicked, this, [this, id] { model_.setSelectedPollID(id); });
            connect(tab, &PollTab::customContextMenuRequested, this, [this, tab](QPoint at) {
                QMenu* menu = contextMenu(tab->pollID());
                menu->popup(tab->mapToGlobal(at));
            });
            // Before the trailing stretch.
            tabRow_->insertWidget(tabRow_->count() - 1, tab);
            tabs_.push_back(tab);
        }
    }
    refreshTabs();
    refreshEditor();
    if (PollTab* selected = model_.selectedPollID() ? tab(*model_.selectedPollID()) : nullptr) {
        scroller_->ensureWidgetVisible(selected, 20, 0);
    }
}

void PollTabBar::refreshTabs() {
    const auto& polls = model_.polls();
    const auto& selected = model_.selectedPollID();
    for (std::size_t i = 0; i < tabs_.size() && i < polls.size(); ++i) {
        const Poll& poll = polls[i];
        tabs_[i]->setPoll(title(poll), poll.enabled, selected == poll.id, dots_.dot(model_, i));
    }
}

void PollTabBar::refreshEditor() {
    const Poll* poll = model_.selectedPoll();
    name_->setEnabled(poll != nullptr);
    interval_->setEnabled(poll != nullptr);
    active_->setEnabled(poll != nullptr);
    if (poll == nullptr) {
        return;
    }
    // Only when it differs, so the cursor stays where the user is typing.
    if (name_->text() != qt(poll->name)) {
        name_->setText(qt(poll->name));
    }
    const QSignalBlocker intervalBlocker(interval_);
    int index = interval_->findData(QVariant::fromValue(int(poll->intervalMs)));
    if (index < 0) {
        // A project may carry an interval the list does not offer; it is kept as it stands.
        interval_->addItem(qt(L10n::Polls::intervalLabel(int(poll->intervalMs))),
                           int(poll->intervalMs));
        index = interval_->count() - 1;
    }
    interval_->setCurrentIndex(index);
    const QSignalBlocker activeBlocker(active_);
    active_->setChecked(poll->enabled);
}

QMenu* PollTabBar::contextMenu(const Uuid& pollID) {
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("pollTabMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* duplicate = menu->addAction(qt(L10n::texts().polls.duplicate()));
    duplicate->setObjectName(QStringLiteral("duplicatePollAction"));
    connect(duplicate, &QAction::triggered, this, [this, pollID] { model_.duplicatePoll(pollID); });
    QAction* remove = menu->addAction(qt(L10n::texts().polls.remove()));
    remove->setObjectName(QStringLiteral("removePollAction"));
    remove->setEnabled(model_.polls().size() >= 2);
    connect(remove, &QAction::triggered, this, [this, pollID] { askToRemove(pollID); });
    return menu;
}

void PollTabBar::askToRemove(const Uuid& pollID) {
    if (model_.polls().size() < 2) {
        return;
    }
    if (confirmation_ != nullptr) {
        confirmation_->close();
    }
    const auto poll = std::find_if(model_.polls().begin(), model_.polls().end(),
                                   [&](const Poll& candidate) { return candidate.id == pollID; });
    if (poll == model_.polls().end()) {
        return;
    }
    confirmDelete_ = pollID;
    auto* box = new QMessageBox(QMessageBox::Warning, qt(L10n::texts().polls.removeTitle()),
                                qt(L10n::texts().polls.removeQuestion(title(*poll).toStdString())),
                                QMessageBox::NoButton, this);
    box->setObjectName(QStringLiteral("removePollConfirmation"));
    box->setInformativeText(qt(L10n::texts().polls.removeMessage()));
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* remove =
        box->addButton(qt(L10n::texts().polls.remove()), QMessageBox::DestructiveRole);
    remove->setObjectName(QStringLiteral("confirmRemovePollButton"));
    QPushButton* cancel =
        box->addButton(qt(L10n::texts().import.cancel()), QMessageBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cancelRemovePollButton"));
    box->setDefaultButton(cancel);
    MessageBoxes::fitTitle(*box);
    connect(box, &QMessageBox::finished, this, [this, box, remove] {
        const std::optional<Uuid> pollID = std::exchange(confirmDelete_, std::nullopt);
        if (box->clickedButton() == remove && pollID) {
            model_.removePoll(*pollID);
        }
    });
    confirmation_ = box;
    box->open();
}

} // namespace kestrin
