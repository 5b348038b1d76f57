#include "L10n.h"

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

// A key of the catalogue and the values its text must show, each passed as a marker that no
// translation contains by itself.
struct Key {
    std::string name;
    std::function<std::string()> text;
    std::vector<std::string> values = {};
};

// Every key that each language translates (aggregates cannot be iterated, so they are listed).
const std::vector<Key>& translatedKeys() {
    using P = PollFailure;
    static const std::vector<Key> keys = {
        {"Header.port", L10n::Header::port},
        {"Header.noPortsFound", L10n::Header::noPortsFound},
        {"Header.choosePort", L10n::Header::choosePort},
        {"Header.baudRate", L10n::Header::baudRate},
        {"Header.start", L10n::Header::start},
        {"Header.stop", L10n::Header::stop},
        {"Header.frameSettingsHelp", L10n::Header::frameSettingsHelp},
        {"Header.startHelp", L10n::Header::startHelp},
        {"Header.stopHelp", L10n::Header::stopHelp},
        {"Header.lockedWhileRunning", L10n::Header::lockedWhileRunning},
        {"Settings.frame", L10n::Settings::frame},
        {"Settings.dataBits", L10n::Settings::dataBits},
        {"Settings.parity", L10n::Settings::parity},
        {"Settings.stopBits", L10n::Settings::stopBits},
        {"Settings.parityNone", L10n::Settings::parityNone},
        {"Settings.parityEven", L10n::Settings::parityEven},
        {"Settings.parityOdd", L10n::Settings::parityOdd},
        {"Settings.modbusDefault", L10n::Settings::modbusDefault},
        {"Settings.standardNote", L10n::Settings::standardNote},
        {"Settings.requests", L10n::Settings::requests},
        {"Settings.responseTimeout", L10n::Settings::responseTimeout},
        {"Settings.timeoutHelp", L10n::Settings::timeoutHelp},
        {"Settings.combine", L10n::Settings::combine},
        {"Settings.combineHelp", L10n::Settings::combineHelp},
        {"Settings.writeMode", L10n::Settings::writeMode},
        {"Settings.writeSingle", L10n::Settings::writeSingle},
        {"Settings.writeMultiple", L10n::Settings::writeMultiple},
        {"Settings.writeModeHelp", L10n::Settings::writeModeHelp},
        {"Footer.options", L10n::Footer::options},
        {"Footer.optionsHelp", L10n::Footer::optionsHelp},
        {"Footer.autoscroll", L10n::Footer::autoscroll},
        {"Footer.timestamps", L10n::Footer::timestamps},
        {"Footer.rawFrames", L10n::Footer::rawFrames},
        {"Footer.rawFramesHelp", L10n::Footer::rawFramesHelp},
        {"Footer.onlyProblems", L10n::Footer::onlyProblems},
        {"Footer.onlyProblemsHelp", L10n::Footer::onlyProblemsHelp},
        {"Footer.save", L10n::Footer::save},
        {"Footer.saveHelp", L10n::Footer::saveHelp},
        {"Footer.clear", L10n::Footer::clear},
        {"Footer.clearHelp", L10n::Footer::clearHelp},
        {"Footer.outputAccessibility", L10n::Footer::outputAccessibility},
        {"Menu.newProject", L10n::Menu::newProject},
        {"Menu.openProject", L10n::Menu::openProject},
        {"Menu.saveProject", L10n::Menu::saveProject},
        {"Menu.importCSV", L10n::Menu::importCSV},
        {"Menu.exportCSV", L10n::Menu::exportCSV},
        {"Menu.saveLog", L10n::Menu::saveLog},
        {"Menu.clearLog", L10n::Menu::clearLog},
        {"Table.name", L10n::Table::name},
        {"Table.unitID", L10n::Table::unitID},
        {"Table.table", L10n::Table::table},
        {"Table.address", L10n::Table::address},
        {"Table.dataType", L10n::Table::dataType},
        {"Table.wordOrder", L10n::Table::wordOrder},
        {"Table.scale", L10n::Table::scale},
        {"Table.value", L10n::Table::value},
        {"Table.unit", L10n::Table::unit},
        {"Table.format", L10n::Table::format},
        {"Table.description", L10n::Table::description},
        {"Table.status", L10n::Table::status},
        {"Table.add", L10n::Table::add},
        {"Table.addHelp", L10n::Table::addHelp},
        {"Table.duplicate", L10n::Table::duplicate},
        {"Table.deleteRows", L10n::Table::deleteRows},
        {"Table.csvHelp", L10n::Table::csvHelp},
        {"Table.unitIDHelp", L10n::Table::unitIDHelp},
        {"Table.wordOrderHelp", L10n::Table::wordOrderHelp},
        {"Table.scaleHelp", L10n::Table::scaleHelp},
        {"Table.plotHelp", L10n::Table::plotHelp},
        {"Table.overlapHelp", L10n::Table::overlapHelp},
        {"Table.emptyTitle", L10n::Table::emptyTitle},
        {"Table.emptyText", L10n::Table::emptyText},
        {"Table.waiting", L10n::Table::waiting},
        {"Table.valueHelp", L10n::Table::valueHelp},
        {"Import.question", L10n::Import::question},
        {"Import.add", L10n::Import::add},
        {"Import.replace", L10n::Import::replace},
        {"Import.cancel", L10n::Import::cancel},
        {"Errors.alertTitle", L10n::Errors::alertTitle},
        {"Errors.selectPortFirst", L10n::Errors::selectPortFirst},
        {"Errors.csvMissingColumns", L10n::Errors::csvMissingColumns},
        {"Errors.openPermissionDenied", L10n::Errors::openPermissionDenied},
        {"Errors.notOpen", L10n::Errors::notOpen},
        {"Errors.timeout", L10n::Errors::timeout},
        {"Errors.deviceDisconnected", L10n::Errors::deviceDisconnected},
        {"Help.windowTitle", L10n::Help::windowTitle},
        {"Help.searchPrompt", L10n::Help::searchPrompt},
        {"Help.noResults", L10n::Help::noResults},
        {"Help.tipLabel", L10n::Help::tipLabel},
        {"State.running", L10n::State::running},
        {"State.stopped", L10n::State::stopped},
        {"State.serialLost", L10n::State::serialLost},
        {"Notice.emptyTitle", L10n::Notice::emptyTitle},
        {"Notice.emptySteps", L10n::Notice::emptySteps},
        {"Notice.emptyNoDevice", L10n::Notice::emptyNoDevice},
        {"Notice.emptyNoDeviceSteps", L10n::Notice::emptyNoDeviceSteps},
        {"Notice.startPolling", L10n::Notice::startPolling},
        {"Notice.noResponse", L10n::Notice::noResponse},
        {"Notice.serialLost", L10n::Notice::serialLost},
        {"Notice.dismiss", L10n::Notice::dismiss},
        {"Notice.startFirst", L10n::Notice::startFirst},
        {"Polls.add", L10n::Polls::add},
        {"Polls.addHelp", L10n::Polls::addHelp},
        {"Polls.namePlaceholder", L10n::Polls::namePlaceholder},
        {"Polls.interval", L10n::Polls::interval},
        {"Polls.intervalHelp", L10n::Polls::intervalHelp},
        {"Polls.active", L10n::Polls::active},
        {"Polls.activeHelp", L10n::Polls::activeHelp},
        {"Polls.removeTitle", L10n::Polls::removeTitle},
        {"Polls.remove", L10n::Polls::remove},
        {"Polls.removeMessage", L10n::Polls::removeMessage},
        {"Polls.unnamed", L10n::Polls::unnamed},
        {"Polls.duplicate", L10n::Polls::duplicate},
        {"Polls.tabHelp", L10n::Polls::tabHelp},
        {"Write.help", L10n::Write::help},
        {"Write.off", L10n::Write::off},
        {"Write.on", L10n::Write::on},
        {"Write.placeholder", L10n::Write::placeholder},
        {"Write.button", L10n::Write::button},
        {"Pane.title", L10n::Pane::title},
        {"Pane.log", L10n::Pane::log},
        {"Pane.chart", L10n::Pane::chart},
        {"Pane.clearHistory", L10n::Pane::clearHistory},
        {"Pane.clearHistoryHelp", L10n::Pane::clearHistoryHelp},
        {"Pane.exportHistory", L10n::Pane::exportHistory},
        {"Pane.exportHistoryHelp", L10n::Pane::exportHistoryHelp},
        {"Chart.emptyTitle", L10n::Chart::emptyTitle},
        {"Chart.emptyText", L10n::Chart::emptyText},
        {"Chart.time", L10n::Chart::time},
        {"Chart.window", L10n::Chart::window},
        {"Chart.windowHelp", L10n::Chart::windowHelp},
        {"Log.stopped", L10n::Log::stopped},
        {"Log.serialRestored", L10n::Log::serialRestored},
        {"Example.pollName", L10n::Example::pollName},
        {"Example.temperature", L10n::Example::temperature},
        {"Example.pressure", L10n::Example::pressure},
        {"Example.runtime", L10n::Example::runtime},
        {"Example.setpoint", L10n::Example::setpoint},
        {"Example.mode", L10n::Example::mode},
        {"Example.pump", L10n::Example::pump},
        {"Example.alarm", L10n::Example::alarm},
        {"Header.portNotConnected",
         [] { return L10n::Header::portNotConnected("<port>"); },
         {"<port>"}},
        {"Header.baudLabel", [] { return L10n::Header::baudLabel(19200); }, {"19200"}},
        {"Settings.gapLabel(0)", [] { return L10n::Settings::gapLabel(0); }},
        {"Settings.gapLabel(12)", [] { return L10n::Settings::gapLabel(12); }, {"12"}},
        {"Footer.statistics",
         [] { return L10n::Footer::statistics(101, 202, 303, 404, 505); },
         {"101", "202", "303", "404", "505"}},
        {"Table.addressHelp", [] { return L10n::Table::addressHelp("<40001>"); }, {"<40001>"}},
        {"Table.rawHelp", [] { return L10n::Table::rawHelp("<raw>"); }, {"<raw>"}},
        {"Table.tableName(CO)", [] { return L10n::Table::tableName(RegisterTable::coil); }},
        {"Table.tableName(DI)",
         [] { return L10n::Table::tableName(RegisterTable::discreteInput); }},
        {"Table.tableName(HR)",
         [] { return L10n::Table::tableName(RegisterTable::holdingRegister); }},
        {"Table.tableName(IR)",
         [] { return L10n::Table::tableName(RegisterTable::inputRegister); }},
        {"Table.formatName(decimal)",
         [] { return L10n::Table::formatName(DisplayFormat::decimal); }},
        {"Table.formatName(binary)", [] { return L10n::Table::formatName(DisplayFormat::binary); }},
        {"Table.updatedHelp", [] { return L10n::Table::updatedHelp("<time>"); }, {"<time>"}},
        {"Table.valueInvalid",
         [] { return L10n::Table::valueInvalid(DataType::uint32); },
         {"UInt32"}},
        {"Import.title(1)", [] { return L10n::Import::title(1); }, {"1"}},
        {"Import.title(2)", [] { return L10n::Import::title(2); }, {"2"}},
        {"Import.title(0)", [] { return L10n::Import::title(0); }, {"0"}},
        {"Import.skipped(1)", [] { return L10n::Import::skipped(1); }, {"1"}},
        {"Import.skipped(3)", [] { return L10n::Import::skipped(3); }, {"3"}},
        {"Modbus.functionName(1)", [] { return L10n::Modbus::functionName(1); }},
        {"Modbus.functionName(2)", [] { return L10n::Modbus::functionName(2); }},
        {"Modbus.functionName(3)", [] { return L10n::Modbus::functionName(3); }},
        {"Modbus.functionName(4)", [] { return L10n::Modbus::functionName(4); }},
        {"Modbus.functionName(5)", [] { return L10n::Modbus::functionName(5); }},
        {"Modbus.functionName(6)", [] { return L10n::Modbus::functionName(6); }},
        {"Modbus.functionName(8)", [] { return L10n::Modbus::functionName(8); }},
        {"Modbus.functionName(15)", [] { return L10n::Modbus::functionName(15); }},
        {"Modbus.functionName(16)", [] { return L10n::Modbus::functionName(16); }},
        {"Modbus.functionName(22)", [] { return L10n::Modbus::functionName(22); }},
        {"Modbus.functionName(23)", [] { return L10n::Modbus::functionName(23); }},
        {"Modbus.functionName(43)", [] { return L10n::Modbus::functionName(43); }},
        {"Modbus.functionName(0)", [] { return L10n::Modbus::functionName(0); }},
        {"Modbus.exceptionName(1)", [] { return L10n::Modbus::exceptionName(1); }, {"(01)"}},
        {"Modbus.exceptionName(2)", [] { return L10n::Modbus::exceptionName(2); }, {"(02)"}},
        {"Modbus.exceptionName(3)", [] { return L10n::Modbus::exceptionName(3); }, {"(03)"}},
        {"Modbus.exceptionName(4)", [] { return L10n::Modbus::exceptionName(4); }, {"(04)"}},
        {"Modbus.exceptionName(5)", [] { return L10n::Modbus::exceptionName(5); }, {"(05)"}},
        {"Modbus.exceptionName(6)", [] { return L10n::Modbus::exceptionName(6); }, {"(06)"}},
        {"Modbus.exceptionName(8)", [] { return L10n::Modbus::exceptionName(8); }, {"(08)"}},
        {"Modbus.exceptionName(10)", [] { return L10n::Modbus::exceptionName(10); }, {"(0A)"}},
        {"Modbus.exceptionName(11)", [] { return L10n::Modbus::exceptionName(11); }, {"(0B)"}},
        {"Modbus.exceptionName(7)", [] { return L10n::Modbus::exceptionName(7); }, {"(07)"}},
        {"Board.usbSerial", [] { return L10n::Board::usbSerial("<chip>"); }, {"<chip>"}},
        {"Errors.saveFailed", [] { return L10n::Errors::saveFailed("<reason>"); }, {"<reason>"}},
        {"Errors.fileOpenFailed",
         [] { return L10n::Errors::fileOpenFailed("<file>"); },
         {"<file>"}},
        {"Errors.importNothing",
         [] { return L10n::Errors::importNothing("<details>"); },
         {"<details>"}},
        {"Errors.importIssue",
         [] { return L10n::Errors::importIssue(37, "<problem>"); },
         {"37", "<problem>"}},
        {"Errors.csvInvalidTable",
         [] { return L10n::Errors::csvInvalidTable("<cell>"); },
         {"<cell>"}},
        {"Errors.csvInvalidAddress",
         [] { return L10n::Errors::csvInvalidAddress("<cell>"); },
         {"<cell>"}},
        {"Errors.csvInvalidUnit",
         [] { return L10n::Errors::csvInvalidUnit("<cell>"); },
         {"<cell>"}},
        {"Errors.csvInvalidDataType",
         [] { return L10n::Errors::csvInvalidDataType("<cell>"); },
         {"<cell>"}},
        {"Errors.csvInvalidNumber",
         [] { return L10n::Errors::csvInvalidNumber("<cell>"); },
         {"<cell>"}},
        {"Errors.invalidPath", [] { return L10n::Errors::invalidPath("<path>"); }, {"<path>"}},
        {"Errors.openFailed",
         [] { return L10n::Errors::openFailed("<path>", "<reason>"); },
         {"<path>", "<reason>"}},
        {"Errors.busy", [] { return L10n::Errors::busy("<path>"); }, {"<path>"}},
        {"Errors.configurationFailed",
         [] { return L10n::Errors::configurationFailed("<reason>"); },
         {"<reason>"}},
        {"Errors.unsupportedBaud",
         [] { return L10n::Errors::unsupportedBaud(250000); },
         {"250000"}},
        {"Errors.writeFailed", [] { return L10n::Errors::writeFailed("<reason>"); }, {"<reason>"}},
        {"Notice.writeFailed",
         [] { return L10n::Notice::writeFailed("<name>", "<reason>"); },
         {"<name>", "<reason>"}},
        {"Polls.newName", [] { return L10n::Polls::newName(3); }, {"3"}},
        {"Polls.copyName", [] { return L10n::Polls::copyName("<name>"); }, {"<name>"}},
        {"Write.title", [] { return L10n::Write::title("<name>"); }, {"<name>"}},
        {"Chart.windowLabel(0)", [] { return L10n::Chart::windowLabel(0); }},
        {"Log.failure(unexpectedUnit)",
         [] { return L10n::Log::failure(P::unexpectedUnit(17), 1000); },
         {"17"}},
        {"Log.failure(unexpectedFunction)",
         [] { return L10n::Log::failure(P::unexpectedFunction(0x2B), 1000); },
         {"2B"}},
        {"Log.failure(timeout)", [] { return L10n::Log::failure(P::timeout(), 1234); }, {"1234"}},
        {"Log.failure(crcMismatch)", [] { return L10n::Log::failure(P::crcMismatch(), 1000); }},
        {"Log.failure(malformed)", [] { return L10n::Log::failure(P::malformed(), 1000); }},
        {"Log.shortFailure(exception)",
         [] { return L10n::Log::shortFailure(P::exception(2)); },
         {"02"}},
        {"Log.shortFailure(timeout)", [] { return L10n::Log::shortFailure(P::timeout()); }},
        {"Log.shortFailure(crcMismatch)", [] { return L10n::Log::shortFailure(P::crcMismatch()); }},
        {"Log.shortFailure(malformed)", [] { return L10n::Log::shortFailure(P::malformed()); }},
        {"Log.started",
         [] { return L10n::Log::started("<port>", "<serial>"); },
         {"<port>", "<serial>"}},
        {"Log.unit", [] { return L10n::Log::unit(247); }, {"247"}},
        {"Log.unitFunction", [] { return L10n::Log::unitFunction(246, 0x10); }, {"246", "10"}},
        {"Log.writeFailed", [] { return L10n::Log::writeFailed("<name>"); }, {"<name>"}},
        {"Log.serialLost", [] { return L10n::Log::serialLost("<path>"); }, {"<path>"}},
    };
    return keys;
}

