#include "EmptyLogView.h"

#include "FaintText.h"
#include "Icons.h"
#include "L10n.h"
#include "LogPalette.h"
#include "PollerModel.h"
#include "QtText.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestrin {

namespace {

constexpr int symbolSide = 44;
constexpr int fullSpacing = 12;
constexpr int compactSpacing = 8;

} // namespace

EmptyLogView::EmptyLogView(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , symbol_(new QLabel(this))
    , title_(new QLabel(this))
    , message_(new QLabel(this))
    , start_(new QPushButton(this)) {
    setObjectName("emptyLogView");
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(fullSpacing);
    layout->addStretch(1);

    symbol_->setObjectName("emptyLogSymbol");
    symbol_->setAlignment(Qt::AlignCenter);
    symbol_->setPixmap(
        QIcon::fromTheme("view-refresh",
                         Icons::tinted(Symbol::circleDashed, LogPalette::secondaryLabel(palette())))
            .pixmap(symbolSide, symbolSide));
    layout->addWidget(symbol_, 0, Qt::AlignHCenter);

    title_->setObjectName("emptyLogTitle");
    title_->setAlignment(Qt::AlignCenter);
    QFont titleFont = title_->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setWeight(QFont::Medium);
    title_->setFont(titleFont);
    layout->addWidget(title_, 0, Qt::AlignHCenter);

    message_->setObjectName("emptyLogMessage");
    message_->setAlignment(Qt::AlignCenter);
    message_->setWordWrap(true);
    FaintText::fade(*message_);
    layout->addWidget(message_, 0, Qt::AlignHCenter);

    start_->setObjectName("startReadingButton");
    start_->setText(qt(L10n::texts().notice.startPolling()));
    start_->setIcon(Icons::tinted(Symbol::play, Qt::white));
    start_->setCursor(Qt::PointingHandCursor);
    // The program's accent colour marks its one prominent action.
    start_->setStyleSheet(
        QStringLiteral("QPushButton { background-color: %1; color: white; "
                       "border: none; border-radius: 6px; padding: 6px 16px; }"
                       "QPushButton:pressed { background-color: %2; }")
            .arg(LogPalette::accent().name(), LogPalette::accent().darker(124).name()));
    layout->addWidget(start_, 0, Qt::AlignHCenter);
    layout->addStretch(1);

    connect(start_, &QPushButton::clicked, &model_, &PollerModel::start);
    connect(&model_, &PollerModel::portListChanged, this, &EmptyLogView::refresh);
    connect(&model_, &PollerModel::selectedPathChanged, this, &EmptyLogView::refresh);
    connect(&model_, &PollerModel::pollsChanged, this, &EmptyLogView::refresh);
    connect(&model_, &PollerModel::stateChanged, this, &EmptyLogView::refresh);
    refresh();
}

void EmptyLogView::refresh() {
    const bool hasPorts = !model_.ports().empty();
    title_->setText(
        qt(hasPorts ? L10n::texts().notice.emptyTitle() : L10n::texts().notice.emptyNoDevice()));
    message_->setText(qt(hasPorts ? L10n::texts().notice.emptySteps()
                                  : L10n::texts().notice.emptyNoDeviceSteps()));
    start_->setVisible(model_.canStart() && model_.state() == PollerState::stopped);
    chooseLayout();
}

void EmptyLogView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    chooseLayout();
}

void EmptyLogView::chooseLayout() {
    auto* column = static_cast<QVBoxLayout*>(layout());
    // A wrapped label centred in a column takes the width it is given, not the one it could use;
    // and the column gives it the height of one line unless told the height of all its lines.
    const int messageWidth = std::max(0, std::min(maximumMessageWidth, width() - 24));
    message_->setFixedWidth(messageWidth);
    // A label never answers less than its minimum height, so the last answer is forgotten first.
    message_->setMinimumHeight(0);
    message_->setFixedHeight(message_->heightForWidth(messageWidth));
    // The full layout when it fits, else the compact one without the symbol.
    column->setSpacing(fullSpacing);
    symbol_->setVisible(true);
    column->invalidate();
    if (column->minimumSize().height() > height()) {
        symbol_->setVisible(false);
        column->setSpacing(compactSpacing);
    }
}

} // namespace kestrin
