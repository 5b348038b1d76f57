#include "MainWindow.h"

#include "BottomPane.h"
#include "DatapointPanel.h"
#include "FileDialogs.h"
#include "FindDevicesDialog.h"
#include "HelpWindow.h"
#include "Icons.h"
#include "L10n.h"
#include "MessageBoxes.h"
#include "PollTabBar.h"
#include "PollerCommands.h"
#include "PollerModel.h"
#include "QtText.h"
#include "StatusDot.h"
#include "TopBar.h"

#include <algorithm>

#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace kestrin {

namespace {

constexpr int tableMinimumHeight = 200;
constexpr int tableIdealHeight = 380;
constexpr int paneMinimumHeight = 140;
constexpr int paneIdealHeight = 240;

QAction* command(QMenu* menu, const std::string& text, const QKeySequence& shortcut = {}) {
    QAction* action = menu->addAction(qt(text));
    action->setShortcut(shortcut);
    return action;
}

QAction* toggle(QMenu* menu, const std::string& text) {
    QAction* action = menu->addAction(qt(text));
    action->setCheckable(true);
    return action;
}

} // namespace

MainWindow::MainWindow(PollerModel& model, QWidget* parent)
    : QMainWindow(parent)
    , model_(model)
    , topBar_(new TopBar(model))
    , tabs_(new PollTabBar(model))
    , table_(new DatapointPanel(model))
    , bottom_(new BottomPane(model))
    , splitter_(new QSplitter(Qt::Vertical)) {
    setObjectName(QStringLiteral("mainWindow"));
    setWindowIcon(Icons::application());
    resize(1180, 760);
    setMinimumSize(900, 560);

    auto* tableArea = new QWidget;
    tableArea->setObjectName(QStringLiteral("tableArea"));
    tableArea->setMinimumHeight(tableMinimumHeight);
    auto* tableLayout = new QVBoxLayout(tableArea);
    tableLayout->setContentsMargins(0, 0, 0, 0);
    tableLayout->setSpacing(0);
    tableLayout->addWidget(tabs_);
    tableLayout->addWidget(table_, 1);
    bottom_->setMinimumHeight(paneMinimumHeight);
    splitter_->setObjectName(QStringLiteral("mainSplitter"));
    splitter_->addWidget(tableArea);
    splitter_->addWidget(bottom_);
    splitter_->setChildrenCollapsible(false);
    splitter_->setStretchFactor(0, tableIdealHeight);
    splitter_->setStretchFactor(1, paneIdealHeight);
    splitter_->setSizes({tableIdealHeight, paneIdealHeight});

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(topBar_);
    layout->addWidget(splitter_, 1);
    setCentralWidget(content);

    buildMenus();
    connect(&model_, &PollerModel::stateChanged, this, &MainWindow::refreshState);
    connect(&model_, &PollerModel::selectedPathChanged, this, &MainWindow::refreshState);
    connect(&model_, &PollerModel::portListChanged, this, &MainWindow::refreshState);
    connect(&model_, &PollerModel::pollsChanged, this, &MainWindow::refreshState);
    connect(&model_, &PollerModel::logOptionsChanged, this, &MainWindow::refreshLogOptions);
    connect(&model_, &PollerModel::errorMessageChanged, this, &MainWindow::showError);
    refreshState();
    refreshLogOptions();
    showError();
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(qt(L10n::texts().menu.file()));
    file->setObjectName(QStringLiteral("fileMenu"));
    connect(command(file, L10n::texts().menu.newProject(), QKeySequence(Qt::CTRL | Qt::Key_N)),
            &QAction::triggered, this, &MainWindow::newProject);
    connect(command(file, L10n::texts().menu.openProject(), QKeySequence(Qt::CTRL | Qt::Key_O)),
            &QAction::triggered, this, &MainWindow::openProject);
    connect(command(file, L10n::texts().menu.saveProject(),
                    QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_S)),
            &QAction::triggered, this, &MainWindow::saveProjectAs);
    connect(command(file, L10n::texts().menu.saveLog(), QKeySequence(Qt::CTRL | Qt::Key_S)),
            &QAction::triggered, bottom_, &BottomPane::saveLog);
    file->addSeparator();
    connect(command(file, L10n::texts().menu.importCSV(),
                    QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_I)),
            &QAction::triggered, table_, &DatapointPanel::importCSV);
    connect(command(file, L10n::texts().menu.exportCSV(),
                    QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_E)),
            &QAction::triggered, table_, &DatapointPanel::exportCSV);
    file->addSeparator();
    QAction* quit = command(file, L10n::texts().menu.quit(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setObjectName(QStringLiteral("quitAction"));
    // Closing every window ends the program the way closing the main window does, with the
    // autosave written on the way out.
    connect(quit, &QAction::triggered, qApp, &QApplication::closeAllWindows);

    buildPollerMenu();

    QMenu* help = menuBar()->addMenu(qt(L10n::texts().menu.help()));
    help->setObjectName(QStringLiteral("helpMenu"));
    QAction* showHelp = command(help, L10n::texts().help.windowTitle(), QKeySequence(Qt::Key_F1));
    showHelp->setIcon(Icons::symbol(Symbol::book));
    connect(showHelp, &QAction::triggered, this, &MainWindow::showHelp);
}

void MainWindow::buildPollerMenu() {
    QMenu* poller = menuBar()->addMenu(qt(L10n::Menu::poller()));
    poller->setObjectName(QStringLiteral("pollerMenu"));
    startStop_ = command(poller, L10n::texts().header.start(), QKeySequence(Qt::CTRL | Qt::Key_R));
    startStop_->setObjectName(QStringLiteral("startStopAction"));
    connect(startStop_, &QAction::triggered, &model_, &PollerModel::toggle);
    listen_ = command(poller, L10n::texts().header.listen(), QKeySequence(Qt::CTRL | Qt::Key_L));
    listen_->setObjectName(QStringLiteral("listenAction"));
    connect(listen_, &QAction::triggered, &model_, &PollerModel::toggleListening);
    poller->addSeparator();
    connect(command(poller, L10n::texts().polls.add(), QKeySequence(Qt::CTRL | Qt::Key_T)),
            &QAction::triggered, &model_, &PollerModel::addPoll);
    connect(
        command(poller, L10n::texts().table.add(), QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_D)),
        &QAction::triggered, table_, &DatapointPanel::addDatapoint);
    connect(command(poller, L10n::texts().finder.menuItem()), &QAction::triggered, this,
            [this] { FindDevicesDialog::openFor(*this, model_); });
    poller->addSeparator();
    connect(command(poller, L10n::texts().pane.exportHistory()), &QAction::triggered, bottom_,
            &BottomPane::exportHistory);
    connect(command(poller, L10n::texts().menu.clearLog(), QKeySequence(Qt::CTRL | Qt::Key_K)),
            &QAction::triggered, bottom_, &BottomPane::clearLog);
    autoscroll_ = toggle(poller, L10n::texts().footer.autoscroll());
    timestamps_ = toggle(poller, L10n::texts().footer.timestamps());
    rawFrames_ = toggle(poller, L10n::texts().footer.rawFrames());
    onlyProblems_ = toggle(poller, L10n::texts().footer.onlyProblems());
    connect(autoscroll_, &QAction::toggled, &model_, &PollerModel::setAutoscroll);
    connect(timestamps_, &QAction::toggled, &model_, &PollerModel::setShowTimestamps);
    connect(rawFrames_, &QAction::toggled, &model_, &PollerModel::setShowRawFrames);
    connect(onlyProblems_, &QAction::toggled, &model_, &PollerModel::setLogOnlyProblems);
}

