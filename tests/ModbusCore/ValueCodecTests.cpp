#include "Datapoint.h"
#include "ValueCodec.h"

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Registers = std::vector<std::uint16_t>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

Datapoint point(DataType type, double scale = 1, DisplayFormat format = DisplayFormat::decimal,
                RegisterTable table = RegisterTable::holdingRegister) {
    Datapoint result;
    result.setTable(table);
    if (!table.isBit()) {
        result.dataType = type;
    }
    result.scale = scale;
    result.format = format;
    return result;
}

TEST(ValueCodec, RegisterLayoutFollowsTheWordOrderAndTheRegistersGiven) {
    struct Row {
        DataType type;
        WordOrder order;
        std::uint64_t bits;
        Registers registers;
    };
    const Row rows[] = {
        {DataType::float32, WordOrder::abcd, 0x3F800000, {0x3F80, 0x0000}},
        {DataType::float32, WordOrder::cdab, 0x3F800000, {0x0000, 0x3F80}},
        {DataType::float32, WordOrder::badc, 0x3F800000, {0x803F, 0x0000}},
        {DataType::float32, WordOrder::dcba, 0x3F800000, {0x0000, 0x803F}},
        {DataType::uint64, WordOrder::abcd, 0x0102030405060708, {0x0102, 0x0304, 0x0506, 0x0708}},
        {DataType::uint64, WordOrder::cdab, 0x0102030405060708, {0x0708, 0x0506, 0x0304, 0x0102}},
        {DataType::uint64, WordOrder::badc, 0x0102030405060708, {0x0201, 0x0403, 0x0605, 0x0807}},
        {DataType::uint64, WordOrder::dcba, 0x0102030405060708, {0x0807, 0x0605, 0x0403, 0x0201}},
        {DataType::uint16, WordOrder::badc, 0x1234, {0x1234}},
        {DataType::boolean, WordOrder::dcba, 1, {0x0001}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.type.rawValue()) + " " + std::string(row.order.rawValue()));
        EXPECT_EQ(ValueCodec::registersFromBits(row.bits, row.type, row.order), row.registers);
        EXPECT_EQ(ValueCodec::bitsFromRegisters(row.registers, row.type, row.order), row.bits);
    }
    // Decoding uses only the registers given.
    const Registers extra{0x0001, 0x0002, 0xFFFF};
    EXPECT_EQ(ValueCodec::bitsFromRegisters(extra, DataType::uint32, WordOrder::abcd), 0x00010002U);
    const Registers one{0x1234};
    EXPECT_EQ(ValueCodec::bitsFromRegisters(one, DataType::uint32, WordOrder::dcba), 0x1234U);
}

TEST(ValueCodec, ConversionToRawRoundsHalvesAwayAndClamps) {
    struct Row {
        DataType type;
        double value;
        std::uint64_t bits;
    };
    const Row rows[] = {
        {DataType::boolean, -1, 0},
        {DataType::uint16, 2.5, 3},
        {DataType::uint16, 70000, 0xFFFF},
        {DataType::uint16, -5, 0},
        {DataType::uint16, nan, 0},
        {DataType::int16, -2.5, 0xFFFD},
        {DataType::uint32, infinity, 0xFFFFFFFF},
        {DataType::int32, -infinity, 0x80000000},
        {DataType::uint64, 1e20, 0xFFFFFFFFFFFFFFFF},
        {DataType::int64, 1e19, 0x7FFFFFFFFFFFFFFF},
        {DataType::int64, 9223372036854775808.0, 0x7FFFFFFFFFFFFFFF},
        {DataType::int64, -1e19, 0x8000000000000000},
        {DataType::float32, 1e39, 0x7F800000},
        // Above the largest single but nearer to it than to 2^128: rounds down, not to infinity.
        {DataType::float32, 3.4028235e38, 0x7F7FFFFF},
        {DataType::float64, -0.0, 0x8000000000000000},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ValueCodec::bits(row.value, row.type), row.bits)
            << row.type.rawValue() << " " << row.value;
    }
    EXPECT_TRUE(std::isnan(std::bit_cast<float>(
        static_cast<std::uint32_t>(ValueCodec::bits(nan, DataType::float32)))));
}

