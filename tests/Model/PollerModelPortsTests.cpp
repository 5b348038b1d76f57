#include "ModelFixture.h"

namespace kestrin::ModelTesting {
namespace {

using Entry = FakePortRegistry::Entry;
using Entries = std::vector<Entry>;

const Entry internal{"/dev/ttyS0", {}};
const Entry ftdi{"/dev/ttyUSB0", {"FT232R USB UART", 0x0403, 0x6001}};
const Entry cp2102{"/dev/ttyUSB1", {"CP2102 USB to UART", 0x10C4, 0xEA60}};

class PollerModelPorts : public ModelFixture {
protected:
    void plug(const Entries& entries) {
        registry->entries = entries;
        registry->notify();
        QTest::qWait(20);
    }
    std::string storedPort() const { return preferences()->value("port").toString().toStdString(); }
};

TEST_F(PollerModelPorts, ChoiceOnTheFirstScanAndWhenAdaptersComeAndGo) {
    const struct {
        const char* situation;
        std::optional<std::string> stored;
        Entries first;
        std::string chosenFirst;
        std::optional<Entries> then;
        std::string chosenThen;
    } rows[] = {
        {"first scan picks the adapter", {}, {internal, ftdi}, "/dev/ttyUSB0", {}, ""},
        {"no adapter, no choice", {}, {internal}, "", {}, ""},
        {"a stored port that is present stays",
         "/dev/ttyS0",
         {internal, ftdi},
         "/dev/ttyS0",
         {},
         ""},
        {"a stored port that is missing gives the first adapter",
         "/dev/ttyUSB7",
         {cp2102, internal, ftdi},
         "/dev/ttyUSB0",
         {},
         ""},
        {"an empty list keeps the stored port", "/dev/ttyUSB7", {}, "/dev/ttyUSB7", {}, ""},
        {"a second adapter keeps the chosen one",
         {},
         {ftdi},
         "/dev/ttyUSB0",
         Entries{ftdi, cp2102},
         "/dev/ttyUSB0"},
        {"an adapter replaces an internal port",
         "/dev/ttyS0",
         {internal},
         "/dev/ttyS0",
         Entries{internal, cp2102},
         "/dev/ttyUSB1"},
        {"an adapter replaces a missing port",
         "/dev/ttyUSB7",
         {internal},
         "/dev/ttyUSB7",
         Entries{internal, cp2102},
         "/dev/ttyUSB1"},
        {"unplugging the chosen adapter keeps it",
         {},
         {ftdi, internal},
         "/dev/ttyUSB0",
         Entries{internal},
         "/dev/ttyUSB0"},
        {"swapping adapters picks the new one",
         {},
         {ftdi},
         "/dev/ttyUSB0",
         Entries{cp2102},
         "/dev/ttyUSB1"},
        {"an internal port arriving changes nothing",
         {},
         {ftdi},
         "/dev/ttyUSB0",
         Entries{ftdi, internal},
         "/dev/ttyUSB0"},
    };
    for (const auto& row : rows) {
        preferences()->clear();
        if (row.stored) {
            preferences()->setValue("port", QString::fromStdString(*row.stored));
        }
        registry->entries = row.first;
        create(quietProject({}));
        EXPECT_EQ(model->ports().size(), row.first.size()) << row.situation;
        EXPECT_EQ(model->selectedPath(), row.chosenFirst) << row.situation;
        EXPECT_EQ(storedPort(), row.chosenFirst) << row.situation;
        if (row.then) {
            plug(*row.then);
            EXPECT_EQ(model->selectedPath(), row.chosenThen) << row.situation;
            EXPECT_EQ(storedPort(), row.chosenThen) << row.situation;
        }
    }
}

TEST_F(PollerModelPorts, ChoiceStaysWhileReadingAndMovesAgainOnceStopped) {
    SimulatorProcess device{std::vector<std::string>{}};
    registry->entries = Entries{internal};
    create(quietProject({holding("Level", 100)}));
    startReading(device.path());

    plug({internal, ftdi});
    EXPECT_EQ(model->selectedPath(), device.path());
    plug({internal});
    EXPECT_EQ(model->selectedPath(), device.path());
    EXPECT_EQ(storedPort(), device.path());

    model->stop();
    plug({internal, cp2102});
    EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB1");
}

} // namespace
} // namespace kestrin::ModelTesting
