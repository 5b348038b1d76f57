#include "FindDevicesDialog.h"

#include "FaintText.h"
#include "FinderResults.h"
#include "L10n.h"
#include "PollerCommands.h"
#include "PollerModel.h"
#include "QtText.h"
#include "RTUFrame.h"

#include <cmath>
#include <limits>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

namespace kestrin {

namespace {

// The order the map reads them in when all are chosen.
const std::vector<RegisterTable> mapOrder = RegisterMapOptions{}.tables;

QSpinBox* spinBox(const char* name, int minimum, int maximum, int value) {
    auto* box = new QSpinBox;
    box->setObjectName(QString::fromLatin1(name));
    box->setRange(minimum, maximum);
    box->setValue(value);
    return box;
}

QSpinBox* unitBox(const char* name, int value) {
    return spinBox(name, RTUFrame::unitRange.first, RTUFrame::unitRange.last, value);
}

// "[1] to [247]", the second never below the first.
QWidget* rangeRow(QSpinBox* first, QSpinBox* last) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(first);
    layout->addWidget(new QLabel(qt(L10n::texts().finder.to())));
    layout->addWidget(last);
    layout->addStretch();
    QObject::connect(first, &QSpinBox::valueChanged, last,
                     [first, last] { last->setValue(std::max(last->value(), first->value())); });
    QObject::connect(last, &QSpinBox::valueChanged, first,
                     [first, last] { first->setValue(std::min(first->value(), last->value())); });
    return row;
}

// A scan's page: what it does, then its fields.
QWidget* page(const std::string& note, QFormLayout*& form) {
    auto* widget = new QWidget;
    auto* layout = new QVBoxLayout(widget);
    layout->addWidget(FaintText::note(qt(note), widget));
    form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    layout->addLayout(form);
    layout->addStretch();
    return widget;
}

int defaultTimeoutMs(const SerialConfiguration& serial) {
    return static_cast<int>(std::ceil(UnitScan::defaultTimeout(serial) * 1000.0));
}

} // namespace

FindDevicesDialog::FindDevicesDialog(PollerModel& model, QWidget* parent)
    : QDialog(parent)
    , model_(model)
    , finder_(model) {
    const auto& texts = L10n::texts().finder;
    setObjectName(QStringLiteral("findDevicesDialog"));
    setWindowTitle(qt(texts.title()));
    setWindowModality(Qt::WindowModal);

    scans_ = new QTabWidget;
    scans_->setObjectName(QStringLiteral("finderScans"));
    scans_->addTab(unitsPage(), qt(texts.findUnits()));
    scans_->addTab(settingsPage(), qt(texts.findSettings()));
    scans_->addTab(registersPage(), qt(texts.mapRegisters()));

    locked_ = FaintText::note(qt(texts.stopReadingFirst()), this);
    locked_->setObjectName(QStringLiteral("finderLocked"));

    results_ = new QTableWidget;
    results_->setObjectName(QStringLiteral("finderResults"));
    results_->setSelectionBehavior(QAbstractItemView::SelectRows);
    results_->setSelectionMode(QAbstractItemView::SingleSelection);
    results_->verticalHeader()->hide();
    results_->setMinimumHeight(160);
    summary_ = new QLabel;
    summary_->setObjectName(QStringLiteral("finderSummary"));
    summary_->setWordWrap(true);
    summary_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scans_);
    layout->addWidget(locked_);
    layout->addWidget(buttonRow());
    layout->addWidget(results_, 1);
    layout->addWidget(summary_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    addToPoll_ = buttons->addButton(qt(texts.addToPoll()), QDialogButtonBox::ActionRole);
    addToPoll_->setObjectName(QStringLiteral("finderAddToPoll"));
    useSettings_ = buttons->addButton(qt(texts.useSettings()), QDialogButtonBox::ActionRole);
    useSettings_->setObjectName(QStringLiteral("finderUseSettings"));
    connect(buttons, &QDialogButtonBox::rejected, this, &FindDevicesDialog::reject);
    connect(addToPoll_, &QPushButton::clicked, this, &FindDevicesDialog::addToPoll);
    connect(useSettings_, &QPushButton::clicked, this, &FindDevicesDialog::useSettings);
    layout->addWidget(buttons);
    setMinimumSize(560, 520);

    connectFinder();
    FinderResults::fill(*results_, DeviceFinder::Findings{});
    refresh();
}

FindDevicesDialog* FindDevicesDialog::openFor(QWidget& window, PollerModel& model) {
    auto* dialog = window.findChild<FindDevicesDialog*>(QString(), Qt::FindDirectChildrenOnly);
    if (dialog == nullptr) {
        dialog = new FindDevicesDialog(model, &window);
    }
    dialog->open();
    return dialog;
}

