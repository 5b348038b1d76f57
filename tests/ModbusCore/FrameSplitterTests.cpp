#include "ExceptionPDU.h"
#include "FrameSplitter.h"
#include "HexBytes.h"
#include "PDU.h"
#include "RTUFrame.h"

#include <algorithm>
#include <ostream>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {

static void PrintTo(const FrameSplitter::Frame& frame, std::ostream* out) {
    constexpr const char* kinds[] = {"request", "response", "garbage"};
    *out << kinds[static_cast<int>(frame.kind)] << "(" << hexString(frame.bytes) << ")";
}

namespace {

using test::hexBytes;
using Frame = FrameSplitter::Frame;

std::vector<Frame> drain(FrameSplitter& splitter, bool afterSilence) {
    std::vector<Frame> frames;
    while (auto frame = splitter.next(afterSilence)) {
        frames.push_back(std::move(*frame));
    }
    return frames;
}

Bytes concat(const Bytes& a, const Bytes& b) {
    Bytes joined = a;
    joined.insert(joined.end(), b.begin(), b.end());
    return joined;
}

const Bytes readRequest = hexBytes("01 03 00 00 00 0A C5 CD");

TEST(FrameSplitter, SplitsARequestFromItsAnswer) {
    Bytes pdu = hexBytes("03 14");
    for (std::uint8_t i = 0; i < 20; ++i) {
        pdu.push_back(i);
    }
    const Bytes answer = RTUFrame::build(1, pdu);
    FrameSplitter splitter;
    splitter.append(concat(readRequest, answer));
    EXPECT_EQ(drain(splitter, false),
              (std::vector{Frame::request(readRequest), Frame::response(answer)}));
    EXPECT_TRUE(splitter.isEmpty());
}

TEST(FrameSplitter, WaitsForSilenceBeforeGivingUpOnTheFront) {
    struct Row {
        const char* name;
        const char* bytes;
        std::vector<Frame> afterSilence;
    };
    const Row rows[] = {
        {"noise before a request",
         "AA BB 01 03 00 00 00 0A C5 CD",
         {Frame::garbage(hexBytes("AA BB")), Frame::request(readRequest)}},
        {"partial frame", "01 03 00", {Frame::garbage(hexBytes("01 03 00"))}},
        {"no frame anywhere", "AA BB CC DD EE", {Frame::garbage(hexBytes("AA BB CC DD EE"))}},
        {"unknown function with a valid CRC",
         "01 41 01 02 03 1D 5D",
         {Frame::request(hexBytes("01 41 01 02 03 1D 5D"))}},
        {"noise before an exception answer",
         "AA 01 83 02 C0 F1",
         {Frame::garbage(hexBytes("AA")), Frame::response(hexBytes("01 83 02 C0 F1"))}},
        // Resynchronising trusts a known request length and never tries the answer reading.
        {"noise before a read answer",
         "AA 01 03 04 00 01 00 02 2A 32",
         {Frame::garbage(hexBytes("AA 01 03 04 00 01 00 02 2A 32"))}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        FrameSplitter splitter;
        splitter.append(hexBytes(row.bytes));
        EXPECT_EQ(splitter.next(false), std::nullopt);
        EXPECT_EQ(splitter.buffer(), hexBytes(row.bytes));
        EXPECT_EQ(drain(splitter, true), row.afterSilence);
        EXPECT_TRUE(splitter.isEmpty());
    }
}

TEST(FrameSplitter, FrontTriesTheAnswerWhenTheRequestReadingFails) {
    // Function 3 reads as an 8-byte request whose CRC fails, then as a 9-byte answer that checks.
    const Bytes answer = hexBytes("01 03 04 00 01 00 02 2A 32");
    FrameSplitter splitter;
    splitter.append(answer);
    EXPECT_EQ(splitter.next(false), Frame::response(answer));
}

TEST(FrameSplitter, OverflowKeepsTheNewest512Bytes) {
    const auto ramp = [](std::size_t size, std::uint8_t first) {
        Bytes bytes(size);
        for (std::size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<std::uint8_t>(first + i);
        }
        return bytes;
    };
    const Bytes full = ramp(1024, 0);
    FrameSplitter splitter;
    splitter.append(full);
    EXPECT_EQ(splitter.buffer(), full);
    splitter.append(hexBytes("FF"));
    EXPECT_EQ(splitter.buffer(), concat(Bytes(full.end() - 511, full.end()), hexBytes("FF")));

    FrameSplitter single;
    const Bytes big = ramp(1100, 7);
    single.append(big);
    EXPECT_EQ(single.buffer(), Bytes(big.end() - 512, big.end()));
}

// Random transactions built with the request builders, cut into random chunks, come back as the
// frames they were made of.
TEST(FrameSplitter, SplitsARandomStreamOfTransactionsBackIntoItsFrames) {
    std::mt19937 random(0x4B37);
    const auto uniform = [&random](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    const auto randomBits = [&](int count) {
        std::vector<bool> values(static_cast<std::size_t>(count));
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] = uniform(0, 1) == 1;
        }
        return values;
    };
    const auto randomRegisters = [&](int count) {
        std::vector<std::uint16_t> values(static_cast<std::size_t>(count));
        for (auto& value : values) {
            value = static_cast<std::uint16_t>(uniform(0, 0xFFFF));
        }
        return values;
    };

    Bytes stream;
    std::vector<Frame> expected;
    for (int transaction = 0; transaction < 400; ++transaction) {
        const auto unit = static_cast<std::uint8_t>(uniform(1, 247));
        const auto address = static_cast<std::uint16_t>(uniform(0, 0xFFFF));
        Bytes request;
        Bytes answer;
        const int kind = uniform(0, 7);
        if (kind < 4) {
            const RegisterTable table = RegisterTable::allCases[static_cast<std::size_t>(kind)];
            const int count = uniform(1, table.maxReadCount());
            request = PDU::read(table, address, count);
            Bytes data;
            if (table.isBit()) {
                data = packBits(randomBits(count));
            } else {
                for (std::uint16_t value : randomRegisters(count)) {
                    appendUInt16(data, value);
                }
            }
            answer = concat({request[0], static_cast<std::uint8_t>(data.size())}, data);
        } else if (kind == 4) {
            request = answer = PDU::writeSingleCoil(address, uniform(0, 1) == 1);
        } else if (kind == 5) {
            request = answer = PDU::writeSingleRegister(address, randomRegisters(1)[0]);
        } else {
            request =
                kind == 6
                    ? PDU::writeMultipleCoils(address,
                                              randomBits(uniform(1, FunctionCode::maxWriteBits)))
                    : PDU::writeMultipleRegisters(
                          address, randomRegisters(uniform(1, FunctionCode::maxWriteRegisters)));
            answer.assign(request.begin(), request.begin() + 5);
        }
        if (uniform(0, 4) == 0) {
            const auto exceptions = ModbusException::allCases;
            answer = ExceptionPDU::make(
                request[0],
                exceptions[static_cast<std::size_t>(uniform(0, exceptions.size() - 1))]);
        }
        const Bytes requestFrame = RTUFrame::build(unit, request);
        const Bytes answerFrame = RTUFrame::build(unit, answer);
        stream = concat(stream, concat(requestFrame, answerFrame));
        expected.push_back(Frame::request(requestFrame));
        // An answer that is also a whole request (an FC05/FC06 echo, a bit read answer of three
        // data bytes) reads as one: at the front the request reading is tried first.
        const bool readsAsRequest =
            RTUFrame::expectedRequestLength(answerFrame) == static_cast<int>(answerFrame.size());
        expected.push_back(readsAsRequest ? Frame::request(answerFrame)
                                          : Frame::response(answerFrame));
    }

    FrameSplitter splitter;
    std::vector<Frame> frames;
    for (std::size_t offset = 0; offset < stream.size();) {
        const std::size_t chunk =
            std::min<std::size_t>(static_cast<std::size_t>(uniform(1, 64)), stream.size() - offset);
        splitter.append(ByteView(stream).subspan(offset, chunk));
        offset += chunk;
        for (Frame& frame : drain(splitter, false)) {
            frames.push_back(std::move(frame));
        }
    }
    for (Frame& frame : drain(splitter, true)) {
        frames.push_back(std::move(frame));
    }
    EXPECT_EQ(frames, expected);
    EXPECT_TRUE(splitter.isEmpty());
}

} // namespace
} // namespace kestrin
