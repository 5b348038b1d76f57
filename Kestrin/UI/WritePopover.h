#pragma once

#include "Datapoint.h"
#include "Popover.h"

#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace kestrin {

class PollerModel;

// The editor of a new value for one coil or holding register: Off and On for a bit, otherwise a
// text field checked against the datapoint's type and scale before anything reaches the model.
// It closes once a value has been handed to the model; the outcome arrives through the model.
class WritePopover : public Popover {
    Q_OBJECT

public:
    WritePopover(PollerModel& model, Datapoint point, std::optional<Value> current,
                 QWidget* parent = nullptr);

    bool isInvalid() const noexcept { return invalid_; }

public slots:
    // Parses the typed text; writes and closes when it fits, else says why and stays open.
    void commit();

private:
    void write(const Value& value);
    void setInvalid(bool invalid);
    void showWriteError();

    PollerModel& model_;
    Datapoint point_;
    bool invalid_ = false;
    QLineEdit* field_ = nullptr;
    QLabel* message_ = nullptr;
    QLabel* writeError_ = nullptr;
};

} // namespace kestrin
