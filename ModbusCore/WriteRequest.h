#pragma once

#include "Bytes.h"
#include "Datapoint.h"
#include "WriteMode.h"

#include <optional>

namespace kestrin::WriteRequest {

// The request PDU that writes an engineering value to a datapoint, or nothing for a table that
// cannot be written (discrete inputs, input registers). A coil is on for any value but 0; a
// holding register gets the value divided by the scale (not for 0 or 1), rounded and clamped to
// the type. One register or one coil follows the write mode; two or four registers are always
// FC16. Pure: the application and the command line build their writes with it.
std::optional<Bytes> pdu(const Datapoint& datapoint, const Value& value, WriteMode mode);

} // namespace kestrin::WriteRequest
