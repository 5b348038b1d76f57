#include "UnitScan.h"

#include "ModbusException.h"
#include "PDU.h"
#include "RTUFrame.h"
#include "SerialLink.h"
#include "SerialTiming.h"

#include <algorithm>
#include <array>

namespace kestrin::UnitScan {

namespace {

// A read of one value: unit, function, address, count and CRC.
constexpr int requestBytes = 8;
// The longest answer to it: unit, function, byte count, one register and CRC.
constexpr int answerBytes = 7;
constexpr double thinkingSeconds = 0.030;

// Holding registers first: nearly every device has them. A device that answers 01 to that is
// asked for the other tables before it counts as one that knows no read at all.
constexpr std::array probeOrder{RegisterTable::holdingRegister, RegisterTable::coil,
                                RegisterTable::discreteInput, RegisterTable::inputRegister};

double wireSeconds(const SerialConfiguration& serial, int characters) {
    return SerialTiming::transmissionTime(characters, serial.baudRate, serial.bitsPerCharacter());
}

// A gateway answers for the units behind it: these say nobody answered there.
bool noDeviceBehindGateway(std::uint8_t exception) {
    return exception == ModbusException::gatewayPathUnavailable ||
           exception == ModbusException::gatewayTargetFailedToRespond;
}

// What unit answered to a read of one value of table; nothing when the frame is garbled (a bad
// CRC, another unit or function, a wrong length).
std::optional<Result<ReadData, ResponseError>> readingIn(ByteView frame, std::uint8_t unit,
                                                         RegisterTable table) {
    const auto pdu = RTUFrame::parseResponse(frame, unit, table.readFunction().code());
    if (!pdu) {
        return std::nullopt;
    }
    auto data = PDU::parseRead(pdu.value(), table, 1);
    if (!data && data.error().kind == ResponseError::Kind::malformed) {
        return std::nullopt;
    }
    return data;
}

// The answer of a unit come after its time-out. It answers the table it was asked for, which need
// not be the one asked now.
std::optional<Answer> lateAnswerIn(ByteView frame) {
    if (frame.size() < 2 || !RTUFrame::unitRange.contains(frame[0])) {
        return std::nullopt;
    }
    const auto found = std::ranges::find(probeOrder, frame[1] & 0x7F, [](RegisterTable candidate) {
        return candidate.readFunction().code();
    });
    if (found == probeOrder.end()) {
        return std::nullopt;
    }
    const auto data = readingIn(frame, frame[0], *found);
    if (!data || (!*data && noDeviceBehindGateway(data->error().code))) {
        return std::nullopt;
    }
    return Answer{frame[0], *found, *data ? std::nullopt : std::optional(data->error().code), true};
}

} // namespace

double defaultTimeout(const SerialConfiguration& serial) {
    return wireSeconds(serial, answerBytes) + thinkingSeconds;
}

double silentSeconds(const SerialConfiguration& serial, double timeout, int units) {
    if (units <= 0) {
        return 0.0;
    }
    const double perUnit =
        wireSeconds(serial, requestBytes) + timeout +
        SerialTiming::interFrameDelay(serial.baudRate, serial.bitsPerCharacter());
    // The late window reaches twice the time-out past the last request: one time-out more.
    return units * perUnit + timeout;
}

Result<std::optional<Answer>, SerialLinkError>
probe(SerialLink& link, std::uint8_t unit, double timeout, std::vector<Answer>* lateAnswers) {
    std::optional<Answer> proven;
    bool askedAgain = false;
    for (std::size_t index = 0; index < probeOrder.size();) {
        const RegisterTable table = probeOrder[index];
        const auto frame =
            link.transact(RTUFrame::build(unit, PDU::read(table, 0, 1)), true, timeout);
        if (!frame) {
            if (frame.error().is<SerialLinkError::Timeout>()) {
                return proven;
            }
            return frame.error();
        }
        const auto data = readingIn(frame.value(), unit, table);
        if (!data) {
            // Its tail must not meet the next request.
            if (auto rest = link.restOfAnswer(); !rest) {
                return rest.error();
            }
            const auto late = lateAnswerIn(frame.value());
            if (late && late->unit != unit && lateAnswers != nullptr) {
                lateAnswers->push_back(*late);
            }
            // A slow unit's late answer came instead of this one's, or collided with it into
            // garbage: its own answer may have been lost, so it is asked once more.
            if (askedAgain) {
                return proven;
            }
            askedAgain = true;
            continue;
        }
        if (*data) {
            return std::optional(Answer{unit, table, std::nullopt});
        }
        const std::uint8_t exception = data->error().code;
        if (noDeviceBehindGateway(exception)) {
            return proven;
        }
        if (exception != ModbusException::illegalFunction) {
            return std::optional(Answer{unit, table, exception});
        }
        // A device that knows no read at all is still a device.
        if (!proven) {
            proven = Answer{unit, table, exception};
        }
        ++index;
    }
    return proven;
}

Result<std::optional<Answer>, SerialLinkError> lateAnswer(SerialLink& link, double timeout) {
    const auto frame = link.lateAnswer(timeout);
    if (!frame) {
        return frame.error();
    }
    auto late = lateAnswerIn(frame.value());
    if (!late && !frame.value().empty()) {
        // Its tail must not meet the next request.
        if (auto rest = link.restOfAnswer(); !rest) {
            return rest.error();
        }
    }
    return late;
}

Result<std::vector<Answer>, SerialLinkError> run(SerialLink& link,
                                                 const std::vector<std::uint8_t>& units,
                                                 double timeout, const ProgressCallback& progress) {
    std::vector<Answer> answers;
    const int total = static_cast<int>(units.size());
    for (int done = 1; done <= total; ++done) {
        std::vector<Answer> step;
        const auto answer = probe(link, units[static_cast<std::size_t>(done - 1)], timeout, &step);
        if (!answer) {
            return answer.error();
        }
        if (answer.value()) {
            step.push_back(*answer.value());
        } else if (done == total) {
            // No next unit's request gives the last one's late answer time to arrive.
            const auto late = lateAnswer(link, timeout);
            if (!late) {
                return late.error();
            }
            if (late.value()) {
                step.push_back(*late.value());
            }
        }
        // A unit proven on time and then late to another table counts once, and so does one
        // asked twice that answered both late.
        const auto before = static_cast<std::ptrdiff_t>(answers.size());
        for (const Answer& found : step) {
            if (std::ranges::find(answers, found.unit, &Answer::unit) == answers.end()) {
                answers.push_back(found);
            }
        }
        if (progress) {
            progress({done, total, silentSeconds(link.configuration(), timeout, total - done),
                      std::vector(answers.begin() + before, answers.end())});
        }
    }
    return answers;
}

} // namespace kestrin::UnitScan
