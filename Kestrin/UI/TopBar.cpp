#include "TopBar.h"

#include "ElidedLine.h"
#include "Icons.h"
#include "L10n.h"
#include "LogPalette.h"
#include "PollerCommands.h"
#include "QtText.h"
#include "SerialSettingsPopover.h"
#include "StatusDot.h"

#include <algorithm>

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>

namespace kestrin {

namespace {

// Why reading or listening cannot begin; empty when it can.
QString obstacleText(std::optional<PollerModel::StartObstacle> obstacle) {
    if (!obstacle) {
        return {};
    }
    switch (*obstacle) {
    case PollerModel::StartObstacle::noPort:
        return qt(L10n::texts().header.startNeedsPort());
    case PollerModel::StartObstacle::portLent:
        return qt(L10n::texts().header.startWaitsForScan());
    case PollerModel::StartObstacle::nothingToRead:
        break;
    }
    return qt(L10n::texts().header.startNeedsDatapoints());
}

// Listening needs no datapoints, so only the port can hold it back.
QString listenObstacleText(std::optional<PollerModel::StartObstacle> obstacle) {
    if (!obstacle) {
        return {};
    }
    const auto& header = L10n::texts().header;
    return qt(obstacle == PollerModel::StartObstacle::portLent ? header.listenWaitsForScan()
                                                               : header.listenNeedsPort());
}

// Prominent: white on the fill while the button can be pressed. The disabled group keeps the
// style's own colours, so a button that is off looks off.
void fill(QPushButton* button, const QPalette& base, const QColor& colour) {
    QPalette tint = base;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        tint.setColor(group, QPalette::Button, colour);
        tint.setColor(group, QPalette::ButtonText, Qt::white);
    }
    button->setPalette(tint);
}

} // namespace

TopBar::TopBar(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , port_(new QComboBox(this))
    , baud_(new QComboBox(this))
    , frame_(new QToolButton(this))
    , startReason_(new ElidedLine(this))
    , dot_(new StatusDot(this))
    , listen_(new QPushButton(this))
    , startStop_(new QPushButton(this)) {
    setObjectName(QStringLiteral("topBar"));
    setUpControls();
    layOutRow();
    connectControls();
    connectModel();
    refreshPorts();
    refreshBaud();
    refreshState();
}

void TopBar::setUpControls() {
    port_->setObjectName(QStringLiteral("portPicker"));
    port_->setAccessibleName(qt(L10n::texts().header.port()));
    port_->setMinimumWidth(150);
    port_->setMaximumWidth(380);
    port_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    baud_->setObjectName(QStringLiteral("baudPicker"));
    baud_->setAccessibleName(qt(L10n::texts().header.baudRate()));
    baud_->setFixedWidth(124);
    for (const int rate : SerialConfiguration::standardBaudRates) {
        baud_->addItem(qt(L10n::texts().header.baudLabel(rate)), rate);
    }
    frame_->setObjectName(QStringLiteral("frameSettingsButton"));
    frame_->setIcon(Icons::symbol(Symbol::sliders));
    frame_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    startReason_->setObjectName(QStringLiteral("startReason"));
    // The space the pickers leave, beside the button it explains; shortened when that is little.
    startReason_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QPalette muted = startReason_->palette();
    muted.setColor(QPalette::WindowText, LogPalette::secondaryLabel(palette()));
    startReason_->setPalette(muted);
    listen_->setObjectName(QStringLiteral("listenButton"));
    listen_->setAutoFillBackground(true);
    startStop_->setObjectName(QStringLiteral("startStopButton"));
    startStop_->setMinimumWidth(80);
    startStop_->setAutoFillBackground(true);
}

void TopBar::layOutRow() {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 8, 10, 8);
    row->setSpacing(8);
    row->addWidget(port_, 1);
    row->addWidget(baud_);
    row->addWidget(frame_);
    row->addStretch(0);
    row->addWidget(startReason_, 1);
    row->addWidget(dot_);
    row->addWidget(listen_);
    row->addWidget(startStop_);
}

void TopBar::connectControls() {
    connect(port_, &QComboBox::activated, this, [this](int index) {
        const QVariant path = port_->itemData(index);
        if (path.isValid()) {
            model_.setSelectedPath(path.toString().toStdString());
        }
    });
    connect(baud_, &QComboBox::activated, this, [this](int index) {
        SerialConfiguration serial = model_.serial();
        serial.baudRate = baud_->itemData(index).toInt();
        model_.setSerial(serial);
    });
    connect(frame_, &QToolButton::clicked, this, &TopBar::showSerialSettings);
    connect(listen_, &QPushButton::clicked, &model_, &PollerModel::toggleListening);
    connect(startStop_, &QPushButton::clicked, &model_, &PollerModel::toggle);
}

