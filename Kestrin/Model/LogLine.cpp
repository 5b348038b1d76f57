#include "LogLine.h"

#include "DatapointLabel.h"
#include "L10n.h"
#include "SerialConfiguration.h"

#include <cmath>
#include <string>
#include <utility>

#include <QLocale>

namespace kestrin::LogLine {
namespace {

using Kind = LogSegment::Kind;

// The function code byte of a request frame; 00 for a frame too short to carry one.
std::uint8_t functionOf(ByteView request) noexcept {
    return request.size() >= 2 ? request[1] : 0;
}

Kind failureKind(PollFailure failure) noexcept {
    return failure.kind == PollFailure::Kind::exception ? Kind::warning : Kind::error;
}

LogLineSegments systemLine(std::string_view text) {
    return {{Kind::system, "--- " + std::string(text) + " ---"}};
}

std::string duration(double seconds) {
    return "  (" + std::to_string(milliseconds(seconds)) + " ms)";
}

// A heard request of a function without a range has no block to name its unit; its frame does.
std::uint8_t unitOf(ByteView request) noexcept {
    return request.empty() ? 0 : request[0];
}

std::optional<LogLineSegments> answerLine(std::uint8_t unit, ByteView request, ByteView response,
                                          double seconds, const Options& options) {
    if (options.onlyProblems) {
        return std::nullopt;
    }
    const std::uint8_t function = functionOf(request);
    LogLineSegments line{
        {Kind::response, "← "},
        {Kind::response, L10n::Log::unitFunction(unit, function)},
        {Kind::meta, " " + L10n::Modbus::functionName(function) + " · "},
    };
    if (options.showRawFrames) {
        line.push_back({Kind::request, hexString(request)});
        line.push_back({Kind::meta, "  ←  "});
        line.push_back({Kind::response, hexString(response)});
    } else {
        // Unit and function code in front and the CRC behind say nothing the line does not.
        const ByteView data =
            response.size() < 5 ? response : response.subspan(2, response.size() - 4);
        line.push_back({Kind::response, hexString(data)});
    }
    line.push_back({Kind::meta, duration(seconds)});
    return line;
}

// "✕ Unit 1 · FC 03 Read holding registers HR 100–109 · reason"; named names the function, which
// for a read is the table's read function whatever the request asked.
LogLineSegments failureLine(std::uint8_t unit, ByteView request, std::uint8_t named,
                            std::string_view range, PollFailure failure, std::string_view reason) {
    std::string text = "✕ " + L10n::Log::unitFunction(unit, functionOf(request)) + " " +
                       L10n::Modbus::functionName(named);
    if (!range.empty()) {
        text += " " + std::string(range);
    }
    return {{failureKind(failure), text + " · " + std::string(reason)}};
}

} // namespace

LogSegment timestamp(const QDateTime& now) {
    return {Kind::timestamp,
            QLocale::c().toString(now.toLocalTime(), QStringLiteral("HH:mm:ss.zzz")).toStdString() +
                "  "};
}

LogLineSegments stamped(LogLineSegments line, const QDateTime& now, const Options& options) {
    if (options.showTimestamps) {
        line.insert(line.begin(), timestamp(now));
    }
    return line;
}

LogLineSegments readingStarted(std::string_view path, std::string_view serial) {
    return systemLine(L10n::texts().log.started(path, serial));
}

LogLineSegments readingStopped() {
    return systemLine(L10n::texts().log.stopped());
}

LogLineSegments listeningStarted(std::string_view path, std::string_view serial) {
    return systemLine(L10n::texts().log.listeningStarted(path, serial));
}

LogLineSegments listeningStopped() {
    return systemLine(L10n::texts().log.listeningStopped());
}

LogLineSegments portReopened(std::string_view newPath) {
    const auto& texts = L10n::texts().log;
    return systemLine(newPath.empty() ? texts.serialRestored() : texts.serialRestoredAt(newPath));
}

LogLineSegments latencyTimerSet(std::string_view path) {
    return systemLine(L10n::texts().adapter.latencySet(path));
}

LogLineSegments portLost(std::string_view path) {
    return {{Kind::error, L10n::texts().log.serialLost(path)}};
}

LogLineSegments lateAnswer(ByteView bytes, const Options& options) {
    LogLineSegments line{{Kind::warning, "⚠ " + L10n::texts().log.lateAnswer()}};
    if (options.showRawFrames) {
        line.push_back({Kind::meta, "  ←  "});
        line.push_back({Kind::response, hexString(bytes)});
    }
    return line;
}

LogLineSegments rs485DelaysLimited() {
    return {{Kind::warning,
             "⚠ " + L10n::texts().log.rs485DelaysLimited(RS485Direction::longestDelayMs)}};
}

std::optional<LogLineSegments> readAnswer(const ReadBlock& block, ByteView request,
                                          ByteView response, double seconds,
                                          const Options& options) {
    return answerLine(block.unit, request, response, seconds, options);
}

LogLineSegments readFailure(const ReadBlock& block, ByteView request, PollFailure failure,
                            int timeoutMs) {
    const RegisterTable table = block.table;
    return failureLine(block.unit, request, table.readFunction().code(),
                       L10n::Log::range(table, block.address, block.count), failure,
                       L10n::Log::failure(failure, timeoutMs));
}

LogLineSegments readInParts(const ReadBlock& block, std::span<const ReadBlock> refused) {
    const auto& texts = L10n::texts().log;
    std::string text = "⚠ " + texts.unit(block.unit) + " · " +
                       texts.readInParts(L10n::Log::range(block.table, block.address, block.count));
    if (!refused.empty()) {
        std::string runs;
        for (const ReadBlock& run : refused) {
            const std::string range = L10n::Log::range(run.table, run.address, run.count);
            // The table is named once, by the block.
            runs += (runs.empty() ? "" : ", ") + range.substr(range.find(' ') + 1);
        }
        text += ": " + texts.refusedAddresses(runs);
    }
    return {{Kind::warning, std::move(text)}};
}

std::optional<LogLineSegments> writeSent(const Datapoint& datapoint, std::uint8_t function,
                                         const Value& value, const NumberStyle& style,
                                         const Options& options) {
    if (options.onlyProblems) {
        return std::nullopt;
    }
    return LogLineSegments{{Kind::request, "→ " +
                                               L10n::Log::unitFunction(datapoint.unitID, function) +
                                               " " + L10n::Modbus::functionName(function) + " · " +
                                               DatapointLabel::name(datapoint) + " = " +
                                               datapoint.formatted(value, style)}};
}

LogLineSegments writeConfirmed(const Datapoint& datapoint, const Value& value,
                               const NumberStyle& style, double seconds) {
    std::string text = "✎ " + L10n::texts().log.unit(datapoint.unitID) + " · " +
                       DatapointLabel::name(datapoint) + " = " + datapoint.formatted(value, style);
    if (!datapoint.engineeringUnit.empty()) {
        text += " " + datapoint.engineeringUnit;
    }
    return {{Kind::response, text + duration(seconds)}};
}

LogLineSegments writeFailed(const Datapoint* datapoint, PollFailure failure, int timeoutMs) {
    const std::string name = datapoint == nullptr ? "?" : DatapointLabel::name(*datapoint);
    return {{Kind::error, "✕ " + L10n::texts().log.writeFailed(name) + " · " +
                              L10n::Log::failure(failure, timeoutMs)}};
}

std::optional<LogLineSegments> writeFrames(ByteView request, ByteView response,
                                           const Options& options) {
    if (!options.showRawFrames || options.onlyProblems) {
        return std::nullopt;
    }
    std::string text = "  → " + hexString(request);
    if (!response.empty()) {
        text += "  ← " + hexString(response);
    }
    return LogLineSegments{{Kind::meta, std::move(text)}};
}

std::optional<LogLineSegments> heardRequest(const std::optional<ReadBlock>& range, ByteView request,
                                            const Options& options) {
    if (options.onlyProblems) {
        return std::nullopt;
    }
    const std::uint8_t function = functionOf(request);
    std::string text = "→ " + L10n::Log::unitFunction(unitOf(request), function) + " " +
                       L10n::Modbus::functionName(function);
    if (options.showRawFrames) {
        text += " · " + hexString(request);
    } else if (range) {
        text += " · " + L10n::Log::range(range->table, range->address, range->count);
    }
    return LogLineSegments{{Kind::request, std::move(text)}};
}

std::optional<LogLineSegments> heardAnswer(ByteView request, ByteView response, double seconds,
                                           const Options& options) {
    if (response.empty()) {
        return std::nullopt;
    }
    return answerLine(unitOf(request), request, response, seconds, options);
}

LogLineSegments heardFailure(const std::optional<ReadBlock>& range, ByteView request,
                             PollFailure failure, int timeoutMs) {
    const std::string reason = failure.kind == PollFailure::Kind::timeout
                                   ? L10n::texts().log.noResponse()
                                   : L10n::Log::failure(failure, timeoutMs);
    return failureLine(unitOf(request), request, functionOf(request),
                       range ? L10n::Log::range(range->table, range->address, range->count) : "",
                       failure, reason);
}

LogLineSegments unmatched(ByteView bytes) {
    return {{Kind::warning, "⚠ " + L10n::texts().log.unmatched() + " · "},
            {Kind::response, hexString(bytes)}};
}

long long milliseconds(double seconds) noexcept {
    return std::llround(seconds * 1000);
}

} // namespace kestrin::LogLine
