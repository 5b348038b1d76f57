#pragma once

#include "Datapoint.h"
#include "PollFailure.h"
#include "Value.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <span>
#include <string>

#include <nlohmann/json.hpp>

// --json: one object per line, so that a script reads each line as it comes without a parser
// that waits for the end of a document.
namespace kestrin::JsonLines {

// Milliseconds since the epoch as local ISO 8601 with milliseconds and the UTC offset:
// "2026-11-24T06:14:03.251+01:00".
std::string isoTime(std::int64_t msSinceEpoch);
std::int64_t nowMs();

// "ok", or what failed: "timeout", "exception" (with "exception": its code), "crc",
// "unexpected-unit", "unexpected-function", "malformed". The commands write "port" themselves when
// the port could not be used, which is no failure of the device.
void addStatus(nlohmann::json& object, const std::optional<PollFailure>& failure);

// One value read, or the attempt to read it: time, unit, table, address, type, value, text, eu,
// raw and status. A coil or discrete input is a bool, a scaled value has the scale's decimals; a
// NaN or infinity, which JSON cannot write, is null with the display text beside it. Without a
// value the value is null and raw empty.
nlohmann::json reading(const Datapoint& datapoint, const std::optional<Value>& value,
                       std::span<const std::uint16_t> raw, std::int64_t msSinceEpoch);

// The object on one line, flushed so that a reading pipe sees it at once.
void print(const nlohmann::json& object, std::ostream& out);

} // namespace kestrin::JsonLines
