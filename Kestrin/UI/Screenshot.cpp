#include "Screenshot.h"

#include "BottomPane.h"
#include "BusPopover.h"
#include "DatapointDelegate.h"
#include "DatapointPanel.h"
#include "FindDevicesDialog.h"
#include "HelpWindow.h"
#include "MainWindow.h"
#include "PDU.h"
#include "PollerModel.h"
#include "RTUFrame.h"
#include "SerialSettingsPopover.h"
#include "TopBar.h"
#include "WritePopover.h"

#include <algorithm>
#include <chrono>
#include <map>

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTableView>
#include <QTimer>

namespace kestrin {

namespace Screenshot {

namespace {

using namespace std::chrono_literals;

// A window of a common laptop's proportions; the pictures are scaled from it.
const QSize windowSize(1180, 640);
const QSize helpSize(980, 640);
// Tall enough for the chart to show its shape.
constexpr int chartPaneHeight = 360;
const QSize finderSize(720, 600);
// The first units of the line: enough to find the demo device, and done in a second or two.
constexpr int finderUnits = 10;
constexpr int finderLimitMs = 30000;
constexpr int listenLimitMs = 3000;

void settle() {
    // Layouts, popups and palette changes arrive as posted events.
    for (int round = 0; round < 3; ++round) {
        QApplication::processEvents();
    }
}

// The window with a popup drawn where it sits: an offscreen popup is a window of its own.
QPixmap withPopup(QWidget& window, QWidget* popup) {
    QPixmap picture = window.grab();
    if (popup != nullptr && popup->isVisible()) {
        QPainter painter(&picture);
        painter.drawPixmap(window.mapFromGlobal(popup->mapToGlobal(QPoint(0, 0))), popup->grab());
    }
    return picture;
}

// The first writable register of the shown poll: its popover has a text field, not two buttons.
int writableRegisterRow(const DatapointTableModel& table) {
    for (int row = 0; row < table.rowCount(); ++row) {
        const Datapoint* point = table.datapoint(row);
        if (point != nullptr && point->table().isWritable() && !point->table().isBit()) {
            return row;
        }
    }
    return -1;
}

QWidget* openWriteEditor(MainWindow& window) {
    DatapointPanel* panel = window.datapointPanel();
    const int row = writableRegisterRow(*panel->tableModel());
    if (row < 0) {
        return nullptr;
    }
    const QModelIndex cell = panel->tableModel()->index(row, DatapointTableModel::value);
    panel->tableView()->selectRow(row);
    panel->openWriteEditor(row,
                           DatapointDelegate::pencilRect(panel->tableView()->visualRect(cell)));
    settle();
    return window.findChild<WritePopover*>();
}

// A read another master made of one datapoint, answered with what Kestrin's own reading of the
// demo device got: the listening picture's traffic, without a second master on the line.
PollerEvent heardRead(const Datapoint& point, const PointStatus& status, PollerEvent::Time time) {
    const ReadBlock block{point.unitID, point.table(), point.address, point.count()};
    const Bytes request =
        RTUFrame::build(block.unit, PDU::read(block.table, block.address, block.count));
    Bytes answer{request[1]};
    std::optional<ReadData> data;
    if (block.table.isBit()) {
        const std::vector<bool> bits(status.raw.begin(), status.raw.end());
        const Bytes packed = packBits(bits);
        answer.push_back(static_cast<std::uint8_t>(packed.size()));
        answer.insert(answer.end(), packed.begin(), packed.end());
        data = ReadData::bits(bits);
    } else {
        answer.push_back(static_cast<std::uint8_t>(2 * status.raw.size()));
        for (const std::uint16_t word : status.raw) {
            answer.push_back(static_cast<std::uint8_t>(word >> 8));
            answer.push_back(static_cast<std::uint8_t>(word & 0xFF));
        }
        data = ReadData::registers(status.raw);
    }
    PollerEvent::Heard heard{request, RTUFrame::build(block.unit, answer), block, data};
    heard.duration = status.duration;
    heard.requestTime = time - std::chrono::duration_cast<PollerEvent::Time::duration>(
                                   std::chrono::duration<double>(status.duration));
    return {heard, time};
}

// What the other master is heard doing: reading every datapoint of the shown poll but the last
// two, which stay waiting; asking a unit that is not there; and a burst of noise.
std::vector<PollerEvent> heardTraffic(const PollerModel& model,
                                      const std::map<Uuid, PointStatus>& read) {
    std::vector<PollerEvent> events;
    auto time = std::chrono::system_clock::now();
    const Poll* poll = model.selectedPoll();
    const std::size_t heard =
        poll != nullptr ? std::max<std::size_t>(poll->datapoints.size(), 2) - 2 : 0;
    for (std::size_t i = 0; i < heard; ++i) {
        const Datapoint& point = poll->datapoints[i];
        if (const auto status = read.find(point.id); status != read.end() && status->second.value) {
            time += 40ms;
            events.push_back(heardRead(point, status->second, time));
        }
    }
    const ReadBlock absent{9, RegisterTable::holdingRegister, 0, 2};
    PollerEvent::Heard unanswered{
        RTUFrame::build(absent.unit, PDU::read(absent.table, absent.address, absent.count)),
        {},
        absent,
        PollFailureError{PollFailure::timeout()}};
    unanswered.requestTime = time + 100ms;
    events.push_back({unanswered, time + 1100ms});
    events.push_back({PollerEvent::Unmatched{{0x00, 0xFF, 0x3C}}, time + 1300ms});
    return events;
}

// Listening to the demo device's line, its statuses and log begun afresh.
QPixmap listeningPicture(PollerModel& model, MainWindow& window) {
    const std::map<Uuid, PointStatus> read = model.status();
    model.applyProject(model.currentProject());
    model.clearLog();
    if (model.canListen()) {
        QEventLoop opened;
        QObject::connect(&model, &PollerModel::stateChanged, &opened, &QEventLoop::quit);
        QTimer::singleShot(listenLimitMs, &opened, &QEventLoop::quit);
        model.listen();
        if (model.state() != PollerState::listening) {
            opened.exec();
        }
    }
    model.handleEvents(heardTraffic(model, read));
    settle();
    return window.grab();
}

// The Find Devices dialog after a scan of the first units; without a port it stays empty.
QPixmap finderPicture(PollerModel& model, MainWindow& window) {
    model.stop();
    FindDevicesDialog* dialog = FindDevicesDialog::openFor(window, model);
    dialog->resize(finderSize);
    dialog->findChild<QSpinBox*>(QStringLiteral("unitsLast"))->setValue(finderUnits);
    dialog->findChild<QPushButton*>(QStringLiteral("finderStart"))->click();
    if (dialog->finder().isRunning()) {
        QEventLoop scan;
        QObject::connect(&dialog->finder(), &DeviceFinder::runningChanged, &scan,
                         &QEventLoop::quit);
        QTimer::singleShot(finderLimitMs, &scan, &QEventLoop::quit);
        scan.exec();
    }
    settle();
    return dialog->grab();
}

std::optional<QPixmap> picture(PollerModel& model, MainWindow& window, const std::string& name) {
    if (name == "window") {
        return window.grab();
    }
    if (name == "settings") {
        model.stop();
        window.topBar()->showSerialSettings();
        settle();
        return withPopup(window, window.topBar()->serialSettings());
    }
    if (name == "write") {
        return withPopup(window, openWriteEditor(window));
    }
    if (name == "bus") {
        // Above the bar, as it opens at the foot of a screen, so that the picture holds all of it.
        BottomPane* pane = window.bottomPane();
        pane->toggleBusPopover();
        settle();
        QWidget* popover = pane->busPopover();
        popover->move(popover->x(), pane->mapToGlobal(QPoint(0, 0)).y() - popover->height());
        return withPopup(window, popover);
    }
    if (name == "chart") {
        window.bottomPane()->setPage(BottomPane::Page::chart);
        const int total = window.splitter()->height();
        window.splitter()->setSizes({total - chartPaneHeight, chartPaneHeight});
        settle();
        return window.bottomPane()->grab();
    }
    if (name == "finder") {
        return finderPicture(model, window);
    }
    if (name == "listening") {
        return listeningPicture(model, window);
    }
    if (name == "help") {
        HelpWindow::showSingle(&window);
        HelpWindow* help = HelpWindow::single();
        help->resize(helpSize);
        settle();
        return help->grab();
    }
    return std::nullopt;
}

} // namespace

const std::vector<std::string>& names() {
    static const std::vector<std::string> all{"window", "settings", "write",  "bus",
                                              "chart",  "help",     "finder", "listening"};
    return all;
}

Result<void, std::string> render(PollerModel& model, MainWindow& window, const std::string& name,
                                 const QString& file, int maxWidth) {
    window.resize(windowSize);
    settle();
    std::optional<QPixmap> shot = picture(model, window, name);
    if (!shot) {
        return "unknown view " + name;
    }
    QImage image = shot->toImage();
    if (maxWidth > 0 && image.width() > maxWidth) {
        image = image.scaledToWidth(maxWidth, Qt::SmoothTransformation);
    }
    // Opaque pixels compress better and a help page needs no alpha.
    image = image.convertToFormat(QImage::Format_RGB32);
    // Highest compression: these files are committed and compiled into the program.
    if (!image.save(file, "PNG", 0)) {
        return "cannot write " + file.toStdString();
    }
    return {};
}

QPalette darkPalette() {
    QPalette palette;
    const QColor window(45, 45, 48);
    const QColor base(30, 30, 32);
    const QColor text(230, 230, 232);
    const QColor disabled(125, 125, 130);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(38, 38, 41));
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, disabled);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(58, 58, 62));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Light, QColor(80, 80, 85));
    palette.setColor(QPalette::Midlight, QColor(66, 66, 70));
    palette.setColor(QPalette::Mid, QColor(70, 70, 74));
    palette.setColor(QPalette::Dark, QColor(22, 22, 24));
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(0, 110, 190));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(90, 170, 255));
    palette.setColor(QPalette::LinkVisited, QColor(170, 140, 255));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    return palette;
}

} // namespace Screenshot

} // namespace kestrin
