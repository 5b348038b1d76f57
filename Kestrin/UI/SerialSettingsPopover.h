#pragma once

#include "Popover.h"
#include "SerialConfiguration.h"

class QCheckBox;
class QComboBox;
class QPushButton;
class QSpinBox;

namespace kestrin {

class PollerModel;

// The frame and request settings: data bits, parity, stop bits, the Modbus default, the
// response time-out, read combining, the write method and the RS-485 direction of a board's
// UART. Locked while reading.
class SerialSettingsPopover : public Popover {
    Q_OBJECT

public:
    explicit SerialSettingsPopover(PollerModel& model, QWidget* parent = nullptr);

private:
    void addChoices();
    void layOutSections();
    // The user's picks become the model's settings.
    void connectPickers();
    // The model's settings and reading state show in the pickers.
    void connectModel();
    void refresh();
    void addRS485Section();
    void connectRS485();
    void refreshRS485(bool locked);
    // The direction the RS-485 fields describe.
    RS485Direction rs485FromFields() const;

    PollerModel& model_;
    QComboBox* dataBits_;
    QComboBox* parity_;
    QComboBox* stopBits_;
    QPushButton* modbusDefault_;
    QComboBox* timeout_;
    QComboBox* gap_;
    QComboBox* writeMode_;
    QCheckBox* rs485_;
    QComboBox* rtsLevel_;
    QSpinBox* delayBefore_;
    QSpinBox* delayAfter_;
};

} // namespace kestrin
