#include "SerialConfiguration.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kestrin {
namespace {

TEST(SerialConfiguration, DerivedValuesFollowTheFrame) {
    struct Row {
        SerialConfiguration configuration;
        int bits;
        const char* shortDescription;
    };
    const Row rows[] = {
        {{}, 11, "9600 8E1"},
        {{19200, 8, Parity::none, 2}, 11, "19200 8N2"},
        {{1200, 7, Parity::odd, 1}, 10, "1200 7O1"},
        {{115200, 8, Parity::none, 1}, 10, "115200 8N1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.shortDescription);
        EXPECT_EQ(row.configuration.bitsPerCharacter(), row.bits);
        EXPECT_EQ(row.configuration.shortDescription(), row.shortDescription);
    }
}

TEST(SerialConfiguration, FrameTextIsTheInverseOfTheFrameDescription) {
    const SerialConfiguration base{19200, 8, Parity::none, 1};
    for (const char* text : {"8E1", "8N2", "7O1", "7N1", "8O2"}) {
        const auto serial = base.withFrame(text);
        ASSERT_TRUE(serial.has_value()) << text;
        EXPECT_EQ(serial->frameDescription(), text);
        EXPECT_EQ(serial->baudRate, 19200);
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
    const Row rows[] = {
        {"baudRate", nullptr}, {"dataBits", nullptr},   {"parity", nullptr}, {"stopBits", nullptr},
        {"parity", "mark"},    {"parity", "Even"},      {"parity", 1},       {"baudRate", "9600"},
        {"baudRate", 9600.5},  {"baudRate", 1LL << 40},
    };
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
