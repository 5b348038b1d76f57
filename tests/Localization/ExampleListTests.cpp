#include "ExampleList.h"
#include "L10n.h"
#include "LanguageForTesting.h"

#include <tuple>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// Whatever a row does not name is at its default.
TEST(ExampleList, SevenDatapointsOverAllFourTablesThatNeverOverlap) {
    constexpr RegisterTable ir = RegisterTable::inputRegister, hr = RegisterTable::holdingRegister;
    const std::vector<
        std::tuple<std::string, RegisterTable, std::uint16_t, DataType, double, std::string>>
        rows{
            {"Temperature", ir, 0, DataType::int16, 0.1, "°C"},
            {"Pressure", ir, 1, DataType::float32, 1, "bar"},
            {"Run time", ir, 3, DataType::uint32, 1, "s"},
            {"Setpoint", hr, 0, DataType::int16, 0.1, "°C"},
            {"Mode", hr, 1, DataType::uint16, 1, ""},
            {"Pump on", RegisterTable::coil, 0, DataType::boolean, 1, ""},
            {"Alarm", RegisterTable::discreteInput, 0, DataType::boolean, 1, ""},
        };
    const std::vector<Datapoint> list = ExampleList::datapoints(Language::en);
    ASSERT_EQ(list.size(), rows.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto& [name, table, address, type, scale, unit] = rows[i];
        EXPECT_EQ(list[i], Datapoint(list[i].id, name, 1, table, address, type, WordOrder::abcd,
                                     scale, unit, DisplayFormat::decimal, 0, "", Simulation()));
        for (std::size_t j = i + 1; j < list.size(); ++j) {
            EXPECT_FALSE(list[i].overlaps(list[j])) << list[i].name << " / " << list[j].name;
        }
    }
}

TEST(ExampleList, EveryLanguageKeepsTheDeviceAndMakesFreshIds) {
    const std::vector<Datapoint> english = ExampleList::datapoints(Language::en);
    for (Language language : Language::allCases) {
        SCOPED_TRACE(language.rawValue());
        const std::vector<Datapoint> list = ExampleList::datapoints(language);
        ASSERT_EQ(list.size(), english.size());
        for (std::size_t i = 0; i < list.size(); ++i) {
            EXPECT_NE(list[i].id, english[i].id);
            Datapoint renamed = list[i];
            renamed.id = english[i].id;
            renamed.name = english[i].name;
            EXPECT_EQ(renamed, english[i]);
        }
    }
}

TEST(ExampleList, FollowsTheLanguageOfTheTexts) {
    L10n::withLanguageForTesting(Language::es, [] {
        const std::vector<Datapoint> list = ExampleList::datapoints();
        ASSERT_FALSE(list.empty());
        EXPECT_EQ(list.front().name, L10n::texts().example.temperature());
        EXPECT_EQ(list.front().name, ExampleList::datapoints(Language::es).front().name);
    });
}

} // namespace
} // namespace kestrin
