#include "AppOptions.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(AppOptions, ReadsEveryOptionWithItsValue) {
    const auto parsed =
        AppOptions::parse({"--port", "/dev/pts/4", "--screenshot", "window", "--out",
                           "/tmp/shot.png", "--dark", "--width", "632", "--wait", "2.5"});
    ASSERT_TRUE(parsed.ok()) << parsed.error();
    EXPECT_EQ(parsed.value().port, "/dev/pts/4");
    EXPECT_FALSE(parsed.value().demo);
    EXPECT_EQ(parsed.value().screenshot, "window");
    EXPECT_EQ(parsed.value().outFile, "/tmp/shot.png");
    EXPECT_TRUE(parsed.value().dark);
    EXPECT_EQ(parsed.value().width, 632);
    EXPECT_EQ(parsed.value().waitSeconds, 2.5);
    EXPECT_TRUE(AppOptions::parse({"--demo"}).value().demo);
    EXPECT_EQ(AppOptions::parse({}).value(), AppOptions{});
}

TEST(AppOptions, RefusesWhatItCannotDo) {
    const struct {
        std::vector<std::string> arguments;
        std::string message;
    } rows[] = {
        {{"--frobnicate"}, "unknown option --frobnicate"},
        {{"--port"}, "--port needs a value"},
        {{"--port", ""}, "--port needs a value"},
        {{"--out"}, "--out needs a value"},
        {{"--port", "/dev/pts/4", "--demo"}, "--port and --demo exclude each other"},
        {{"--screenshot", "window"}, "--screenshot and --out go together"},
        {{"--out", "a.png"}, "--screenshot and --out go together"},
        {{"--width", "900"}, "--width and --wait go with --screenshot"},
        {{"--wait", "3"}, "--width and --wait go with --screenshot"},
        {{"--screenshot", "w", "--out", "w.png", "--width", "99"},
         "--width needs a number of pixels from 100"},
        {{"--screenshot", "w", "--out", "w.png", "--wait", "-1"},
         "--wait needs a number of seconds up to 600"},
        {{"--screenshot", "w", "--out", "w.png", "--wait", "inf"},
         "--wait needs a number of seconds up to 600"},
    };
    for (const auto& row : rows) {
        const auto parsed = AppOptions::parse(row.arguments);
        ASSERT_FALSE(parsed.ok()) << row.message;
        EXPECT_EQ(parsed.error(), row.message);
    }
}

} // namespace
} // namespace kestrin