TEST(L10n, EveryKeyHasTextShowingItsValuesInEveryLanguage) {
    forEachLanguage([](Language) {
        for (const Key& key : translatedKeys()) {
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
        for (const Key& key : translatedKeys()) {
            english[key.name] = key.text();
        }
    });
    forEachLanguage([&](Language language) {
        if (language == Language::en) {
            return;
        }
        std::string same;
        std::size_t count = 0;
        for (const Key& key : translatedKeys()) {
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
    std::map<std::string_view, const Key*> byName;
    for (const Key& key : translatedKeys()) {
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
            EXPECT_NE(L10n::Table::unit(), L10n::Table::unitID());
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
        const std::string one = aroundNumber(L10n::Import::title(1), 1);
        const std::string two = aroundNumber(L10n::Import::title(2), 2);
        const std::string none = aroundNumber(L10n::Import::title(0), 0);
        EXPECT_NE(one, two);
        // French counts zero as singular.
        EXPECT_EQ(none, language == Language::fr ? one : two);
        EXPECT_EQ(aroundNumber(L10n::Import::title(15), 15), two);
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
            {[] { return L10n::Import::title(1); }, "1 datapoint found"},
            {[] { return L10n::Import::title(2); }, "2 datapoints found"},
            {[] { return L10n::Import::title(0); }, "0 datapoints found"},
            {[] { return L10n::Modbus::exceptionName(0x02); }, "Illegal data address (02)"},
            {[] { return L10n::Modbus::exceptionName(0x0B); },
             "Gateway target failed to respond (0B)"},
            {[] { return L10n::Modbus::exceptionName(0x07); }, "Exception (07)"},
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
        EXPECT_EQ(refused, L10n::Errors::openFailed("/dev/ttyUSB0", "Permission denied") + " " +
                               L10n::Errors::openPermissionDenied());
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
