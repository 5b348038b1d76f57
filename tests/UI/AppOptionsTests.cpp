#include "AppOptions.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(AppOptions, ReadsEveryOptionWithItsValue) {
    const auto parsed = AppOptions::parse(
        {"--port", "/dev/pts/4", "--screenshot", "window", "--out", "/tmp/shot.png"});
    ASSERT_TRUE(parsed.ok()) << parsed.error();
    EXPECT_EQ(parsed.value().port, "/dev/pts/4");
    EXPECT_FALSE(parsed.value().demo);
    EXPECT_EQ(parsed.value().screenshot, "window");
    EXPECT_EQ(parsed.value().outFile, "/tmp/shot.png");
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
    };
    for (const auto& row : rows) {
        const auto parsed = AppOptions::parse(row.arguments);
        ASSERT_FALSE(parsed.ok()) << row.message;
        EXPECT_EQ(parsed.error(), row.message);
    }
}

} // namespace
} // namespace kestrin
