#pragma once

#include "Bytes.h"
#include "CliOptions.h"
#include "ExitCode.h"
#include "PollFailure.h"
#include "Result.h"

#include <memory>
#include <optional>
#include <ostream>

namespace kestrin {
class SerialLink;
}

namespace kestrin::DeviceRequest {

// Why a request came to nothing: its exit code, and the device's failure when the port worked.
struct Failed {
    ExitCode code = ExitCode::requestFailed;
    std::optional<PollFailure> failure;
};

// The port of options for the whole command: opened at the first request and held until the
// command ends, so that a repeated read neither drops and raises DTR each time (which resets
// many boards) nor leaves the port to another program in between. A port that failed is opened
// anew at the next request.
class Port {
public:
    explicit Port(const CliOptions& options);
    ~Port();
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    // Sends one request PDU to the datapoint's unit and checks the answer frame (CRC, unit,
    // function). Returns the answer's PDU; otherwise the failure's text has gone to err.
    Result<Bytes, Failed> send(ByteView requestPDU, std::ostream& err);

private:
    const CliOptions& options_;
    std::unique_ptr<SerialLink> link_;
};

// Writes the text of a failed request to err.
ExitCode fail(PollFailure failure, const CliOptions& options, std::ostream& err);

} // namespace kestrin::DeviceRequest
