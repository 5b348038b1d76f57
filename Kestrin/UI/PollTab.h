#pragma once

// A Qt header first: moc cannot read the standard library's concepts on its own.
#include <QAbstractButton>
#include <QColor>

// Then ours.
#include "Uuid.h"

namespace kestrin {

// The colour of a tab's dot: how the poll's last reads went.
enum class TabDot { grey, green, orange };

// One poll in the tab bar: a capsule with the dot, the name and, for a disabled poll, a pause
// symbol.
class PollTab : public QAbstractButton {
    Q_OBJECT

public:
    PollTab(const Uuid& pollID, QWidget* parent = nullptr);

    const Uuid& pollID() const { return pollID_; }
    // The title shown: the name, or "Untitled" when it is empty.
    void setPoll(const QString& title, bool enabled, bool selected, TabDot dot);
    TabDot dot() const { return dot_; }
    bool isPaused() const { return !enabled_; }
    bool isSelected() const { return selected_; }
    QColor dotColour() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Uuid pollID_;
    bool enabled_ = true;
    bool selected_ = false;
    TabDot dot_ = TabDot::grey;
};

} // namespace kestrin
