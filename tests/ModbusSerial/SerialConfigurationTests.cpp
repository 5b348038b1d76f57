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

TEST(SerialConfiguration, JSONRoundTripsAndParityPersistsByRawValue) {
    const SerialConfiguration odd{57600, 7, Parity::odd, 2};
    EXPECT_EQ(odd.json()["parity"], "odd");
    EXPECT_EQ(SerialConfiguration::fromJSON(odd.json()), odd);

    const auto decoded = SerialConfiguration::fromJSON(nlohmann::json::parse(
        R"({"baudRate": 19200, "dataBits": 8, "parity": "none", "stopBits": 2})"));
    ASSERT_TRUE(decoded.ok());
    EXPECT_EQ(decoded.value().shortDescription(), "19200 8N2");
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
