#pragma once

#include "Icons.h"

#include <functional>

#include <QColor>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;
class QPushButton;
class QToolButton;

namespace kestrin {

// A notice over a view: a tinted symbol, a text and, when there is a dismiss action, a close
// button. Without one the banner stays until its owner hides it.
class NoticeBanner : public QWidget {
    Q_OBJECT

public:
    static constexpr int maximumBannerWidth = 620;

    NoticeBanner(Symbol symbol, const QColor& tint, const QString& text,
                 std::function<void()> onDismiss = {}, QWidget* parent = nullptr);

    void setText(const QString& text);
    // A button in a row under the text, in the order added; the caller connects it.
    QPushButton* addAction(const QString& text);
    QString text() const;
    QColor tint() const { return tint_; }
    bool isDismissable() const { return dismissButton_ != nullptr; }

    // As wide as the text on one line, up to the banner's maximum; taller when that wraps.
    QSize sizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int naturalWidth() const;

    QColor tint_;
    QWidget* body_ = nullptr;
    QLabel* text_;
    // The text and, under it, the row of actions, created with the first one.
    QVBoxLayout* column_ = nullptr;
    QHBoxLayout* actions_ = nullptr;
    QToolButton* dismissButton_ = nullptr;
};

} // namespace kestrin
