#include "L10n.h"
#include "PollerProject.h"

#include <string>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

Uuid id(const char* text) {
    return *Uuid::parse(text);
}

PollerProject sampleProject() {
    PollerProject project;
    project.serial = SerialConfiguration{19200, 7, Parity::odd, 2};
    project.timeoutMs = 500;
    project.writeMode = WriteMode::multiple;
    project.maxGap = 8;
    Poll meter;
    meter.id = id("11111111-2222-4333-8444-555555555555");
    meter.name = "Meter «Süd»";
    meter.intervalMs = 250;
    meter.enabled = false;
    Datapoint power;
    power.id = id("AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE");
    power.name = "Power";
    power.setTable(RegisterTable::inputRegister);
    power.address = 100;
    power.dataType = DataType::float32;
    power.wordOrder = WordOrder::cdab;
    power.scale = 0.001;
    power.engineeringUnit = "kW";
    meter.datapoints.push_back(power);
    meter.plotted.insert(power.id);
    project.polls.push_back(meter);
    project.polls.push_back(PollerProject::firstRun().polls.front());
    return project;
}

TEST(ProjectDocument, WritesEveryKeySortedAndIndented) {
    PollerProject project = sampleProject();
    project.polls.pop_back();
    const std::string expected = R"({
  "maxGap": 8,
  "polls": [
    {
      "datapoints": [
        {
          "address": 100,
          "dataType": "float32",
          "engineeringUnit": "kW",
          "format": "decimal",
          "id": "AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE",
          "name": "Power",
          "notes": "",
          "scale": 0.001,
          "simulation": {
            "kind": "none",
            "maximum": 100.0,
            "minimum": 0.0,
            "period": 10.0
          },
          "table": "inputRegister",
          "unitID": 1,
          "value": 0.0,
          "wordOrder": "cdab"
        }
      ],
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
    "stopBits": 2
  },
  "timeoutMs": 500,
  "version": 1,
  "writeMode": "multiple"
})";
    EXPECT_EQ(project.encoded(), expected);
}

TEST(ProjectDocument, EncodeDecodeEncodeIsByteIdentical) {
    const PollerProject project = sampleProject();
    const std::string first = project.encoded();
    const auto decoded = PollerProject::decode(first);
    ASSERT_TRUE(decoded.ok()) << decoded.error();
    EXPECT_EQ(decoded.value(), project);
    EXPECT_EQ(decoded.value().encoded(), first);
}

TEST(ProjectDocument, AbsentKeysTakeTheirDefaults) {
    const auto decoded = PollerProject::decode(R"({"polls": [{}]})");
    ASSERT_TRUE(decoded.ok()) << decoded.error();
    const PollerProject& project = decoded.value();
    EXPECT_EQ(project.serial, (SerialConfiguration{9600, 8, Parity::even, 1}));
    EXPECT_EQ(project.timeoutMs, 1000);
    EXPECT_EQ(project.writeMode, WriteMode::single);
    EXPECT_EQ(project.maxGap, 0);
    ASSERT_EQ(project.polls.size(), 1u);
    const Poll& poll = project.polls.front();
    EXPECT_EQ(poll.name, "");
    EXPECT_EQ(poll.intervalMs, 1000);
    EXPECT_TRUE(poll.enabled);
    EXPECT_TRUE(poll.datapoints.empty());
    EXPECT_TRUE(poll.plotted.empty());
    EXPECT_FALSE(poll.id.isNil());

    const auto again = PollerProject::decode(R"({"polls": [{}]})");
    EXPECT_NE(again.value().polls.front().id, poll.id);
}

TEST(ProjectDocument, AnEmptyObjectHasNoPolls) {
    const auto decoded = PollerProject::decode("{}");
    ASSERT_TRUE(decoded.ok());
    EXPECT_TRUE(decoded.value().polls.empty());
}

TEST(ProjectDocument, IgnoresVersionAndUnknownKeys) {
    const auto decoded =
        PollerProject::decode(R"({"version": "two", "colour": [1], "polls": [{"tab": 3}]})");
    ASSERT_TRUE(decoded.ok()) << decoded.error();
    EXPECT_EQ(decoded.value().version, 1);
    EXPECT_EQ(decoded.value().polls.size(), 1u);
}

TEST(ProjectDocument, TimeoutsOutsideThePickerBecomeOneSecond) {
    const struct {
        const char* json;
        int timeoutMs;
    } rows[] = {
        {"100", 100},   {"200", 200},   {"500", 500},    {"1000", 1000},
        {"2000", 2000}, {"5000", 5000}, {"500.0", 500},  {"750", 1000},
        {"0", 1000},    {"-100", 1000}, {"500.5", 1000}, {"1e12", 1000},
    };
    for (const auto& row : rows) {
        const auto decoded =
            PollerProject::decode(std::string(R"({"timeoutMs": )") + row.json + "}");
        ASSERT_TRUE(decoded.ok()) << row.json << ": " << decoded.error();
        EXPECT_EQ(decoded.value().timeoutMs, row.timeoutMs) << row.json;
    }
}

