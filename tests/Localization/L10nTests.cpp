#include "L10n.h"
#include "TranslatedKeys.h"

#include <cerrno>
#include <functional>
#include <map>
#include <set>
#include <thread>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// Runs check once per language, with every text of this thread in that language.
void forEachLanguage(const std::function<void(Language)>& check) {
    for (Language language : Language::allCases) {
        SCOPED_TRACE(language.rawValue());
        L10n::withLanguageForTesting(language, [&] { check(language); });
    }
}

void inEnglish(const std::function<void()>& check) {
    L10n::withLanguageForTesting(Language::en, check);
}

struct Expectation {
    std::function<std::string()> actual;
    std::string expected;
};

void expectAll(const std::vector<Expectation>& rows) {
    for (const Expectation& row : rows) {
        EXPECT_EQ(row.actual(), row.expected);
    }
}

TEST(L10n, EveryKeyHasTextShowingItsValuesInEveryLanguage) {
    forEachLanguage([](Language) {
        for (const TranslatedKey& key : translatedKeys()) {
            const std::string text = key.text();
            EXPECT_FALSE(text.empty()) << key.name;
            for (const std::string& value : key.values) {
                EXPECT_NE(text.find(value), std::string::npos) << key.name << ": " << text;
            }
        }
    });
}

TEST(L10n, NoLanguageIsLeftInEnglish) {
    std::map<std::string, std::string> english;
    inEnglish([&] {
        for (const TranslatedKey& key : translatedKeys()) {
            english[key.name] = key.text();
        }
    });
    forEachLanguage([&](Language language) {
        if (language == Language::en) {
            return;
        }
        std::string same;
        std::size_t count = 0;
        for (const TranslatedKey& key : translatedKeys()) {
            if (key.text() == english[key.name]) {
                same += key.name + " ";
                ++count;
            }
        }
        // Terms of the trade stay English in some languages (Dutch "Coil", "Setpoint", "Status"),
        // but a file or group left untranslated shows up well above one key in eight.
        EXPECT_LE(count, translatedKeys().size() / 8) << same;
    });
}

TEST(L10n, DifferentThingsReadDifferentlyInEveryLanguage) {
    const std::vector<std::vector<std::string_view>> groups = {
        {"Table.tableName(CO)", "Table.tableName(DI)", "Table.tableName(HR)",
         "Table.tableName(IR)"},
        {"Table.formatName(decimal)", "Table.formatName(binary)"},
        {"Settings.parityNone", "Settings.parityEven", "Settings.parityOdd"},
        {"Settings.writeSingle", "Settings.writeMultiple"},
        {"Header.start", "Header.stop"},
        {"Header.startHelp", "Header.stopHelp"},
        {"State.running", "State.stopped", "State.serialLost"},
        {"Write.off", "Write.on"},
        {"Import.add", "Import.replace", "Import.cancel"},
        {"Pane.log", "Pane.chart"},
        {"Menu.newProject", "Menu.openProject", "Menu.saveProject", "Menu.importCSV",
         "Menu.exportCSV", "Menu.saveLog", "Menu.clearLog"},
        {"Modbus.functionName(1)", "Modbus.functionName(2)", "Modbus.functionName(3)",
         "Modbus.functionName(4)", "Modbus.functionName(5)", "Modbus.functionName(6)",
         "Modbus.functionName(8)", "Modbus.functionName(15)", "Modbus.functionName(16)",
         "Modbus.functionName(22)", "Modbus.functionName(23)", "Modbus.functionName(43)",
         "Modbus.functionName(0)"},
        {"Log.failure(unexpectedUnit)", "Log.failure(unexpectedFunction)", "Log.failure(timeout)",
         "Log.failure(crcMismatch)", "Log.failure(malformed)", "Modbus.exceptionName(2)"},
        {"Log.shortFailure(exception)", "Log.shortFailure(timeout)",
         "Log.shortFailure(crcMismatch)", "Log.shortFailure(malformed)"},
        {"Example.pollName", "Example.temperature", "Example.pressure", "Example.runtime",
         "Example.setpoint", "Example.mode", "Example.pump", "Example.alarm"},
    };
    std::map<std::string_view, const TranslatedKey*> byName;
    for (const TranslatedKey& key : translatedKeys()) {
        byName[key.name] = &key;
    }
    forEachLanguage([&](Language) {
        for (const auto& group : groups) {
            std::map<std::string, std::string_view> seen;
            for (std::string_view name : group) {
                ASSERT_EQ(byName.count(name), 1U) << name;
                const auto [first, inserted] = seen.emplace(byName[name]->text(), name);
                EXPECT_TRUE(inserted) << name << " reads like " << first->second;
            }
        }
        // Each exception has its own name, not only its own code in parentheses.
        std::set<std::string> exceptionNames;
        for (std::uint8_t code : {1, 2, 3, 4, 5, 6, 7, 8, 10, 11}) {
            const std::string name = L10n::Modbus::exceptionName(code);
            exceptionNames.insert(name.substr(0, name.rfind(" (")));
        }
        EXPECT_EQ(exceptionNames.size(), 10U);
    });
}

