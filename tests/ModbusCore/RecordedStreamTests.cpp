#include "HexBytes.h"
#include "RecordedStream.h"

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin::RecordedStream {

static void PrintTo(const Chunk& chunk, std::ostream* out) {
    *out << line(chunk);
}

static void PrintTo(const Issue& issue, std::ostream* out) {
    *out << "line " << issue.line << ", problem " << static_cast<int>(issue.problem) << ", '"
         << issue.text << "'";
}

namespace {

using test::hexBytes;

TEST(RecordedStream, ReadsChunksSkippingCommentsAndBlankLinesAndWritesThemBack) {
    const auto parsed = parse("# HR 0-1, its answer in two bursts\r\n"
                              "0.000000 01 03 00 00 00 02 C4 0B\r\n"
                              "\n"
                              "   \n"
                              "0.015 01 03 04 12 34\n"
                              "#0.016 not a chunk\n"
                              "1 fb 2e 7D A9");
    ASSERT_TRUE(parsed.ok()) << parsed.error().line;
    const std::vector<Chunk> expected{{0, hexBytes("01 03 00 00 00 02 C4 0B")},
                                      {0.015, hexBytes("01 03 04 12 34")},
                                      {1, hexBytes("FB 2E 7D A9")}};
    EXPECT_EQ(parsed.value(), expected);
    EXPECT_EQ(line(expected[1]), "0.015000 01 03 04 12 34");
    // To the microsecond, however the time was computed.
    EXPECT_EQ(line({2.0000004999, {0x01}}), "2.000000 01");
    EXPECT_TRUE(parse("").value().empty());
}

TEST(RecordedStream, NamesTheFirstLineThatBreaksTheFormatAndTheWordAtFault) {
    using enum Problem;
    const struct {
        const char* text;
        Issue issue;
    } rows[] = {
        {"0.1 01\n0.2", {2, notTimeAndBytes, "0.2"}},
        {"0.1 ", {1, notTimeAndBytes, "0.1 "}},
        {"0.1  01", {1, notTimeAndBytes, "0.1  01"}},
        {"0.1 01 ", {1, notTimeAndBytes, "0.1 01 "}},
        {"0.1\t01", {1, notTimeAndBytes, "0.1\t01"}},
        {" 0.1 01", {1, notTimeAndBytes, " 0.1 01"}},
        {"-0.1 01", {1, invalidTime, "-0.1"}},
        {"1e3 01", {1, invalidTime, "1e3"}},
        {".5 01", {1, invalidTime, ".5"}},
        {"5. 01", {1, invalidTime, "5."}},
        {"inf 01", {1, invalidTime, "inf"}},
        {"0.1 01 2", {1, invalidByte, "2"}},
        {"0.1 0x1", {1, invalidByte, "0x1"}},
        {"0.1 G0", {1, invalidByte, "G0"}},
        {"0.1 010", {1, invalidByte, "010"}},
        {"# first\n0.2 01\n\n0.1 02", {4, timeGoesBack, "0.1"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto parsed = parse(row.text);
        ASSERT_FALSE(parsed.ok());
        EXPECT_EQ(parsed.error(), row.issue);
    }
}

} // namespace
} // namespace kestrin::RecordedStream
