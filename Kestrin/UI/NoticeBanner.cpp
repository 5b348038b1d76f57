#include "NoticeBanner.h"

#include "L10n.h"
#include "QtText.h"

#include <algorithm>

#include <QGraphicsDropShadowEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace kestrin {

namespace {

constexpr int symbolSize = 16;
constexpr double cornerRadius = 8.0;

} // namespace

NoticeBanner::NoticeBanner(Symbol symbol, const QColor& tint, const QString& text,
                           std::function<void()> onDismiss, QWidget* parent)
    : QWidget(parent)
    , tint_(tint)
    , text_(new QLabel(text)) {
    setMaximumWidth(maximumBannerWidth);
    setAttribute(Qt::WA_StyledBackground, false);

    // The row lives in a child so that layouts ask this widget, not the row, for its height.
    body_ = new QWidget(this);
    auto* layout = new QHBoxLayout(body_);
    layout->setContentsMargins(12, 8, 8, 8);
    layout->setSpacing(8);

    auto* icon = new QLabel(body_);
    icon->setObjectName("noticeSymbol");
    icon->setPixmap(Icons::tinted(symbol, tint).pixmap(symbolSize, symbolSize));
    icon->setAlignment(Qt::AlignTop);
    layout->addWidget(icon, 0, Qt::AlignTop);

    text_->setObjectName("noticeText");
    text_->setWordWrap(true);
    text_->setTextFormat(Qt::PlainText);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column_ = new QVBoxLayout;
    column_->setSpacing(6);
    column_->addWidget(text_);
    layout->addLayout(column_, 1);

    if (onDismiss) {
        dismissButton_ = new QToolButton(body_);
        dismissButton_->setObjectName("noticeDismiss");
        dismissButton_->setAutoRaise(true);
        dismissButton_->setIcon(Icons::symbol(Symbol::xmark));
        dismissButton_->setIconSize(QSize(10, 10));
        const QString dismiss = qt(L10n::texts().notice.dismiss());
        dismissButton_->setToolTip(dismiss);
        dismissButton_->setAccessibleName(dismiss);
        connect(dismissButton_, &QToolButton::clicked, this,
                [action = std::move(onDismiss)] { action(); });
        layout->addWidget(dismissButton_, 0, Qt::AlignTop);
    }

    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);

    auto* shadow = new QGraphicsDropShadowEffect(this);
    shadow->setColor(QColor(0, 0, 0, 20));
    shadow->setBlurRadius(12);
    shadow->setOffset(0, 2);
    setGraphicsEffect(shadow);
}

void NoticeBanner::setText(const QString& text) {
    text_->setText(text);
    updateGeometry();
}

QPushButton* NoticeBanner::addAction(const QString& text) {
    if (actions_ == nullptr) {
        actions_ = new QHBoxLayout;
        actions_->setSpacing(6);
        actions_->addStretch(1);
        column_->addLayout(actions_);
    }
    auto* button = new QPushButton(text, body_);
    actions_->insertWidget(actions_->count() - 1, button);
    updateGeometry();
    return button;
}

int NoticeBanner::naturalWidth() const {
    const QMargins margins = body_->layout()->contentsMargins();
    const int spacing = body_->layout()->spacing();
    int column = text_->fontMetrics().horizontalAdvance(text_->text()) + 2;
    if (actions_ != nullptr) {
        column = std::max(column, actions_->sizeHint().width());
    }
    int width = margins.left() + margins.right() + symbolSize + spacing + column;
    if (dismissButton_ != nullptr) {
        width += spacing + dismissButton_->sizeHint().width();
    }
    return std::min(width, maximumBannerWidth);
}

QSize NoticeBanner::sizeHint() const {
    const int width = naturalWidth();
    return {width, heightForWidth(width)};
}

// A layout that centres the banner offers it the whole width; it only takes its natural one.
int NoticeBanner::heightForWidth(int width) const {
    return body_->layout()->totalHeightForWidth(std::min(width, naturalWidth()));
}

QString NoticeBanner::text() const {
    return text_->text();
}

void NoticeBanner::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    body_->setGeometry(rect());
}

void NoticeBanner::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    painter.fillPath(shape, palette().color(QPalette::Window));
    QColor outline = tint_;
    outline.setAlphaF(0.35F);
    painter.setPen(QPen(outline, 1.0));
    painter.drawPath(shape);
}

} // namespace kestrin
