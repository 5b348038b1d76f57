#include "Datapoint.h"

#include <cmath>
#include <limits>
#include <unordered_set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kestrin {
namespace {

Datapoint at(RegisterTable table, std::uint16_t address, DataType type = DataType::uint16,
             std::uint8_t unit = 1) {
    return {Uuid::random(),         "", unit, table, address, type, WordOrder::abcd, 1, "",
            DisplayFormat::decimal, 0,  "",   {}};
}

TEST(Datapoint, ModiconAddressPadsToFourDigitsThenFive) {
    struct Row {
        RegisterTable table;
        std::uint16_t address;
        std::string_view expected;
    };
    for (const Row& row :
         std::initializer_list<Row>{{RegisterTable::holdingRegister, 0, "40001"},
                                    {RegisterTable::inputRegister, 9, "30010"},
                                    {RegisterTable::coil, 0, "00001"},
                                    {RegisterTable::discreteInput, 99, "10100"},
                                    {RegisterTable::holdingRegister, 9998, "49999"},
                                    {RegisterTable::holdingRegister, 9999, "410000"},
                                    {RegisterTable::discreteInput, 9999, "110000"},
                                    {RegisterTable::holdingRegister, 65535, "465536"}}) {
        EXPECT_EQ(at(row.table, row.address).modiconAddress(), row.expected);
    }
}

TEST(Datapoint, DecimalsFollowTheScaleUpToSix) {
    const double infinity = std::numeric_limits<double>::infinity();
    const std::pair<double, int> rows[] = {{1, 0},    {0, 0},    {10, 0},       {-0.5, 1},
                                           {0.1, 1},  {0.25, 1}, {0.01, 2},     {0.001, 3},
                                           {1e-6, 6}, {1e-9, 6}, {infinity, 0}, {std::nan(""), 0}};
    for (auto [scale, decimals] : rows) {
        Datapoint point;
        point.scale = scale;
        EXPECT_EQ(point.decimals(), decimals) << scale;
    }
}

TEST(Datapoint, BitTablesForceBoolWhicheverWayTheTableIsSet) {
    EXPECT_EQ(at(RegisterTable::coil, 0, DataType::float32).dataType, DataType::boolean);
    Datapoint point = at(RegisterTable::holdingRegister, 0, DataType::int32);
    point.setTable(RegisterTable::inputRegister);
    EXPECT_EQ(point.dataType, DataType::int32);
    point.setTable(RegisterTable::coil);
    EXPECT_EQ(point.dataType, DataType::boolean);
    point.setTable(RegisterTable::holdingRegister);
    EXPECT_EQ(point.dataType, DataType::uint16);
}

TEST(Datapoint, AddressRangeMayRunPastTheAddressSpace) {
    const Datapoint end = at(RegisterTable::holdingRegister, 65533, DataType::float64);
    EXPECT_EQ(end.addressRange(), (Datapoint::AddressRange{65533, 65536}));
    EXPECT_EQ(end.lastAddress(), std::nullopt);
    EXPECT_EQ(at(RegisterTable::holdingRegister, 65532, DataType::float64).lastAddress(), 65535);
    EXPECT_EQ(at(RegisterTable::coil, 65535).lastAddress(), 65535);
}

TEST(Datapoint, OverlapNeedsSameUnitSameTableAndSharedAddresses) {
    const Datapoint wide = at(RegisterTable::holdingRegister, 10, DataType::int32);
    EXPECT_TRUE(wide.overlaps(wide));
    EXPECT_TRUE(wide.overlaps(at(RegisterTable::holdingRegister, 11)));
    EXPECT_TRUE(at(RegisterTable::holdingRegister, 11).overlaps(wide));
    EXPECT_TRUE(wide.overlaps(at(RegisterTable::holdingRegister, 9, DataType::int32)));
    EXPECT_FALSE(wide.overlaps(at(RegisterTable::holdingRegister, 12)));
    EXPECT_FALSE(wide.overlaps(at(RegisterTable::holdingRegister, 11, DataType::uint16, 2)));
    EXPECT_FALSE(wide.overlaps(at(RegisterTable::inputRegister, 11)));
    EXPECT_TRUE(at(RegisterTable::holdingRegister, 65535, DataType::float64)
                    .overlaps(at(RegisterTable::holdingRegister, 65532, DataType::float64)));
}

TEST(Datapoint, LenientTextReadsSpreadsheetSpellings) {
    EXPECT_EQ(DataType::fromText(" REAL "), DataType::float32);
    EXPECT_EQ(DataType::fromText("int"), DataType::int16);
    EXPECT_EQ(DataType::fromText("LReal"), DataType::float64);
    EXPECT_EQ(DataType::fromText("u 16"), std::nullopt);
    EXPECT_EQ(RegisterTable::fromText("Discrete Inputs"), RegisterTable::discreteInput);
    EXPECT_EQ(RegisterTable::fromText("input"), RegisterTable::discreteInput);
    EXPECT_EQ(RegisterTable::fromText("Input register"), RegisterTable::inputRegister);
    EXPECT_EQ(RegisterTable::fromText("4X"), RegisterTable::holdingRegister);
    EXPECT_EQ(RegisterTable::fromText("40001"), std::nullopt);
    EXPECT_EQ(WordOrder::fromText(" CDAB "), WordOrder::cdab);
    EXPECT_EQ(DisplayFormat::fromText(""), DisplayFormat::decimal);
    EXPECT_EQ(DisplayFormat::fromText("Hexadecimal"), DisplayFormat::hex);
    EXPECT_EQ(DisplayFormat::fromText("octal"), std::nullopt);
}

Datapoint everyFieldSet() {
    return Datapoint(*Uuid::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"), "Energy \"total\"", 7,
                     RegisterTable::inputRegister, 300, DataType::float64, WordOrder::dcba, 0.001,
                     "kWh", DisplayFormat::hex, 12.5, "first\nsecond",
                     {Simulation::Kind::sine, -5, 5, 2.5});
}

TEST(DatapointJSON, WritesAllKeysAndReadsThemBack) {
    const Datapoint point = everyFieldSet();
    EXPECT_EQ(point.json(), nlohmann::json::parse(R"({
        "id": "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", "name": "Energy \"total\"", "unitID": 7,
        "table": "inputRegister", "address": 300, "dataType": "float64", "wordOrder": "dcba",
        "scale": 0.001, "engineeringUnit": "kWh", "format": "hex", "value": 12.5,
        "notes": "first\nsecond",
        "simulation": {"kind": "sine", "minimum": -5, "maximum": 5, "period": 2.5}})"));
    EXPECT_EQ(Datapoint::fromJSON(nlohmann::json::parse(point.json().dump(2))), point);

    Datapoint infinite = point;
    infinite.value = -std::numeric_limits<double>::infinity();
    EXPECT_EQ(Datapoint::fromJSON(nlohmann::json::parse(infinite.json().dump())), infinite);

    Datapoint counter = point;
    counter.dataType = DataType::uint64;
    counter.value = UINT64_MAX - 2;
    EXPECT_EQ(counter.json()["value"].dump(), "18446744073709551613");
    EXPECT_EQ(Datapoint::fromJSON(nlohmann::json::parse(counter.json().dump())), counter);
}

TEST(DatapointJSON, AbsentAndNullKeysTakeDefaultsAndBitTablesForceBool) {
    for (const char* text : {R"({"address": 5})", R"({
        "id": null, "name": null, "unitID": null, "table": null, "address": 5,
        "dataType": null, "wordOrder": null, "scale": null, "engineeringUnit": null,
        "format": null, "value": null, "notes": null, "simulation": null})"}) {
        const auto decoded = Datapoint::fromJSON(nlohmann::json::parse(text));
        ASSERT_TRUE(decoded.ok()) << text;
        Datapoint expected = at(RegisterTable::holdingRegister, 5);
        expected.id = decoded.value().id;
        EXPECT_EQ(decoded.value(), expected) << text;
    }
    EXPECT_NE(Datapoint::fromJSON(nlohmann::json::object()).value().id,
              Datapoint::fromJSON(nlohmann::json::object()).value().id);

