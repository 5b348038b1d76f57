#include "ExampleList.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// The simulator serves the list as one device, so no two of its datapoints may share an address.
TEST(ExampleList, DatapointsOverAllFourTablesNeverOverlap) {
    const std::vector<Datapoint> list = ExampleList::datapoints(Language::en);
    std::set<std::string> tables;
    for (std::size_t i = 0; i < list.size(); ++i) {
        tables.insert(std::string(list[i].table().code()));
        for (std::size_t j = i + 1; j < list.size(); ++j) {
            EXPECT_FALSE(list[i].overlaps(list[j])) << list[i].name << " / " << list[j].name;
        }
    }
    EXPECT_EQ(tables.size(), 4u);
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

} // namespace
} // namespace kestrin
