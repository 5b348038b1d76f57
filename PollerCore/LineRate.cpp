#include "LineRate.h"

#include "PDU.h"
#include "RTUFrame.h"
#include "SerialTiming.h"

#include <algorithm>
#include <cstdint>

namespace kestrin::LineRate {

namespace {

// Polls asked for faster than this are read as fast as the line goes; weighing them by a
// shorter interval would only let one poll hide all others.
constexpr double shortestWeighedInterval = 0.001;

int requestCharacters(const ReadBlock& block) {
    return static_cast<int>(
        RTUFrame::build(block.unit, PDU::read(block.table, block.address, block.count)).size());
}

int answerCharacters(const ReadBlock& block) {
    const int dataBytes = block.table.isBit() ? (block.count + 7) / 8 : block.count * 2;
    // The frame's first three bytes decide its length.
    const Bytes head{block.unit, block.table.readFunction().code(),
                     static_cast<std::uint8_t>(dataBytes)};
    return RTUFrame::expectedResponseLength(head).value_or(0);
}

} // namespace

double answerSeconds(const ReadBlock& block, const SerialConfiguration& serial,
                     double turnaroundSeconds) {
    return turnaroundSeconds + SerialTiming::transmissionTime(answerCharacters(block),
                                                              serial.baudRate,
                                                              serial.bitsPerCharacter());
}

double exchangeSeconds(const ReadBlock& block, const SerialConfiguration& serial,
                       double turnaroundSeconds) {
    const int bits = serial.bitsPerCharacter();
    return SerialTiming::transmissionTime(requestCharacters(block), serial.baudRate, bits) +
           answerSeconds(block, serial, turnaroundSeconds) +
           SerialTiming::interFrameDelay(serial.baudRate, bits);
}

double readSeconds(const ReadBlock& block, const SerialConfiguration& serial,
                   double handoverSeconds) {
    const double silence =
        SerialTiming::interFrameDelay(serial.baudRate, serial.bitsPerCharacter());
    return exchangeSeconds(block, serial, silence + handoverSeconds);
}

std::optional<double> requestsPerSecond(std::span<const PollPlan> plans,
                                        const SerialConfiguration& serial, double handoverSeconds) {
    if (serial.baudRate <= 0) {
        return std::nullopt;
    }
    double reads = 0.0;
    double seconds = 0.0;
    for (const PollPlan& plan : plans) {
        const double weight = 1.0 / std::max(plan.interval, shortestWeighedInterval);
        for (const ReadBlock& block : plan.blocks) {
            reads += weight;
            seconds += weight * readSeconds(block, serial, handoverSeconds);
        }
    }
    if (reads == 0.0) {
        return std::nullopt;
    }
    return reads / seconds;
}

} // namespace kestrin::LineRate
