#pragma once

#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>

class QAction;
class QSplitter;

namespace kestrin {

class BottomPane;
class DatapointPanel;
class PollerModel;
class PollTabBar;
class TopBar;

// The main window: the top bar, the poll tabs and table above the bottom pane, the menus with
// every command, and the alert for the model's errors.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(PollerModel& model, QWidget* parent = nullptr);

    TopBar* topBar() const { return topBar_; }
    PollTabBar* pollTabBar() const { return tabs_; }
    DatapointPanel* datapointPanel() const { return table_; }
    BottomPane* bottomPane() const { return bottom_; }
    QSplitter* splitter() const { return splitter_; }
    QAction* startStopAction() const { return startStop_; }
    QAction* listenAction() const { return listen_; }
    // The alert open for errorMessage, if any.
    QMessageBox* errorAlert() const { return alert_; }

public slots:
    // Asks before a project with datapoints is replaced by an empty one.
    void newProject();
    void openProject();
    // True once the project is written to the chosen file.
    bool saveProjectAs();
    void showHelp();

private:
    static QStringList projectFilters();
    bool hasDatapoints() const;
    void buildMenus();
    void buildPollerMenu();
    void refreshState();
    void refreshLogOptions();
    void showError();

    PollerModel& model_;
    TopBar* topBar_;
    PollTabBar* tabs_;
    DatapointPanel* table_;
    BottomPane* bottom_;
    QSplitter* splitter_;
    QAction* startStop_ = nullptr;
    QAction* listen_ = nullptr;
    QAction* autoscroll_ = nullptr;
    QAction* timestamps_ = nullptr;
    QAction* rawFrames_ = nullptr;
    QAction* onlyProblems_ = nullptr;
    QPointer<QMessageBox> alert_;
};

} // namespace kestrin
