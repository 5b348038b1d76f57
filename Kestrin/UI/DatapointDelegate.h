#pragma once

#include "DatapointTableModel.h"

#include <QStyledItemDelegate>

namespace kestrin {

// Draws and edits the cells of the datapoint table: pickers as combo boxes that commit on
// choice, number fields with their ranges, the status and overlap symbols in their colours,
// faded cells that do not apply, the centred chart check box and the value cell's pencil.
class DatapointDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit DatapointDelegate(QObject* parent = nullptr);

    static QColor color(DatapointTableModel::Tone tone, const QPalette& palette);
    // Where the pencil of a writable value cell sits.
    static QRect pencilRect(const QRect& cell);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    // Whether the next picker editor shows its list as soon as it opens.
    void setOpensListsAtOnce(bool atOnce) { opensListsAtOnce_ = atOnce; }

signals:
    // The pencil of a value cell was clicked; the rectangle is in the view's viewport.
    void writeRequested(const QModelIndex& index, const QRect& pencil);

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
    // Keeps a number field open with the reason when its text cannot be taken.
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void commitAndClose(QWidget* editor);

    bool opensListsAtOnce_ = true;
};

} // namespace kestrin
