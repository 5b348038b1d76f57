#pragma once

#include "Bytes.h"
#include "CliOptions.h"
#include "ExitCode.h"
#include "PollFailure.h"
#include "Result.h"

#include <optional>
#include <ostream>

namespace kestrin::DeviceRequest {

// Why a request came to nothing: its exit code, and the device's failure when the port worked.
struct Failed {
    ExitCode code = ExitCode::requestFailed;
    std::optional<PollFailure> failure;
};

// Opens the port of options, sends one request PDU to the datapoint's unit and checks the answer
// frame (CRC, unit, function). Returns the answer's PDU; otherwise the failure's text has gone to
// err.
Result<Bytes, Failed> send(const CliOptions& options, ByteView requestPDU, std::ostream& err);

// Writes the text of a failed request to err.
ExitCode fail(PollFailure failure, const CliOptions& options, std::ostream& err);

} // namespace kestrin::DeviceRequest
