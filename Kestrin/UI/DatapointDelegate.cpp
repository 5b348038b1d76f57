#include "DatapointDelegate.h"

#include "DataType.h"
#include "DisplayFormat.h"
#include "FieldNote.h"
#include "L10n.h"
#include "LogPalette.h"
#include "QtText.h"
#include "RegisterTable.h"
#include "WordOrder.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFontDatabase>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QToolTip>

namespace kestrin {

namespace {

using Model = DatapointTableModel;

constexpr int symbolSize = 14;
constexpr int pencilSize = 14;
constexpr int pencilMargin = 6;
constexpr double inactiveOpacity = 0.35;

bool isPicker(int column) {
    return column == Model::table || column == Model::dataType || column == Model::wordOrder ||
           column == Model::format;
}

bool isNumber(int column) {
    return column == Model::unitID || column == Model::address || column == Model::scale;
}

// The property of a number field that names its column.
constexpr const char* numberColumn = "kestrinNumberColumn";

// The keys with which a field hands its text to the table.
bool isCommitKey(const QEvent& event) {
    switch (static_cast<const QKeyEvent&>(event).key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    default:
        return false;
    }
}

// The picker's entries as (text, raw case) pairs; the type picker offers what the table allows.
std::vector<std::pair<QString, int>> pickerEntries(const QModelIndex& index) {
    std::vector<std::pair<QString, int>> entries;
    switch (index.column()) {
    case Model::table:
        for (const RegisterTable table : RegisterTable::allCases) {
            entries.emplace_back(qt(L10n::Table::tableName(table)), table);
        }
        break;
    case Model::dataType: {
        const int raw = index.siblingAtColumn(Model::table).data(Qt::EditRole).toInt();
        const RegisterTable table = RegisterTable::allCases.at(static_cast<std::size_t>(raw));
        for (const DataType type : DataType::allowed(table)) {
            entries.emplace_back(qt(L10n::Table::dataTypeName(type)), type);
        }
        break;
    }
    case Model::wordOrder:
        for (const WordOrder order : WordOrder::allCases) {
            entries.emplace_back(qt(order.label()), order);
        }
        break;
    case Model::format:
        for (const DisplayFormat format : DisplayFormat::allCases) {
            entries.emplace_back(qt(L10n::Table::formatName(format)), format);
        }
        break;
    default:
        break;
    }
    return entries;
}

QRect checkRect(const QStyleOptionViewItem& option, const QWidget* widget) {
    const QStyle* style = widget != nullptr ? widget->style() : QApplication::style();
    const int width = style->pixelMetric(QStyle::PM_IndicatorWidth, &option, widget);
    const int height = style->pixelMetric(QStyle::PM_IndicatorHeight, &option, widget);
    QRect rect(0, 0, width, height);
    rect.moveCenter(option.rect.center());
    return rect;
}

} // namespace

DatapointDelegate::DatapointDelegate(QObject* parent)
    : QStyledItemDelegate(parent) {}

QColor DatapointDelegate::color(DatapointTableModel::Tone tone, const QPalette& palette) {
    switch (tone) {
    case Model::Tone::primary:
        return palette.color(QPalette::Text);
    case Model::Tone::secondary:
        return LogPalette::secondaryLabel(palette);
    case Model::Tone::tertiary:
        return LogPalette::tertiaryLabel(palette);
    case Model::Tone::green:
        return LogPalette::green(palette);
    case Model::Tone::orange:
        return LogPalette::orange(palette);
    case Model::Tone::red:
        return LogPalette::red(palette);
    }
    return palette.color(QPalette::Text);
}

QRect DatapointDelegate::pencilRect(const QRect& cell) {
    return {cell.right() - pencilMargin - pencilSize + 1, cell.center().y() - pencilSize / 2,
            pencilSize, pencilSize};
}

void DatapointDelegate::initStyleOption(QStyleOptionViewItem* option,
                                        const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const QVariant tone = index.data(Model::ToneRole);
    QColor toneColor = option->palette.color(QPalette::Text);
    if (tone.isValid()) {
        toneColor = color(static_cast<Model::Tone>(tone.toInt()), option->palette);
        option->palette.setColor(QPalette::Text, toneColor);
    }
    if (const QVariant symbol = index.data(Model::SymbolRole); symbol.isValid()) {
        // The overlap mark is always a warning, whatever the cell's own colour.
        const QColor tint =
            index.column() == Model::address ? LogPalette::orange(option->palette) : toneColor;
        option->icon = Icons::tinted(static_cast<Symbol>(symbol.toInt()), tint);
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = QSize(symbolSize, symbolSize);
    }
    if (index.data(Model::InactiveRole).toBool()) {
        option->state &= ~QStyle::State_Enabled;
    }
    if (index.column() == Model::chart) {
        // Drawn centred by paint().
        option->features &= ~QStyleOptionViewItem::HasCheckIndicator;
    }
}

void DatapointDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QWidget* widget = option.widget;
    const QStyle* style = widget != nullptr ? widget->style() : QApplication::style();
    painter->save();
    if (index.column() == Model::wordOrder && index.data(Model::InactiveRole).toBool()) {
        painter->setOpacity(inactiveOpacity);
    }
    if (index.column() == Model::chart) {
        style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, widget);
        QStyleOptionViewItem check = item;
        check.rect = checkRect(option, widget);
        check.state &= ~QStyle::State_HasFocus;
        check.state |= index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? QStyle::State_On
                                                                             : QStyle::State_Off;
        style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &check, painter, widget);
    } else if (index.column() == Model::value && index.data(Model::WritableRole).toBool()) {
        style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, widget);
        const QRect pencil = pencilRect(option.rect);
        QStyleOptionViewItem text = item;
        text.rect.setRight(pencil.left() - 2);
        style->drawControl(QStyle::CE_ItemViewItem, &text, painter, widget);
        const bool selected = (option.state & QStyle::State_Selected) != 0;
        const QColor tint = selected ? option.palette.color(QPalette::HighlightedText)
                                     : LogPalette::secondaryLabel(option.palette);
        Icons::tinted(Symbol::pencil, tint).paint(painter, pencil);
    } else {
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);
    }
    painter->restore();
}

