#include "BottomPane.h"

#include "BusPopover.h"
#include "ChartView.h"
#include "ElidedLine.h"
#include "FaintText.h"
#include "FileDialogs.h"
#include "HistoryCSV.h"
#include "Icons.h"
#include "L10n.h"
#include "LogOptionsView.h"
#include "OutputArea.h"
#include "OutputBuffer.h"
#include "PollerModel.h"
#include "QtText.h"

#include <chrono>

#include <QButtonGroup>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QProgressDialog>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace kestrin {

namespace {

constexpr const char* pagePreference = "bottomPane";

const char* rawValue(BottomPane::Page page) {
    return page == BottomPane::Page::chart ? "chart" : "log";
}

BottomPane::Page storedPage() {
    const QString raw = QSettings("Kestrin", "Kestrin").value(pagePreference).toString();
    return raw == QLatin1String("chart") ? BottomPane::Page::chart : BottomPane::Page::log;
}

QToolButton* segment(const std::string& title, const char* name, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setText(qt(title));
    button->setCheckable(true);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    return button;
}

QPushButton* barButton(const std::string& title, const std::string& tooltip, const char* name,
                       QWidget* parent) {
    auto* button = new QPushButton(qt(title), parent);
    button->setObjectName(name);
    button->setToolTip(qt(tooltip));
    return button;
}

using ExportClock = std::chrono::steady_clock;
// Long enough that a usual history is written before anything else shows.
constexpr auto firstExportSlice = std::chrono::milliseconds(500);
// A frame: the window repaints and answers from the reading are handled between slices.
constexpr auto exportSlice = std::chrono::milliseconds(16);

// Goes on with the model's export in slices from a timer, behind a window-modal progress dialog
// whose Cancel drops it.
void continueExportWithProgress(PollerModel& model, QWidget* parent) {
    auto* dialog = new QProgressDialog(qt(L10n::texts().pane.exportProgress()),
                                       qt(L10n::texts().import.cancel()), 0, 1000, parent);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setMinimumDuration(0);
    dialog->setAutoClose(false);
    dialog->setAutoReset(false);
    auto* timer = new QTimer(dialog);
    QObject::connect(timer, &QTimer::timeout, dialog, [&model, dialog, timer] {
        const HistoryExport::Progress progress =
            model.continueHistoryExport(ExportClock::now() + exportSlice);
        if (progress.done) {
            timer->stop();
            dialog->deleteLater();
            return;
        }
        dialog->setValue(static_cast<int>(progress.rowsWritten * 1000 / progress.rowCount));
    });
    const auto cancel = [&model, dialog, timer] {
        timer->stop();
        model.cancelHistoryExport();
        dialog->deleteLater();
    };
    // Escape rejects the dialog without pressing Cancel.
    QObject::connect(dialog, &QProgressDialog::canceled, dialog, cancel);
    QObject::connect(dialog, &QDialog::rejected, dialog, cancel);
    timer->start(0);
    dialog->show();
}

// Opens the popover under its button, made on first use, or closes it when it is open.
template <typename View>
void toggle(View*& popover, QWidget* anchor, PollerModel& model, QWidget* parent) {
    if (popover != nullptr && popover->isVisible()) {
        popover->hide();
        return;
    }
    if (popover == nullptr) {
        popover = new View(model, parent);
    }
    popover->showBelow(anchor);
}

} // namespace

BottomPane::BottomPane(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model) {
    setObjectName("bottomPane");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeBar());

    pages_ = new QStackedWidget(this);
    output_ = new OutputArea(model_, pages_);
    chart_ = new ChartView(model_, pages_);
    pages_->addWidget(output_);
    pages_->addWidget(chart_);
    layout->addWidget(pages_, 1);

    connect(&model_, &PollerModel::statisticsChanged, this, &BottomPane::refreshStatistics);
    refreshStatistics();

    page_ = storedPage();
    setPage(page_);
}

QWidget* BottomPane::makeBar() {
    auto* bar = new QWidget(this);
    bar->setObjectName("bottomBar");
    bar->setAutoFillBackground(true);
    bar->setBackgroundRole(QPalette::Window);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(8, 4, 8, 4);
    row->setSpacing(8);
    row->addWidget(makePagePicker(bar));

    tools_ = new QStackedWidget(bar);
    tools_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    tools_->addWidget(makeLogTools(tools_));
    tools_->addWidget(makeChartTools(tools_));
    row->addWidget(tools_, 1);
    return bar;
}

QWidget* BottomPane::makePagePicker(QWidget* bar) {
    auto* picker = new QWidget(bar);
    picker->setAccessibleName(qt(L10n::texts().pane.title()));
    auto* segments = new QHBoxLayout(picker);
    segments->setContentsMargins(0, 0, 0, 0);
    segments->setSpacing(0);
    logButton_ = segment(L10n::texts().pane.log(), "logPageButton", picker);
    chartButton_ = segment(L10n::texts().pane.chart(), "chartPageButton", picker);
    segments->addWidget(logButton_);
    segments->addWidget(chartButton_);
    // The style's own checked tool button is a shade darker, which a dark palette all but hides.
    picker->setStyleSheet(QStringLiteral(
        "QToolButton { border: 1px solid palette(mid); background: palette(button);"
        " padding: 2px 12px; }"
        "QToolButton:checked { background: palette(highlight); color: palette(highlighted-text);"
        " border-color: palette(highlight); }"
        "#logPageButton { border-top-left-radius: 5px; border-bottom-left-radius: 5px; }"
        "#chartPageButton { border-top-right-radius: 5px; border-bottom-right-radius: 5px;"
        " border-left: none; }"));
    auto* group = new QButtonGroup(bar);
    group->setExclusive(true);
    group->addButton(logButton_);
    group->addButton(chartButton_);
    connect(logButton_, &QAbstractButton::clicked, this, [this] { setPage(Page::log); });
    connect(chartButton_, &QAbstractButton::clicked, this, [this] { setPage(Page::chart); });
    return picker;
}

