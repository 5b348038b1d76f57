#include "CliOptions.h"
#include "CommandLine.h"
#include "LanguageForTesting.h"
#include "PollOptions.h"

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using CommandLine::Option;

// The words of line; no word of a test's line holds a space.
std::vector<std::string_view> words(std::string_view line) {
    std::vector<std::string_view> result;
    while (!line.empty()) {
        const std::size_t space = line.find(' ');
        result.push_back(line.substr(0, space));
        line = space == std::string_view::npos ? std::string_view() : line.substr(space + 1);
    }
    return result;
}

void inEnglish(const std::function<void()>& check) {
    L10n::withLanguageForTesting(Language::en, check);
}

constexpr std::array toolOptions{
    Option{"port", "PATH", "where"},
    Option{"rate", "R", "how fast,\nin bits per second"},
    Option{"raw", "", "log frames"},
    Option{"quiet", "", "log less"},
};
const CommandLine::Syntax tool{"tool run", "Usage: tool run [options]\n", toolOptions, "Bye.\n"};

TEST(CommandLine, TakesValuesSeparateOrAfterEqualsAndTheLastOneWins) {
    const struct {
        const char* line;
        const char* option;
        std::optional<std::string> value;
    } rows[] = {
        {"--port /dev/a", "port", "/dev/a"},
        {"--port=/dev/a", "port", "/dev/a"},
        {"--port=", "port", ""},
        {"--port /dev/a --rate 1 --port=/dev/b", "port", "/dev/b"},
        // A value may look like an option.
        {"--rate -5", "rate", "-5"},
        {"--rate --raw", "rate", "--raw"},
        {"--raw", "raw", ""},
        {"--raw", "port", std::nullopt},
        {"", "port", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        const auto parsed = CommandLine::parse(tool, words(row.line));
        ASSERT_TRUE(parsed) << parsed.error();
        EXPECT_EQ(parsed.value().value(row.option), row.value);
    }
    const auto flags = CommandLine::parse(tool, words("--quiet --raw --rate 3 --quiet"));
    EXPECT_EQ(flags.value().lastOf({"raw", "quiet"}), "quiet");
    EXPECT_EQ(flags.value().lastOf({"port"}), std::nullopt);
}

TEST(CommandLine, RefusesNamingTheOptionAndWhereToLook) {
    const std::pair<const char*, const char*> rows[] = {
        {"--count 3", "unknown option --count (see tool run --help)"},
        {"--count=3", "unknown option --count (see tool run --help)"},
        {"--port a -x", "unknown option -x (see tool run --help)"},
        // Only whole names: a prefix would change its meaning when an option is added.
        {"--ra 1", "unknown option --ra (see tool run --help)"},
        {"--port a --qu=1", "unknown option --qu (see tool run --help)"},
        {"--rate 1 --port", "option --port needs a value"},
        {"--raw=yes", "invalid value 'yes' for --raw"},
        {"--port a extra", "unexpected argument 'extra' (see tool run --help)"},
    };
    inEnglish([&] {
        for (const auto& [line, message] : rows) {
            SCOPED_TRACE(line);
            const auto parsed = CommandLine::parse(tool, words(line));
            ASSERT_FALSE(parsed);
            EXPECT_EQ(parsed.error(), message);
        }
    });
}

TEST(CommandLine, HelpAlignsTheTableAndAnswersHelpAndVersion) {
    EXPECT_EQ(CommandLine::help(tool), "Usage: tool run [options]\n"
                                       "\n"
                                       "Options:\n"
                                       "  --port PATH  where\n"
                                       "  --rate R     how fast,\n"
                                       "               in bits per second\n"
                                       "  --raw        log frames\n"
                                       "  --quiet      log less\n"
                                       "  -h, --help   print this help and exit\n"
                                       "  --version    print the version and exit\n"
                                       "\n"
                                       "Bye.\n");
    const std::pair<const char*, std::string> rows[] = {
        {"--help", CommandLine::help(tool)},
        {"-h", CommandLine::help(tool)},
        {"--version", "tool " KESTRIN_VERSION "\n"},
        {"--raw", ""},
    };
    for (const auto& [line, answer] : rows) {
        std::ostringstream out;
        EXPECT_EQ(CommandLine::answered(tool, CommandLine::parse(tool, words(line)).value(), out),
                  !answer.empty());
        EXPECT_EQ(out.str(), answer) << line;
    }
}

// The message for the line of command ("read --port …"), or "" when it is accepted; a poll or
// monitor also refuses files it could not write when done.
std::string refusal(std::string_view line) {
    const std::vector<std::string_view> all = words(line);
    const std::span<const std::string_view> options = std::span(all).subspan(1);
    const std::optional<CliOptions::Command> command = CliOptions::commandNamed(all.front());
    const bool monitor = all.front() == "monitor";
    const CommandLine::Syntax& syntax = command   ? CliOptions::syntax(*command)
                                        : monitor ? PollOptions::monitorSyntax()
                                                  : PollOptions::syntax();
    const auto parsed = CommandLine::parse(syntax, options);
    if (!parsed) {
        return parsed.error();
    }
    if (command) {
        const auto checked = CliOptions::check(*command, parsed.value());
        return checked ? "" : checked.error();
    }
    const auto checked =
        monitor ? PollOptions::checkMonitor(parsed.value()) : PollOptions::check(parsed.value());
    if (!checked) {
        return checked.error();
    }
    return checked.value().unwritableFile().value_or("");
}

// Which values each option takes is the codecs'; here how each refusal reads.
TEST(CliOptions, RefusesEachBadLineWithItsOwnSentence) {
    const std::string read = "read --port p --table HR --address 0";
    const std::string write = "write --port p --address 0 --value 1 --table";
    const std::string poll = "poll --port p --csv list.csv";
    const std::string monitor = "monitor --port p --project a";
    const std::pair<std::string, std::string> rows[] = {
        {read + " --baud 0",
         "cannot use the baud rate '0': give a positive whole number, usually one of 1200, 2400, "
         "4800, 9600, 14400, 19200, 38400, 57600, 115200, 230400"},
        {write + " IR",
         "table 'IR' cannot be written: input registers and discrete inputs are read-only; write "
         "coils (CO) or holding registers (HR)"},
        // The values must end at the last address.
        {"read --port p --table HR --address 65534 --type uint32 --count 2",
         "invalid value '2' for --count"},
        {read + " --interval 0", "invalid value '0' for --interval"},
        {"write --port p --table HR --address 0 --value 1 --cycles 2",
         "unknown option --cycles (see kestrin-cli write --help)"},
        {read + " --value 1", "unknown option --value (see kestrin-cli read --help)"},
        {"read --table HR --address 0", "option --port is required"},
        {"write --port p --table HR --address 0", "option --value is required"},
        {read + " --frame 9E1", "invalid value '9E1' for --frame"},
        {read + " --rs485 on", "invalid value 'on' for --rs485"},
        {read + " --rs485 low --rs485-delays 5", "invalid value '5' for --rs485-delays"},
        {read + " --rs485 low --rs485-delays 0,101", "invalid value '0,101' for --rs485-delays"},
        {poll + " --rs485-delays 1,1", "option --rs485 is required"},
        {read + " --order XYZW", "invalid value 'XYZW' for --order"},
        {read + " --format octal", "invalid value 'octal' for --format"},
        {read + " --timeout-ms 0", "invalid value '0' for --timeout-ms"},
        {read + " --unit 248", "invalid unit ID '248' (1 to 247)"},
        {read + " --address 65536", "invalid address '65536' (0 to 65535)"},
        {"read --port p --table 40001 --address 0", "unknown table '40001' (use CO, DI, HR or IR)"},
        {"read --port p --table CO --address 0 --type float32", "unknown data type 'float32'"},
        {"write --port p --address 0 --value 1 --table HR --write-mode double",
         "invalid value 'double' for --write-mode"},
        {"poll --port p", "option --project is required"},
        {poll + " --project a.json", "--project and --csv exclude each other"},
        {poll + " --cycles 2 --seconds 1", "--cycles and --seconds exclude each other"},
        {poll + " --cycles 0", "invalid value '0' for --cycles"},
        {poll + " --seconds 0.0001", "invalid value '0.0001' for --seconds"},
        {monitor + " --csv b", "--project and --csv exclude each other"},
        {monitor + " --cycles 1", "unknown option --cycles (see kestrin-cli monitor --help)"},
        {monitor + " --seconds 0", "invalid value '0' for --seconds"},
        // Found before the port opens, not when a run of hours ends.
        {"monitor --port p --test-device --history /nonexistent/h.csv --seconds 30",
         "/nonexistent/h.csv: Saving failed: No such file or directory"},
        {poll + " --log " + testing::TempDir(),
         testing::TempDir() + ": Saving failed: Is a directory"},
        {poll + " --frame 9E1", "invalid value '9E1' for --frame"},
        {poll + " --baud -1", "cannot use the baud rate '-1': give a positive whole number, "
                              "usually one of 1200, 2400, 4800, 9600, 14400, 19200, 38400, "
                              "57600, 115200, 230400"},
        {read, ""},
        {poll + " --history " + testing::TempDir() + "h.csv", ""},
        {monitor, ""},
    };
    inEnglish([&] {
        for (const auto& [line, message] : rows) {
            EXPECT_EQ(refusal(line), message) << line;
        }
    });
}

// The end-to-end tests read and write with most options; here those they leave out.
TEST(CliOptions, GoodLinesKeepTheLastOfARepeatedOptionOrFlagPair) {
    const auto read = CliOptions::check(
        CliOptions::Command::read,
        CommandLine::parse(CliOptions::syntax(CliOptions::Command::read),
                           words("--port=/dev/a --test-device --baud 19200 --frame 8N1 --unit=3 "
                                 "--timeout-ms 250 --table HR --address 7 --baud 38400 "
                                 "--rs485 low --rs485-delays 2,5"))
            .value());
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read.value().port, "/dev/a");
    EXPECT_TRUE(read.value().testDevice);
    EXPECT_EQ(read.value().serial.shortDescription(), "38400 8N1");
    EXPECT_EQ(read.value().serial.rs485, (RS485Direction{false, 2, 5}));
    EXPECT_EQ(read.value().timeoutMs, 250);
    EXPECT_EQ(read.value().datapoint.unitID, 3);
    for (const auto& [flags, timestamps] : {std::pair{"--timestamps --no-timestamps", false},
                                            std::pair{"--no-timestamps --timestamps", true}}) {
        const std::string line = std::string("--port p --csv a ") + flags;
        const auto poll =
            PollOptions::check(CommandLine::parse(PollOptions::syntax(), words(line)).value());
        EXPECT_EQ(poll.value().timestamps, timestamps) << flags;
    }
    // A poll keeps the project's RS-485 direction unless the line gives one.
    const SerialConfiguration project{.rs485 = RS485Direction{true, 1, 1}};
    const auto pollDirection = [&](std::string_view line) {
        const auto poll =
            PollOptions::check(CommandLine::parse(PollOptions::syntax(), words(line)).value());
        return poll.value().serial(project).rs485;
    };
    EXPECT_EQ(pollDirection("--port p --csv a"), project.rs485);
    EXPECT_EQ(pollDirection("--port p --csv a --rs485 low"), RS485Direction{false});
}

} // namespace
} // namespace kestrin
