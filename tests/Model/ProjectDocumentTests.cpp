#include "L10n.h"
#include "LanguageForTesting.h"
#include "PollerProject.h"

#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// Every field away from its default.
PollerProject sampleProject() {
    PollerProject project;
    project.serial = SerialConfiguration{19200, 7, Parity::odd, 2};
    project.serial.rs485 = RS485Direction{false, 2, 5};
    project.timeoutMs = 500;
    project.writeMode = WriteMode::multiple;
    project.maxGap = 8;
    Poll& meter = project.polls.emplace_back();
    meter.id = *Uuid::parse("11111111-2222-4333-8444-555555555555");
    meter.name = "Meter «Süd»";
    meter.intervalMs = 250;
    meter.enabled = false;
    meter.plotted.insert(*Uuid::parse("aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"));
    return project;
}

TEST(ProjectDocument, WritesEveryKeySortedAndIndentedAndReadsItBackUnchanged) {
    const PollerProject project = sampleProject();
    const std::string document = R"({
  "maxGap": 8,
  "polls": [
    {
      "datapoints": [],
      "enabled": false,
      "id": "11111111-2222-4333-8444-555555555555",
      "intervalMs": 250,
      "name": "Meter «Süd»",
      "plotted": [
        "AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"
      ]
    }
  ],
  "serial": {
    "baudRate": 19200,
    "dataBits": 7,
    "parity": "odd",
    "rs485": {
      "delayAfterSendMs": 5,
      "delayBeforeSendMs": 2,
      "rtsWhileSending": "low"
    },
    "stopBits": 2
  },
  "timeoutMs": 500,
  "version": 1,
  "writeMode": "multiple"
})";
    EXPECT_EQ(project.encoded(), document);
    const auto decoded = PollerProject::decode(document);
    ASSERT_TRUE(decoded.ok()) << L10n::Errors::describe(decoded.error());
    EXPECT_EQ(decoded.value(), project);
}

// Null counts as absent, except where a key is required (see the failures below).
TEST(ProjectDocument, AbsentAndNullKeysTakeTheirDefaultsAndUnknownOnesAreIgnored) {
    for (const char* document : {R"({"version": "two", "colour": 1, "polls": [{"tab": 3}]})",
                                 R"({"serial": null, "timeoutMs": null, "writeMode": null,
                                     "maxGap": null, "polls": [{"id": null, "name": null,
                                     "intervalMs": null, "enabled": null, "datapoints": null,
                                     "plotted": null}]})"}) {
        const auto decoded = PollerProject::decode(document);
        ASSERT_TRUE(decoded.ok()) << L10n::Errors::describe(decoded.error());
        PollerProject expected;
        expected.polls = {Poll{}};
        expected.polls[0].id = decoded.value().polls[0].id;
        EXPECT_EQ(decoded.value(), expected) << document;
        EXPECT_NE(PollerProject::decode(document).value().polls[0].id, expected.polls[0].id);
    }
    EXPECT_TRUE(PollerProject::decode("{}").value().polls.empty());
    EXPECT_TRUE(PollerProject::decode(R"({"polls": null})").value().polls.empty());
}

TEST(ProjectDocument, TimeoutsOutsideThePickerBecomeOneSecond) {
    const std::pair<const char*, int> rows[] = {{"100", 100},   {"200", 200},    {"500", 500},
                                                {"1000", 1000}, {"2000", 2000},  {"5000", 5000},
                                                {"500.0", 500}, {"750", 1000},   {"0", 1000},
                                                {"-100", 1000}, {"500.5", 1000}, {"1e12", 1000}};
    for (const auto& [json, timeoutMs] : rows) {
        const auto decoded = PollerProject::decode(std::string(R"({"timeoutMs": )") + json + "}");
        ASSERT_TRUE(decoded.ok()) << json;
        EXPECT_EQ(decoded.value().timeoutMs, timeoutMs) << json;
    }
}

