#pragma once

#include "Bytes.h"
#include "Datapoint.h"
#include "LogSegment.h"
#include "NumberStyle.h"
#include "PollFailure.h"
#include "ReadBlock.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include <QDateTime>

namespace kestrin::LogLine {

// The lines of the communication log, composed from segments in the current language. Lines
// that the options leave out come back as nothing; every other line is always written.

struct Options {
    bool showTimestamps = true;
    bool showRawFrames = false;
    bool onlyProblems = false;

    friend bool operator==(const Options&, const Options&) = default;
};

// "HH:mm:ss.SSS" in local time and two spaces, whatever the user's locale.
LogSegment timestamp(const QDateTime& now);
// The line with the time segment in front when the options ask for it.
LogLineSegments stamped(LogLineSegments line, const QDateTime& now, const Options& options);

// "--- Reading started on /dev/ttyUSB0 @ 9600 8E1 ---".
LogLineSegments readingStarted(std::string_view path, std::string_view serial);
LogLineSegments readingStopped();
// "--- Listening on /dev/ttyUSB0 @ 9600 8E1 ---".
LogLineSegments listeningStarted(std::string_view path, std::string_view serial);
LogLineSegments listeningStopped();
// "--- Serial port open again ---", naming the new path when the adapter came back under another.
LogLineSegments portReopened(std::string_view newPath = {});
LogLineSegments portLost(std::string_view path);
// "--- Latency timer of /dev/ttyUSB0 set to 1 ms ---".
LogLineSegments latencyTimerSet(std::string_view path);
// "⚠ Late answer discarded", with the bytes when raw frames are on.
LogLineSegments lateAnswer(ByteView bytes, const Options& options);
// A project's RS-485 delays were cut to the longest the kernel takes.
LogLineSegments rs485DelaysLimited();

// "← Unit 1 · FC 03 Read holding registers · 02 01 F4  (12 ms)": the answer's data, or both
// whole frames with raw frames on. Nothing with only problems on.
std::optional<LogLineSegments> readAnswer(const ReadBlock& block, ByteView request,
                                          ByteView response, double seconds,
                                          const Options& options);
// "✕ Unit 1 · FC 03 Read holding registers HR 100–109 · no response within 1000 ms"; a warning
// for an exception answer, an error otherwise.
LogLineSegments readFailure(const ReadBlock& block, ByteView request, PollFailure failure,
                            int timeoutMs);

// "⚠ Unit 1 · HR 0–10 read in parts: the device refused 1–9", the refused addresses in runs;
// without them the line ends after "parts". No noun: the block already names the table.
LogLineSegments readInParts(const ReadBlock& block, std::span<const ReadBlock> refused);

// "→ Unit 1 · FC 06 Write single register · Setpoint = 21.5". Nothing with only problems on.
std::optional<LogLineSegments> writeSent(const Datapoint& datapoint, std::uint8_t function,
                                         const Value& value, const NumberStyle& style,
                                         const Options& options);
// "✎ Unit 1 · Setpoint = 21.5 °C  (15 ms)".
LogLineSegments writeConfirmed(const Datapoint& datapoint, const Value& value,
                               const NumberStyle& style, double seconds);
// "✕ Writing Setpoint failed · …"; a write whose record is gone (null) is named "?".
LogLineSegments writeFailed(const Datapoint* datapoint, PollFailure failure, int timeoutMs);
// "  → request  ← response" (no answer part for an empty response), under a line that does not
// show the frames itself (a write's, a refused read's, a heard defective answer's); only with raw
// frames on and only problems off.
std::optional<LogLineSegments> writeFrames(ByteView request, ByteView response,
                                           const Options& options);

// Listening. range is the heard request's unit, table and addresses, absent for functions without.
// "→ Unit 1 · FC 03 Read holding registers · HR 0–9", the request frame in place of the range
// with raw frames on. Nothing with only problems on.
std::optional<LogLineSegments> heardRequest(const std::optional<ReadBlock>& range, ByteView request,
                                            const Options& options);
// readAnswer's line for an answer heard; nothing for a broadcast, which nothing answers.
std::optional<LogLineSegments> heardAnswer(ByteView request, ByteView response, double seconds,
                                           const Options& options);
// readFailure's line for a heard request's function, and "No response" for a time-out: the
// other master's time-out is not known.
LogLineSegments heardFailure(const std::optional<ReadBlock>& range, ByteView request,
                             PollFailure failure, int timeoutMs);
// "⚠ Fits no request · 01 03 02 00 07 F9 86": always, with its bytes.
LogLineSegments unmatched(ByteView bytes);

// A duration in seconds as whole milliseconds, rounded.
long long milliseconds(double seconds) noexcept;

} // namespace kestrin::LogLine