    const auto coil =
        Datapoint::fromJSON(nlohmann::json{{"table", "coil"}, {"dataType", "float32"}});
    EXPECT_EQ(coil.value().dataType, DataType::boolean);
}

TEST(DatapointJSON, WrongTypesUnknownValuesAndUnusableScalesFailAtTheirKey) {
    using Kind = JSONValue::Error::Kind;
    struct Row {
        std::string_view json;
        Kind kind;
        std::string_view path;
    };
    const Row rows[] = {
        {R"({"unitID": "1"})", Kind::expectedInteger, "unitID"},
        {R"({"unitID": 256})", Kind::expectedInteger, "unitID"},
        {R"({"address": 1.5})", Kind::expectedInteger, "address"},
        {R"({"name": 3})", Kind::expectedText, "name"},
        {R"({"table": "holding"})", Kind::unknownValue, "table"},
        {R"({"scale": "x"})", Kind::expectedNumber, "scale"},
        {R"({"scale": "nan"})", Kind::expectedFiniteNumber, "scale"},
        {R"({"scale": "-inf"})", Kind::expectedFiniteNumber, "scale"},
        {R"({"id": "not-a-uuid"})", Kind::expectedUUID, "id"},
        {R"({"simulation": 3})", Kind::expectedObject, "simulation"},
        {R"({"simulation": {"kind": "none", "minimum": 0, "maximum": 1}})", Kind::missing,
         "simulation.period"},
        {R"({"simulation": {"kind": null, "minimum": 0, "maximum": 1, "period": 1}})",
         Kind::missing, "simulation.kind"},
        {R"({"simulation": {"kind": "wave", "minimum": 0, "maximum": 1, "period": 1}})",
         Kind::unknownValue, "simulation.kind"},
        {"[]", Kind::expectedObject, ""},
    };
    for (const Row& row : rows) {
        const auto decoded = Datapoint::fromJSON(nlohmann::json::parse(row.json));
        ASSERT_FALSE(decoded.ok()) << row.json;
        EXPECT_EQ(decoded.error().kind, row.kind) << row.json;
        EXPECT_EQ(decoded.error().path, row.path) << row.json;
    }
    const auto unknownTable = Datapoint::fromJSON(nlohmann::json{{"table", "holding"}});
    EXPECT_EQ(unknownTable.error().found, "holding");
    EXPECT_EQ(unknownTable.error().choices, "coil, discreteInput, holdingRegister, inputRegister");
}

TEST(Datapoint, EqualityAndHashCoverEveryFieldAndTheId) {
    const Datapoint point = everyFieldSet();
    Datapoint otherId = point;
    otherId.id = Uuid::random();
    Datapoint otherSimulation = point;
    otherSimulation.simulation.maximum = 6;
    EXPECT_NE(otherId, point);
    EXPECT_NE(otherSimulation, point);
    std::unordered_set<Datapoint> set{point, everyFieldSet(), otherId, otherSimulation};
    EXPECT_EQ(set.size(), 3U);
}

} // namespace
} // namespace kestrin
