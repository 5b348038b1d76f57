#include "WriteCommand.h"

#include "DeviceRequest.h"
#include "PDU.h"
#include "WriteRequest.h"

namespace kestrin::WriteCommand {

ExitCode run(const CliOptions& options, std::ostream& err) {
    const std::optional<Bytes> request =
        WriteRequest::pdu(options.datapoint, options.value, options.writeMode);
    // The options admit only writable tables, so there always is a request.
    if (!request) {
        return ExitCode::usageError;
    }
    const auto answer = DeviceRequest::send(options, *request, err);
    if (!answer) {
        return answer.error();
    }
    if (const auto confirmed = PDU::checkWrite(answer.value(), *request); !confirmed) {
        return DeviceRequest::fail(confirmed.error().pollFailure(), options, err);
    }
    return ExitCode::success;
}

} // namespace kestrin::WriteCommand
