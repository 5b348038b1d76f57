#pragma once

#include "DeviceFinder.h"

#include <array>

#include <QDialog>

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTabWidget;
class QTableWidget;

namespace kestrin {

class PollerModel;

// Finds what is on the line of the chosen port: which units answer, at which settings a silent
// unit answers, which addresses a unit has; and takes what it found over into the project.
// Window-modal, so reading cannot start behind it; while reading runs its scans are locked.
// Closing it cancels a running scan; its findings stay for the next time it is opened, as long as
// the port and the poll stay the same.
class FindDevicesDialog : public QDialog {
    Q_OBJECT

public:
    FindDevicesDialog(PollerModel& model, QWidget* parent = nullptr);

    // The window's one dialog, made on first use, opened window-modal.
    static FindDevicesDialog* openFor(QWidget& window, PollerModel& model);

    DeviceFinder& finder() noexcept { return finder_; }

public slots:
    void reject() override;

private:
    QWidget* unitsPage();
    QWidget* settingsPage();
    QWidget* registersPage();
    QWidget* buttonRow();
    void connectFinder();
    bool startScan();
    void startOrCancel();
    void refresh();
    void showProgress();
    void showFindings();
    void chooseUnit();
    void addToPoll();
    void useSettings();

    PollerModel& model_;
    DeviceFinder finder_;
    QTabWidget* scans_ = nullptr;
    QSpinBox* unitsFirst_ = nullptr;
    QSpinBox* unitsLast_ = nullptr;
    QSpinBox* timeout_ = nullptr;
    // The units scan's time-out that suits the line's speed, as last offered.
    int suggestedTimeoutMs_ = 0;
    QSpinBox* sweepFirst_ = nullptr;
    QSpinBox* sweepLast_ = nullptr;
    QSpinBox* mapUnit_ = nullptr;
    QSpinBox* mapFirst_ = nullptr;
    QSpinBox* mapLast_ = nullptr;
    std::array<QCheckBox*, 4> mapTables_{};
    QLabel* locked_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QLabel* progressText_ = nullptr;
    QPushButton* start_ = nullptr;
    QTableWidget* results_ = nullptr;
    QLabel* summary_ = nullptr;
    QPushButton* addToPoll_ = nullptr;
    QPushButton* useSettings_ = nullptr;
};

} // namespace kestrin