// A datapoint's own keys fail as the datapoint's test shows; here the place of it in the file.
TEST(ProjectDocument, AnUnusableValueFailsNamingItsPlaceInTheFile) {
    const std::pair<const char*, const char*> rows[] = {
        {"not json", "not a JSON document"},
        {"[]", "expected an object"},
        {R"({"timeoutMs": "1000"})", "timeoutMs: expected a number"},
        {R"({"timeoutMs": "inf"})", "timeoutMs: expected a finite number"},
        {R"({"writeMode": "batch"})", "writeMode: unknown value 'batch' (use single, multiple)"},
        {R"({"maxGap": 1.5})", "maxGap: expected a whole number from -2147483648 to 2147483647"},
        {R"({"serial": {"baudRate": 9600, "dataBits": null, "parity": "even", "stopBits": 1}})",
         "serial.dataBits: missing"},
        {R"({"polls": {}})", "polls: expected a list"},
        {R"({"polls": [null]})", "polls[0]: expected an object"},
        {R"({"polls": [{"enabled": "yes"}]})", "polls[0].enabled: expected true or false"},
        {R"({"polls": [{"id": "poll-1"}]})", "polls[0].id: expected a UUID"},
        {R"({"polls": [{"plotted": [3]}]})", "polls[0].plotted[0]: expected a UUID"},
        {R"({"polls": [{"intervalMs": 9223372036854775808.0}]})",
         "polls[0].intervalMs: expected a whole number from -9223372036854775808 to "
         "9223372036854775807"},
        {R"({"polls": [{}, {"datapoints": [{}, {"address": 70000}]}]})",
         "polls[1].datapoints[1].address: expected a whole number from 0 to 65535"}};
    for (const auto& [json, error] : rows) {
        const auto decoded = PollerProject::decode(json);
        ASSERT_FALSE(decoded.ok()) << json;
        EXPECT_EQ(L10n::Errors::describe(decoded.error()), error) << json;
    }
}

// P is one poll id, D one datapoint id: twice in the first poll, once in the second.
TEST(ProjectDocument, RepeatedIDsAreRenewedAndTheChartFollowsTheRenamedDatapoint) {
    std::string document;
    for (const char c : std::string_view(R"({"polls": [{"id": P, "datapoints": [{"id": D},
        {"id": D}], "plotted": [D]}, {"id": P, "datapoints": [{"id": D}], "plotted": [D]}]})")) {
        document += c == 'P'   ? R"("11111111-2222-4333-8444-555555555555")"
                    : c == 'D' ? R"("AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE")"
                               : std::string(1, c);
    }
    const auto decoded = PollerProject::decode(document);
    ASSERT_TRUE(decoded.ok()) << L10n::Errors::describe(decoded.error());
    const std::vector<Poll>& polls = decoded.value().polls;
    ASSERT_EQ(polls.size(), 2U);
    const Uuid kept = *Uuid::parse("AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE");
    EXPECT_EQ(polls[0].id, *Uuid::parse("11111111-2222-4333-8444-555555555555"));
    EXPECT_NE(polls[1].id, polls[0].id);
    const std::set<Uuid> ids{polls[0].datapoints[0].id, polls[0].datapoints[1].id,
                             polls[1].datapoints[0].id};
    EXPECT_EQ(ids.size(), 3U);
    EXPECT_EQ(polls[0].datapoints[0].id, kept);
    // The first poll still charts the datapoint that kept the id; the second charts its own.
    EXPECT_EQ(polls[0].plotted, std::set<Uuid>{kept});
    EXPECT_EQ(polls[1].plotted, std::set<Uuid>{polls[1].datapoints[0].id});
}

TEST(FirstRunProject, HoldsTheExampleDeviceInTheCurrentLanguage) {
    PollerProject project = PollerProject::firstRun();
    ASSERT_EQ(project.polls.size(), 1u);
    const Poll poll = project.polls.front();
    EXPECT_EQ(poll.name, L10n::texts().example.pollName());
    ASSERT_FALSE(poll.datapoints.empty());
    EXPECT_EQ(poll.plotted, std::set<Uuid>{poll.datapoints.front().id});
    project.polls.clear();
    EXPECT_EQ(project, PollerProject{});

    L10n::withLanguageForTesting(Language::nl, [] {
        const Poll translated = PollerProject::firstRun().polls.front();
        EXPECT_EQ(translated.name, L10n::texts().example.pollName());
        EXPECT_EQ(translated.datapoints.front().name, L10n::texts().example.temperature());
    });
}

TEST(NewProject, KeepsTheLineSettingsAndStartsWithOneEmptyPoll) {
    PollerProject current = sampleProject();
    PollerProject fresh = PollerProject::newProject(current);
    ASSERT_EQ(fresh.polls.size(), 1u);
    Poll expected;
    expected.id = fresh.polls[0].id;
    expected.name = L10n::texts().polls.newName(1);
    EXPECT_EQ(fresh.polls[0], expected);
    fresh.polls.clear();
    current.polls.clear();
    EXPECT_EQ(fresh, current);
}

} // namespace
} // namespace kestrin