TEST(ValueCodec, ScaleDividesOnWriteAndMultipliesOnRead) {
    EXPECT_EQ(point(DataType::int16).valueFromRegisters(Registers{0xFFFF}), -1);
    EXPECT_EQ(point(DataType::uint16).valueFromRegisters(Registers{0xFFFF}), 65535);
    EXPECT_EQ(point(DataType::uint16, 0.1).registers(23.5), Registers{0x00EB});
    EXPECT_DOUBLE_EQ(point(DataType::uint16, 0.1).valueFromRegisters(Registers{0x00EB}).toDouble(),
                     23.5);
    // 23.45 / 0.1 is 234.49999999999997 in floating point.
    EXPECT_EQ(point(DataType::uint16, 0.1).registers(23.45), Registers{234});
    EXPECT_EQ(point(DataType::int16, 0).registers(7), Registers{7});
    EXPECT_EQ(point(DataType::int16, 0).valueFromRegisters(Registers{7}), 7);
    EXPECT_EQ(point(DataType::int32, -2).valueFromRegisters(Registers{0, 3}), -6);
}

TEST(ValueCodec, DisplayFollowsFormatTypeAndLocale) {
    const NumberStyle point_{"."};
    const NumberStyle comma{","};
    struct Row {
        Datapoint datapoint;
        Value value;
        const NumberStyle& style;
        std::string_view expected;
    };
    const Row rows[] = {
        {point(DataType::int32, 1, DisplayFormat::hex), -2, point_, "0xFFFFFFFE"},
        {point(DataType::uint16, 0.1, DisplayFormat::hex), 23.5, point_, "0x00EB"},
        {point(DataType::uint16, 1, DisplayFormat::binary), 255, point_, "0000 0000 1111 1111"},
        {point(DataType::float32), 3.14159265, point_, "3.141593"},
        {point(DataType::float32), 12345678, point_, "12345680"},
        {point(DataType::float32), -0.000123456789, point_, "-0.0001234568"},
        {point(DataType::float32), 1e20, point_, "1e+20"},
        {point(DataType::float64, 1, DisplayFormat::hex), 2.5, point_, "2.5"},
        {point(DataType::float64, 1, DisplayFormat::binary), nan, point_, "NaN"},
        {point(DataType::float64), infinity, point_, "∞"},
        {point(DataType::float32), -infinity, point_, "-∞"},
        {point(DataType::uint16, 0.1), 23.4, point_, "23.4"},
        {point(DataType::uint16, 0.1), 23.4, comma, "23,4"},
        {point(DataType::uint16), 23.4, point_, "23"},
        {point(DataType::int32, 0.001), -1.5, comma, "-1,500"},
        // A zero is never shown negative, though 0 × -0.1 is -0.0.
        {point(DataType::int16, -0.1), 0 * -0.1, point_, "0.0"},
        {point(DataType::int32, 0.01), -0.001, point_, "0.00"},
        {point(DataType::uint16, 1, DisplayFormat::hex, RegisterTable::coil), 0.0, point_, "0"},
        {point(DataType::boolean, 1, DisplayFormat::hex), 0.2, point_, "1"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.datapoint.formatted(row.value, row.style), row.expected)
            << row.datapoint.dataType.rawValue() << " " << row.value.toDouble();
    }
}

