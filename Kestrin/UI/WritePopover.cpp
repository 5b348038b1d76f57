#include "WritePopover.h"

#include "L10n.h"
#include "LogPalette.h"
#include "NumberStyle.h"
#include "PollerModel.h"
#include "QtText.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestrin {

namespace {

constexpr int fieldWidth = 160;

QFont caption(const QFont& base) {
    QFont font = base;
    font.setPointSizeF(base.pointSizeF() * 10.0 / 13.0);
    return font;
}

QLabel* captionLabel(const char* name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setFont(caption(parent->font()));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

void setTextColour(QWidget* widget, const QColor& colour) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, colour);
    widget->setPalette(palette);
}

} // namespace

WritePopover::WritePopover(PollerModel& model, Datapoint point, std::optional<Value> current,
                           QWidget* parent)
    : Popover(parent)
    , model_(model)
    , point_(std::move(point)) {
    setObjectName("writePopover");
    setAttribute(Qt::WA_DeleteOnClose);

    auto* title = new QLabel(qt(L10n::texts().write.title(point_.name)), this);
    title->setObjectName("writeTitle");
    title->setTextFormat(Qt::PlainText);
    QFont headline = title->font();
    headline.setBold(true);
    title->setFont(headline);
    contentLayout()->addWidget(title);

    auto* row = new QHBoxLayout();
    row->setSpacing(8);
    if (point_.dataType == DataType::boolean) {
        auto* off = new QPushButton(qt(L10n::texts().write.off()), this);
        off->setObjectName("writeOff");
        off->setFlat(true);
        auto* on = new QPushButton(qt(L10n::texts().write.on()), this);
        on->setObjectName("writeOn");
        on->setStyleSheet(QStringLiteral("QPushButton { background-color: %1; color: white; "
                                         "border-radius: 5px; padding: 4px 12px; }")
                              .arg(LogPalette::accent().name()));
        connect(off, &QPushButton::clicked, this, [this] { write(0); });
        connect(on, &QPushButton::clicked, this, [this] { write(1); });
        row->addWidget(off);
        row->addWidget(on);
        row->addStretch();
        contentLayout()->addLayout(row);
    } else {
        field_ = new QLineEdit(this);
        field_->setObjectName("writeValue");
        field_->setPlaceholderText(qt(L10n::texts().write.placeholder()));
        field_->setFixedWidth(fieldWidth);
        field_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        field_->setClearButtonEnabled(false);
        if (current) {
            field_->setText(qt(point_.formatted(*current, NumberStyle::current())));
            field_->selectAll();
        }
        auto* button = new QPushButton(qt(L10n::texts().write.button()), this);
        button->setObjectName("writeButton");
        button->setDefault(true);
        connect(field_, &QLineEdit::returnPressed, this, &WritePopover::commit);
        // A new attempt deserves a fresh verdict.
        connect(field_, &QLineEdit::textEdited, this, [this] { setInvalid(false); });
        connect(button, &QPushButton::clicked, this, &WritePopover::commit);
        row->addWidget(field_);
        row->addWidget(button);
        contentLayout()->addLayout(row);
        message_ = captionLabel("writeMessage", this);
        contentLayout()->addWidget(message_);
        setInvalid(false);
        setFocusProxy(field_);
    }

    writeError_ = captionLabel("writeError", this);
    contentLayout()->addWidget(writeError_);
    connect(&model_, &PollerModel::writeErrorChanged, this, &WritePopover::showWriteError);
    showWriteError();
}

void WritePopover::commit() {
    if (field_ == nullptr) {
        return;
    }
    if (const std::optional<Value> value = point_.parse(field_->text().toStdString())) {
        write(*value);
        return;
    }
    setInvalid(true);
}

void WritePopover::write(const Value& value) {
    // The banner of an earlier write gives way to the outcome of this one.
    model_.setWriteError(std::nullopt);
    model_.write(point_, value);
    close();
}

void WritePopover::setInvalid(bool invalid) {
    invalid_ = invalid;
    if (message_ == nullptr) {
        return;
    }
    if (invalid) {
        message_->setText(qt(L10n::Table::valueInvalid(point_.dataType)));
        setTextColour(message_, LogPalette::red(palette()));
    } else {
        message_->setText(qt(L10n::texts().table.valueHelp()));
        setTextColour(message_, LogPalette::secondaryLabel(palette()));
    }
}

void WritePopover::showWriteError() {
    const std::optional<std::string>& error = model_.writeError();
    writeError_->setVisible(error.has_value());
    writeError_->setText(error ? qt(*error) : QString());
    setTextColour(writeError_, LogPalette::orange(palette()));
    adjustSize();
}

} // namespace kestrin
