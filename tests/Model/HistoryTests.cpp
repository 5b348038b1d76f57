#include "History.h"
#include "SampleRing.h"

#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

Sample sampleAt(int second, double value) {
    return {QDateTime::fromSecsSinceEpoch(1'700'000'000 + second, Qt::UTC), value};
}

std::vector<double> valuesOf(const SampleRing& ring) {
    std::vector<double> values;
    for (const Sample& sample : ring.toVector()) {
        values.push_back(sample.value);
    }
    return values;
}

TEST(SampleRing, KeepsTheNewestSamplesOldestFirstAcrossWrapArounds) {
    struct Row {
        int pushed;
        std::vector<double> kept;
    };
    const Row rows[] = {
        {0, {}},
        {3, {1, 2, 3}},
        {5, {1, 2, 3, 4, 5}},
        {6, {2, 3, 4, 5, 6}},
        {12, {8, 9, 10, 11, 12}},
    };
    for (const Row& row : rows) {
        SampleRing ring(5);
        for (int value = 1; value <= row.pushed; ++value) {
            ring.push(sampleAt(value, value));
        }
        EXPECT_EQ(valuesOf(ring), row.kept) << row.pushed << " pushed";
        ASSERT_EQ(ring.size(), row.kept.size());
        for (std::size_t index = 0; index < ring.size(); ++index) {
            EXPECT_EQ(ring[index].value, row.kept[index]) << row.pushed << " pushed";
        }
    }
}

TEST(History, TheSampleAfterTheCapDropsTheOldestAndHoldsNoSpareRoom) {
    History history;
    const Uuid id = Uuid::random();
    for (int value = 1; value <= 20'001; ++value) {
        (void)history.record(id, sampleAt(value, value));
    }
    const SampleRing* samples = history.samples(id);
    ASSERT_NE(samples, nullptr);
    EXPECT_EQ(samples->size(), 20'000u);
    EXPECT_EQ(samples->front(), sampleAt(2, 2));
    EXPECT_EQ(samples->back(), sampleAt(20'001, 20'001));
    EXPECT_EQ(history.allocatedBytes(), 20'000 * sizeof(Sample));
}

TEST(History, AsksForOnePublicationUntilThePendingOneIsDone) {
    History history;
    const Uuid a = Uuid::random();
    const Uuid b = Uuid::random();
    EXPECT_TRUE(history.record(a, sampleAt(0, 1)));
    EXPECT_FALSE(history.record(b, sampleAt(0, 2)));
    // Clearing publishes at once on its own; the pending publication still runs.
    history.clear();
    EXPECT_FALSE(history.record(a, sampleAt(1, 3)));
    history.markPublished();
    EXPECT_TRUE(history.record(a, sampleAt(2, 4)));
}

TEST(History, RemovingADatapointKeepsTheOthers) {
    History history;
    const Uuid kept = Uuid::random();
    const Uuid changed = Uuid::random();
    (void)history.record(kept, sampleAt(0, 1));
    (void)history.record(changed, sampleAt(0, 2));
    history.remove(changed);
    EXPECT_EQ(history.samples(changed), nullptr);
    ASSERT_NE(history.samples(kept), nullptr);
    history.clear();
    EXPECT_TRUE(history.empty());
    EXPECT_EQ(history.samples(kept), nullptr);
}

} // namespace
} // namespace kestrin