TEST(L10n, ColumnsForTheUnitIDAndTheEngineeringUnitDifferOutsideEnglish) {
    forEachLanguage([](Language language) {
        if (language != Language::en) {
            EXPECT_NE(L10n::texts().table.unit(), L10n::texts().table.unitID());
        }
    });
}

// The text around the number: "# datapoints found".
std::string aroundNumber(const std::string& text, int number) {
    std::string pattern = text;
    const std::string digits = std::to_string(number);
    if (const std::size_t at = pattern.find(digits); at != std::string::npos) {
        pattern.replace(at, digits.size(), "#");
    }
    return pattern;
}

TEST(L10n, ImportTitleFollowsEachLanguagesPluralRule) {
    forEachLanguage([](Language language) {
        const std::string one = aroundNumber(L10n::texts().import.title(1), 1);
        const std::string two = aroundNumber(L10n::texts().import.title(2), 2);
        const std::string none = aroundNumber(L10n::texts().import.title(0), 0);
        EXPECT_NE(one, two);
        // French counts zero as singular.
        EXPECT_EQ(none, language == Language::fr ? one : two);
        EXPECT_EQ(aroundNumber(L10n::texts().import.title(15), 15), two);
    });
}

TEST(L10n, CodesUnitsAndNumbersReadTheSameInEveryLanguage) {
    const std::vector<Expectation> rows = {
        {L10n::appName, "Kestrin"},
        {L10n::Menu::poller, "Poller"},
        {L10n::Table::csv, "CSV"},
        {L10n::Errors::ok, "OK"},
        {[] { return L10n::Table::formatName(DisplayFormat::hex); }, "Hex"},
        {[] { return L10n::Table::ok(24); }, "OK · 24 ms"},
        {[] { return L10n::Table::newName(RegisterTable::inputRegister, 7); }, "IR 7"},
        {[] { return L10n::Log::range(RegisterTable::holdingRegister, 100, 1); }, "HR 100"},
        {[] { return L10n::Log::range(RegisterTable::holdingRegister, 100, 3); }, "HR 100–102"},
        {[] { return L10n::Settings::timeoutLabel(500); }, "500 ms"},
        {[] { return L10n::Polls::intervalLabel(999); }, "999 ms"},
        {[] { return L10n::Polls::intervalLabel(1000); }, "1 s"},
        {[] { return L10n::Polls::intervalLabel(1500); }, "1 s"},
        {[] { return L10n::Chart::windowLabel(59); }, "0 min"},
        {[] { return L10n::Chart::windowLabel(60); }, "1 min"},
        {[] { return L10n::Chart::windowLabel(3599); }, "59 min"},
        {[] { return L10n::Chart::windowLabel(3600); }, "1 h"},
        {[] { return L10n::Chart::windowLabel(7200); }, "2 h"},
        {[] { return L10n::Errors::systemMessage(EACCES); }, "Permission denied"},
    };
    forEachLanguage([&](Language) {
        expectAll(rows);
        std::string names;
        for (DataType type : DataType::allCases) {
            names += L10n::Table::dataTypeName(type) + " ";
        }
        EXPECT_EQ(names, "bit UInt16 Int16 UInt32 Int32 Float32 UInt64 Int64 Float64 ");
    });
}

TEST(L10n, EnglishSpecialFormsSwitchAtTheirThresholds) {
    inEnglish([] {
        expectAll({
            {[] { return L10n::Settings::gapLabel(0); }, "Adjacent only"},
            {[] { return L10n::Settings::gapLabel(5); }, "Gaps up to 5 addresses"},
            {[] { return L10n::Chart::windowLabel(0); }, "All"},
            {[] { return L10n::Modbus::exceptionName(0x0B); },
             "Gateway target failed to respond (0B)"},
            {[] { return L10n::Modbus::exceptionName(0xFF); }, "Exception (FF)"},
            {[] { return L10n::Modbus::functionName(43); }, "Device identification"},
            {[] { return L10n::Modbus::functionName(23); }, "Read/write multiple registers"},
            {[] { return L10n::Modbus::functionName(0); }, "Function"},
            {[] { return L10n::Modbus::functionName(99); }, "Function"},
            {[] { return L10n::Log::unitFunction(247, 0x10); }, "Unit 247 · FC 10"},
            {[] { return L10n::Table::valueInvalid(DataType::float32); },
             "This value does not fit in Float32."},
            {[] { return L10n::Table::tableName(RegisterTable::discreteInput); }, "Discrete input"},
        });
    });
}

TEST(L10n, EnglishTextsOfEveryPollFailure) {
    struct Row {
        PollFailure failure;
        std::string_view description;
        std::string_view status;
    };
    const Row rows[] = {
        {PollFailure::unexpectedUnit(17), "response from unit 17", "Invalid response"},
        {PollFailure::unexpectedFunction(0x2B), "response with function code 2B",
         "Invalid response"},
        {PollFailure::exception(2), "Illegal data address (02)", "Exception 02"},
        {PollFailure::exception(7), "Exception (07)", "Exception 07"},
        {PollFailure::timeout(), "no response within 1000 ms", "No response"},
        {PollFailure::crcMismatch(), "CRC error in the response", "CRC error"},
        {PollFailure::malformed(), "response with the wrong length", "Invalid response"},
    };
    inEnglish([&] {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.description);
            EXPECT_EQ(L10n::Log::failure(row.failure, 1000), row.description);
            EXPECT_EQ(L10n::Log::shortFailure(row.failure), row.status);
        }
    });
}

