#include "DeviceRequest.h"

#include "L10n.h"
#include "RTUFrame.h"
#include "SerialLink.h"

namespace kestrin::DeviceRequest {

namespace {

// What a device still sends for a failed request (an answer after the time-out, the tail of a
// defective one) would reach the next command's request as its answer, the same length from
// the same unit: it is waited out before the port closes, and reported.
Failed settled(PollFailure failure, const CliOptions& options, SerialLink& link, bool timedOut,
               std::ostream& err) {
    Failed failed{fail(failure, options, err), failure};
    const double timeout = options.timeoutSeconds();
    const auto late = timedOut ? link.lateAnswer(timeout) : link.restOfAnswer();
    if (late && !late.value().empty()) {
        err << L10n::texts().log.lateAnswer() << '\n';
    }
    return failed;
}

} // namespace

Port::Port(const CliOptions& options)
    : options_(options) {}

Port::~Port() = default;

Result<Bytes, Failed> Port::send(ByteView requestPDU, std::ostream& err) {
    if (!link_) {
        auto link =
            std::make_unique<SerialLink>(options_.port, options_.serial, options_.testDevice);
        if (const auto opened = link->open(); !opened) {
            err << L10n::Errors::describe(opened.error()) << '\n';
            return Failed{ExitCode::portFailed, std::nullopt};
        }
        link_ = std::move(link);
    }
    const std::uint8_t unit = options_.datapoint.unitID;
    const Bytes frame = RTUFrame::build(unit, requestPDU);
    const auto answer = link_->transact(frame, true, options_.timeoutSeconds());
    if (!answer) {
        // A missing answer is the device's failure; anything else means the port is unusable.
        if (answer.error().is<SerialLinkError::Timeout>()) {
            return settled(PollFailure::timeout(), options_, *link_, true, err);
        }
        err << L10n::Errors::describe(answer.error()) << '\n';
        link_.reset();
        return Failed{ExitCode::portFailed, std::nullopt};
    }
    auto pdu = RTUFrame::parseResponse(answer.value(), unit, requestPDU[0]);
    if (!pdu) {
        return settled(pdu.error().pollFailure(), options_, *link_, false, err);
    }
    return std::move(pdu).value();
}

ExitCode fail(PollFailure failure, const CliOptions& options, std::ostream& err) {
    err << L10n::Log::failure(failure, options.timeoutMs) << '\n';
    return ExitCode::requestFailed;
}

} // namespace kestrin::DeviceRequest
