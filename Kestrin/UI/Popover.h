#pragma once

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
    void hideEvent(QHideEvent* event) override;

private:
    QVBoxLayout* layout_;
};

} // namespace kestrin
