#include "L10n.h"
#include "LanguageForTesting.h"
#include "TranslatedKeys.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <map>
#include <ranges>
#include <thread>
#include <utility>
#include <vector>

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

TEST(L10n, EveryKeyHasTextShowingItsValuesInEveryLanguage) {
    for (Language language : Language::allCases) {
        for (const TranslatedKey& key : translatedKeys(L10n::texts(language))) {
            EXPECT_FALSE(key.text.empty()) << language.rawValue() << " " << key.name;
            for (const std::string& value : key.values) {
                EXPECT_NE(key.text.find(value), std::string::npos)
                    << language.rawValue() << " " << key.name << ": " << key.text;
            }
        }
    }
}

TEST(L10n, NoLanguageOrSectionIsLeftInEnglish) {
    const std::vector<TranslatedKey> english = translatedKeys(L10n::englishTexts());
    for (Language language : Language::allCases) {
        if (language == Language::en) {
            continue;
        }
        const std::vector<TranslatedKey> keys = translatedKeys(L10n::texts(language));
        std::string same;
        std::size_t count = 0;
        std::map<std::string, std::pair<std::size_t, std::size_t>> sections; // same, all
        for (std::size_t i = 0; i < keys.size(); ++i) {
            auto& [sameInSection, all] = sections[keys[i].name.substr(0, keys[i].name.find('.'))];
            ++all;
            if (keys[i].text == english[i].text) {
                same += keys[i].name + " ";
                ++sameInSection;
                ++count;
            }
        }
        // Terms of the trade stay English in some languages (Dutch "Coil", "Setpoint", "Status"),
        // but a file left untranslated shows up above one key in eight, a section above half.
        EXPECT_LE(count, keys.size() / 8) << language.rawValue() << ": " << same;
        for (const auto& [section, counts] : sections) {
            EXPECT_LE(counts.first * 2, counts.second) << language.rawValue() << " " << section;
        }
        // English reads "Unit" for both columns; a translation must tell them apart.
        const L10n::Texts::TableTexts& table = L10n::texts(language).table;
        EXPECT_NE(table.unit(), table.unitID()) << language.rawValue();
    }
}

