// Editing one datapoint of a large project, as a table edit does: the model's work after the
// change must not grow with datapoints times datapoints.

#include "FakePortRegistry.h"
#include "PollerModel.h"
#include "PortScanner.h"

#include <chrono>
#include <cstdint>
#include <memory>

#include <QCoreApplication>
#include <QSettings>
#include <benchmark/benchmark.h>

namespace kestrin {
namespace {

constexpr int polls = 10;

PollerProject projectOf(std::int64_t datapoints) {
    PollerProject project;
    for (int index = 0; index < polls; ++index) {
        Poll poll;
        poll.name = "Poll " + std::to_string(index);
        for (std::int64_t point = 0; point < datapoints / polls; ++point) {
            Datapoint made;
            made.name = "Point " + std::to_string(point);
            made.setTable(RegisterTable::holdingRegister);
            made.address = static_cast<std::uint16_t>(point);
            poll.datapoints.push_back(std::move(made));
        }
        project.polls.push_back(std::move(poll));
    }
    return project;
}

// No autosave, no preferences and no system ports, so only the edit is timed.
std::unique_ptr<PollerModel> modelOf(std::int64_t datapoints) {
    PollerModel::Environment environment;
    environment.scanner = std::make_unique<PortScanner>(
        std::make_unique<FakePortRegistry>(std::make_shared<FakePortRegistry::State>()),
        std::chrono::milliseconds{0});
    environment.project = projectOf(datapoints);
    return std::make_unique<PollerModel>(std::move(environment));
}

// Every datapoint has history, as after reading. The edit is a rename of the last point of the
// last poll, which keeps its readings: the farthest point from the front of any search.
void editOneDatapoint(benchmark::State& state) {
    auto model = modelOf(state.range(0));
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (const Poll& poll : model->polls()) {
        for (const Datapoint& point : poll.datapoints) {
            model->recordSample(point.id, {now, 1.0});
        }
    }
    model->setSelectedPollID(model->polls().back().id);
    Datapoint edited = model->polls().back().datapoints.back();
    std::int64_t edits = 0;
    for (auto _ : state) {
        edited.name = (edits++ % 2 == 0) ? "Renamed" : "Point";
        model->updateDatapoint(edited);
        benchmark::DoNotOptimize(model->polls().data());
    }
    state.SetItemsProcessed(edits);
}
BENCHMARK(editOneDatapoint)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kestrin

// The model's timers need an application object.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
