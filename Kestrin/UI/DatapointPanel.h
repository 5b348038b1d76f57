#pragma once

#include "DatapointTableModel.h"
#include "DatapointTableView.h"
#include "Uuid.h"

#include <set>

#include <QWidget>

class QAction;
class QStackedWidget;
class QTableView;
class QToolButton;

namespace kestrin {

class DatapointDelegate;
class NoticeBanner;
class PollerModel;

// The selected poll's datapoints: the tool row, the table (or the empty view when the poll has
// none) and the banner of a failed write. The row selection is the only state of its own.
class DatapointPanel : public QWidget {
    Q_OBJECT

public:
    DatapointPanel(PollerModel& model, QWidget* parent = nullptr);

    QTableView* tableView() const noexcept { return table_; }
    DatapointTableModel* tableModel() const noexcept { return tableModel_; }
    std::set<Uuid> selectedIDs() const;
    void select(const std::set<Uuid>& datapointIDs);

public slots:
    void addDatapoint();
    void duplicateSelected();
    void deleteSelected();
    void importCSV();
    void exportCSV();
    // Asks Add, Replace or Cancel for the list in the file, then merges it into the poll.
    void importFile(const QString& path);
    // Opens the write editor of a row's datapoint under the given rectangle of the viewport.
    void openWriteEditor(int row, const QRect& anchor);

private:
    // Icons, shortcuts and slots of the tool row's actions.
    void setUpActions();
    void buildToolRow();
    void setUpTable();
    void buildEmptyView();
    // The banner of a failed write, centred under the table.
    void buildBanner();
    // The table's rows, selection, menu and pencil, and the model's write error.
    void connectSignals();
    void showTableOrEmpty();
    void selectionChanged();
    void writeErrorChanged();
    void showContextMenu(const QPoint& position);

    PollerModel& model_;
    DatapointTableModel* tableModel_;
    DatapointDelegate* delegate_;
    DatapointTableView* table_;
    QStackedWidget* stack_;
    QWidget* tableArea_;
    QWidget* emptyView_ = nullptr;
    NoticeBanner* banner_ = nullptr;
    QAction* addAction_;
    QAction* duplicateAction_;
    QAction* deleteAction_;
    QAction* importAction_;
    QAction* exportAction_;
    // The selection across a reset of the rows.
    std::set<Uuid> keptSelection_;
};

} // namespace kestrin
