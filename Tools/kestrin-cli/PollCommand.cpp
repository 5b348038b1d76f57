#include "PollCommand.h"

#include "CycleCounter.h"
#include "HeadlessRun.h"
#include "JsonLines.h"
#include "PollerModel.h"

#include <optional>
#include <string>

#include <QCoreApplication>

namespace kestrin::PollCommand {

namespace {

// The name of the poll with this id; empty for a poll that is gone.
std::string pollName(const PollerModel& model, const Uuid& pollID) {
    for (const Poll& poll : model.polls()) {
        if (poll.id == pollID) {
            return poll.name;
        }
    }
    return {};
}

// One line per value an answer brought, stamped with the answer's own time.
void printJson(const PollerModel& model, const Uuid& pollID, const std::vector<Uuid>& datapointIDs,
               std::ostream& out) {
    const std::string poll = pollName(model, pollID);
    for (const Uuid& id : datapointIDs) {
        const PointStatus* status = model.status(id);
        const Datapoint* datapoint = model.datapoint(id);
        if (status == nullptr || datapoint == nullptr || !status->updated) {
            continue;
        }
        nlohmann::json object = JsonLines::reading(*datapoint, status->value, status->raw,
                                                   status->updated->toMSecsSinceEpoch());
        object["poll"] = poll;
        object["name"] = datapoint->name;
        JsonLines::addStatus(object, status->failure);
        JsonLines::print(object, out);
    }
}

// Stops reading at the answer that completes the last cycle, so that exactly cycles cycles are
// shown and counted, however many answers reach the main thread together.
void stopAfterCycles(PollerModel& model, CycleCounter& counter, int cycles) {
    QObject::connect(&model, &PollerModel::blockRead, &model,
                     [&model, &counter, cycles](const Uuid& poll, const ReadBlock& block) {
                         counter.blockRead(poll, block);
                         if (counter.completedCycles() >= cycles) {
                             model.stop();
                             QCoreApplication::quit();
                         }
                     });
}

} // namespace

ExitCode run(const PollOptions& options, std::ostream& out, std::ostream& err) {
    // Counts the cycles as the model answers; it outlives the model that calls it.
    std::optional<CycleCounter> counter;
    const auto setup = [&](PollerModel& model) -> std::optional<ExitCode> {
        counter.emplace(model.polls(), model.maxGap());
        if (!counter->hasBlocks()) {
            err << "kestrin-cli poll: no enabled poll has a datapoint to read\n";
            return ExitCode::usageError;
        }
        if (options.json) {
            QObject::connect(&model, &PollerModel::blockRead, &model,
                             [&model, &out](const Uuid& poll, const ReadBlock&,
                                            const std::vector<Uuid>& datapointIDs) {
                                 printJson(model, poll, datapointIDs, out);
                             });
        }
        if (options.cycles) {
            stopAfterCycles(model, *counter, *options.cycles);
        }
        return std::nullopt;
    };
    return HeadlessRun::run(options, HeadlessRun::Way::read, out, err, setup);
}

} // namespace kestrin::PollCommand
