#include "DatapointCSV.h"
#include "Text.h"
#include "TextFileReader.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace DatapointCSV;

std::vector<std::vector<std::string>> cellTexts(const std::vector<Record>& records) {
    std::vector<std::vector<std::string>> result;
    for (const Record& record : records) {
        auto& cells = result.emplace_back();
        for (const Field& field : record) {
            cells.push_back(field.fields);
        }
    }
    return result;
}

TEST(DatapointCSVRecords, SplitsCellsAndRecordsAsSpreadsheetsQuoteThem) {
    using Cells = std::vector<std::vector<std::string>>;
    struct Row {
        std::string_view name, text;
        Cells expected;
    };
    const Row rows[] = {
        {"quoted separator", "\"a;b\";c", {{"a;b", "c"}}},
        {"doubled quotes", "\"say \"\"hi\"\"\";x", {{"say \"hi\"", "x"}}},
        {"quote inside a cell is ordinary", "ab\"c;d", {{"ab\"c", "d"}}},
        {"text after closing quote", "\"ab\"cd;e", {{"abcd", "e"}}},
        {"CR, LF and CR LF end records", "a\rb\nc\r\nd", {{"a"}, {"b"}, {"c"}, {"d"}}},
        {"blank lines dropped", "\n\r\na;b\n\n;\n", {{"a", "b"}, {"", ""}}},
        {"line break kept inside quotes", "\"x\r\ny\";z\n", {{"x\r\ny", "z"}}},
        {"no trimming", " a ; b ", {{" a ", " b "}}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(cellTexts(records(row.text, ';')), row.expected) << row.name;
    }
}

TEST(DatapointCSVRecords, RecordsKnowTheLineTheyBeginOn) {
    const auto result = records("h\n\"first\nsecond\";x\n\nnext\r\nlast", ';');
    ASSERT_EQ(result.size(), 4U);
    EXPECT_EQ(result[1][1].line, 2);
    EXPECT_EQ(result[2][0].line, 5);
    EXPECT_EQ(result[3][0].line, 6);
}

TEST(DatapointCSVParse, DetectsTheSeparatorFromTheFirstLine) {
    for (std::string_view text : {
             "Table,Address\nHR,5\n",
             "Table\tAddress\tx;y\nHR\t5\tx;y\n",
             "Table;Address;Name,x\nHR;5;n,x\n",
             // A tie goes to ";": "," and tab must occur strictly more often.
             "Name,x;Table;Address;y,z,w\nn,x;HR;5;y,z,w\n",
         }) {
        EXPECT_EQ(parse(text).datapoints.size(), 1U) << text;
    }
}

TEST(DatapointCSVParse, HeaderAliasesNameTheColumns) {
    const std::pair<std::string_view, Datapoint> rows[] = {
        {"Slave;Register;Type;Format(type)\n3;10;HR;int32\n",
         Datapoint(Uuid(), "", 3, RegisterTable::holdingRegister, 10, DataType::int32,
                   WordOrder::abcd, 1, "", DisplayFormat::decimal, 0, "", {})},
        // Quoted cells are trimmed like the others.
        {"Name;UNITÉ;Unit ID;Table;Address;Address\n\" Pump \";\"\tkWh \";4;HR;\" 1 \";2\n",
         Datapoint(Uuid(), "Pump", 4, RegisterTable::holdingRegister, 1, DataType::uint16,
                   WordOrder::abcd, 1, "kWh", DisplayFormat::decimal, 0, "", {})}};
    for (const auto& [text, expected] : rows) {
        ImportResult result = parse(text);
        ASSERT_EQ(result.datapoints.size(), 1U) << text;
        result.datapoints[0].id = Uuid();
        EXPECT_EQ(result.datapoints[0], expected) << text;
    }
}

TEST(DatapointCSVParse, WithoutTableOrAddressNothingIsImported) {
    const ImportResult result = parse("Name;Address\nx;1\n");
    EXPECT_TRUE(result.datapoints.empty());
    EXPECT_EQ(result.issues, (std::vector<ImportIssue>{{1, Problem::missingColumns()}}));
    EXPECT_TRUE(parse("\xEF\xBB\xBF\r\n\r\n").issues.empty());
}

TEST(DatapointCSVParse, EachRecordIsCheckedInOrderAndTheFirstProblemReported) {
    struct Row {
        std::string_view record;
        std::optional<Problem> problem;
    };
    const Row rows[] = {
        {"4x;100", std::nullopt},
        {"HR;-0;+247", std::nullopt},
        {"CO;5;2;bit", std::nullopt},
        {"CO;5;2;", std::nullopt},
        {"HR;1;1;;0,01;-1e3", std::nullopt},
        {"HR;1;1;;1;inf", std::nullopt},
        {"XX;abc", Problem::invalidTable("XX")},
        {"HR;65536", Problem::invalidAddress("65536")},
        {"HR;40001x", Problem::invalidAddress("40001x")},
        {"HR;1 0", Problem::invalidAddress("1 0")},
        {"HR; ", Problem::invalidAddress("")},
        {"HR;1;0", Problem::invalidUnit("0")},
        {"HR;1;248", Problem::invalidUnit("248")},
        {"CO;5;2;uint16", Problem::invalidDataType("uint16")},
        {"HR;1;1;;0", Problem::invalidNumber("0")},
        {"HR;1;1;;NaN", Problem::invalidNumber("NaN")},
        {"HR;1;1;;-inf", Problem::invalidNumber("-inf")},
        {"HR;1;1;; 1.000,5 ", Problem::invalidNumber("1.000,5")},
        {"HR;1;1;;1;abc", Problem::invalidNumber("abc")},
    };
    for (const Row& row : rows) {
        const ImportResult result =
            parse("Table;Address;Unit ID;Data type;Scale;Value\n" + std::string(row.record));
        if (row.problem) {
            EXPECT_TRUE(result.datapoints.empty()) << row.record;
            EXPECT_EQ(result.issues, (std::vector<ImportIssue>{{2, *row.problem}})) << row.record;
        } else {
            EXPECT_EQ(result.datapoints.size(), 1U) << row.record;
            EXPECT_TRUE(result.issues.empty()) << row.record;
        }
    }
}

TEST(DatapointCSVParse, MissingCellsTakeDefaults) {
    const ImportResult result = parse("Table;Address;Word order;Format\n4x;100\nCO;3;cdab;octal\n");
    ASSERT_EQ(result.datapoints.size(), 2U);
    Datapoint holding = result.datapoints[0];
    holding.id = Uuid();
    EXPECT_EQ(holding,
              Datapoint(Uuid(), "", 1, RegisterTable::holdingRegister, 100, DataType::uint16,
                        WordOrder::abcd, 1, "", DisplayFormat::decimal, 0, "", {}));
    EXPECT_EQ(result.datapoints[1].dataType, DataType::boolean);
    EXPECT_EQ(result.datapoints[1].wordOrder, WordOrder::cdab);
    EXPECT_EQ(result.datapoints[1].format, DisplayFormat::decimal);
    EXPECT_NE(result.datapoints[0].id, result.datapoints[1].id);
}

std::string fixture(std::string_view name) {
    auto text = TextFileReader::read(std::string(KESTRIN_FIXTURES) + "/" + std::string(name));
    return text ? std::move(text).value() : std::string();
}

TEST(DatapointCSVParse, ReadsWhatSpreadsheetsWriteInEitherLocale) {
    const std::vector<Datapoint> expected{
        Datapoint(Uuid(), "Voltage L1", 1, RegisterTable::inputRegister, 0, DataType::float32,
                  WordOrder::cdab, 1, "V", DisplayFormat::decimal, 230.5, "Phase voltage", {}),
        Datapoint(Uuid(), "Energy, total", 1, RegisterTable::holdingRegister, 100, DataType::uint32,
                  WordOrder::abcd, 0.01, "kWh", DisplayFormat::decimal, 12345.67,
                  "first line\nsecond line", {}),
        Datapoint(Uuid(), "Pump", 2, RegisterTable::coil, 5, DataType::boolean, WordOrder::abcd, 1,
                  "", DisplayFormat::decimal, 1, "Start \"main\" pump", {}),
        Datapoint(Uuid(), "Alarm", 2, RegisterTable::discreteInput, 0, DataType::boolean,
                  WordOrder::abcd, 1, "", DisplayFormat::decimal, 0, "", {}),
        Datapoint(Uuid(), "Setpoint", 247, RegisterTable::holdingRegister, 40, DataType::int16,
                  WordOrder::abcd, 0.1, "°C", DisplayFormat::hex, -12.5, "Heating setpoint", {}),
    };
    for (std::string_view name : {"excel-decimal-comma.csv", "libreoffice-decimal-comma.csv",
                                  "excel-decimal-point.csv", "libreoffice-decimal-point.csv"}) {
        SCOPED_TRACE(name);
        const std::string text = fixture(name);
        ASSERT_FALSE(text.empty());
        ImportResult result = parse(text);
        for (Datapoint& point : result.datapoints) {
            point.id = Uuid();
        }
        EXPECT_EQ(result.datapoints, expected);
        // The quoted line break in the second record moves the broken record to line 8.
        EXPECT_EQ(result.issues, (std::vector<ImportIssue>{{8, Problem::invalidUnit("0")}}));
    }
}

TEST(DatapointCSVExport, WritesEveryColumnAndQuotesEdgeSpaces) {
    const CSVDialect semicolon{';', true};
    const std::string header = "Name;Unit ID;Table;Address;Data type;Word order;Scale;Unit;"
                               "Format;Value;Description\r\n";
    EXPECT_EQ(exportText({}, semicolon), "\xEF\xBB\xBF" + header);

    const std::vector<Datapoint> points{
        Datapoint(Uuid(), "a;b", 3, RegisterTable::inputRegister, 7, DataType::float32,
                  WordOrder::cdab, 0.1, " V", DisplayFormat::hex, -3, "say \"x\"\nnow", {}),
        Datapoint(Uuid(), "", 247, RegisterTable::coil, 0, DataType::uint64, WordOrder::dcba, 1e-5,
                  "", DisplayFormat::binary, 2.5e15, "", {}),
        Datapoint(Uuid(), "n", 1, RegisterTable::holdingRegister, 65535, DataType::int16,
                  WordOrder::dcba, 1, "", DisplayFormat::decimal,
                  std::numeric_limits<double>::quiet_NaN(), "", {}),
    };
    EXPECT_EQ(exportText(points, semicolon),
              "\xEF\xBB\xBF" + header +
                  "\"a;b\";3;IR;7;float32;CDAB;0,1;\" V\";hex;-3;\"say \"\"x\"\"\nnow\"\r\n"
                  ";247;CO;0;bool;;0,00001;;binary;2500000000000000;\r\n"
                  "n;1;HR;65535;int16;;1;;decimal;nan;\r\n");
}

// Names and texts that trip naive CSV code: separators, quotes, line breaks, spaces inside. The
// import trims every cell, so none ends in white space.
std::string randomText(std::mt19937& random) {
    static const std::string_view pieces[] = {"Pump", " ", ";",    ",", "\"", "\n",       "\r\n",
                                              "\t",   "é", "温度", "'", "x",  "\xC2\xA0", "m³/h"};
    std::string text;
    const int count = static_cast<int>(random() % 6);
    for (int i = 0; i < count; ++i) {
        text += pieces[random() % std::size(pieces)];
    }
    return std::string(Text::trimmed(text));
}

double randomNumber(std::mt19937& random) {
    static const double specials[] = {
        1, 0.1, -3, 1e-5, 2.5e15, 1e15, 999999999999999, std::numeric_limits<double>::infinity()};
    if (random() % 2 == 0) {
        return specials[random() % std::size(specials)];
    }
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_int_distribution<int> exponent(-20, 20);
    return mantissa(random) * std::pow(10.0, exponent(random));
}

// A value column also carries 64-bit integers, which must come back to the last digit.
Value randomValue(std::mt19937& random) {
    switch (random() % 3) {
    case 0:
        return Value::unsignedInteger(std::numeric_limits<std::uint64_t>::max() - random() % 3);
    case 1:
        return Value::signedInteger(std::numeric_limits<std::int64_t>::min() + random() % 3);
    default:
        return randomNumber(random);
    }
}

TEST(DatapointCSVProperty, ExportedListsImportBackUnchanged) {
    std::mt19937 random(42);
    for (const CSVDialect& dialect : {CSVDialect{';', true}, CSVDialect{',', false}}) {
        for (int round = 0; round < 200; ++round) {
            std::vector<Datapoint> points;
            const int count = static_cast<int>(random() % 8);
            for (int i = 0; i < count; ++i) {
                const RegisterTable table = RegisterTable::allCases[random() % 4];
                const auto types = DataType::allowed(table);
                const DataType type = types[random() % types.size()];
                double scale = randomNumber(random);
                points.push_back(Datapoint(
                    Uuid(), randomText(random), static_cast<std::uint8_t>(1 + random() % 247),
                    table, static_cast<std::uint16_t>(random()), type,
                    type.usesWordOrder() ? WordOrder::allCases[random() % 4] : WordOrder::abcd,
                    scale == 0 || !std::isfinite(scale) ? 1 : scale, randomText(random),
                    DisplayFormat::allCases[random() % 3], randomValue(random), randomText(random),
                    {}));
                points.back().simulation.kind = Simulation::Kind::ramp;
            }
            const std::string text = exportText(points, dialect);
            ImportResult imported = parse(text);
            ASSERT_TRUE(imported.issues.empty()) << text;
            ASSERT_EQ(imported.datapoints.size(), points.size()) << text;
            for (std::size_t i = 0; i < points.size(); ++i) {
                EXPECT_EQ(imported.datapoints[i].simulation, Simulation{});
                imported.datapoints[i].id = points[i].id;
                imported.datapoints[i].simulation = points[i].simulation;
            }
            ASSERT_EQ(imported.datapoints, points) << text;
        }
    }
}

} // namespace
} // namespace kestrin
