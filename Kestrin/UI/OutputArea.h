#pragma once

#include <QWidget>

namespace kestrin {

class EmptyLogView;
class LogFindBar;
class LogView;
class NoticeOverlays;
class PollerModel;

// The log page of the bottom pane: the find bar above the log, and over the log the welcome view
// while it is empty and the notices along its top.
class OutputArea : public QWidget {
    Q_OBJECT

public:
    explicit OutputArea(PollerModel& model, QWidget* parent = nullptr);

    LogView* logView() const { return log_; }
    LogFindBar* findBar() const { return findBar_; }

    void showFindBar();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void placeOverlays();

    PollerModel& model_;
    LogFindBar* findBar_;
    LogView* log_;
    EmptyLogView* empty_;
    NoticeOverlays* notices_;
};

} // namespace kestrin
