#pragma once

#include "Result.h"

#include <initializer_list>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrin::CommandLine {

// One long option of a command. The same table parses the line and prints the help, so the two
// cannot say different things.
struct Option {
    // As typed after "--".
    std::string_view name;
    // What the help shows after the option ("PATH"); empty for an option that takes no value.
    std::string_view valueName;
    // Lines separated by '\n', each indented under the first in the help.
    std::string_view help;
};

// A program or one of its subcommands.
struct Syntax {
    // As the user types it: "kestrin-cli read". Its first word names the program.
    std::string_view command;
    // The help before the options: usage lines and what the command does.
    std::string_view usage;
    std::span<const Option> options = {};
    // The help after the options, if any.
    std::string_view epilogue = {};
};

// What a command line gave, in the order given; every command also takes --help (-h) and
// --version.
class Parsed {
public:
    bool has(std::string_view name) const;
    // The value of the last of the named option given: the last one wins.
    std::optional<std::string> value(std::string_view name) const;
    // Of names, the one given last; empty when none was.
    std::optional<std::string_view> lastOf(std::initializer_list<std::string_view> names) const;

    // For the parser: the option name (from its table) and its value ("" for a flag).
    void add(std::string_view name, std::string value);

private:
    std::vector<std::pair<std::string_view, std::string>> given_;
};

// Reads arguments (those after the command) against the options of syntax with getopt_long: a
// value follows its option as the next argument or after "=" (--unit=3), and only an option's
// whole name names it. Failures are finished sentences in the user's language. getopt_long keeps
// its state in globals, so only one thread may parse at a time.
Result<Parsed, std::string> parse(const Syntax& syntax,
                                  std::span<const std::string_view> arguments);

// The usage, the options aligned in a column, --help and --version, and the epilogue.
std::string help(const Syntax& syntax);

// "kestrin-cli 0.1.0": the program of syntax and the project's version.
std::string version(const Syntax& syntax);

// Prints the help or the version on out when the line asked for either, and says whether it did.
bool answered(const Syntax& syntax, const Parsed& parsed, std::ostream& out);

} // namespace kestrin::CommandLine
