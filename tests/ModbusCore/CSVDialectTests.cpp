#include "CSVDialect.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using EdgeSpace = CSVDialect::EdgeSpace;

constexpr CSVDialect comma{',', false};
constexpr CSVDialect semicolon{';', true};

TEST(CSVDialect, SemicolonsWhereTheLocaleWritesDecimalCommas) {
    EXPECT_EQ(CSVDialect::forStyle(NumberStyle{","}), semicolon);
    EXPECT_EQ(CSVDialect::forStyle(NumberStyle{"."}), comma);
    // The Arabic decimal separator is no comma.
    EXPECT_EQ(CSVDialect::forStyle(NumberStyle{"\xD9\xAB"}), comma);
}

TEST(CSVDialect, NumbersInDigitsASpreadsheetReadsBack) {
    struct Row {
        Value value;
        const char* withPoint;
        const char* withComma;
    };
    const Row rows[] = {
        {21.0, "21", "21"},
        {21.5, "21.5", "21,5"},
        {-0.0, "0", "0"},
        {1e15 - 1, "999999999999999", "999999999999999"},
        {2.5e15 + 0.5, "2500000000000000.5", "2500000000000000,5"},
        {0.0001, "0.0001", "0,0001"},
        {1e21, "1e+21", "1e+21"},
        {-2.5e-7, "-2.5e-07", "-2,5e-07"},
        {std::numeric_limits<double>::quiet_NaN(), "nan", "nan"},
        // Every digit of a 64-bit counter, and the widest patterns of both signs.
        {Value::unsignedInteger(0x0102030405060708), "72623859790382856", "72623859790382856"},
        {Value::unsignedInteger(UINT64_MAX), "18446744073709551615", "18446744073709551615"},
        {Value::signedInteger(INT64_MIN), "-9223372036854775808", "-9223372036854775808"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(comma.number(row.value), row.withPoint);
        EXPECT_EQ(semicolon.number(row.value), row.withComma) << row.withPoint;
    }
    EXPECT_EQ(semicolon.decimal("0.20000000298023224"), "0,20000000298023224");
}

TEST(CSVDialect, QuotesOnlyTheCellsThatNeedIt) {
    struct Row {
        std::string_view cell;
        const CSVDialect& dialect;
        EdgeSpace edgeSpace;
        std::string_view written;
    };
    const Row rows[] = {
        {"Boiler east", comma, EdgeSpace::quoted, "Boiler east"},
        {"Boiler, east", comma, EdgeSpace::plain, "\"Boiler, east\""},
        {"Boiler, east", semicolon, EdgeSpace::plain, "Boiler, east"},
        {"first\rsecond", comma, EdgeSpace::plain, "\"first\rsecond\""},
        {" V", comma, EdgeSpace::plain, " V"},
        {"V\t", semicolon, EdgeSpace::quoted, "\"V\t\""},
        {"", comma, EdgeSpace::quoted, ""},
    };
    for (const Row& row : rows) {
        std::string out = "x";
        row.dialect.appendCell(out, row.cell, row.edgeSpace);
        EXPECT_EQ(out, "x" + std::string(row.written)) << row.cell;
    }
    std::string row;
    semicolon.appendRow(row, {"a", "b;c", ""}, EdgeSpace::plain);
    EXPECT_EQ(row, "a;\"b;c\";\r\n");
}

} // namespace
} // namespace kestrin
