#include "DatapointDelegate.h"
#include "DatapointPanel.h"
#include "DatapointTableModel.h"
#include "NoticeBanner.h"
#include "TableFixture.h"
#include "WritePopover.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QToolButton>

namespace kestrin::TableTesting {
namespace {

using Model = DatapointTableModel;

class WritePopoverTest : public TableFixture {
protected:
    QWidget anchor;

    // An editor opened on a stopped model: a value that gets through ends as the model's
    // start-reading-first answer.
    QPointer<WritePopover> open(const Datapoint& point, std::optional<double> current = {}) {
        auto* popover = new WritePopover(*model, point, current);
        popover->showBelow(&anchor);
        return popover;
    }
};

// Which text fits which type is the codec's test; here what the editor does with its answer.
TEST_F(WritePopoverTest, StartsFromTheCurrentValueRefusesWhatDoesNotFitAndWritesWhatDoes) {
    create(project({}));
    Datapoint scaled = datapoint("Temperature", RegisterTable::holdingRegister, 0, DataType::int16);
    scaled.scale = 0.1;
    const QPointer<WritePopover> empty = open(scaled);
    EXPECT_EQ(empty->findChild<QLineEdit*>("writeValue")->text(), "");
    delete empty.data();

    const QPointer<WritePopover> popover = open(scaled, 21.5);
    auto* field = popover->findChild<QLineEdit*>("writeValue");
    EXPECT_EQ(field->text().replace(',', '.'), "21.5");
    field->clear();
    QTest::keyClicks(field, "99999");
    QTest::keyClick(field, Qt::Key_Return);
    const auto* message = popover->findChild<QLabel*>("writeMessage");
    EXPECT_TRUE(popover->isInvalid() && popover->isVisible());
    EXPECT_EQ(message->text(), "This value does not fit in Int16.");
    EXPECT_FALSE(model->writeError());
    QTest::keyClick(field, Qt::Key_Backspace);
    EXPECT_FALSE(popover->isInvalid());
    EXPECT_EQ(message->text(),
              "Type a value and press Enter. Hex (0x1F) or binary (0b101) works too.");

    field->clear();
    QTest::keyClicks(field, "0x1F");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_FALSE(popover->isVisible());
    EXPECT_EQ(model->writeError(), "Start reading first (Ctrl+R) to write values.");
    delete popover.data();
}

// The simulator serves Setpoint (HR 0) and Pump (coil 0); the table also holds Missing (HR 500),
// which the simulator does not have.
class WritingToTheSimulator : public TableFixture {
protected:
    Datapoint setpoint =
        datapoint("Setpoint", RegisterTable::holdingRegister, 0, DataType::uint16, 100);
    Datapoint pump = datapoint("Pump", RegisterTable::coil, 0);
    Datapoint missing = datapoint("Missing", RegisterTable::holdingRegister, 500);
    std::unique_ptr<SimulatorProcess> simulator;
    std::unique_ptr<DatapointPanel> panel;

    void SetUp() override {
        simulator = serve(project({setpoint, pump}));
        ASSERT_FALSE(simulator->port().empty());
        create(project({setpoint, pump, missing}));
        panel = std::make_unique<DatapointPanel>(*model);
        panel->resize(1300, 400);
        panel->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(panel.get()));
        startReading(simulator->port());
    }
    void TearDown() override {
        if (model) {
            model->stop();
        }
    }

    // Clicks the pencil of the row's value cell and returns the editor it opened.
    WritePopover* clickPencil(int row) {
        QTableView* view = panel->tableView();
        const QRect cell = view->visualRect(panel->tableModel()->index(row, Model::value));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          DatapointDelegate::pencilRect(cell).center());
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* popover = qobject_cast<WritePopover*>(widget);
                popover != nullptr && popover->isVisible()) {
                return popover;
            }
        }
        return nullptr;
    }

    // The registers of the latest read of the datapoint.
    std::vector<std::uint16_t> lastRead(const Datapoint& point) const {
        const PointStatus* status = model->status(point.id);
        return status != nullptr ? status->raw : std::vector<std::uint16_t>{};
    }
};

TEST_F(WritingToTheSimulator, ATypedValueAndTheCoilsOnAndOffReachTheDevice) {
    ASSERT_TRUE(waitUntil([&] { return lastRead(setpoint) == std::vector<std::uint16_t>{100}; }));
    WritePopover* popover = clickPencil(0);
    ASSERT_NE(popover, nullptr);
    auto* field = popover->findChild<QLineEdit*>("writeValue");
    EXPECT_EQ(field->text(), "100");
    field->clear();
    QTest::keyClicks(field, "1234");
    QTest::keyClick(field, Qt::Key_Return);
    // The written value is shown at once; the registers change only when read back.
    EXPECT_TRUE(waitUntil([&] { return lastRead(setpoint) == std::vector<std::uint16_t>{1234}; }));
    EXPECT_FALSE(model->writeError());

    ASSERT_TRUE(waitUntil([&] { return lastRead(pump) == std::vector<std::uint16_t>{0}; }));
    WritePopover* on = clickPencil(1);
    ASSERT_NE(on, nullptr);
    EXPECT_EQ(on->findChild<QLineEdit*>("writeValue"), nullptr);
    QTest::mouseClick(on->findChild<QPushButton*>("writeOn"), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return lastRead(pump) == std::vector<std::uint16_t>{1}; }));

    WritePopover* off = clickPencil(1);
    ASSERT_NE(off, nullptr);
    QTest::mouseClick(off->findChild<QPushButton*>("writeOff"), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return lastRead(pump) == std::vector<std::uint16_t>{0}; }));
}

TEST_F(WritingToTheSimulator, ARefusedWriteShowsTheBannerUntilDismissed) {
    auto* banner = panel->findChild<NoticeBanner*>("writeErrorBanner");
    ASSERT_NE(banner, nullptr);
    EXPECT_FALSE(banner->isVisible());
    WritePopover* popover = clickPencil(2);
    ASSERT_NE(popover, nullptr);
    QTest::keyClicks(popover->findChild<QLineEdit*>("writeValue"), "5");
    QTest::keyClick(popover->findChild<QLineEdit*>("writeValue"), Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return banner->isVisible(); }));
    EXPECT_TRUE(banner->text().startsWith("Writing Missing failed: "))
        << banner->text().toStdString();
    QTest::mouseClick(banner->findChild<QToolButton*>("noticeDismiss"), Qt::LeftButton);
    EXPECT_FALSE(banner->isVisible());
    EXPECT_FALSE(model->writeError());
}

} // namespace
} // namespace kestrin::TableTesting