TEST(ProjectDocument, AValueOfTheWrongTypeFailsNamingItsKey) {
    const struct {
        const char* json;
        const char* error;
    } rows[] = {
        {"not json", "not a JSON document"},
        {"[]", "expected an object"},
        {R"({"timeoutMs": "1000"})", "timeoutMs: expected a number"},
        {R"({"writeMode": "batch"})", R"(writeMode: unknown value "batch")"},
        {R"({"writeMode": 1})", "writeMode: expected a string"},
        {R"({"maxGap": 1.5})", "maxGap: expected an integer from -2147483648 to 2147483647"},
        {R"({"serial": []})", "serial: expected an object"},
        {R"({"serial": {"baudRate": 9600, "dataBits": 8, "stopBits": 1, "parity": "mark"}})",
         R"(serial.parity: expected "none", "even" or "odd")"},
        {R"({"polls": {}})", "polls: expected an array"},
        {R"({"polls": [1]})", "polls[0]: expected an object"},
        {R"({"polls": [{"enabled": "yes"}]})", "polls[0].enabled: expected a boolean"},
        {R"({"polls": [{"name": 7}]})", "polls[0].name: expected a string"},
        {R"({"polls": [{"id": "poll-1"}]})", "polls[0].id: expected a UUID"},
        {R"({"polls": [{"intervalMs": "fast"}]})",
         "polls[0].intervalMs: expected an integer from -9223372036854775808 to "
         "9223372036854775807"},
        {R"({"polls": [{"plotted": "all"}]})", "polls[0].plotted: expected an array"},
        {R"({"polls": [{"plotted": [3]}]})", "polls[0].plotted[0]: expected a UUID"},
        {R"({"polls": [{}, {"datapoints": [{}, {"address": 70000}]}]})",
         "polls[1].datapoints[1].address: expected an integer from 0 to 65535"},
        {R"({"polls": [{"datapoints": [[]]}]})", "polls[0].datapoints[0]: expected an object"},
    };
    for (const auto& row : rows) {
        const auto decoded = PollerProject::decode(row.json);
        ASSERT_FALSE(decoded.ok()) << row.json;
        EXPECT_EQ(decoded.error(), row.error) << row.json;
    }
}

TEST(ProjectDocument, AnIncompleteSerialObjectFailsNamingTheMissingKey) {
    const auto decoded = PollerProject::decode(R"({"serial": {"baudRate": 9600}})");
    ASSERT_FALSE(decoded.ok());
    EXPECT_TRUE(decoded.error().starts_with("serial.dataBits")) << decoded.error();
}

TEST(FirstRunProject, HoldsTheExampleDeviceWithItsFirstDatapointCharted) {
    const PollerProject project = PollerProject::firstRun();
    EXPECT_EQ(project.version, 1);
    EXPECT_EQ(project.serial, SerialConfiguration{});
    EXPECT_EQ(project.timeoutMs, 1000);
    EXPECT_EQ(project.writeMode, WriteMode::single);
    EXPECT_EQ(project.maxGap, 0);
    ASSERT_EQ(project.polls.size(), 1u);
    const Poll& poll = project.polls.front();
    EXPECT_EQ(poll.name, L10n::Example::pollName());
    EXPECT_TRUE(poll.enabled);
    EXPECT_EQ(poll.intervalMs, 1000);
    ASSERT_EQ(poll.datapoints.size(), 7u);
    EXPECT_EQ(poll.plotted, std::set<Uuid>{poll.datapoints.front().id});
}

TEST(FirstRunProject, IsTranslatedButKeepsTheSameDevice) {
    const PollerProject english = PollerProject::firstRun();
    for (Language language : {Language::nl, Language::de, Language::fr, Language::es}) {
        L10n::withLanguageForTesting(language, [&] {
            const PollerProject translated = PollerProject::firstRun();
            const Poll& poll = translated.polls.front();
            EXPECT_NE(poll.name, english.polls.front().name) << language.rawValue();
            ASSERT_EQ(poll.datapoints.size(), english.polls.front().datapoints.size());
            for (std::size_t index = 0; index < poll.datapoints.size(); ++index) {
                const Datapoint& expected = english.polls.front().datapoints[index];
                EXPECT_EQ(poll.datapoints[index].address, expected.address);
                EXPECT_EQ(poll.datapoints[index].table(), expected.table());
                EXPECT_EQ(poll.datapoints[index].dataType, expected.dataType);
            }
        });
    }
}

TEST(NewProject, KeepsTheLineSettingsAndStartsWithOneEmptyPoll) {
    const PollerProject current = sampleProject();
    const PollerProject fresh = PollerProject::newProject(current);
    EXPECT_EQ(fresh.serial, current.serial);
    EXPECT_EQ(fresh.timeoutMs, current.timeoutMs);
    EXPECT_EQ(fresh.writeMode, current.writeMode);
    EXPECT_EQ(fresh.maxGap, current.maxGap);
    ASSERT_EQ(fresh.polls.size(), 1u);
    const Poll& poll = fresh.polls.front();
    EXPECT_EQ(poll.name, L10n::Polls::newName(1));
    EXPECT_TRUE(poll.enabled);
    EXPECT_EQ(poll.intervalMs, 1000);
    EXPECT_TRUE(poll.datapoints.empty());
    EXPECT_TRUE(poll.plotted.empty());
}

} // namespace
} // namespace kestrin
