#include "RegisterTable.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(RegisterTable, PropertiesFollowTheTableOfTables) {
    struct Row {
        RegisterTable table;
        std::string_view raw, code;
        bool isBit, isWritable;
        int modicon, maxRead;
        FunctionCode read;
    };
    const Row rows[] = {
        {RegisterTable::coil, "coil", "CO", true, true, 0, 2000, FunctionCode::readCoils},
        {RegisterTable::discreteInput, "discreteInput", "DI", true, false, 1, 2000,
         FunctionCode::readDiscreteInputs},
        {RegisterTable::holdingRegister, "holdingRegister", "HR", false, true, 4, 125,
         FunctionCode::readHoldingRegisters},
        {RegisterTable::inputRegister, "inputRegister", "IR", false, false, 3, 125,
         FunctionCode::readInputRegisters},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.raw);
        EXPECT_EQ(row.table.rawValue(), row.raw);
        EXPECT_EQ(row.table.code(), row.code);
        EXPECT_EQ(row.table.isBit(), row.isBit);
        EXPECT_EQ(row.table.isWritable(), row.isWritable);
        EXPECT_EQ(row.table.modiconPrefix(), row.modicon);
        EXPECT_EQ(row.table.maxReadCount(), row.maxRead);
        EXPECT_EQ(row.table.readFunction().code(), row.read.code());
        EXPECT_EQ(RegisterTable::fromRawValue(row.raw), row.table);
    }
    EXPECT_EQ(RegisterTable::fromRawValue("Coil"), std::nullopt);
    EXPECT_EQ(RegisterTable::fromRawValue(""), std::nullopt);
}

} // namespace
} // namespace kestrin
