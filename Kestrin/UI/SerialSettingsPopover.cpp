#include "SerialSettingsPopover.h"

#include "FaintText.h"
#include "L10n.h"
#include "Parity.h"
#include "PollerCommands.h"
#include "PollerModel.h"
#include "QtText.h"
#include "WriteMode.h"

#include <array>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

namespace kestrin {

namespace {

constexpr std::array timeouts{100, 200, 500, 1000, 2000, 5000};
constexpr std::array gaps{0, 4, 8, 16, 32};

QComboBox* picker(const char* name, QWidget* parent) {
    auto* combo = new QComboBox(parent);
    combo->setObjectName(QString::fromLatin1(name));
    // As wide as the longest choice: "Adresses contiguës uniquement" must not lose its end.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return combo;
}

// Labels keep their whole text and the pickers take the rest of the row.
QFormLayout* form() {
    auto* layout = new QFormLayout;
    layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->setRowWrapPolicy(QFormLayout::DontWrapRows);
    return layout;
}

// Selects the entry carrying value; a value the list does not offer is shown as it stands.
void select(QComboBox* combo, int value, const QString& textIfMissing) {
    const QSignalBlocker blocker(combo);
    int index = combo->findData(value);
    if (index < 0) {
        combo->addItem(textIfMissing, value);
        index = combo->count() - 1;
    }
    combo->setCurrentIndex(index);
}

QSpinBox* delayField(const char* name, QWidget* parent) {
    auto* field = new QSpinBox(parent);
    field->setObjectName(QString::fromLatin1(name));
    field->setRange(0, RS485Direction::longestDelayMs);
    field->setSuffix(QStringLiteral(" ms"));
    // One change when the typing is done, not one per digit.
    field->setKeyboardTracking(false);
    return field;
}

QLabel* sectionTitle(const std::string& text, QWidget* parent) {
    auto* label = new QLabel(qt(text), parent);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

} // namespace

SerialSettingsPopover::SerialSettingsPopover(PollerModel& model, QWidget* parent)
    : Popover(parent)
    , model_(model)
    , dataBits_(picker("dataBitsPicker", this))
    , parity_(picker("parityPicker", this))
    , stopBits_(picker("stopBitsPicker", this))
    , modbusDefault_(new QPushButton(qt(L10n::texts().settings.modbusDefault()), this))
    , timeout_(picker("timeoutPicker", this))
    , gap_(picker("gapPicker", this))
    , writeMode_(picker("writeModePicker", this))
    , rs485_(new QCheckBox(qt(L10n::texts().settings.rs485()), this))
    , rtsLevel_(picker("rtsLevelPicker", this))
    , delayBefore_(delayField("delayBeforeField", this))
    , delayAfter_(delayField("delayAfterField", this)) {
    setObjectName(QStringLiteral("serialSettings"));
    // At least the width the popover was drawn for; wider where a language needs it.
    setMinimumWidth(400);
    modbusDefault_->setObjectName(QStringLiteral("modbusDefaultButton"));
    addChoices();
    layOutSections();
    addRS485Section();
    connectPickers();
    connectRS485();
    connectModel();
    refresh();
}

void SerialSettingsPopover::addChoices() {
    for (const int bits : {8, 7}) {
        dataBits_->addItem(QString::number(bits), bits);
    }
    parity_->addItem(qt(L10n::texts().settings.parityNone()), int(Parity::none));
    parity_->addItem(qt(L10n::texts().settings.parityEven()), int(Parity::even));
    parity_->addItem(qt(L10n::texts().settings.parityOdd()), int(Parity::odd));
    for (const int bits : {1, 2}) {
        stopBits_->addItem(QString::number(bits), bits);
    }
    for (const int ms : timeouts) {
        timeout_->addItem(qt(L10n::Settings::timeoutLabel(ms)), ms);
    }
    for (const int gap : gaps) {
        gap_->addItem(qt(L10n::Settings::gapLabel(gap)), gap);
    }
    writeMode_->addItem(qt(L10n::texts().settings.writeSingle()), int(WriteMode::single));
    writeMode_->addItem(qt(L10n::texts().settings.writeMultiple()), int(WriteMode::multiple));
}

void SerialSettingsPopover::layOutSections() {
    auto* frame = form();
    frame->addRow(qt(L10n::texts().settings.dataBits()), dataBits_);
    frame->addRow(qt(L10n::texts().settings.parity()), parity_);
    frame->addRow(qt(L10n::texts().settings.stopBits()), stopBits_);
    frame->addRow(QString(), modbusDefault_);
    auto* requests = form();
    requests->addRow(qt(L10n::texts().settings.responseTimeout()), timeout_);
    requests->addRow(qt(L10n::texts().settings.combine()), gap_);
    requests->addRow(qt(L10n::texts().settings.writeMode()), writeMode_);
    timeout_->setToolTip(qt(L10n::texts().settings.timeoutHelp()));
    gap_->setToolTip(qt(L10n::texts().settings.combineHelp()));
    writeMode_->setToolTip(qt(L10n::texts().settings.writeModeHelp()));

    contentLayout()->addWidget(sectionTitle(L10n::texts().settings.frame(), this));
    contentLayout()->addLayout(frame);
    contentLayout()->addWidget(FaintText::note(qt(L10n::texts().settings.standardNote()), this));
    contentLayout()->addSpacing(6);
    contentLayout()->addWidget(sectionTitle(L10n::texts().settings.requests(), this));
    contentLayout()->addLayout(requests);
}

void SerialSettingsPopover::connectPickers() {
    const auto changeSerial = [this](auto change) {
        SerialConfiguration serial = model_.serial();
        change(serial);
        model_.setSerial(serial);
    };
    connect(dataBits_, &QComboBox::activated, this, [this, changeSerial](int index) {
        changeSerial(
            [&](SerialConfiguration& s) { s.dataBits = dataBits_->itemData(index).toInt(); });
    });
    connect(parity_, &QComboBox::activated, this, [this, changeSerial](int index) {
        changeSerial([&](SerialConfiguration& s) {
            s.parity = Parity::allCases.at(parity_->itemData(index).toUInt());
        });
    });
    connect(stopBits_, &QComboBox::activated, this, [this, changeSerial](int index) {
        changeSerial(
            [&](SerialConfiguration& s) { s.stopBits = stopBits_->itemData(index).toInt(); });
    });
    // Three separate changes, as if the user had picked each value.
    connect(modbusDefault_, &QPushButton::clicked, this, [changeSerial] {
        changeSerial([](SerialConfiguration& s) { s.dataBits = 8; });
        changeSerial([](SerialConfiguration& s) { s.parity = Parity::even; });
        changeSerial([](SerialConfiguration& s) { s.stopBits = 1; });
    });
    connect(timeout_, &QComboBox::activated, this,
            [this](int index) { model_.setTimeoutMs(timeout_->itemData(index).toInt()); });
    connect(gap_, &QComboBox::activated, this,
            [this](int index) { model_.setMaxGap(gap_->itemData(index).toInt()); });
    connect(writeMode_, &QComboBox::activated, this, [this](int index) {
        model_.setWriteMode(WriteMode::allCases.at(writeMode_->itemData(index).toUInt()));
    });
}

void SerialSettingsPopover::addRS485Section() {
    rs485_->setObjectName(QStringLiteral("rs485Switch"));
    QFont font = rs485_->font();
    font.setBold(true);
    rs485_->setFont(font);
    rtsLevel_->addItem(qt(L10n::texts().settings.rtsHigh()), 1);
    rtsLevel_->addItem(qt(L10n::texts().settings.rtsLow()), 0);
    auto* direction = form();
    direction->addRow(qt(L10n::texts().settings.rtsWhileSending()), rtsLevel_);
    direction->addRow(qt(L10n::texts().settings.delayBeforeSend()), delayBefore_);
    direction->addRow(qt(L10n::texts().settings.delayAfterSend()), delayAfter_);

    contentLayout()->addSpacing(6);
    contentLayout()->addWidget(rs485_);
    contentLayout()->addLayout(direction);
    contentLayout()->addWidget(FaintText::note(qt(L10n::texts().settings.rs485Help()), this));
}

RS485Direction SerialSettingsPopover::rs485FromFields() const {
    return {rtsLevel_->currentData().toInt() == 1, delayBefore_->value(), delayAfter_->value()};
}

// Switched off the direction is gone from the settings; switched on again it takes what the
// fields still show.
void SerialSettingsPopover::connectRS485() {
    const auto changeDirection = [this] {
        SerialConfiguration serial = model_.serial();
        serial.rs485 = rs485_->isChecked() ? std::optional(rs485FromFields()) : std::nullopt;
        model_.setSerial(serial);
    };
    connect(rs485_, &QCheckBox::clicked, this, changeDirection);
    connect(rtsLevel_, &QComboBox::activated, this, changeDirection);
    connect(delayBefore_, &QSpinBox::valueChanged, this, changeDirection);
    connect(delayAfter_, &QSpinBox::valueChanged, this, changeDirection);
}

void SerialSettingsPopover::refreshRS485(bool locked) {
    const std::optional<RS485Direction>& direction = model_.serial().rs485;
    {
        const QSignalBlocker blockSwitch(rs485_);
        const QSignalBlocker blockBefore(delayBefore_);
        const QSignalBlocker blockAfter(delayAfter_);
        rs485_->setChecked(direction.has_value());
        if (direction) {
            delayBefore_->setValue(direction->delayBeforeSendMs);
            delayAfter_->setValue(direction->delayAfterSendMs);
        }
    }
    if (direction) {
        select(rtsLevel_, direction->rtsHighWhileSending ? 1 : 0, QString());
    }
    const QString lockedTip = qt(PollerCommands::of(model_).lockedTip());
    rs485_->setEnabled(!locked);
    rs485_->setToolTip(lockedTip);
    for (QWidget* field : std::initializer_list<QWidget*>{rtsLevel_, delayBefore_, delayAfter_}) {
        field->setEnabled(!locked && direction.has_value());
        field->setToolTip(lockedTip);
    }
}

void SerialSettingsPopover::connectModel() {
    connect(&model_, &PollerModel::serialChanged, this, &SerialSettingsPopover::refresh);
    connect(&model_, &PollerModel::timeoutMsChanged, this, &SerialSettingsPopover::refresh);
    connect(&model_, &PollerModel::maxGapChanged, this, &SerialSettingsPopover::refresh);
    connect(&model_, &PollerModel::writeModeChanged, this, &SerialSettingsPopover::refresh);
    connect(&model_, &PollerModel::stateChanged, this, &SerialSettingsPopover::refresh);
}

void SerialSettingsPopover::refresh() {
    const SerialConfiguration& serial = model_.serial();
    select(dataBits_, serial.dataBits, QString::number(serial.dataBits));
    select(parity_, int(serial.parity), QString(QChar::fromLatin1(serial.parity.letter())));
    select(stopBits_, serial.stopBits, QString::number(serial.stopBits));
    select(timeout_, model_.timeoutMs(), qt(L10n::Settings::timeoutLabel(model_.timeoutMs())));
    select(gap_, model_.maxGap(), qt(L10n::Settings::gapLabel(model_.maxGap())));
    select(writeMode_, int(model_.writeMode()), QString());

    const bool locked = model_.state() != PollerState::stopped;
    const QString lockedTip = qt(PollerCommands::of(model_).lockedTip());
    for (QWidget* control : std::initializer_list<QWidget*>{
             dataBits_, parity_, stopBits_, modbusDefault_, timeout_, gap_, writeMode_}) {
        control->setEnabled(!locked);
    }
    setToolTip(lockedTip);
    timeout_->setToolTip(locked ? lockedTip : qt(L10n::texts().settings.timeoutHelp()));
    gap_->setToolTip(locked ? lockedTip : qt(L10n::texts().settings.combineHelp()));
    writeMode_->setToolTip(locked ? lockedTip : qt(L10n::texts().settings.writeModeHelp()));
    for (QWidget* control :
         std::initializer_list<QWidget*>{dataBits_, parity_, stopBits_, modbusDefault_}) {
        control->setToolTip(lockedTip);
    }
    refreshRS485(locked);
}

} // namespace kestrin
