#pragma once

#include "Popover.h"

class QComboBox;
class QPushButton;

namespace kestrin {

class PollerModel;

// The frame and request settings: data bits, parity, stop bits, the Modbus default, the
// response time-out, read combining and the write method. Locked while reading.
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

    PollerModel& model_;
    QComboBox* dataBits_;
    QComboBox* parity_;
    QComboBox* stopBits_;
    QPushButton* modbusDefault_;
    QComboBox* timeout_;
    QComboBox* gap_;
    QComboBox* writeMode_;
};

} // namespace kestrin