TEST(ValueCodec, TypedInputIsCheckedAgainstTheType) {
    struct Row {
        Datapoint datapoint;
        std::string_view text;
        std::optional<Value> expected;
    };
    const Datapoint coil = point(DataType::boolean, 1, DisplayFormat::decimal, RegisterTable::coil);
    const Row rows[] = {
        {point(DataType::float32), "1,5", 1.5},
        {point(DataType::float32), "1.000,5", std::nullopt},
        {point(DataType::float32), "0b101", std::nullopt},
        {point(DataType::float32), "0x3f800000", 1.0},
        {point(DataType::float32), "1e39", std::nullopt},
        {point(DataType::uint16), " 1 000 ", 1000},
        {point(DataType::uint16), "0x10000", std::nullopt},
        {point(DataType::uint16), "0X1F", 31},
        {point(DataType::uint16), "0x-1", std::nullopt},
        {point(DataType::uint16), "0b1 0000 0000", 256},
        {point(DataType::uint16), "70000", std::nullopt},
        {point(DataType::uint16), "-0.4", -0.4},
        {point(DataType::uint16), "-0.5", std::nullopt},
        {point(DataType::uint16, 0.1), "6553,5", 6553.5},
        {point(DataType::uint16, 0.1), "6553.6", std::nullopt},
        {point(DataType::int16, 0.1), "0xffff", -0.1},
        {point(DataType::int64), "0xFFFFFFFFFFFFFFFF", -1},
        {point(DataType::uint64), "0x10000000000000000", std::nullopt},
        // The 64-bit ranges end exactly where the types do, not at the doubles near them; the
        // ends themselves are typed back in the exactness test below.
        {point(DataType::uint64), "18446744073709551616", std::nullopt},
        {point(DataType::uint64), "1.8446744073709552e19", std::nullopt},
        {point(DataType::uint64), "-1", std::nullopt},
        {point(DataType::int64), "-9223372036854775809", std::nullopt},
        {point(DataType::int64), "9223372036854775808", std::nullopt},
        {point(DataType::int64), "1e400", std::nullopt},
        {coil, "Aus", 0},
        {coil, " SÍ ", 1},
        {coil, "maybe", std::nullopt},
        {point(DataType::boolean), "On", 1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.datapoint.parse(row.text), row.expected)
            << row.datapoint.dataType.rawValue() << " '" << row.text << "'";
    }
}

TEST(ValueCodec, NumberCellsAcceptADecimalCommaButNoGrouping) {
    const std::pair<std::string_view, std::optional<Value>> rows[] = {
        {" 0,01 ", 0.01},
        {"1.000,5", std::nullopt},
        {"-2.5e3", -2500},
        {"+2", 2},
        {"+-2", std::nullopt},
        {"1 000", std::nullopt},
        {"0x10", std::nullopt},
        {"inf", infinity},
        // Beyond the doubles a number is as large or as small as a double can be.
        {"1e400", infinity},
        {"-1e400", -infinity},
        {"1e-400", 0},
        {"18446744073709551615", UINT64_MAX},
        {"-9223372036854775807", -INT64_MAX}};
    for (auto [text, expected] : rows) {
        EXPECT_EQ(Datapoint::parseNumber(text), expected) << text;
    }
}

// The integers at the ends of every integer type, and the first ones a double cannot hold, in
// every word order: encoded, decoded, shown in every format and typed back without losing a bit.
TEST(ValueCodec, IntegersAreExactAtTheEndsOfEveryTypeInEveryWordOrder) {
    struct Row {
        DataType type;
        Value value;
        std::string_view decimal;
        std::string_view hex;
    };
    const Row rows[] = {
        {DataType::uint16, 65535, "65535", "0xFFFF"},
        {DataType::int16, -32768, "-32768", "0x8000"},
        {DataType::uint32, 4294967295U, "4294967295", "0xFFFFFFFF"},
        {DataType::int32, INT32_MIN, "-2147483648", "0x80000000"},
        {DataType::uint64, UINT64_MAX, "18446744073709551615", "0xFFFFFFFFFFFFFFFF"},
        {DataType::uint64, UINT64_C(0x0102030405060708), "72623859790382856", "0x0102030405060708"},
        {DataType::uint64, UINT64_C(9007199254740993), "9007199254740993", "0x0020000000000001"},
        {DataType::int64, INT64_MIN, "-9223372036854775808", "0x8000000000000000"},
        {DataType::int64, INT64_MAX, "9223372036854775807", "0x7FFFFFFFFFFFFFFF"},
        {DataType::int64, INT64_C(-9007199254740993), "-9007199254740993", "0xFFDFFFFFFFFFFFFF"},
    };
    for (const Row& row : rows) {
        for (WordOrder order : WordOrder::allCases) {
            SCOPED_TRACE(std::string(row.type.rawValue()) + " " + std::string(order.rawValue()) +
                         " " + std::string(row.decimal));
            Datapoint datapoint = point(row.type);
            datapoint.wordOrder = order;
            EXPECT_EQ(datapoint.valueFromRegisters(datapoint.registers(row.value)), row.value);
            EXPECT_EQ(datapoint.formatted(row.value, {}), row.decimal);
            EXPECT_EQ(datapoint.parse(row.decimal), row.value);
            datapoint.format = DisplayFormat::hex;
            EXPECT_EQ(datapoint.formatted(row.value, {}), row.hex);
            EXPECT_EQ(datapoint.parse(row.hex), row.value);
            // Binary is shown without the 0b that the user types in front of it.
            datapoint.format = DisplayFormat::binary;
            EXPECT_EQ(datapoint.parse("0b" + datapoint.formatted(row.value, {})), row.value);
        }
    }
}

