#include "ExceptionPDU.h"
#include "FrameSplitter.h"
#include "HexBytes.h"
#include "PDU.h"
#include "RTUFrame.h"

#include <algorithm>
#include <ostream>
#include <random>
#include <utility>
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

void drainInto(std::vector<Frame>& frames, FrameSplitter& splitter, bool afterSilence) {
    while (auto frame = splitter.next(afterSilence)) {
        frames.push_back(std::move(*frame));
    }
}

Bytes concat(Bytes joined, const Bytes& tail) {
    joined.insert(joined.end(), tail.begin(), tail.end());
    return joined;
}

const Bytes readRequest = hexBytes("01 03 00 00 00 0A C5 CD");

TEST(FrameSplitter, GivesUpOnTheFrontOnlyAfterSilence) {
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
        std::vector<Frame> frames;
        drainInto(frames, splitter, true);
        EXPECT_EQ(frames, row.afterSilence);
    }
}

TEST(FrameSplitter, OverflowKeepsTheNewest512Bytes) {
    Bytes bytes(1100);
    std::generate(bytes.begin(), bytes.end(), [n = 0]() mutable { return n++ % 251; });
    FrameSplitter splitter;
    splitter.append(ByteView(bytes).first(1024));
    EXPECT_EQ(splitter.buffer().size(), 1024U);
    splitter.append(ByteView(bytes).subspan(1024, 1));
    EXPECT_EQ(splitter.buffer(), Bytes(bytes.begin() + 513, bytes.begin() + 1025));

    FrameSplitter atOnce;
    atOnce.append(bytes);
    EXPECT_EQ(atOnce.buffer(), Bytes(bytes.end() - 512, bytes.end()));
}

// Random transactions made by the builders: a request PDU and the answer a device could give.
class RandomTransactions {
public:
    explicit RandomTransactions(std::uint32_t seed)
        : random_(seed) {}

    int uniform(int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random_);
    }

    std::pair<Bytes, Bytes> next() {
        const auto address = static_cast<std::uint16_t>(uniform(0, 0xFFFF));
        auto [request, answer] = transaction(uniform(0, 7), address);
        if (uniform(0, 4) == 0) {
            const auto& codes = ModbusException::allCases;
            answer = ExceptionPDU::make(
                request[0], codes[static_cast<std::size_t>(uniform(0, codes.size() - 1))]);
        }
        return {std::move(request), std::move(answer)};
    }

private:
    template <typename T>
    std::vector<T> values(int count, int high) {
        std::vector<T> result(static_cast<std::size_t>(count));
        std::generate(result.begin(), result.end(),
                      [&] { return static_cast<T>(uniform(0, high)); });
        return result;
    }

    // Kinds 0 to 3 read a table and are answered with a byte count and the data; 4 and 5 write
    // one coil or register and are echoed; 6 and 7 write several and are answered with the
    // address and quantity.
    std::pair<Bytes, Bytes> transaction(int kind, std::uint16_t address) {
        if (kind < 4) {
            const RegisterTable table = RegisterTable::allCases[static_cast<std::size_t>(kind)];
            const int count = uniform(1, table.maxReadCount());
            const int size = table.isBit() ? (count + 7) / 8 : 2 * count;
            Bytes request = PDU::read(table, address, count);
            Bytes answer = concat({request[0], static_cast<std::uint8_t>(size)},
                                  values<std::uint8_t>(size, 0xFF));
            return {std::move(request), std::move(answer)};
        }
        if (kind < 6) {
            Bytes request =
                kind == 4 ? PDU::writeSingleCoil(address, uniform(0, 1) == 1)
                          : PDU::writeSingleRegister(address, values<std::uint16_t>(1, 0xFFFF)[0]);
            return {request, request};
        }
        Bytes request =
            kind == 6
                ? PDU::writeMultipleCoils(address,
                                          values<bool>(uniform(1, FunctionCode::maxWriteBits), 1))
                : PDU::writeMultipleRegisters(
                      address,
                      values<std::uint16_t>(uniform(1, FunctionCode::maxWriteRegisters), 0xFFFF));
        Bytes answer(request.begin(), request.begin() + 5);
        return {std::move(request), std::move(answer)};
    }

    std::mt19937 random_;
};

// Random transactions fed in random chunks come back as their frames.
TEST(FrameSplitter, SplitsARandomStreamOfTransactionsBackIntoItsFrames) {
    RandomTransactions random(0x4B37);
    Bytes stream;
    std::vector<Frame> expected;
    for (int transaction = 0; transaction < 400; ++transaction) {
        const auto [request, answer] = random.next();
        const auto unit = static_cast<std::uint8_t>(random.uniform(1, 247));
        const Bytes requestFrame = RTUFrame::build(unit, request);
        const Bytes answerFrame = RTUFrame::build(unit, answer);
        stream = concat(concat(std::move(stream), requestFrame), answerFrame);
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
        const auto chunk =
            std::min(static_cast<std::size_t>(random.uniform(1, 64)), stream.size() - offset);
        splitter.append(ByteView(stream).subspan(offset, chunk));
        offset += chunk;
        drainInto(frames, splitter, false);
    }
    drainInto(frames, splitter, true);
    EXPECT_EQ(frames, expected);
}

} // namespace
} // namespace kestrin
