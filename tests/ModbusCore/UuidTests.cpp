#include "Uuid.h"

#include <set>
#include <unordered_set>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(Uuid, RandomIdentifiersAreVersion4AndDistinct) {
    std::set<Uuid> seen;
    for (int i = 0; i < 1000; ++i) {
        const Uuid uuid = Uuid::random();
        EXPECT_EQ(uuid.bytes()[6] >> 4, 4);
        EXPECT_EQ(uuid.bytes()[8] >> 6, 0b10);
        EXPECT_TRUE(seen.insert(uuid).second);
        EXPECT_EQ(Uuid::parse(uuid.text()), uuid);
    }
}

TEST(Uuid, TextIsUpperCaseAndParsingTakesEitherCaseOfTheCanonicalFormOnly) {
    const Uuid uuid(std::array<std::uint8_t, 16>{0xE6, 0x21, 0xE1, 0xF8, 0xC3, 0x6C, 0x49, 0x5A,
                                                 0x93, 0xFC, 0x0C, 0x24, 0x7A, 0x3E, 0x6E, 0x5F});
    EXPECT_EQ(uuid.text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_EQ(Uuid::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"), uuid);
    EXPECT_EQ(Uuid().text(), "00000000-0000-0000-0000-000000000000");
    std::unordered_set<Uuid> set{uuid, Uuid(), *Uuid::parse(uuid.text())};
    EXPECT_EQ(set.size(), 2U);
    for (std::string_view text :
         {"", "E621E1F8-C36C-495A-93FC-0C247A3E6E5", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F0",
          "E621E1F8C36C-495A-93FC-0C247A3E6E5F0", "E621E1F8-C36C-495A-93FC-0C247A3E6E5G",
          "E621E1F8C36C495A93FC0C247A3E6E5F", "{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}"}) {
        EXPECT_EQ(Uuid::parse(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace kestrin
