#include "HeardExchange.h"

#include "ExceptionPDU.h"
#include "FunctionCode.h"
#include "PDU.h"
#include "RTUFrame.h"

namespace kestrin::HeardExchange {

namespace {

using Outcome = Result<std::optional<ReadData>, PollFailureError>;

// Every request decoded here fills at least unit, function, two 16-bit fields and the CRC.
constexpr std::size_t shortestRequest = 8;
// Unit, function, byte count and CRC around a read's data.
constexpr std::size_t answerFrame = 5;
constexpr std::size_t fixedAnswer = 8;
constexpr std::size_t exceptionAnswer = 5;
constexpr std::size_t largestByteCount = 255;

std::optional<ReadBlock> block(std::uint8_t unit, RegisterTable table, int address, int count,
                               int largest) {
    constexpr int addresses = 65536;
    if (count < 1 || count > largest || address + count > addresses) {
        return std::nullopt;
    }
    return ReadBlock{unit, table, static_cast<std::uint16_t>(address), count};
}

// A multiple write whose byte count is not what its quantity needs is served by no device.
bool countsAgree(ByteView frame, std::size_t countAt, std::size_t needed) {
    return frame.size() > countAt && frame[countAt] == needed;
}

std::optional<ReadBlock> rangeOf(ByteView frame) {
    if (frame.size() < shortestRequest ||
        RTUFrame::expectedRequestLength(frame) != static_cast<int>(frame.size())) {
        return std::nullopt;
    }
    const std::uint8_t unit = frame[0];
    const int address = uint16At(frame, 2);
    const int quantity = uint16At(frame, 4);
    switch (frame[1]) {
    case FunctionCode::readCoils:
    case FunctionCode::readDiscreteInputs:
    case FunctionCode::readHoldingRegisters:
    case FunctionCode::readInputRegisters: {
        const RegisterTable table(static_cast<RegisterTable::Case>(frame[1] - 1));
        return block(unit, table, address, quantity, table.maxReadCount());
    }
    case FunctionCode::writeSingleCoil:
        return block(unit, RegisterTable::coil, address, 1, 1);
    case FunctionCode::writeSingleRegister:
        return block(unit, RegisterTable::holdingRegister, address, 1, 1);
    case FunctionCode::writeMultipleCoils:
        return countsAgree(frame, 6, (static_cast<std::size_t>(quantity) + 7) / 8)
                   ? block(unit, RegisterTable::coil, address, quantity, FunctionCode::maxWriteBits)
                   : std::nullopt;
    case FunctionCode::writeMultipleRegisters:
        return countsAgree(frame, 6, 2 * static_cast<std::size_t>(quantity))
                   ? block(unit, RegisterTable::holdingRegister, address, quantity,
                           FunctionCode::maxWriteRegisters)
                   : std::nullopt;
    case FunctionCode::readWriteMultipleRegisters:
        return countsAgree(frame, 10, 2 * static_cast<std::size_t>(uint16At(frame, 8)))
                   ? block(unit, RegisterTable::holdingRegister, address, quantity,
                           FunctionCode::maxReadRegisters)
                   : std::nullopt;
    default:
        return std::nullopt;
    }
}

bool isWriteFunction(std::uint8_t function) {
    return function == FunctionCode::writeSingleCoil ||
           function == FunctionCode::writeSingleRegister ||
           function == FunctionCode::writeMultipleCoils ||
           function == FunctionCode::writeMultipleRegisters;
}

// The values a write request carries; its range is known, so its counts agree.
ReadData written(ByteView frame, int count) {
    switch (frame[1]) {
    case FunctionCode::writeSingleCoil:
        return ReadData::bits({uint16At(frame, 4) == 0xFF00});
    case FunctionCode::writeSingleRegister:
        return ReadData::registers({uint16At(frame, 4)});
    case FunctionCode::writeMultipleCoils:
        return ReadData::bits(unpackBits(frame.subspan(7, frame[6]), count));
    default: {
        std::vector<std::uint16_t> values;
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            values.push_back(uint16At(frame, 7 + 2 * i));
        }
        return ReadData::registers(std::move(values));
    }
    }
}

// The answer's PDU judged against the request whose range is known.
Outcome judgeData(ByteView request, Bytes pdu, const ReadBlock& range) {
    const ByteView requestPDU = request.subspan(1, request.size() - 3);
    if (isWriteFunction(request[1])) {
        if (auto checked = PDU::checkWrite(pdu, requestPDU); !checked) {
            return PollFailureError{checked.error().pollFailure()};
        }
        return std::optional<ReadData>(written(request, range.count));
    }
    // A read/write answers as a read of holding registers does, under its own code.
    if (request[1] == FunctionCode::readWriteMultipleRegisters) {
        pdu[0] = FunctionCode::readHoldingRegisters;
    }
    auto data = PDU::parseRead(pdu, range.table, range.count);
    if (!data) {
        return PollFailureError{data.error().pollFailure()};
    }
    return std::optional<ReadData>(std::move(data).value());
}

Outcome outcomeOf(ByteView request, ByteView response, const std::optional<ReadBlock>& range) {
    if (response.empty()) {
        // Carried out unconfirmed: nothing shows what a broadcast write wrote.
        if (request[0] == RTUFrame::broadcastUnit) {
            return std::optional<ReadData>();
        }
        return PollFailureError{PollFailure::timeout()};
    }
    auto parsed = RTUFrame::parseResponse(response, request[0], request[1]);
    if (!parsed) {
        return PollFailureError{parsed.error().pollFailure()};
    }
    if (const auto code = ExceptionPDU::exception(parsed.value())) {
        return PollFailureError{PollFailure::exception(*code)};
    }
    if (!range || parsed.value().empty()) {
        return std::optional<ReadData>();
    }
    return judgeData(request, std::move(parsed).value(), *range);
}

} // namespace