QWidget* BottomPane::makeLogTools(QWidget* parent) {
    auto* logTools = new QWidget(parent);
    auto* logRow = new QHBoxLayout(logTools);
    logRow->setContentsMargins(0, 0, 0, 0);
    logRow->setSpacing(8);
    statistics_ = new ElidedLine(logTools);
    statistics_->setObjectName("statisticsLabel");
    FaintText::fade(*statistics_);
    logRow->addWidget(statistics_, 1);

    auto* bus = new QToolButton(logTools);
    bus->setObjectName("busButton");
    bus->setText(qt(L10n::texts().bus.button()));
    bus->setAutoRaise(true);
    bus->setToolTip(qt(L10n::texts().bus.buttonHelp()));
    connect(bus, &QToolButton::clicked, this, &BottomPane::toggleBusPopover);
    busButton_ = bus;
    logRow->addWidget(bus);

    auto* options = new QToolButton(logTools);
    options->setObjectName("logOptionsButton");
    options->setIcon(Icons::symbol(Symbol::sliders));
    options->setAutoRaise(true);
    options->setAccessibleName(qt(L10n::texts().footer.options()));
    options->setToolTip(qt(L10n::texts().footer.optionsHelp()));
    connect(options, &QToolButton::clicked, this, &BottomPane::toggleLogOptions);
    optionsButton_ = options;
    logRow->addWidget(options);

    auto* save = barButton(L10n::texts().footer.save(), L10n::texts().footer.saveHelp(),
                           "saveLogButton", logTools);
    connect(save, &QPushButton::clicked, this, &BottomPane::saveLog);
    logRow->addWidget(save);
    auto* clear = barButton(L10n::texts().footer.clear(), L10n::texts().footer.clearHelp(),
                            "clearLogButton", logTools);
    connect(clear, &QPushButton::clicked, this, &BottomPane::clearLog);
    logRow->addWidget(clear);
    return logTools;
}

QWidget* BottomPane::makeChartTools(QWidget* parent) {
    auto* chartTools = new QWidget(parent);
    auto* chartRow = new QHBoxLayout(chartTools);
    chartRow->setContentsMargins(0, 0, 0, 0);
    chartRow->setSpacing(8);
    chartRow->addStretch(1);
    auto* clearHistory =
        barButton(L10n::texts().pane.clearHistory(), L10n::texts().pane.clearHistoryHelp(),
                  "clearHistoryButton", chartTools);
    connect(clearHistory, &QPushButton::clicked, &model_, &PollerModel::clearHistory);
    chartRow->addWidget(clearHistory);
    auto* export_ =
        barButton(L10n::texts().pane.exportHistory(), L10n::texts().pane.exportHistoryHelp(),
                  "exportHistoryButton", chartTools);
    connect(export_, &QPushButton::clicked, this, &BottomPane::exportHistory);
    chartRow->addWidget(export_);
    return chartTools;
}

void BottomPane::setPage(Page page) {
    const bool changed = page != page_;
    page_ = page;
    const bool chart = page == Page::chart;
    (chart ? chartButton_ : logButton_)->setChecked(true);
    tools_->setCurrentIndex(chart ? 1 : 0);
    pages_->setCurrentIndex(chart ? 1 : 0);
    if (changed) {
        QSettings("Kestrin", "Kestrin").setValue(pagePreference, rawValue(page));
    }
}

void BottomPane::refreshStatistics() {
    const PollerStatistics& counts = model_.statistics();
    statistics_->setText(qt(L10n::texts().footer.statistics(
        counts.requests, counts.responses, counts.timeouts, counts.exceptions, counts.errors)));
}

void BottomPane::toggleLogOptions() {
    toggle(options_, optionsButton_, model_, this);
}

void BottomPane::toggleBusPopover() {
    toggle(bus_, busButton_, model_, this);
}

void BottomPane::saveLog() {
    const QString path = FileDialogs::saveFile(
        this, qt(L10n::texts().menu.saveLog()),
        OutputBuffer::fileName(QDateTime::currentDateTime()),
        {FileDialogs::filter(L10n::texts().menu.textFiles(), QStringLiteral("*.txt"))});
    if (!path.isEmpty()) {
        model_.saveLog(path);
    }
}

void BottomPane::clearLog() {
    model_.clearLog();
}

void BottomPane::exportHistory() {
    const QString path = FileDialogs::saveFile(
        this, qt(L10n::texts().pane.exportHistory()),
        HistoryCSV::fileName(QDateTime::currentDateTime()),
        {FileDialogs::filter(L10n::texts().menu.csvFiles(), QStringLiteral("*.csv"))});
    if (path.isEmpty()) {
        return;
    }
    model_.beginHistoryExport(path);
    if (!model_.continueHistoryExport(ExportClock::now() + firstExportSlice).done) {
        continueExportWithProgress(model_, this);
    }
}

void BottomPane::showFindBar() {
    setPage(Page::log);
    output_->showFindBar();
}

} // namespace kestrin