void TopBar::connectModel() {
    connect(&model_, &PollerModel::portListChanged, this, &TopBar::refreshPorts);
    connect(&model_, &PollerModel::selectedPathChanged, this, &TopBar::refreshPorts);
    connect(&model_, &PollerModel::serialChanged, this, &TopBar::refreshBaud);
    // canStart and canListen follow the port, the polls and their datapoints.
    connect(&model_, &PollerModel::stateChanged, this, &TopBar::refreshState);
    connect(&model_, &PollerModel::selectedPathChanged, this, &TopBar::refreshState);
    connect(&model_, &PollerModel::portListChanged, this, &TopBar::refreshState);
    connect(&model_, &PollerModel::pollsChanged, this, &TopBar::refreshState);
}

SerialSettingsPopover* TopBar::serialSettings() {
    if (settings_ == nullptr) {
        settings_ = new SerialSettingsPopover(model_, this);
    }
    return settings_;
}

void TopBar::showSerialSettings() {
    SerialSettingsPopover* popover = serialSettings();
    if (popover->isVisible()) {
        popover->hide();
    } else {
        popover->showBelow(frame_);
    }
}

void TopBar::refreshPorts() {
    const QSignalBlocker blocker(port_);
    port_->clear();
    const auto& ports = model_.ports();
    const std::string& selected = model_.selectedPath();
    for (const SerialPortInfo& port : ports) {
        port_->addItem(qt(port.nameAmong(ports)), qt(port.path));
        port_->setItemData(port_->count() - 1, qt(port.path), Qt::ToolTipRole);
    }
    const bool present = std::any_of(ports.begin(), ports.end(),
                                     [&](const SerialPortInfo& p) { return p.path == selected; });
    if (!selected.empty() && !present) {
        port_->addItem(qt(L10n::texts().header.portNotConnected(selected)), qt(selected));
    }
    if (port_->count() == 0) {
        port_->addItem(qt(L10n::texts().header.noPortsFound()));
    } else if (selected.empty()) {
        port_->insertItem(0, qt(L10n::texts().header.choosePort()));
    }
    const int index = selected.empty() ? 0 : port_->findData(qt(selected));
    port_->setCurrentIndex(std::max(index, 0));
}

void TopBar::refreshBaud() {
    const QSignalBlocker blocker(baud_);
    const int rate = model_.serial().baudRate;
    int index = baud_->findData(rate);
    if (index < 0) {
        baud_->addItem(qt(L10n::texts().header.baudLabel(rate)), rate);
        index = baud_->count() - 1;
    }
    baud_->setCurrentIndex(index);
    frame_->setText(qt(model_.serial().frameDescription()));
}

void TopBar::refreshState() {
    const PollerState state = model_.state();
    const bool stopped = state == PollerState::stopped;
    const PollerCommands commands = PollerCommands::of(model_);
    dot_->setState(state);

    const auto& header = L10n::texts().header;
    startStop_->setText(qt(commands.reading ? header.stop() : header.start()));
    startStop_->setIcon(Icons::symbol(commands.reading ? Symbol::stop : Symbol::play));
    startStop_->setToolTip(qt(commands.reading ? header.stopHelp() : header.startHelp()));
    startStop_->setEnabled(commands.startEnabled);
    fill(startStop_, palette(), commands.reading ? LogPalette::fillOrange() : LogPalette::accent());
    const QString reason = stopped ? obstacleText(model_.startObstacle()) : QString();
    startReason_->setText(reason);
    startReason_->setToolTip(reason);
    startReason_->setVisible(!reason.isEmpty());
    startStop_->setAccessibleDescription(reason);
    refreshListen(commands, stopped);
    refreshLocks(commands, stopped);
}

// Plain beside Start, which most users want; orange only while it stops listening.
void TopBar::refreshListen(const PollerCommands& commands, bool stopped) {
    const auto& header = L10n::texts().header;
    listen_->setText(qt(commands.listening ? header.stopListening() : header.listen()));
    listen_->setIcon(commands.listening ? Icons::symbol(Symbol::stop) : QIcon());
    listen_->setToolTip(qt(commands.listening ? header.stopListeningHelp() : header.listenHelp()));
    listen_->setEnabled(commands.listenEnabled);
    listen_->setAccessibleDescription(stopped ? listenObstacleText(model_.listenObstacle())
                                              : QString());
    if (commands.listening) {
        fill(listen_, palette(), LogPalette::fillOrange());
    } else {
        listen_->setPalette(palette());
    }
}

void TopBar::refreshLocks(const PollerCommands& commands, bool stopped) {
    const QString lockedTip = qt(commands.lockedTip());
    port_->setEnabled(stopped);
    baud_->setEnabled(stopped);
    port_->setToolTip(lockedTip);
    baud_->setToolTip(lockedTip);
    frame_->setToolTip(stopped ? qt(L10n::texts().header.frameSettingsHelp()) : lockedTip);
}

} // namespace kestrin
