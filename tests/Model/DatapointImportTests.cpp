#include "DatapointImport.h"
#include "L10n.h"

#include <string>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(DatapointImport, KeepsUTF8AndReadsAnythingElseAsLatin1) {
    EXPECT_EQ(DatapointImport::decodedText("Temp\xC3\xA9rature;\xC2\xB0\x43"), "Température;°C");
    EXPECT_EQ(DatapointImport::decodedText("Temp\xE9rature;\xB0\x43"), "Température;°C");
}

DatapointCSV::ImportResult found(int datapoints, int issues) {
    DatapointCSV::ImportResult result;
    result.datapoints.resize(static_cast<std::size_t>(datapoints));
    for (int line = 2; line < issues + 2; ++line) {
        result.issues.push_back(
            {line, DatapointCSV::Problem::invalidAddress(std::to_string(line))});
    }
    return result;
}

TEST(DatapointImport, AsksWithTheCountAndAtMostFiveSkippedLines) {
    const std::string question =
        "Do you want to add them to the current list, or replace the list?";
    EXPECT_EQ(DatapointImport::question(found(1, 0)).value(),
              (DatapointImport::Question{"1 datapoint found", question}));
    const auto skipped = DatapointImport::question(found(3, 7));
    EXPECT_EQ(skipped.value().title, "3 datapoints found");
    EXPECT_EQ(skipped.value().text,
              question + "\n\n7 line(s) skipped:\nLine 2: invalid address '2' (0 to 65535)\n"
                         "Line 3: invalid address '3' (0 to 65535)\n"
                         "Line 4: invalid address '4' (0 to 65535)\n"
                         "Line 5: invalid address '5' (0 to 65535)\n"
                         "Line 6: invalid address '6' (0 to 65535)");
}

TEST(DatapointImport, NothingFoundNamesTheFirstProblem) {
    EXPECT_EQ(
        DatapointImport::question(found(0, 2)).error(),
        L10n::texts().errors.importNothing(L10n::Errors::describe(found(0, 2).issues.front())));
    EXPECT_EQ(DatapointImport::question(found(0, 0)).error(),
              L10n::texts().errors.importNothing(""));
}

} // namespace
} // namespace kestrin
