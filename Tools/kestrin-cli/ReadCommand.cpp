#include "ReadCommand.h"

#include "DeviceRequest.h"
#include "JsonLines.h"
#include "NumberStyle.h"
#include "Overloaded.h"
#include "PDU.h"
#include "StopSignals.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <variant>
#include <vector>

namespace kestrin::ReadCommand {

namespace {

// One value of a read: where it is and what came of it.
struct Reading {
    Datapoint datapoint;
    std::optional<Value> value;
    std::vector<std::uint16_t> raw; // a bit as 0 or 1
    std::optional<DeviceRequest::Failed> failed;
    std::int64_t msSinceEpoch = 0;
};

std::vector<Reading> consecutive(const Datapoint& first, int count) {
    std::vector<Reading> readings(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        readings[index].datapoint = first;
        readings[index].datapoint.address =
            static_cast<std::uint16_t>(first.address + index * first.count());
    }
    return readings;
}

// The answer's registers or bits, as raw words in address order.
std::vector<std::uint16_t> words(const ReadData& data) {
    return std::visit(Overloaded{
                          [](const ReadData::Bits& bits) {
                              return std::vector<std::uint16_t>(bits.values.begin(),
                                                                bits.values.end());
                          },
                          [](const ReadData::Registers& registers) { return registers.values; },
                      },
                      data.value);
}

// Reads the values of batch with one request, the most one answer can hold.
std::optional<DeviceRequest::Failed> readBatch(const CliOptions& options, DeviceRequest::Port& port,
                                               std::span<Reading> batch, std::ostream& err) {
    const Datapoint& first = batch.front().datapoint;
    const int width = first.count();
    const int count = static_cast<int>(batch.size()) * width;
    const Bytes request = PDU::read(first.table(), first.address, count);
    const auto answer = port.send(request, err);
    if (!answer) {
        return answer.error();
    }
    const auto data = PDU::parseRead(answer.value(), first.table(), count);
    if (!data) {
        const PollFailure failure = data.error().pollFailure();
        return DeviceRequest::Failed{DeviceRequest::fail(failure, options, err), failure};
    }
    const std::vector<std::uint16_t> raw = words(data.value());
    const std::int64_t now = JsonLines::nowMs();
    for (std::size_t index = 0; index < batch.size(); ++index) {
        Reading& reading = batch[index];
        const auto size = static_cast<std::size_t>(width);
        const auto part = std::span(raw).subspan(index * size, size);
        reading.raw.assign(part.begin(), part.end());
        reading.value = first.table().isBit() ? Value::unsignedInteger(reading.raw.front() != 0)
                                              : first.valueFromRegisters(reading.raw);
        reading.msSinceEpoch = now;
    }
    return std::nullopt;
}

// Reads every value in as few requests as the table's limit allows; the first failure ends the
// reading and stands for every value not read.
ExitCode readAll(const CliOptions& options, DeviceRequest::Port& port,
                 std::vector<Reading>& readings, std::ostream& err) {
    const Datapoint& first = options.datapoint;
    const std::size_t perRequest =
        static_cast<std::size_t>(std::max(1, first.table().maxReadCount() / first.count()));
    for (std::size_t start = 0; start < readings.size(); start += perRequest) {
        const std::size_t size = std::min(perRequest, readings.size() - start);
        if (auto failed = readBatch(options, port, std::span(readings).subspan(start, size), err)) {
            const std::int64_t now = JsonLines::nowMs();
            for (std::size_t rest = start; rest < readings.size(); ++rest) {
                readings[rest].failed = failed;
                readings[rest].msSinceEpoch = now;
            }
            return failed->code;
        }
    }
    return ExitCode::success;
}

nlohmann::json json(const Reading& reading) {
    nlohmann::json object =
        JsonLines::reading(reading.datapoint, reading.value, reading.raw, reading.msSinceEpoch);
    if (reading.failed && !reading.failed->failure) {
        object["status"] = "port";
    } else {
        JsonLines::addStatus(object, reading.failed ? reading.failed->failure : std::nullopt);
    }
    return object;
}

void printJson(const CliOptions& options, const std::vector<Reading>& readings, std::ostream& out) {
    if (!options.count) {
        JsonLines::print(json(readings.front()), out);
        return;
    }
    nlohmann::json list = nlohmann::json::array();
    for (const Reading& reading : readings) {
        list.push_back(json(reading));
    }
    JsonLines::print(list, out);
}

// The values read, one a line; with --count each after its address ("HR 100: 21.5 °C").
void printText(const CliOptions& options, const std::vector<Reading>& readings, std::ostream& out) {
    for (const Reading& reading : readings) {
        if (!reading.value) {
            continue;
        }
        const Datapoint& datapoint = reading.datapoint;
        if (options.count) {
            out << datapoint.table().code() << ' ' << datapoint.address << ": ";
        }
        out << datapoint.formatted(*reading.value, NumberStyle::current());
        if (!datapoint.engineeringUnit.empty()) {
            out << ' ' << datapoint.engineeringUnit;
        }
        out << '\n';
    }
    out << std::flush;
}

ExitCode readOnce(const CliOptions& options, DeviceRequest::Port& port, std::ostream& out,
                  std::ostream& err) {
    std::vector<Reading> readings = consecutive(options.datapoint, options.count.value_or(1));
    const ExitCode code = readAll(options, port, readings, err);
    if (options.json) {
        printJson(options, readings, out);
    } else {
        printText(options, readings, out);
    }
    return code;
}

} // namespace

ExitCode run(const CliOptions& options, std::ostream& out, std::ostream& err) {
    DeviceRequest::Port port(options);
    if (!options.intervalMs && !options.cycles) {
        return readOnce(options, port, out, err);
    }
    // The signals wait for the pause between reads, so that Ctrl+C ends the run between lines.
    StopSignals stopSignals;
    const std::chrono::milliseconds interval(options.intervalMs.value_or(0));
    ExitCode code = ExitCode::success;
    for (int cycle = 1;; ++cycle) {
        const auto started = std::chrono::steady_clock::now();
        code = readOnce(options, port, out, err);
        if (options.cycles && cycle >= *options.cycles) {
            break;
        }
        const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - started);
        if (stopSignals.awaitStop(std::max(interval - elapsed, std::chrono::milliseconds(0)))) {
            break;
        }
    }
    return code;
}

} // namespace kestrin::ReadCommand
