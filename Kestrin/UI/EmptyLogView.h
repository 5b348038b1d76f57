#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace kestrin {

class PollerModel;

// What the log area shows before the first line: how to begin, or that no adapter is plugged
// in, with a start button when reading can start. Drops its symbol when the height is short.
class EmptyLogView : public QWidget {
    Q_OBJECT

public:
    static constexpr int maximumMessageWidth = 480;

    explicit EmptyLogView(PollerModel& model, QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void chooseLayout();

    PollerModel& model_;
    QLabel* symbol_;
    QLabel* title_;
    QLabel* message_;
    QPushButton* start_;
};

} // namespace kestrin