Judgement judge(ByteView request, ByteView response) {
    if (request.size() < 2) {
        return {std::nullopt, PollFailureError{PollFailure::malformed()}, false};
    }
    Judgement judgement{rangeOf(request), PollFailureError{}, isWriteFunction(request[1])};
    judgement.outcome = outcomeOf(request, response, judgement.range);
    return judgement;
}

bool isAnswer(ByteView request, ByteView frame) {
    if (request.size() < 2 || !RTUFrame::parseResponse(frame, request[0], request[1])) {
        return false;
    }
    if ((frame[1] & ExceptionPDU::exceptionBit) != 0) {
        return frame.size() == exceptionAnswer;
    }
    const auto length = answerLength(request);
    const auto own = RTUFrame::expectedResponseLength(frame);
    if (length || own) {
        return frame.size() == (length ? *length : static_cast<std::size_t>(*own));
    }
    // Nothing tells the length of this function's answers: its unit and function must do.
    return true;
}

std::optional<std::size_t> answerLength(ByteView request) {
    if (request.size() < shortestRequest) {
        return std::nullopt;
    }
    const std::size_t quantity = uint16At(request, 4);
    std::size_t byteCount = 0;
    switch (request[1]) {
    case FunctionCode::readCoils:
    case FunctionCode::readDiscreteInputs:
        byteCount = (quantity + 7) / 8;
        break;
    case FunctionCode::readHoldingRegisters:
    case FunctionCode::readInputRegisters:
    case FunctionCode::readWriteMultipleRegisters:
        byteCount = 2 * quantity;
        break;
    case FunctionCode::writeSingleCoil:
    case FunctionCode::writeSingleRegister:
    case FunctionCode::writeMultipleCoils:
    case FunctionCode::writeMultipleRegisters:
        return fixedAnswer;
    default:
        return std::nullopt;
    }
    return byteCount <= largestByteCount ? std::optional(answerFrame + byteCount) : std::nullopt;
}

} // namespace kestrin::HeardExchange
