#include "LineRate.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

PollPlan plan(double interval, std::vector<ReadBlock> blocks) {
    return {Uuid::random(), interval, std::move(blocks), {}};
}

// Expected figures worked out by hand: characters of request + answer, two silences (3.5
// characters up to 19200 baud, 1.75 ms above) and the hand-over.
TEST(LineRate, RequestsPerSecondFollowTheFrameAndTheHandOver) {
    const ReadBlock oneRegister{1, RegisterTable::holdingRegister, 0, 1};
    const ReadBlock longestRead{1, RegisterTable::holdingRegister, 0, 125};
    // Ten coils answer in two data bytes, not ten or twenty.
    const ReadBlock tenCoils{1, RegisterTable::coil, 0, 10};
    const SerialConfiguration fast{.baudRate = 115200};
    struct Row {
        std::string name;
        SerialConfiguration serial;
        std::vector<PollPlan> plans;
        double handover;
        double expected;
    };
    const std::vector<Row> rows{
        {"115200 8E1, 16 ms", fast, {plan(1, {oneRegister})}, 0.016, 47.77},
        {"9600 8N1 coils, UART", {.parity = Parity::none}, {plan(1, {tenCoils})}, 0.0, 43.64},
        // The fast poll's small read is made ten times as often as the slow poll's long one.
        {"weighed by interval",
         fast,
         {plan(0.1, {oneRegister}), plan(1, {longestRead})},
         0.001,
         123.68},
    };
    for (const Row& row : rows) {
        const auto rate = LineRate::requestsPerSecond(row.plans, row.serial, row.handover);
        ASSERT_TRUE(rate.has_value()) << row.name;
        EXPECT_NEAR(*rate, row.expected, 0.01) << row.name;
    }
}

TEST(LineRate, NoRateWithoutAReadOrABaudRate) {
    const std::vector<PollPlan> nothing{plan(1, {})};
    EXPECT_FALSE(LineRate::requestsPerSecond(nothing, {}, 0.016).has_value());
    const std::vector<PollPlan> reading{plan(1, {ReadBlock{}})};
    EXPECT_FALSE(LineRate::requestsPerSecond(reading, {.baudRate = 0}, 0.016).has_value());
}

} // namespace
} // namespace kestrin