void MainWindow::refreshState() {
    const PollerCommands commands = PollerCommands::of(model_);
    const auto& header = L10n::texts().header;
    setWindowTitle(qt(L10n::appName()) + QStringLiteral(" — ") + StatusDot::text(model_.state()));
    startStop_->setText(qt(commands.reading ? header.stop() : header.start()));
    startStop_->setIcon(Icons::symbol(commands.reading ? Symbol::stop : Symbol::play));
    startStop_->setEnabled(commands.startEnabled);
    listen_->setText(qt(commands.listening ? header.stopListening() : header.listen()));
    listen_->setEnabled(commands.listenEnabled);
}

void MainWindow::refreshLogOptions() {
    const auto set = [](QAction* action, bool on) {
        const QSignalBlocker blocker(action);
        action->setChecked(on);
    };
    set(autoscroll_, model_.autoscroll());
    set(timestamps_, model_.showTimestamps());
    set(rawFrames_, model_.showRawFrames());
    set(onlyProblems_, model_.logOnlyProblems());
}

void MainWindow::showError() {
    const auto& message = model_.errorMessage();
    if (!message) {
        if (alert_ != nullptr) {
            alert_->close();
        }
        return;
    }
    if (alert_ != nullptr && alert_->isVisible()) {
        alert_->setText(qt(*message));
        return;
    }
    alert_ = new QMessageBox(QMessageBox::Warning, qt(L10n::texts().errors.alertTitle()),
                             qt(*message), QMessageBox::NoButton, this);
    alert_->setObjectName(QStringLiteral("errorAlert"));
    alert_->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* ok = alert_->addButton(qt(L10n::Errors::ok()), QMessageBox::AcceptRole);
    ok->setObjectName(QStringLiteral("errorAlertOK"));
    alert_->setDefaultButton(ok);
    // Closing the alert, however it is closed, clears the message it shows.
    connect(alert_, &QMessageBox::finished, this, [this] {
        if (model_.errorMessage()) {
            model_.setErrorMessage(std::nullopt);
        }
    });
    alert_->open();
}