TEST(L10n, EnglishSerialLinkErrorsReadAsFinishedSentences) {
    using E = SerialLinkError;
    struct Row {
        SerialLinkError error;
        std::string_view sentence;
    };
    const Row rows[] = {
        {{E::InvalidPath{"/dev/tty1"}}, "'/dev/tty1' is not a valid serial port."},
        {{E::OpenFailed{"/dev/ttyUSB0", ENOENT}},
         "Cannot open /dev/ttyUSB0: No such file or directory."},
        {{E::OpenFailed{"/dev/ttyUSB0", EACCES}},
         "Cannot open /dev/ttyUSB0: Permission denied. Serial ports are open only to members of "
         "the dialout group: add yourself with the command sudo usermod -aG dialout $USER and log "
         "in again."},
        {{E::Busy{"/dev/ttyACM0"}},
         "/dev/ttyACM0 is already in use by another program. Close that program and try again."},
        {{E::ConfigurationFailed{EINVAL}}, "Configuring the serial port failed: Invalid argument."},
        {{E::UnsupportedBaudRate{250000}}, "Baud rate 250000 is not supported by this adapter."},
        {{E::WriteFailed{4242}}, "Sending failed: Unknown error 4242."},
        {{E::NotOpen{}}, "The serial port is not open."},
        {{E::Timeout{}}, "No response from the device."},
        {{E::Disconnected{}}, "The adapter was disconnected."},
    };
    inEnglish([&] {
        for (const Row& row : rows) {
            EXPECT_EQ(L10n::Errors::describe(row.error), row.sentence);
        }
    });
}

TEST(L10n, OnlyRefusedAccessNamesTheDialoutGroupInEveryLanguage) {
    using E = SerialLinkError;
    forEachLanguage([](Language) {
        const std::string refused = L10n::Errors::describe({E::OpenFailed{"/dev/ttyUSB0", EACCES}});
        EXPECT_EQ(refused, L10n::texts().errors.openFailed("/dev/ttyUSB0", "Permission denied") +
                               " " + L10n::texts().errors.openPermissionDenied());
        EXPECT_NE(refused.find("dialout"), std::string::npos);
        EXPECT_NE(refused.find("sudo usermod -aG dialout $USER"), std::string::npos);
        for (const SerialLinkError& other : {SerialLinkError{E::OpenFailed{"/dev/ttyUSB0", ENOENT}},
                                             SerialLinkError{E::OpenFailed{"/dev/ttyUSB0", EPERM}},
                                             SerialLinkError{E::Busy{"/dev/ttyUSB0"}},
                                             SerialLinkError{E::ConfigurationFailed{EACCES}}}) {
            EXPECT_EQ(L10n::Errors::describe(other).find("dialout"), std::string::npos)
                << L10n::Errors::describe(other);
        }
    });
}

TEST(L10n, EnglishCSVProblemsQuoteTheOffendingCell) {
    using P = DatapointCSV::Problem;
    struct Row {
        DatapointCSV::Problem problem;
        std::string_view text;
    };
    const Row rows[] = {
        {P::invalidTable("5x"), "unknown table '5x' (use CO, DI, HR or IR)"},
        {P::invalidAddress("65536"), "invalid address '65536' (0 to 65535)"},
        {P::invalidUnit("0"), "invalid unit ID '0' (1 to 247)"},
        {P::invalidDataType("uint"), "unknown data type 'uint'"},
        {P::invalidNumber("1.000,5"), "invalid number '1.000,5'"},
        {P::missingColumns(), "the columns Table and Address are missing"},
    };
    inEnglish([&] {
        for (const Row& row : rows) {
            EXPECT_EQ(L10n::Errors::describe(row.problem), row.text);
        }
        EXPECT_EQ(L10n::Errors::describe(DatapointCSV::ImportIssue{3, P::invalidUnit("248")}),
                  "Line 3: invalid unit ID '248' (1 to 247)");
    });
}

TEST(L10n, TheTestLanguageIsPerThreadAndRestored) {
    L10n::withLanguageForTesting(Language::de, [] {
        EXPECT_EQ(L10n::language(), Language::de);
        L10n::withLanguageForTesting(Language::fr,
                                     [] { EXPECT_EQ(L10n::language(), Language::fr); });
        EXPECT_EQ(L10n::language(), Language::de);
        Language elsewhere = Language::de;
        std::thread([&] { elsewhere = L10n::language(); }).join();
        EXPECT_EQ(elsewhere, Language::current());
    });
    EXPECT_EQ(L10n::language(), Language::current());
}

} // namespace
} // namespace kestrin