QWidget* FindDevicesDialog::unitsPage() {
    const auto& texts = L10n::texts();
    QFormLayout* form = nullptr;
    QWidget* widget = page(texts.finder.unitsNote(), form);
    unitsFirst_ = unitBox("unitsFirst", RTUFrame::unitRange.first);
    unitsLast_ = unitBox("unitsLast", RTUFrame::unitRange.last);
    form->addRow(qt(texts.finder.units()), rangeRow(unitsFirst_, unitsLast_));
    suggestedTimeoutMs_ = defaultTimeoutMs(model_.serial());
    timeout_ = spinBox("unitsTimeout", 1, 10000, suggestedTimeoutMs_);
    timeout_->setSuffix(QStringLiteral(" ms"));
    timeout_->setToolTip(qt(texts.finder.timeoutHelp()));
    form->addRow(qt(texts.settings.responseTimeout()), timeout_);
    // What suits the line's speed follows the settings; a time-out the user typed stays.
    connect(&model_, &PollerModel::serialChanged, timeout_, [this] {
        const bool suggested = timeout_->value() == suggestedTimeoutMs_;
        suggestedTimeoutMs_ = defaultTimeoutMs(model_.serial());
        if (suggested) {
            timeout_->setValue(suggestedTimeoutMs_);
        }
    });
    return widget;
}

QWidget* FindDevicesDialog::settingsPage() {
    QFormLayout* form = nullptr;
    QWidget* widget = page(L10n::texts().finder.settingsNote(), form);
    sweepFirst_ = unitBox("sweepFirst", 1);
    sweepLast_ = unitBox("sweepLast", 1);
    form->addRow(qt(L10n::texts().finder.units()), rangeRow(sweepFirst_, sweepLast_));
    return widget;
}

QWidget* FindDevicesDialog::registersPage() {
    const auto& texts = L10n::texts();
    QFormLayout* form = nullptr;
    QWidget* widget = page(texts.finder.registersNote(), form);
    mapUnit_ = unitBox("mapUnit", 1);
    form->addRow(qt(texts.table.unitID()), mapUnit_);
    constexpr int lastAddress = std::numeric_limits<std::uint16_t>::max();
    mapFirst_ = spinBox("mapFirst", 0, lastAddress, RegisterMapOptions{}.first);
    mapLast_ = spinBox("mapLast", 0, lastAddress, RegisterMapOptions{}.last);
    form->addRow(qt(texts.finder.addresses()), rangeRow(mapFirst_, mapLast_));
    auto* tables = new QWidget;
    auto* tablesLayout = new QHBoxLayout(tables);
    tablesLayout->setContentsMargins(0, 0, 0, 0);
    for (std::size_t index = 0; index < mapOrder.size(); ++index) {
        mapTables_[index] = new QCheckBox(qt(L10n::Table::tableName(mapOrder[index])));
        mapTables_[index]->setChecked(true);
        connect(mapTables_[index], &QCheckBox::toggled, this, &FindDevicesDialog::refresh);
        tablesLayout->addWidget(mapTables_[index]);
    }
    form->addRow(qt(texts.finder.tables()), tables);
    return widget;
}

QWidget* FindDevicesDialog::buttonRow() {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    progress_ = new QProgressBar;
    progress_->setObjectName(QStringLiteral("finderProgress"));
    progress_->setTextVisible(false);
    progressText_ = new QLabel;
    progressText_->setObjectName(QStringLiteral("finderProgressText"));
    FaintText::fade(*progressText_);
    start_ = new QPushButton(qt(L10n::texts().header.start()));
    start_->setObjectName(QStringLiteral("finderStart"));
    start_->setDefault(true);
    connect(start_, &QPushButton::clicked, this, &FindDevicesDialog::startOrCancel);
    auto* progressColumn = new QVBoxLayout;
    progressColumn->addWidget(progress_);
    progressColumn->addWidget(progressText_);
    layout->addLayout(progressColumn, 1);
    layout->addWidget(start_, 0, Qt::AlignTop);
    return row;
}

void FindDevicesDialog::connectFinder() {
    connect(&finder_, &DeviceFinder::runningChanged, this, &FindDevicesDialog::refresh);
    connect(&finder_, &DeviceFinder::progressChanged, this, &FindDevicesDialog::showProgress);
    connect(&finder_, &DeviceFinder::findingsChanged, this, &FindDevicesDialog::showFindings);
    connect(results_, &QTableWidget::itemSelectionChanged, this, &FindDevicesDialog::chooseUnit);
    connect(scans_, &QTabWidget::currentChanged, this, &FindDevicesDialog::refresh);
    for (auto signal : {&PollerModel::stateChanged, &PollerModel::selectedPathChanged,
                        &PollerModel::pollsChanged, &PollerModel::selectedPollIDChanged}) {
        connect(&model_, signal, this, &FindDevicesDialog::refresh);
    }
}

