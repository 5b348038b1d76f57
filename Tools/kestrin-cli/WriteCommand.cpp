#include "WriteCommand.h"

#include "DeviceRequest.h"
#include "JsonLines.h"
#include "PDU.h"
#include "WriteRequest.h"

namespace kestrin::WriteCommand {

namespace {

// What was written and how it went; raw holds the registers sent, or the coil as 0 or 1.
void printJson(const CliOptions& options, const std::optional<PollFailure>& failure,
               bool portFailed, std::ostream& out) {
    const Datapoint& datapoint = options.datapoint;
    const std::vector<std::uint16_t> raw =
        datapoint.table().isBit()
            ? std::vector<std::uint16_t>{options.value.toDouble() != 0 ? std::uint16_t(1)
                                                                       : std::uint16_t(0)}
            : datapoint.registers(options.value);
    nlohmann::json object = JsonLines::reading(datapoint, options.value, raw, JsonLines::nowMs());
    object["write-mode"] = options.writeMode.rawValue();
    JsonLines::addStatus(object, failure);
    if (portFailed) {
        object["status"] = "port";
    }
    JsonLines::print(object, out);
}

ExitCode write(const CliOptions& options, const Bytes& request, std::ostream& out,
               std::ostream& err) {
    DeviceRequest::Port port(options);
    const auto answer = port.send(request, err);
    std::optional<DeviceRequest::Failed> failed;
    if (!answer) {
        failed = answer.error();
    } else if (const auto confirmed = PDU::checkWrite(answer.value(), request); !confirmed) {
        const PollFailure failure = confirmed.error().pollFailure();
        failed = DeviceRequest::Failed{DeviceRequest::fail(failure, options, err), failure};
    }
    if (options.json) {
        printJson(options, failed ? failed->failure : std::nullopt, failed && !failed->failure,
                  out);
    }
    return failed ? failed->code : ExitCode::success;
}

} // namespace

ExitCode run(const CliOptions& options, std::ostream& out, std::ostream& err) {
    const std::optional<Bytes> request =
        WriteRequest::pdu(options.datapoint, options.value, options.writeMode);
    // The options admit only writable tables, so there always is a request.
    if (!request) {
        return ExitCode::usageError;
    }
    return write(options, *request, out, err);
}

} // namespace kestrin::WriteCommand
