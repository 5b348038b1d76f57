#include "DatapointPanel.h"

#include "DatapointDelegate.h"
#include "DatapointTableModel.h"
#include "DatapointTableView.h"
#include "FaintText.h"
#include "FileDialogs.h"
#include "Icons.h"
#include "L10n.h"
#include "LogPalette.h"
#include "NoticeBanner.h"
#include "PollerModel.h"
#include "QtText.h"
#include "WritePopover.h"

#include <algorithm>
#include <array>
#include <optional>

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

namespace kestrin {

namespace {

using Model = DatapointTableModel;

// Minimum and ideal widths of the columns, in the order of DatapointTableModel::Column.
using ColumnWidth = DatapointTableView::ColumnWidth;
constexpr std::array<ColumnWidth, Model::columnCount_> columnWidths{{
    {100, 150}, // name
    {34, 40},   // unit ID
    {120, 140}, // table
    {50, 60},   // address
    {90, 100},  // type
    {60, 72},   // order
    {46, 56},   // scale
    {110, 140}, // value
    {40, 50},   // unit
    {80, 110},  // status
    {34, 34},   // chart
    {70, 80},   // display
    {80, 140},  // description
}};

QAction* action(const std::string& text, QObject* parent, const char* name) {
    auto* created = new QAction(qt(text), parent);
    created->setObjectName(name);
    return created;
}

QToolButton* toolButton(QAction* action, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setDefaultAction(action);
    button->setObjectName(action->objectName() + QStringLiteral("Button"));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    return button;
}

} // namespace

DatapointPanel::DatapointPanel(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , tableModel_(new DatapointTableModel(model, this))
    , delegate_(new DatapointDelegate(this))
    , table_(new DatapointTableView(this))
    , stack_(new QStackedWidget(this))
    , tableArea_(new QWidget(this))
    , addAction_(action(L10n::texts().table.add(), this, "addDatapoint"))
    , duplicateAction_(action(L10n::texts().table.duplicate(), this, "duplicateDatapoints"))
    , deleteAction_(action(L10n::texts().table.deleteRows(), this, "deleteDatapoints"))
    , importAction_(action(L10n::texts().menu.importCSV(), this, "importDatapoints"))
    , exportAction_(action(L10n::texts().menu.exportCSV(), this, "exportDatapoints")) {
    setUpActions();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    buildToolRow();
    setUpTable();
    stack_->addWidget(tableArea_);
    buildEmptyView();
    layout->addWidget(stack_, 1);
    buildBanner();
    connectSignals();

    showTableOrEmpty();
    selectionChanged();
    writeErrorChanged();
}

void DatapointPanel::setUpActions() {
    addAction_->setIcon(Icons::symbol(Symbol::plus));
    addAction_->setToolTip(qt(L10n::texts().table.addHelp()));
    deleteAction_->setIcon(Icons::symbol(Symbol::trash));
    // Only while the table has the focus, so that Delete in a text field stays a text edit.
    deleteAction_->setShortcut(QKeySequence::Delete);
    deleteAction_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    table_->addAction(deleteAction_);
    connect(addAction_, &QAction::triggered, this, &DatapointPanel::addDatapoint);
    connect(duplicateAction_, &QAction::triggered, this, &DatapointPanel::duplicateSelected);
    connect(deleteAction_, &QAction::triggered, this, &DatapointPanel::deleteSelected);
    connect(importAction_, &QAction::triggered, this, &DatapointPanel::importCSV);
    connect(exportAction_, &QAction::triggered, this, &DatapointPanel::exportCSV);
}

void DatapointPanel::setUpTable() {
    table_->setObjectName("datapointTable");
    table_->setModel(tableModel_);
    table_->setItemDelegate(delegate_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                            QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    table_->setAlternatingRowColors(false);
    table_->setShowGrid(false);
    table_->setWordWrap(false);
    table_->setFrameShape(QFrame::NoFrame);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(26);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setContextMenuPolicy(Qt::CustomContextMenu);
    table_->horizontalHeader()->setMinimumSectionSize(columnWidths[Model::unitID].minimum);
    table_->horizontalHeader()->setSectionResizeMode(Model::chart, QHeaderView::Fixed);
    table_->setColumnWidths({columnWidths.begin(), columnWidths.end()});

    auto* tableLayout = new QVBoxLayout(tableArea_);
    tableLayout->setContentsMargins(0, 0, 0, 0);
    tableLayout->addWidget(table_);
}

void DatapointPanel::buildBanner() {
    banner_ = new NoticeBanner(
        Symbol::warning, LogPalette::orange(palette()), QString(),
        [this] { model_.setWriteError(std::nullopt); }, this);
    banner_->setObjectName("writeErrorBanner");
    auto* bannerRow = new QHBoxLayout();
    bannerRow->setContentsMargins(10, 0, 10, 10);
    bannerRow->addStretch();
    bannerRow->addWidget(banner_);
    bannerRow->addStretch();
    static_cast<QVBoxLayout*>(layout())->addLayout(bannerRow);
}

void DatapointPanel::connectSignals() {
    connect(tableModel_, &QAbstractItemModel::modelAboutToBeReset, this,
            [this] { keptSelection_ = selectedIDs(); });
    connect(tableModel_, &QAbstractItemModel::modelReset, this, [this] {
        select(keptSelection_);
        keptSelection_.clear();
        // A reset clears the selection without telling anyone.
        selectionChanged();
        showTableOrEmpty();
    });
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &DatapointPanel::selectionChanged);
    connect(table_, &QTableView::customContextMenuRequested, this,
            &DatapointPanel::showContextMenu);
    connect(delegate_, &DatapointDelegate::writeRequested, this,
            [this](const QModelIndex& index, const QRect& pencil) {
                openWriteEditor(index.row(), pencil);
            });
    connect(&model_, &PollerModel::writeErrorChanged, this, &DatapointPanel::writeErrorChanged);
}

void DatapointPanel::buildToolRow() {
    auto* row = new QHBoxLayout();
    row->setContentsMargins(6, 4, 6, 0);
    row->setSpacing(2);
    row->addWidget(toolButton(addAction_, this));
    row->addWidget(toolButton(duplicateAction_, this));
    row->addWidget(toolButton(deleteAction_, this));

    auto* csv = new QToolButton(this);
    csv->setObjectName("csvMenuButton");
    csv->setText(qt(L10n::Table::csv()));
    csv->setIcon(Icons::symbol(Symbol::tableCells));
    csv->setToolTip(qt(L10n::texts().table.csvHelp()));
    csv->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    csv->setAutoRaise(true);
    csv->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(csv);
    menu->addAction(importAction_);
    menu->addAction(exportAction_);
    csv->setMenu(menu);
    row->addWidget(csv);
    row->addStretch();
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void DatapointPanel::buildEmptyView() {
    emptyView_ = new QWidget(this);
    emptyView_->setObjectName("emptyTable");
    auto* layout = new QVBoxLayout(emptyView_);
    layout->setSpacing(10);
    layout->addStretch();

    auto* symbol = new QLabel(emptyView_);
    symbol->setPixmap(
        Icons::tinted(Symbol::tableCells, LogPalette::secondaryLabel(palette())).pixmap(44, 44));
    symbol->setAlignment(Qt::AlignCenter);
    layout->addWidget(symbol);

    auto* title = new QLabel(qt(L10n::texts().table.emptyTitle()), emptyView_);
    QFont headline = title->font();
    headline.setBold(true);
    headline.setPointSizeF(headline.pointSizeF() * 1.15);
    title->setFont(headline);
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);

    auto* text = new QLabel(qt(L10n::texts().table.emptyText()), emptyView_);
    text->setWordWrap(true);
    text->setFixedWidth(400);
    // A wrapped label under an alignment gets no height for its width unless told.
    text->setMinimumHeight(text->heightForWidth(400));
    text->setAlignment(Qt::AlignCenter);
    FaintText::fade(*text);
    layout->addWidget(text, 0, Qt::AlignHCenter);

    auto* buttons = new QHBoxLayout();
    buttons->addStretch();
    auto* add =
        new QPushButton(Icons::symbol(Symbol::plus), qt(L10n::texts().table.add()), emptyView_);
    add->setObjectName("emptyAddButton");
    add->setToolTip(qt(L10n::texts().table.addHelp()));
    connect(add, &QPushButton::clicked, this, &DatapointPanel::addDatapoint);
    auto* import = new QPushButton(qt(L10n::texts().menu.importCSV()), emptyView_);
    import->setObjectName("emptyImportButton");
    connect(import, &QPushButton::clicked, this, &DatapointPanel::importCSV);
    buttons->addWidget(add);
    buttons->addWidget(import);
    buttons->addStretch();
    layout->addLayout(buttons);
    layout->addStretch();
    stack_->addWidget(emptyView_);
}

void DatapointPanel::showTableOrEmpty() {
    const Poll* poll = model_.selectedPoll();
    const bool empty = poll != nullptr && poll->datapoints.empty();
    stack_->setCurrentWidget(empty ? emptyView_ : tableArea_);
}

std::set<Uuid> DatapointPanel::selectedIDs() const {
    // From the ranges, not selectedRows(): while the rows are being replaced the old rows are no
    // longer selectable, but their identities are still the ones to keep.
    std::set<Uuid> ids;
    const std::vector<Uuid>& rows = tableModel_->rowIDs();
    for (const QItemSelectionRange& range : table_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            if (row >= 0 && static_cast<std::size_t>(row) < rows.size()) {
                ids.insert(rows[static_cast<std::size_t>(row)]);
            }
        }
    }
    return ids;
}

void DatapointPanel::select(const std::set<Uuid>& datapointIDs) {
    QItemSelection selection;
    std::optional<int> first;
    for (const Uuid& id : datapointIDs) {
        if (const std::optional<int> row = tableModel_->row(id)) {
            selection.select(tableModel_->index(*row, 0),
                             tableModel_->index(*row, Model::columnCount_ - 1));
            first = first ? std::min(*first, *row) : *row;
        }
    }
    table_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (first) {
        table_->selectionModel()->setCurrentIndex(tableModel_->index(*first, 0),
                                                  QItemSelectionModel::NoUpdate);
        table_->scrollTo(tableModel_->index(*first, 0));
    }
}

void DatapointPanel::selectionChanged() {
    const bool any = table_->selectionModel()->hasSelection();
    duplicateAction_->setEnabled(any);
    deleteAction_->setEnabled(any);
}

void DatapointPanel::addDatapoint() {
    // The new datapoint follows the row the user is on, when that row is selected.
    std::optional<Uuid> base;
    const QModelIndex current = table_->currentIndex();
    if (current.isValid() && table_->selectionModel()->isRowSelected(current.row())) {
        if (const Datapoint* point = tableModel_->datapoint(current.row())) {
            base = point->id;
        }
    }
    if (const std::optional<Uuid> added = model_.addDatapoint(base)) {
        select({*added});
    }
}

void DatapointPanel::duplicateSelected() {
    const std::set<Uuid> chosen = selectedIDs();
    if (chosen.empty()) {
        return;
    }
    const std::vector<Uuid> before = tableModel_->rowIDs();
    model_.duplicateDatapoints(chosen);
    // The copies are the rows that were not there before.
    std::set<Uuid> copies(tableModel_->rowIDs().begin(), tableModel_->rowIDs().end());
    for (const Uuid& id : before) {
        copies.erase(id);
    }
    select(copies);
}

void DatapointPanel::deleteSelected() {
    const std::set<Uuid> chosen = selectedIDs();
    if (!chosen.empty()) {
        model_.deleteDatapoints(chosen);
    }
}

void DatapointPanel::importCSV() {
    // The import reads comma- and tab-separated lists, whatever their ending.
    const QString path = FileDialogs::openFile(
        this, qt(L10n::texts().menu.importCSV()),
        {FileDialogs::filter(L10n::texts().menu.datapointLists(),
                             QStringLiteral("*.csv *.tsv *.txt")),
         FileDialogs::filter(L10n::texts().menu.allFiles(), QStringLiteral("*"))});
    if (!path.isEmpty()) {
        importFile(path);
    }
}

void DatapointPanel::importFile(const QString& path) {
    std::optional<PollerModel::ImportOffer> offer = model_.readDatapointFile(path);
    if (!offer) {
        return;
    }
    QMessageBox question(QMessageBox::Question, qt(offer->question.title), qt(offer->question.text),
                         QMessageBox::NoButton, this);
    question.setObjectName("importQuestion");
    QPushButton* add = question.addButton(qt(L10n::texts().import.add()), QMessageBox::AcceptRole);
    QPushButton* replace =
        question.addButton(qt(L10n::texts().import.replace()), QMessageBox::DestructiveRole);
    QPushButton* cancel =
        question.addButton(qt(L10n::texts().import.cancel()), QMessageBox::RejectRole);
    question.setDefaultButton(add);
    question.setEscapeButton(cancel);
    question.exec();
    if (question.clickedButton() == add) {
        model_.importDatapoints(std::move(offer->datapoints), PollOperations::ImportChoice::add);
    } else if (question.clickedButton() == replace) {
        model_.importDatapoints(std::move(offer->datapoints),
                                PollOperations::ImportChoice::replace);
    }
}

void DatapointPanel::exportCSV() {
    const QString path = FileDialogs::saveFile(
        this, qt(L10n::texts().menu.exportCSV()), model_.proposedDatapointFileName(),
        {FileDialogs::filter(L10n::texts().menu.csvFiles(), QStringLiteral("*.csv"))});
    if (!path.isEmpty()) {
        model_.exportDatapoints(path);
    }
}

void DatapointPanel::openWriteEditor(int row, const QRect& anchor) {
    const Datapoint* point = tableModel_->datapoint(row);
    if (point == nullptr || !point->table().isWritable()) {
        return;
    }
    const PointStatus* status = model_.status(point->id);
    auto* popover =
        new WritePopover(model_, *point, status != nullptr ? status->value : std::nullopt, this);
    // A cell is no widget: a stand-in of the pencil's size carries the popover's position.
    auto* stand = new QWidget(table_->viewport());
    stand->setAttribute(Qt::WA_TransparentForMouseEvents);
    stand->setGeometry(anchor);
    stand->show();
    connect(popover, &Popover::closed, stand, &QObject::deleteLater);
    popover->showBelow(stand);
    popover->setFocus();
}

void DatapointPanel::writeErrorChanged() {
    const std::optional<std::string>& error = model_.writeError();
    banner_->setText(error ? qt(*error) : QString());
    banner_->setVisible(error.has_value());
}

void DatapointPanel::showContextMenu(const QPoint& position) {
    const QModelIndex index = table_->indexAt(position);
    if (!index.isValid()) {
        return;
    }
    // A right click outside the selection acts on the row under the mouse.
    if (!table_->selectionModel()->isRowSelected(index.row())) {
        table_->selectRow(index.row());
    }
    QMenu menu(this);
    menu.addAction(duplicateAction_);
    menu.addAction(deleteAction_);
    menu.exec(table_->viewport()->mapToGlobal(position));
}

} // namespace kestrin