bool FindDevicesDialog::startScan() {
    switch (scans_->currentIndex()) {
    case 0:
        return finder_.findUnits(unitsFirst_->value(), unitsLast_->value(),
                                 timeout_->value() / 1000.0);
    case 1: {
        std::vector<std::uint8_t> units;
        for (int unit = sweepFirst_->value(); unit <= sweepLast_->value(); ++unit) {
            units.push_back(static_cast<std::uint8_t>(unit));
        }
        return finder_.sweepSettings(units);
    }
    default:
        break;
    }
    RegisterMapOptions options{.unit = static_cast<std::uint8_t>(mapUnit_->value()),
                               .first = mapFirst_->value(),
                               .last = mapLast_->value()};
    options.tables.clear();
    for (std::size_t index = 0; index < mapOrder.size(); ++index) {
        if (mapTables_[index]->isChecked()) {
            options.tables.push_back(mapOrder[index]);
        }
    }
    return finder_.mapRegisters(options);
}

void FindDevicesDialog::startOrCancel() {
    if (finder_.isRunning()) {
        finder_.cancel();
        return;
    }
    progressText_->clear();
    // A scan that starts drops the last findings, which empties the table.
    startScan();
}

void FindDevicesDialog::refresh() {
    const auto& texts = L10n::texts();
    const bool running = finder_.isRunning();
    const bool reading = model_.state() != PollerState::stopped;
    const bool tablesChosen = std::ranges::any_of(mapTables_, &QCheckBox::isChecked);
    const QString lockedTip = qt(PollerCommands::of(model_).lockedTip());
    scans_->setEnabled(!running && !reading);
    scans_->setToolTip(lockedTip);
    locked_->setVisible(reading);
    start_->setText(qt(running ? texts.import.cancel() : texts.header.start()));
    start_->setEnabled(running ||
                       (finder_.canScan() && (scans_->currentIndex() != 2 || tablesChosen)));
    start_->setToolTip(reading                         ? lockedTip
                       : model_.selectedPath().empty() ? qt(texts.header.startNeedsPort())
                                                       : QString());
    progress_->setVisible(running);
    addToPoll_->setEnabled(!running && finder_.canAddToPoll());
    useSettings_->setEnabled(!running && finder_.canUseSettings());
}

void FindDevicesDialog::showProgress() {
    const auto& progress = finder_.progress();
    if (!progress) {
        progress_->setRange(0, 0);
        progressText_->clear();
        return;
    }
    // Rounded up, so that it reaches 0 only at the end.
    const auto seconds = static_cast<int>(std::ceil(progress->remainingSeconds));
    const auto& scan = L10n::texts().scan;
    if (progress->total == 0) {
        progress_->setRange(0, 0);
        progressText_->setText(qt(scan.mapProgress(progress->done, seconds)));
        return;
    }
    progress_->setRange(0, progress->total);
    progress_->setValue(progress->done);
    // Refilled only when a unit was found; the fill keeps the unit chosen meanwhile.
    if (results_->rowCount() != static_cast<int>(progress->units.size())) {
        DeviceFinder::Findings soFar;
        soFar.units = progress->units;
        FinderResults::fill(*results_, soFar);
    }
    // The page of the running scan stays the current one: the pages are locked meanwhile.
    progressText_->setText(qt(scans_->currentIndex() == 0
                                  ? scan.unitProgress(progress->done, progress->total, seconds)
                                  : scan.sweepProgress(progress->done, progress->total, seconds)));
}

void FindDevicesDialog::showFindings() {
    progressText_->clear();
    if (const auto& findings = finder_.findings()) {
        FinderResults::fill(*results_, *findings);
        summary_->setText(FinderResults::summary(*findings));
    } else {
        DeviceFinder::Findings none;
        none.scan = static_cast<DeviceFinder::Scan>(scans_->currentIndex());
        FinderResults::fill(*results_, none);
        summary_->clear();
    }
    refresh();
}

void FindDevicesDialog::chooseUnit() {
    if (const std::optional<int> unit = FinderResults::chosenUnit(*results_)) {
        sweepFirst_->setValue(*unit);
        sweepLast_->setValue(*unit);
        mapUnit_->setValue(*unit);
    }
}

void FindDevicesDialog::addToPoll() {
    if (const std::optional<int> added = finder_.addToPoll()) {
        summary_->setText(qt(L10n::texts().finder.added(*added)));
    }
    refresh();
}

void FindDevicesDialog::useSettings() {
    const auto& texts = L10n::texts();
    const int timeoutMs = model_.timeoutMs();
    if (!finder_.useSettings()) {
        refresh();
        return;
    }
    QString said = qt(texts.finder.settingsUsed(model_.serial().shortDescription()));
    if (model_.timeoutMs() != timeoutMs) {
        said += QStringLiteral(" ") + qt(texts.bus.timeoutSet(model_.timeoutMs())) +
                QStringLiteral(".");
    }
    summary_->setText(said);
}

void FindDevicesDialog::reject() {
    finder_.cancel();
    QDialog::reject();
}

} // namespace kestrin
