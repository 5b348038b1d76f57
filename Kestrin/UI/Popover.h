#pragma once

#include <optional>

#include <QFrame>

class QVBoxLayout;

namespace kestrin {

// A small floating panel anchored to a control; it closes when the user clicks elsewhere or
// presses Escape. Subclass it or fill contentLayout().
class Popover : public QFrame {
    Q_OBJECT

public:
    explicit Popover(QWidget* parent = nullptr);

    QVBoxLayout* contentLayout() const { return layout_; }

    // Opens under the anchor, left-aligned with it, kept on the anchor's screen.
    void showBelow(QWidget* anchor);

signals:
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QVBoxLayout* layout_;
    // The time stamp of the last Escape an open list of the popover received.
    std::optional<quint64> listEscape_;
};

} // namespace kestrin