bool MainWindow::hasDatapoints() const {
    return std::any_of(model_.polls().begin(), model_.polls().end(),
                       [](const Poll& poll) { return !poll.datapoints.empty(); });
}

void MainWindow::newProject() {
    // The autosave would overwrite the only copy of the list a second later: ask first.
    if (hasDatapoints()) {
        QMessageBox question(QMessageBox::Warning, qt(L10n::texts().menu.newProject()),
                             qt(L10n::texts().menu.replaceProjectTitle()), QMessageBox::NoButton,
                             this);
        question.setObjectName(QStringLiteral("replaceProjectQuestion"));
        question.setInformativeText(qt(L10n::texts().menu.replaceProjectMessage()));
        QPushButton* save =
            question.addButton(qt(L10n::texts().menu.saveProject()), QMessageBox::AcceptRole);
        QPushButton* replace =
            question.addButton(qt(L10n::texts().import.replace()), QMessageBox::DestructiveRole);
        QPushButton* cancel =
            question.addButton(qt(L10n::texts().import.cancel()), QMessageBox::RejectRole);
        question.setDefaultButton(save);
        question.setEscapeButton(cancel);
        MessageBoxes::fitTitle(question);
        question.exec();
        const bool replaced = question.clickedButton() == replace ||
                              (question.clickedButton() == save && saveProjectAs());
        if (!replaced) {
            return;
        }
    }
    model_.newProject();
}

QStringList MainWindow::projectFilters() {
    return {FileDialogs::filter(L10n::texts().menu.projectFiles(), QStringLiteral("*.json")),
            FileDialogs::filter(L10n::texts().menu.allFiles(), QStringLiteral("*"))};
}

void MainWindow::openProject() {
    const QString path =
        FileDialogs::openFile(this, qt(L10n::texts().menu.openProject()), projectFilters());
    if (!path.isEmpty()) {
        model_.openProject(path);
    }
}

bool MainWindow::saveProjectAs() {
    const QString path = FileDialogs::saveFile(this, qt(L10n::texts().menu.saveProject()),
                                               QStringLiteral("kestrin.json"), projectFilters());
    if (path.isEmpty()) {
        return false;
    }
    model_.saveProjectAs(path);
    return !model_.errorMessage().has_value();
}

void MainWindow::showHelp() {
    HelpWindow::showSingle(this);
}

} // namespace kestrin
