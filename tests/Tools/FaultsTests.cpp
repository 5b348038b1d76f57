#include "../ModbusCore/HexBytes.h"
#include "Faults.h"
#include "RTUFrame.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;
using Kind = Faults::Kind;

TEST(Faults, ParsesProbabilitiesPerKind) {
    const Result<Faults, std::string> faults =
        Faults::parse("drop=0.5,wrong-unit=0.25,delay=0,late=0.125,noise=0.0625", 1);
    ASSERT_TRUE(faults.ok());
    EXPECT_EQ(faults.value().probability(Kind::drop), 0.5);
    EXPECT_EQ(faults.value().probability(Kind::wrongUnit), 0.25);
    EXPECT_EQ(faults.value().probability(Kind::crc), 0);
    EXPECT_EQ(faults.value().probability(Kind::late), 0.125);
    EXPECT_EQ(faults.value().probability(Kind::noise), 0.0625);
    EXPECT_TRUE(Faults::parse("", 1).value().isEmpty());
}

TEST(Faults, RefusesMalformedSpecifications) {
    for (const char* spec :
         {"drop", "drop=", "drop=x", "drop=1.5", "drop=-0.1", "lag=0.1", "drop=0.6,crc=0.6",
          "drop=0.1,", "late", "noise=2", "late=0.5,noise=0.6"}) {
        SCOPED_TRACE(spec);
        EXPECT_FALSE(Faults::parse(spec, 1).ok());
    }
}

TEST(Faults, DrawsEachKindAtItsRateAndRepeatsWithTheSeed) {
    Faults faults = Faults::parse("drop=0.3,crc=0.2", 7).value();
    Faults again = Faults::parse("drop=0.3,crc=0.2", 7).value();
    int drops = 0;
    int crcs = 0;
    for (int i = 0; i < 2000; ++i) {
        const std::optional<Kind> kind = faults.draw();
        EXPECT_EQ(again.draw(), kind);
        drops += kind == Kind::drop;
        crcs += kind == Kind::crc;
    }
    EXPECT_NEAR(drops, 600, 90);
    EXPECT_NEAR(crcs, 400, 80);

    Faults always = Faults::parse("garbage=1", 3).value();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(always.draw(), Kind::garbage);
    }
}

TEST(Faults, EachKindSpoilsTheAnswerItsOwnWay) {
    Faults faults(1);
    const Bytes answer = RTUFrame::build(1, hexBytes("03 02 12 34"));

    EXPECT_TRUE(faults.apply(Kind::drop, answer).empty());
    EXPECT_EQ(faults.apply(Kind::delay, answer), answer);
    EXPECT_EQ(faults.apply(Kind::late, answer), answer);

    const Bytes broken = faults.apply(Kind::crc, answer);
    EXPECT_EQ(broken.size(), answer.size());
    EXPECT_FALSE(RTUFrame::hasValidCRC(broken));

    EXPECT_EQ(faults.apply(Kind::wrongUnit, answer), RTUFrame::build(2, hexBytes("03 02 12 34")));
    EXPECT_EQ(faults.apply(Kind::wrongUnit, RTUFrame::build(247, hexBytes("83 02"))),
              RTUFrame::build(1, hexBytes("83 02")));

    const Bytes garbage = faults.apply(Kind::garbage, answer);
    EXPECT_EQ(garbage.size(), answer.size());
    EXPECT_NE(garbage, answer);
}

TEST(Faults, NoisePutsOneToThreeBytesBeforeTheIntactAnswer) {
    Faults faults(1);
    const Bytes answer = RTUFrame::build(1, hexBytes("03 02 12 34"));
    std::set<std::size_t> lengths;
    for (int i = 0; i < 60; ++i) {
        const Bytes noisy = faults.apply(Kind::noise, answer);
        ASSERT_GT(noisy.size(), answer.size());
        const std::size_t extra = noisy.size() - answer.size();
        EXPECT_TRUE(std::equal(answer.begin(), answer.end(), noisy.begin() + extra));
        lengths.insert(extra);
    }
    EXPECT_EQ(lengths, (std::set<std::size_t>{1, 2, 3}));
}

TEST(Faults, LateAnswersWaitOneToTwoTimeOutsSpreadOverTheRange) {
    Faults faults(5);
    Faults again(5);
    double earliest = 1;
    double latest = 0;
    for (int i = 0; i < 1000; ++i) {
        const double late = faults.lateBy(0.1);
        EXPECT_EQ(again.lateBy(0.1), late);
        EXPECT_GE(late, 0.1);
        EXPECT_LT(late, 0.2);
        earliest = std::min(earliest, late);
        latest = std::max(latest, late);
    }
    EXPECT_LT(earliest, 0.11);
    EXPECT_GT(latest, 0.19);
}

} // namespace
} // namespace kestrin