// A name ending in "." stands for every key below it.
TEST(L10n, DifferentThingsReadDifferentlyInEveryLanguage) {
    const std::vector<std::vector<std::string_view>> groups = {
        {"table.tableNames."},
        {"table.formatNames."},
        {"modbus.functionNames."},
        {"modbus.exceptionNames."},
        {"log.failure."},
        {"log.shortFailure."},
        {"example."},
        {"settings.parityNone", "settings.parityEven", "settings.parityOdd"},
        {"settings.writeSingle", "settings.writeMultiple"},
        {"header.start", "header.stop"},
        {"header.startHelp", "header.stopHelp"},
        {"state.running", "state.stopped", "state.serialLost"},
        {"write.off", "write.on"},
        {"import.add", "import.replace", "import.cancel"},
        {"pane.log", "pane.chart"},
        {"menu.newProject", "menu.openProject", "menu.saveProject", "menu.importCSV",
         "menu.exportCSV", "menu.saveLog", "menu.clearLog"},
    };
    for (Language language : Language::allCases) {
        const std::vector<TranslatedKey> keys = translatedKeys(L10n::texts(language));
        for (const auto& group : groups) {
            std::map<std::string, std::string_view> seen;
            for (std::string_view name : group) {
                const auto named = [&](const TranslatedKey& key) {
                    return name.ends_with('.') ? key.name.starts_with(name) : key.name == name;
                };
                ASSERT_TRUE(std::any_of(keys.begin(), keys.end(), named)) << name;
                for (const TranslatedKey& key : keys | std::views::filter(named)) {
                    const auto [first, inserted] = seen.emplace(key.text, key.name);
                    EXPECT_TRUE(inserted) << language.rawValue() << " " << key.name
                                          << " reads like " << first->second;
                }
            }
        }
    }
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

TEST(L10n, CountsFollowEachLanguagesPluralRule) {
    for (Language language : Language::allCases) {
        SCOPED_TRACE(language.rawValue());
        const L10n::Texts::ImportTexts& texts = L10n::texts(language).import;
        for (int count : {0, 1, 2, 15}) {
            EXPECT_NE(texts.title(count).find(std::to_string(count)), std::string::npos);
            EXPECT_NE(texts.skipped(count).find(std::to_string(count)), std::string::npos);
        }
        const std::string one = aroundNumber(texts.title(1), 1);
        const std::string two = aroundNumber(texts.title(2), 2);
        EXPECT_NE(one, two);
        // French counts zero as singular.
        EXPECT_EQ(aroundNumber(texts.title(0), 0), language == Language::fr ? one : two);
        EXPECT_EQ(aroundNumber(texts.title(15), 15), two);
    }
}

TEST(L10n, CodesUnitsAndNumbersReadTheSameInEveryLanguage) {
    forEachLanguage([](Language) {
        EXPECT_EQ(L10n::Table::ok(24), "OK · 24 ms");
        EXPECT_EQ(L10n::Table::newName(RegisterTable::inputRegister, 7), "IR 7");
        EXPECT_EQ(L10n::Log::range(RegisterTable::holdingRegister, 100, 1), "HR 100");
        EXPECT_EQ(L10n::Log::range(RegisterTable::holdingRegister, 100, 3), "HR 100–102");
        EXPECT_EQ(L10n::Settings::timeoutLabel(500), "500 ms");
        EXPECT_EQ(L10n::Polls::intervalLabel(999), "999 ms");
        EXPECT_EQ(L10n::Polls::intervalLabel(1000), "1 s");
        EXPECT_EQ(L10n::Polls::intervalLabel(1500), "1 s");
        EXPECT_EQ(L10n::Chart::windowLabel(59), "0 min");
        EXPECT_EQ(L10n::Chart::windowLabel(60), "1 min");
        EXPECT_EQ(L10n::Chart::windowLabel(3599), "59 min");
        EXPECT_EQ(L10n::Chart::windowLabel(3600), "1 h");
        EXPECT_EQ(L10n::Chart::windowLabel(7200), "2 h");
        EXPECT_EQ(L10n::Errors::systemMessage(EACCES), "Permission denied");
        std::string names;
        for (DataType type : DataType::allCases) {
            names += L10n::Table::dataTypeName(type) + " ";
        }
        EXPECT_EQ(names, "bit UInt16 Int16 UInt32 Int32 Float32 UInt64 Int64 Float64 ");
    });
}

// A code without a name of its own reads as its family's name; exceptions carry the hex code.
// How each CSV problem quotes its cell shows in the command line's refusals, and the line it names
// in the import's question; here the one problem without a cell.
TEST(L10n, EnglishSpecialFormsSwitchAtTheirThresholdsAndCodesFallBackToTheirFamily) {
    inEnglish([] {
        EXPECT_EQ(L10n::Settings::gapLabel(0), "Adjacent only");
        EXPECT_EQ(L10n::Settings::gapLabel(5), "Gaps up to 5 addresses");
        EXPECT_EQ(L10n::Chart::windowLabel(0), "All");
        EXPECT_EQ(L10n::Log::unitFunction(247, 0x10), "Unit 247 · FC 10");
        EXPECT_EQ(L10n::Table::valueInvalid(DataType::float32),
                  "This value does not fit in Float32.");
        EXPECT_EQ(L10n::Modbus::functionName(16), "Write multiple registers");
        EXPECT_EQ(L10n::Modbus::functionName(0), "Function");
        EXPECT_EQ(L10n::Modbus::functionName(99), "Function");
        EXPECT_EQ(L10n::Modbus::exceptionName(10), "Gateway path unavailable (0A)");
        EXPECT_EQ(L10n::Modbus::exceptionName(7), "Exception (07)");
        EXPECT_EQ(L10n::Modbus::exceptionName(255), "Exception (FF)");
        EXPECT_EQ(L10n::Errors::describe(DatapointCSV::Problem::missingColumns()),
                  "the columns Table and Address are missing");
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
        {PollFailure::exception(7), "Exception (07)", "Exception 07"},
        {PollFailure::timeout(), "no response within 1000 ms", "No response"},
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

using E = SerialLinkError;
using M = E::PortAccess::Membership;

// Every way a serial port fails, with its English sentence and the commands in it: these are
// typed as they stand, so no language may translate or drop them.
struct PortFailure {
    SerialLinkError error;
    std::string_view english;
    std::vector<std::string_view> commands = {};
};
const PortFailure portFailures[] = {
    {{E::InvalidPath{"/dev/tty1"}}, "'/dev/tty1' is not a valid serial port."},
    {{E::OpenFailed{"/dev/ttyUSB0", ENOENT}},
     "Cannot open /dev/ttyUSB0: No such file or directory."},
    {{E::OpenFailed{"/dev/ttyUSB0", EACCES}},
     "Cannot open /dev/ttyUSB0: Permission denied. Serial ports are open only to members of "
     "the dialout group: add yourself with the command sudo usermod -aG dialout $USER and log "
     "in again.",
     {"sudo usermod -aG dialout $USER"}},
    {{E::Busy{"/dev/ttyACM0"}},
     "/dev/ttyACM0 is already in use by another program. Close that program and try again."},
    {{E::OpenFailed{"/dev/ttyUSB0", EACCES, E::PortAccess{"dialout", "alice", M::none, true}}},
     "Cannot open /dev/ttyUSB0: Permission denied. The port belongs to the group dialout and "
     "alice is not a member: add yourself with sudo usermod -aG dialout alice, then log out "
     "and back in.",
     {"sudo usermod -aG dialout alice"}},
    {{E::OpenFailed{"/dev/ttyUSB0", EACCES,
                    E::PortAccess{"uucp", "alice", M::notInThisLogin, true}}},
     "Cannot open /dev/ttyUSB0: Permission denied. You were added to the group uucp after "
     "this login began: log out and back in (or run newgrp uucp in a terminal and start "
     "Kestrin from there).",
     {"newgrp uucp"}},
    {{E::OpenFailed{"/dev/ttyS0", EACCES, E::PortAccess{"dialout", "alice", M::inThisLogin, true}}},
     "Cannot open /dev/ttyS0: Permission denied. You are in the group dialout already, so "
     "something else refuses access, such as an access control list or a security module."},
    // The group's mode outweighs membership: joining would not help.
    {{E::OpenFailed{"/dev/ttyS0", EACCES, E::PortAccess{"root", "alice", M::none, false}}},
     "Cannot open /dev/ttyS0: Permission denied. Only the device's owner may open it; its "
     "group may not read and write it. A udev rule or the owner must grant access."},
    {{E::Busy{"/dev/ttyUSB0", E::PortHolder{"minicom", 4711}}},
     "/dev/ttyUSB0 is in use by minicom (process 4711). Close that program and try again."},
    {{E::Busy{"/dev/ttyUSB0", E::PortHolder{"ModemManager", 812, true}}},
     "/dev/ttyUSB0 is in use, probably by ModemManager (process 812). ModemManager probes new "
     "serial adapters for modems: stop it with sudo systemctl stop ModemManager, or keep it "
     "off this adapter with a udev rule that sets ENV{ID_MM_DEVICE_IGNORE}=\"1\".",
     {"sudo systemctl stop ModemManager", R"(ENV{ID_MM_DEVICE_IGNORE}="1")"}},
    {{E::Busy{"/dev/ttyUSB0", E::PortHolder{"brltty", 530}, true}},
     "/dev/ttyUSB0 is in use by brltty (process 530). brltty, the braille display driver, "
     "takes CH340/CH341 adapters for itself. Without a braille display, stop it with sudo "
     "systemctl mask brltty-udev.service brltty.service (or remove the brltty package), then "
     "plug the adapter in again.",
     {"sudo systemctl mask brltty-udev.service brltty.service", "CH340/CH341"}},
    {{E::ConfigurationFailed{EACCES}}, "Configuring the serial port failed: Permission denied."},
    {{E::RS485Refused{ENOTTY}},
     "This port's driver does not support RS-485 direction by RTS (Inappropriate ioctl for "
     "device). USB adapters switch direction by themselves; the setting is for the UARTs of "
     "boards such as the Raspberry Pi. Turn it off in the serial settings."},
    {{E::UnsupportedBaudRate{250000}}, "Baud rate 250000 is not supported by this adapter."},
    {{E::WriteFailed{4242}}, "Sending failed: Unknown error 4242."},
    {{E::NotOpen{}}, "The serial port is not open."},
    {{E::Timeout{}}, "No response from the device."},
    {{E::Disconnected{}}, "The adapter was disconnected."},
};

TEST(L10n, PortFailuresReadAsFinishedSentencesKeepingTheirCommandsInEveryLanguage) {
    forEachLanguage([](Language language) {
        for (const PortFailure& failure : portFailures) {
            const std::string sentence = L10n::Errors::describe(failure.error);
            if (language == Language::en) {
                EXPECT_EQ(sentence, failure.english);
            }
            for (const std::string_view command : failure.commands) {
                EXPECT_NE(sentence.find(command), std::string::npos) << sentence;
            }
        }
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