QWidget* DatapointDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                         const QModelIndex& index) const {
    const int column = index.column();
    if (isPicker(column)) {
        auto* picker = new QComboBox(parent);
        picker->setObjectName("pickerEditor");
        for (const auto& [text, raw] : pickerEntries(index)) {
            picker->addItem(text, raw);
        }
        // A choice is an edit: commit it at once instead of waiting for the focus to leave.
        auto* self = const_cast<DatapointDelegate*>(this); // Qt makes the factory const
        connect(picker, &QComboBox::activated, self,
                [self, picker] { self->commitAndClose(picker); });
        if (opensListsAtOnce_) {
            QTimer::singleShot(0, picker, [picker] {
                if (picker->isVisible()) {
                    picker->showPopup();
                }
            });
        }
        return picker;
    }
    auto* field = new QLineEdit(parent);
    field->setObjectName("fieldEditor");
    field->setFrame(false);
    // No validator: it would swallow a wrong text without a word, and its fix-up writes 70000
    // as "70,000". The event filter checks the text and says why instead.
    if (isNumber(column)) {
        field->setProperty(numberColumn, column);
        field->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    if (column == Model::unitID) {
        field->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    }
    (void)option;
    return field;
}

bool DatapointDelegate::eventFilter(QObject* object, QEvent* event) {
    auto* field = qobject_cast<QLineEdit*>(object);
    const QVariant column = field != nullptr ? field->property(numberColumn) : QVariant();
    if (field == nullptr || !column.isValid()) {
        return QStyledItemDelegate::eventFilter(object, event);
    }
    const bool commits = event->type() == QEvent::KeyPress && isCommitKey(*event);
    const bool leaves = event->type() == QEvent::FocusOut &&
                        (QApplication::focusWidget() != field || !field->isActiveWindow());
    if (commits || leaves) {
        if (const auto refused = Model::refusal(column.toInt(), field->text())) {
            field->setToolTip(qt(*refused));
            if (commits) {
                FieldNote::attach(field, qt(*refused));
                return true;
            }
            // The focus went elsewhere: the field closes with the old value, the reason stays.
            FieldNote::leave(field->parentWidget(), field->geometry(), qt(*refused));
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

void DatapointDelegate::commitAndClose(QWidget* editor) {
    emit commitData(editor);
    emit closeEditor(editor);
}

void DatapointDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    if (auto* picker = qobject_cast<QComboBox*>(editor)) {
        picker->setCurrentIndex(picker->findData(index.data(Qt::EditRole).toInt()));
        return;
    }
    if (auto* field = qobject_cast<QLineEdit*>(editor)) {
        field->setText(index.data(Qt::EditRole).toString());
        field->selectAll();
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void DatapointDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                     const QModelIndex& index) const {
    if (auto* picker = qobject_cast<QComboBox*>(editor)) {
        if (picker->currentIndex() >= 0) {
            model->setData(index, picker->currentData(), Qt::EditRole);
        }
        return;
    }
    if (auto* field = qobject_cast<QLineEdit*>(editor)) {
        model->setData(index, field->text(), Qt::EditRole);
        return;
    }
    QStyledItemDelegate::setModelData(editor, model, index);
}

bool DatapointDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                    const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QEvent::Type type = event->type();
    const bool mouse = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease ||
                       type == QEvent::MouseButtonDblClick;
    if (!mouse || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) {
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    }
    const QPoint position = static_cast<QMouseEvent*>(event)->position().toPoint();
    if (index.column() == Model::chart && option.rect.contains(position)) {
        // The whole narrow cell toggles, not only the box.
        if (type == QEvent::MouseButtonRelease) {
            const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
            model->setData(index, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        }
        return true;
    }
    if (index.column() == Model::value && index.data(Model::WritableRole).toBool() &&
        pencilRect(option.rect).contains(position)) {
        if (type == QEvent::MouseButtonRelease) {
            emit writeRequested(index, pencilRect(option.rect));
        }
        return true;
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

bool DatapointDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                  const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QString help;
    if (index.column() == Model::value && index.data(Model::WritableRole).toBool() &&
        pencilRect(option.rect).contains(event->pos())) {
        help = qt(L10n::texts().write.help());
    } else if (index.column() == Model::address && index.data(Model::OverlapRole).toBool()) {
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        const QStyle* style = view->style();
        const QRect mark = style->subElementRect(QStyle::SE_ItemViewItemDecoration, &item, view);
        if (mark.adjusted(-2, -2, 2, 2).contains(event->pos())) {
            help = qt(L10n::texts().table.overlapHelp());
        }
    }
    if (help.isEmpty()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QToolTip::showText(event->globalPos(), help, view);
    return true;
}

} // namespace kestrin
