#include "DatapointTableView.h"

#include "DatapointDelegate.h"

#include <algorithm>
#include <numeric>

#include <QApplication>
#include <QHeaderView>

namespace kestrin {

DatapointTableView::DatapointTableView(QWidget* parent)
    : QTableView(parent) {
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
        if (!fitting_ && QApplication::mouseButtons() != Qt::NoButton) {
            userSized_ = true;
        }
    });
}

void DatapointTableView::setColumnWidths(std::vector<ColumnWidth> widths) {
    widths_ = std::move(widths);
    fitColumns();
}

std::vector<int> DatapointTableView::shared(const std::vector<ColumnWidth>& floorAndPreferred,
                                            int available) {
    int floors = 0;
    int preferred = 0;
    for (const ColumnWidth& width : floorAndPreferred) {
        floors += width.minimum;
        preferred += std::max(width.minimum, width.ideal);
    }
    const int slack = preferred - floors;
    const int deficit = std::clamp(preferred - available, 0, slack);
    std::vector<int> widths;
    int given = 0;
    for (const ColumnWidth& width : floorAndPreferred) {
        const int own = std::max(width.minimum, width.ideal) - width.minimum;
        // Rounded up, so that the shares together give up the whole deficit.
        const int share = slack > 0 ? (own * deficit + slack - 1) / slack : 0;
        const int taken = std::min(share, deficit - given);
        given += taken;
        widths.push_back(width.minimum + own - taken);
    }
    return widths;
}

void DatapointTableView::fitColumns() {
    if (widths_.empty() || model() == nullptr || userSized_) {
        return;
    }
    std::vector<ColumnWidth> floorAndPreferred;
    const QHeaderView* header = horizontalHeader();
    for (int column = 0; column < static_cast<int>(widths_.size()); ++column) {
        // Translated titles can be wider than the content: "Esclavo" over a unit ID.
        const int title = header->sectionSizeHint(column);
        const ColumnWidth width = widths_[static_cast<std::size_t>(column)];
        floorAndPreferred.push_back({std::max(width.minimum, title), std::max(width.ideal, title)});
    }
    const std::vector<int> fitted = shared(floorAndPreferred, viewport()->width());
    fitting_ = true;
    for (int column = 0; column < static_cast<int>(fitted.size()); ++column) {
        setColumnWidth(column, fitted[static_cast<std::size_t>(column)]);
    }
    fitting_ = false;
}

void DatapointTableView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    fitColumns();
}

QModelIndex DatapointTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if ((action != MoveNext && action != MovePrevious) || model() == nullptr) {
        return QTableView::moveCursor(action, modifiers);
    }
    const int columns = model()->columnCount();
    const int cells = model()->rowCount() * columns;
    const QModelIndex current = currentIndex();
    if (cells == 0 || !current.isValid()) {
        return QTableView::moveCursor(action, modifiers);
    }
    // Cell by cell in reading order, round the end of the table, at most once.
    const int step = action == MoveNext ? 1 : -1;
    int position = current.row() * columns + current.column();
    for (int moved = 1; moved < cells; ++moved) {
        position = (position + step + cells) % cells;
        const QModelIndex candidate = model()->index(position / columns, position % columns);
        if (!isColumnHidden(candidate.column()) &&
            model()->flags(candidate).testFlag(Qt::ItemIsEditable)) {
            return candidate;
        }
    }
    return current;
}

bool DatapointTableView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    // A picker clicked (or asked for with F2) opens its list at once; one reached with Tab or a
    // key waits, so that Tab can go on to the next cell.
    if (auto* delegate = qobject_cast<DatapointDelegate*>(itemDelegate())) {
        delegate->setOpensListsAtOnce(trigger == DoubleClicked || trigger == SelectedClicked ||
                                      trigger == EditKeyPressed);
    }
    return QTableView::edit(index, trigger, event);
}

} // namespace kestrin
