#include "SerialConfiguration.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kestrin {
namespace {

// The bits a character takes on the line set the inter-frame silence.
TEST(SerialConfiguration, FrameTextIsTheInverseOfTheDescriptionAndGivesTheBitsPerCharacter) {
    const SerialConfiguration base{19200, 8, Parity::none, 1};
    const std::pair<const char*, int> frames[] = {
        {"8E1", 11}, {"8N2", 11}, {"7O1", 10}, {"7N1", 9}, {"8O2", 12}};
    for (const auto& [text, bits] : frames) {
        const auto serial = base.withFrame(text);
        ASSERT_TRUE(serial.has_value()) << text;
        EXPECT_EQ(serial->frameDescription(), text);
        EXPECT_EQ(serial->shortDescription(), std::string("19200 ") + text);
        EXPECT_EQ(serial->bitsPerCharacter(), bits) << text;
    }
    EXPECT_EQ(base.withFrame(" 8e1 ")->frameDescription(), "8E1");
    for (const char* text : {"", "8E", "9E1", "6N1", "8X1", "8E3", "8E10", "E81"}) {
        EXPECT_EQ(base.withFrame(text), std::nullopt) << text;
    }
}

TEST(SerialConfiguration, DecodingFailsNamingTheBadKey) {
    const nlohmann::json valid = SerialConfiguration().json();
    struct Row {
        const char* key;
        nlohmann::json value; // null removes the key
    };
    const Row rows[] = {{"baudRate", nullptr},  {"dataBits", nullptr}, {"parity", nullptr},
                        {"stopBits", nullptr},  {"parity", "mark"},    {"parity", "Even"},
                        {"parity", 1},          {"baudRate", "9600"},  {"baudRate", 9600.5},
                        {"baudRate", 1LL << 40}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.key) + " = " + row.value.dump());
        nlohmann::json object = valid;
        if (row.value.is_null()) {
            object.erase(row.key);
        } else {
            object[row.key] = row.value;
        }
        const auto decoded = SerialConfiguration::fromJSON(object);
        ASSERT_FALSE(decoded.ok());
        EXPECT_EQ(decoded.error().path, row.key);
    }
    EXPECT_FALSE(SerialConfiguration::fromJSON(nlohmann::json::array()).ok());
}

} // namespace
} // namespace kestrin
