#include "DatapointDelegate.h"
#include "DatapointPanel.h"
#include "DatapointTableModel.h"
#include "NoticeBanner.h"
#include "UIFixture.h"
#include "WritePopover.h"

#include <QPointer>
#include <QTableView>

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
    EXPECT_EQ(child<QLineEdit>(*empty, "writeValue")->text(), "");
    delete empty.data();

    const QPointer<WritePopover> popover = open(scaled, 21.5);
    auto* field = child<QLineEdit>(*popover, "writeValue");
    EXPECT_EQ(field->text().replace(',', '.'), "21.5");
    typeIn(field, "99999");
    const auto* message = child<QLabel>(*popover, "writeMessage");
    EXPECT_TRUE(popover->isInvalid() && popover->isVisible());
    EXPECT_EQ(message->text(), "This value does not fit in Int16.");
    EXPECT_FALSE(model->writeError());
    QTest::keyClick(field, Qt::Key_Backspace);
    EXPECT_FALSE(popover->isInvalid());
    EXPECT_EQ(message->text(),
              "Type a value and press Enter. Hex (0x1F) or binary (0b101) works too.");

    typeIn(field, "0x1F");
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
        showAt(*panel, 1300, 400);
        startReading(simulator->port());
    }
    void TearDown() override {
        if (model) {
            model->stop();
        }
    }

    // Clicks the pencil of the row's value cell and returns the editor it opened.
    WritePopover& clickPencil(int row) {
        QTableView* view = panel->tableView();
        const QRect cell = view->visualRect(panel->tableModel()->index(row, Model::value));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          DatapointDelegate::pencilRect(cell).center());
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* popover = qobject_cast<WritePopover*>(widget);
                popover != nullptr && popover->isVisible()) {
                return *popover;
            }
        }
        throw std::runtime_error("the pencil opened no editor");
    }

    // The registers of the latest read of the datapoint.
    std::vector<std::uint16_t> lastRead(const Datapoint& point) const {
        const PointStatus* status = model->status(point.id);
        return status != nullptr ? status->raw : std::vector<std::uint16_t>{};
    }

    bool reads(const Datapoint& point, std::uint16_t value) {
        return waitUntil([&] { return lastRead(point) == std::vector<std::uint16_t>{value}; });
    }
};

TEST_F(WritingToTheSimulator, ATypedValueAndTheCoilsOnAndOffReachTheDevice) {
    ASSERT_TRUE(reads(setpoint, 100));
    auto* field = child<QLineEdit>(clickPencil(0), "writeValue");
    EXPECT_EQ(field->text(), "100");
    typeIn(field, "1234");
    // The written value is shown at once; the registers change only when read back.
    EXPECT_TRUE(reads(setpoint, 1234));
    EXPECT_FALSE(model->writeError());

    ASSERT_TRUE(reads(pump, 0));
    WritePopover& on = clickPencil(1);
    EXPECT_EQ(on.findChild<QLineEdit*>("writeValue"), nullptr);
    click(child(on, "writeOn"));
    ASSERT_TRUE(reads(pump, 1));
    click(child(clickPencil(1), "writeOff"));
    EXPECT_TRUE(reads(pump, 0));
}

TEST_F(WritingToTheSimulator, ARefusedWriteShowsTheBannerUntilDismissed) {
    auto* banner = child<NoticeBanner>(*panel, "writeErrorBanner");
    EXPECT_FALSE(banner->isVisible());
    typeIn(child<QLineEdit>(clickPencil(2), "writeValue"), "5");
    ASSERT_TRUE(waitUntil([&] { return banner->isVisible(); }));
    EXPECT_TRUE(banner->text().startsWith("Writing Missing failed: "))
        << banner->text().toStdString();
    click(child(*banner, "noticeDismiss"));
    EXPECT_FALSE(banner->isVisible());
    EXPECT_FALSE(model->writeError());
}

} // namespace
} // namespace kestrin::TableTesting