// Raw patterns the type can hold.
std::uint64_t randomBits(std::mt19937_64& random, DataType type) {
    const int width = type == DataType::boolean ? 1 : 16 * type.registerCount();
    return width == 64 ? random() : random() & ((std::uint64_t{1} << width) - 1);
}

TEST(ValueCodecProperty, RawPatternsSurviveRegistersAndValues) {
    std::mt19937_64 random(20240611);
    for (DataType type : DataType::allCases) {
        for (WordOrder order : WordOrder::allCases) {
            for (int i = 0; i < 2000; ++i) {
                const std::uint64_t bits = randomBits(random, type);
                const Registers registers = ValueCodec::registersFromBits(bits, type, order);
                ASSERT_EQ(registers.size(), static_cast<std::size_t>(type.registerCount()));
                ASSERT_EQ(ValueCodec::bitsFromRegisters(registers, type, order), bits);
                const Value value = ValueCodec::value(bits, type);
                if (std::isnan(value.toDouble())) {
                    ASSERT_TRUE(std::isnan(
                        ValueCodec::value(ValueCodec::bits(value, type), type).toDouble()));
                    continue;
                }
                ASSERT_EQ(ValueCodec::bits(value, type), bits)
                    << type.rawValue() << " " << order.rawValue() << " " << std::hex << bits;
            }
        }
    }
}

TEST(ValueCodecProperty, DisplayedValuesParseBackToTheDisplayedPrecision) {
    std::mt19937_64 random(7);
    const double scales[] = {1, 0.1, 0.01, 0.5, 10, 0.001};
    const NumberStyle styles[] = {{"."}, {","}};
    for (DataType type : DataType::allCases) {
        if (type == DataType::boolean) {
            continue;
        }
        for (double scale : scales) {
            const Datapoint datapoint = point(type, scale);
            for (int i = 0; i < 500; ++i) {
                const double raw = ValueCodec::value(randomBits(random, type), type).toDouble();
                const double value = raw * scale;
                // Near the ends of a wide range, rounding to the shown digits may step outside.
                if (!std::isfinite(value) ||
                    ((type.registerCount() == 4 || type.isFloat()) && std::abs(raw) > 1e18)) {
                    continue;
                }
                for (const NumberStyle& style : styles) {
                    const std::string text = datapoint.formatted(value, style);
                    const auto parsed = datapoint.parse(text);
                    ASSERT_TRUE(parsed.has_value()) << type.rawValue() << " " << text;
                    const double tolerance =
                        type.isFloat()
                            ? std::abs(value) * 5e-7
                            : 0.5 * std::pow(10.0, -datapoint.decimals()) + std::abs(value) * 1e-15;
                    ASSERT_NEAR(parsed->toDouble(), value, tolerance)
                        << type.rawValue() << " " << text;
                }
            }
        }
    }
}

} // namespace
} // namespace kestrin
