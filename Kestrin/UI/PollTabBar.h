#pragma once

// A Qt header first: moc cannot read the standard library's concepts on its own.
#include <QMessageBox>
#include <QPointer>
#include <QWidget>

// Then ours.
#include "TabDots.h"
#include "Uuid.h"

#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QMenu;
class QScrollArea;
class QToolButton;

namespace kestrin {

class PollerModel;
class PollTab;

// One tab per poll with its reading dot, a "+" for a new poll, and the editor of the selected
// poll's name, interval and active flag.
class PollTabBar : public QWidget {
    Q_OBJECT

public:
    explicit PollTabBar(PollerModel& model, QWidget* parent = nullptr);

    const std::vector<PollTab*>& tabs() const { return tabs_; }
    PollTab* tab(const Uuid& pollID) const;
    // The tab's context menu: Duplicate, and Remove unless this is the last poll.
    QMenu* contextMenu(const Uuid& pollID);
    // The question open for a removal; absent when none is.
    const std::optional<Uuid>& confirmDelete() const { return confirmDelete_; }
    QMessageBox* removeConfirmation() const { return confirmation_; }

public slots:
    void askToRemove(const Uuid& pollID);

private:
    void buildTabScroller();
    // The "+" and the selected poll's name, interval and active flag.
    void setUpControls();
    void layOutRow();
    // The controls edit the selected poll.
    void connectControls();
    void connectModel();
    void rebuildTabs();
    void refreshTabs();
    void statusChanged(const std::vector<Uuid>& datapointIDs);
    void refreshEditor();

    PollerModel& model_;
    QHBoxLayout* tabRow_;
    QScrollArea* scroller_ = nullptr;
    std::vector<PollTab*> tabs_;
    TabDots dots_;
    QToolButton* add_;
    QLineEdit* name_;
    QComboBox* interval_;
    QCheckBox* active_;
    std::optional<Uuid> confirmDelete_;
    QPointer<QMessageBox> confirmation_;
};

} // namespace kestrin
