// The main window with a poll of 10,000 datapoints beside a small one, at 1180×760: switching to
// the large poll until its table is painted, and one frame's batch of live statuses until the
// window has repainted what changed.

#include "DatapointPanel.h"
#include "DatapointTableModel.h"
#include "FakePortRegistry.h"
#include "MainWindow.h"
#include "PollTab.h"
#include "PollTabBar.h"
#include "PollerModel.h"
#include "PortScanner.h"
#include "QuietTerminal.h"
#include "ReadPlanner.h"

#include <chrono>
#include <cstdint>
#include <memory>

#include <QApplication>
#include <QSettings>
#include <QTableView>
#include <benchmark/benchmark.h>

namespace kestrin {
namespace {

constexpr int largePoll = 10'000;
// About six answers of 50 datapoints: what arrives in one 16 ms frame at 400 answers a second.
constexpr int answersPerBatch = 6;
constexpr int pointsPerAnswer = 53;

Poll pollOf(const std::string& name, int datapoints) {
    Poll poll;
    poll.name = name;
    for (int point = 0; point < datapoints; ++point) {
        Datapoint made;
        made.name = "Point " + std::to_string(point);
        made.setTable(point % 2 == 0 ? RegisterTable::holdingRegister
                                     : RegisterTable::inputRegister);
        made.address = static_cast<std::uint16_t>(point);
        made.engineeringUnit = "kWh";
        poll.datapoints.push_back(std::move(made));
    }
    return poll;
}

// No autosave, no preferences and no system ports: only the window's own work is timed.
std::unique_ptr<PollerModel> modelWithLargePoll() {
    PollerModel::Environment environment;
    environment.scanner = std::make_unique<PortScanner>(
        std::make_unique<FakePortRegistry>(std::make_shared<FakePortRegistry::State>()),
        std::chrono::milliseconds{0});
    PollerProject project;
    project.polls.push_back(pollOf("Small", 12));
    project.polls.push_back(pollOf("Large", largePoll));
    // The quiet line's time-outs stay rare beside the statuses the benchmark hands in.
    project.timeoutMs = 5000;
    for (Poll& poll : project.polls) {
        poll.intervalMs = 60'000;
    }
    environment.project = std::move(project);
    return std::make_unique<PollerModel>(std::move(environment));
}

// Reading, on a line nobody answers, so that the tabs' reading dots are worked out as they are
// while reading.
struct Window {
    Testing::QuietTerminal terminal;
    std::unique_ptr<PollerModel> model = modelWithLargePoll();
    MainWindow window{*model};

    Window() {
        window.resize(1180, 760);
        window.show();
        model->addTestDevice(terminal.path(), "terminal");
        model->start();
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (model->state() != PollerState::running &&
               std::chrono::steady_clock::now() < deadline) {
            QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
        answerEveryBlock();
        settle();
    }
    ~Window() { model->stop(); }
    // Every datapoint with a value, as after the first round: a tab's dot then looks at them all.
    void answerEveryBlock() const {
        for (const Poll& poll : model->polls()) {
            for (const ReadBlock& block : ReadPlanner::blocks(poll.datapoints, model->maxGap())) {
                PollerEvent::Read read{poll.id, block};
                read.result = ReadData::registers(
                    std::vector<std::uint16_t>(static_cast<std::size_t>(block.count), 215));
                model->handleEvent({read});
            }
        }
    }
    // Why the window is not reading with a value for every datapoint; null when it is.
    const char* fault() const {
        if (model->state() != PollerState::running) {
            return "the quiet line did not open";
        }
        return model->status().size() < largePoll ? "datapoints without value" : nullptr;
    }
    void settle() const {
        QApplication::processEvents();
        QApplication::processEvents();
    }
    const Poll& poll(std::size_t index) const { return model->polls()[index]; }
    void click(std::size_t index) const { window.pollTabBar()->tab(poll(index).id)->click(); }
};

void switchToTheLargePoll(benchmark::State& state) {
    Window shown;
    if (const char* fault = shown.fault()) {
        state.SkipWithError(fault);
        return;
    }
    QTableView* table = shown.window.datapointPanel()->tableView();
    for (auto _ : state) {
        state.PauseTiming();
        shown.click(0);
        shown.settle();
        state.ResumeTiming();
        shown.click(1);
        QApplication::processEvents();
        table->viewport()->repaint();
    }
    benchmark::DoNotOptimize(table->model()->rowCount());
}
BENCHMARK(switchToTheLargePoll)->Unit(benchmark::kMillisecond)->UseRealTime();

// Answers spread over the poll, the first in view, each a run of neighbouring datapoints as one
// read block yields them; they move on from batch to batch.
std::vector<Uuid> batch(const Poll& poll, std::int64_t round) {
    std::vector<Uuid> ids;
    const int spacing = largePoll / answersPerBatch;
    for (int answer = 0; answer < answersPerBatch; ++answer) {
        const int first = answer == 0 ? 0 : answer * spacing + static_cast<int>(round % 500);
        for (int point = first; point < first + pointsPerAnswer; ++point) {
            ids.push_back(poll.datapoints[static_cast<std::size_t>(point)].id);
        }
    }
    return ids;
}

void applyOneFramesBatch(benchmark::State& state) {
    Window shown;
    if (const char* fault = shown.fault()) {
        state.SkipWithError(fault);
        return;
    }
    shown.click(1);
    shown.settle();
    std::int64_t round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const std::vector<Uuid> ids = batch(shown.poll(1), round++);
        state.ResumeTiming();
        emit shown.model->statusChanged(ids);
        QApplication::processEvents();
    }
    state.SetItemsProcessed(round * answersPerBatch * pointsPerAnswer);
}
BENCHMARK(applyOneFramesBatch)->Unit(benchmark::kMillisecond)->UseRealTime();

// The overlap marks a poll switch works out, for a list of copies that all read one address.
void markOverlapsOfOneAddress(benchmark::State& state) {
    Poll copies = pollOf("Copies", largePoll);
    for (Datapoint& point : copies.datapoints) {
        point.setTable(RegisterTable::holdingRegister);
        point.address = 7;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(DatapointTableModel::overlapMarks(copies.datapoints));
    }
}
BENCHMARK(markOverlapsOfOneAddress)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kestrin

int main(int argc, char** argv) {
    // Painting needs no screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
