#include "History.h"

#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// Values of every kind, 64-bit integers a double cannot hold among them, so that a ring that
// packs them loosely gives back other numbers.
Sample sampleAt(int value) {
    const QDateTime time = QDateTime::fromSecsSinceEpoch(1'700'000'000 + value, Qt::UTC);
    switch (value % 3) {
    case 0:
        return {time, Value::unsignedInteger(UINT64_MAX - static_cast<std::uint64_t>(value))};
    case 1:
        return {time, Value::signedInteger(INT64_MIN + value)};
    default:
        return {time, value + 0.5};
    }
}

TEST(SampleRing, KeepsTheNewestSamplesOldestFirstAcrossWrapArounds) {
    const std::vector<std::pair<int, std::vector<int>>> rows{{0, {}},
                                                             {3, {1, 2, 3}},
                                                             {5, {1, 2, 3, 4, 5}},
                                                             {6, {2, 3, 4, 5, 6}},
                                                             {12, {8, 9, 10, 11, 12}}};
    for (const auto& [pushed, kept] : rows) {
        SampleRing ring(5);
        for (int value = 1; value <= pushed; ++value) {
            ring.push(sampleAt(value));
        }
        std::vector<Sample> expected;
        for (const int value : kept) {
            expected.push_back(sampleAt(value));
        }
        EXPECT_EQ(ring.toVector(), expected) << pushed << " pushed";
    }
}

TEST(History, TheSampleAfterTheCapDropsTheOldestAndHoldsNoSpareRoom) {
    History history;
    const Uuid id = Uuid::random();
    for (int value = 1; value <= 20'001; ++value) {
        (void)history.record(id, sampleAt(value));
    }
    const SampleRing* samples = history.samples(id);
    ASSERT_NE(samples, nullptr);
    EXPECT_EQ(samples->size(), 20'000u);
    EXPECT_EQ(samples->front(), sampleAt(2));
    EXPECT_EQ(samples->back(), sampleAt(20'001));
    EXPECT_EQ(history.allocatedBytes(), 20'000 * 16u); // 16 bytes a sample, no spare room
    history.remove(id);
    EXPECT_EQ(history.samples(id), nullptr);
}

TEST(History, AsksForOnePublicationUntilThePendingOneIsDone) {
    History history;
    const Uuid id = Uuid::random();
    EXPECT_TRUE(history.record(id, sampleAt(1)));
    EXPECT_FALSE(history.record(Uuid::random(), sampleAt(1)));
    // Clearing publishes at once by itself; the pending publication still comes.
    history.clear();
    EXPECT_FALSE(history.record(id, sampleAt(2)));
    history.markPublished();
    EXPECT_TRUE(history.record(id, sampleAt(3)));
}

} // namespace
} // namespace kestrin
