#include "SerialConfiguration.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

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

} // namespace
} // namespace kestrin
