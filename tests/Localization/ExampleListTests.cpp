#include "ExampleList.h"
#include "L10n.h"

#include <set>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(ExampleList, SevenDatapointsOverAllFourTables) {
    struct Row {
        std::string_view name;
        RegisterTable table;
        int address;
        DataType type;
        double scale;
        std::string_view unit;
    };
    const Row rows[] = {
        {"Temperature", RegisterTable::inputRegister, 0, DataType::int16, 0.1, "°C"},
        {"Pressure", RegisterTable::inputRegister, 1, DataType::float32, 1, "bar"},
        {"Run time", RegisterTable::inputRegister, 3, DataType::uint32, 1, "s"},
        {"Setpoint", RegisterTable::holdingRegister, 0, DataType::int16, 0.1, "°C"},
        {"Mode", RegisterTable::holdingRegister, 1, DataType::uint16, 1, ""},
        {"Pump on", RegisterTable::coil, 0, DataType::boolean, 1, ""},
        {"Alarm", RegisterTable::discreteInput, 0, DataType::boolean, 1, ""},
    };
    const std::vector<Datapoint> list = ExampleList::datapoints(Language::en);
    ASSERT_EQ(list.size(), std::size(rows));
    for (std::size_t i = 0; i < list.size(); ++i) {
        const Datapoint& point = list[i];
        SCOPED_TRACE(point.name);
        EXPECT_EQ(point.name, rows[i].name);
        EXPECT_EQ(point.table(), rows[i].table);
        EXPECT_EQ(point.address, rows[i].address);
        EXPECT_EQ(point.dataType, rows[i].type);
        EXPECT_EQ(point.scale, rows[i].scale);
        EXPECT_EQ(point.engineeringUnit, rows[i].unit);
        EXPECT_EQ(point.unitID, 1);
        EXPECT_EQ(point.wordOrder, WordOrder::abcd);
        EXPECT_EQ(point.format, DisplayFormat::decimal);
        EXPECT_EQ(point.value, 0);
        EXPECT_EQ(point.notes, "");
        EXPECT_EQ(point.simulation, Simulation());
    }
}

TEST(ExampleList, NoTwoDatapointsOverlapInAnyLanguage) {
    for (Language language : Language::allCases) {
        const std::vector<Datapoint> list = ExampleList::datapoints(language);
        for (std::size_t i = 0; i < list.size(); ++i) {
            for (std::size_t j = i + 1; j < list.size(); ++j) {
                EXPECT_FALSE(list[i].overlaps(list[j])) << list[i].name << " / " << list[j].name;
            }
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
            EXPECT_FALSE(list[i].name.empty());
            Datapoint renamed = list[i];
            renamed.id = english[i].id;
            renamed.name = english[i].name;
            EXPECT_EQ(renamed, english[i]);
        }
    }
}

TEST(ExampleList, NamesAreTranslatedAndDistinct) {
    const std::vector<Datapoint> english = ExampleList::datapoints(Language::en);
    for (Language language : Language::allCases) {
        SCOPED_TRACE(language.rawValue());
        const std::vector<Datapoint> list = ExampleList::datapoints(language);
        std::set<std::string> names;
        std::size_t translated = 0;
        for (std::size_t i = 0; i < list.size(); ++i) {
            names.insert(list[i].name);
            translated += list[i].name != english[i].name ? 1 : 0;
        }
        EXPECT_EQ(names.size(), list.size());
        // "Alarm" or "Mode" may well be the word of another language too, but not most names.
        if (language != Language::en) {
            EXPECT_GT(translated, list.size() / 2);
        }
    }
}

TEST(ExampleList, FollowsTheLanguageOfTheTexts) {
    L10n::withLanguageForTesting(Language::es, [] {
        const std::vector<Datapoint> list = ExampleList::datapoints();
        ASSERT_FALSE(list.empty());
        EXPECT_EQ(list.front().name, L10n::Example::temperature());
        EXPECT_EQ(list.front().name, ExampleList::datapoints(Language::es).front().name);
    });
}

} // namespace
} // namespace kestrin
