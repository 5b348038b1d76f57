#pragma once

#include <vector>

#include <QTableView>

namespace kestrin {

// The datapoint table's view: Tab and Shift+Tab go from one editable cell to the next, past
// the value, status and chart cells and the ones that do not apply to a datapoint.
class DatapointTableView : public QTableView {
    Q_OBJECT

public:
    struct ColumnWidth {
        int minimum;
        int ideal;
    };

    explicit DatapointTableView(QWidget* parent = nullptr);

    // The widths the columns take: each as wide as its title, and within the table's width while
    // the columns' minimum widths allow it. Applied again as the table is resized, until the user
    // drags a column's edge.
    void setColumnWidths(std::vector<ColumnWidth> widths);
    // Widths that share the available room: every column keeps at least its floor and gives up
    // what it has beyond, in proportion, when the preferred widths do not fit.
    static std::vector<int> shared(const std::vector<ColumnWidth>& floorAndPreferred,
                                   int available);

protected:
    void resizeEvent(QResizeEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;

private:
    void fitColumns();

    std::vector<ColumnWidth> widths_;
    bool fitting_ = false;
    bool userSized_ = false;
};

} // namespace kestrin
