#include "CommandLine.h"

#include "L10n.h"

#include <algorithm>
#include <array>
#include <getopt.h>

namespace kestrin::CommandLine {

namespace {

// getopt_long tells options apart by these codes: above every character, so that none is taken
// for a short option.
constexpr int firstCode = 256;
constexpr int helpCode = 'h';

constexpr std::array standardOptions{
    Option{"help", "", "print this help and exit"},
    Option{"version", "", "print the version and exit"},
};

std::string label(const Option& option) {
    std::string text = option.name == "help" ? "-h, --" : "--";
    text += option.name;
    if (!option.valueName.empty()) {
        text += ' ';
        text += option.valueName;
    }
    return text;
}

// The options of syntax followed by the standard ones, in the order of the help.
std::vector<Option> allOptions(const Syntax& syntax) {
    std::vector<Option> options(syntax.options.begin(), syntax.options.end());
    options.insert(options.end(), standardOptions.begin(), standardOptions.end());
    return options;
}

int codeOf(std::size_t index, const Option& option) {
    return option.name == "help" ? helpCode : firstCode + static_cast<int>(index);
}

// getopt_long's table: the names must end in a NUL, which a string_view does not promise.
struct LongOptions {
    explicit LongOptions(const std::vector<Option>& options) {
        names.reserve(options.size());
        for (std::size_t i = 0; i < options.size(); ++i) {
            names.emplace_back(options[i].name);
            const int hasArgument = options[i].valueName.empty() ? no_argument : required_argument;
            table.push_back({names.back().c_str(), hasArgument, nullptr, codeOf(i, options[i])});
        }
        table.push_back({});
    }
    std::vector<std::string> names;
    std::vector<option> table;
};

const Option* optionWithCode(const std::vector<Option>& options, int code) {
    for (std::size_t i = 0; i < options.size(); ++i) {
        if (codeOf(i, options[i]) == code) {
            return &options[i];
        }
    }
    return nullptr;
}

// Whether word, where getopt_long found the option, spells its name out: it takes any
// unambiguous prefix, and a script relying on one would break the day an option with the same
// beginning is added. Short options ("-h") are whole by nature.
bool namesInFull(std::string_view word, const Option& option) {
    return !word.starts_with("--") || word.substr(2, word.find('=') - 2) == option.name;
}

std::string helpCommand(const Syntax& syntax) {
    return std::string(syntax.command) + " --help";
}

// What getopt_long refused at argument, the word it stopped after.
std::string refusal(const Syntax& syntax, const std::vector<Option>& options,
                    std::string_view argument, int code) {
    const L10n::Texts::ErrorsTexts& errors = L10n::texts().errors;
    const std::size_t equals = argument.find('=');
    const std::string_view typed = argument.substr(0, equals);
    const Option* known = optionWithCode(options, optopt);
    if (known != nullptr && !namesInFull(argument, *known)) {
        known = nullptr;
        code = '?';
    }
    const std::string name = known != nullptr ? "--" + std::string(known->name) : "";
    if (code == ':') {
        return errors.missingValue(name);
    }
    // A known option that takes no value, given one with "=".
    if (known != nullptr && equals != std::string_view::npos) {
        return errors.invalidOptionValue(name, argument.substr(equals + 1));
    }
    return errors.unknownOption(typed, helpCommand(syntax));
}

} // namespace

bool Parsed::has(std::string_view name) const {
    return std::any_of(given_.begin(), given_.end(),
                       [name](const auto& given) { return given.first == name; });
}

std::optional<std::string> Parsed::value(std::string_view name) const {
    const auto last = std::find_if(given_.rbegin(), given_.rend(),
                                   [name](const auto& given) { return given.first == name; });
    return last == given_.rend() ? std::nullopt : std::optional(last->second);
}

std::optional<std::string_view>
Parsed::lastOf(std::initializer_list<std::string_view> names) const {
    const auto last = std::find_if(given_.rbegin(), given_.rend(), [names](const auto& given) {
        return std::find(names.begin(), names.end(), given.first) != names.end();
    });
    return last == given_.rend() ? std::nullopt : std::optional(last->first);
}

void Parsed::add(std::string_view name, std::string value) {
    given_.emplace_back(name, std::move(value));
}

Result<Parsed, std::string> parse(const Syntax& syntax,
                                  std::span<const std::string_view> arguments) {
    const std::vector<Option> options = allOptions(syntax);
    const LongOptions longOptions(options);
    std::vector<std::string> words{std::string(syntax.command)};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    const int argc = static_cast<int>(words.size());

    // "+": stop at the first word that is no option; ":": report a missing value as such.
    optind = 0;
    opterr = 0;
    Parsed parsed;
    for (int code, at = 1;
         (code = getopt_long(argc, argv.data(), "+:h", longOptions.table.data(), nullptr)) != -1;
         at = optind) {
        const Option* option = optionWithCode(options, code);
        if (option != nullptr && !namesInFull(words[static_cast<std::size_t>(at)], *option)) {
            option = nullptr;
            code = '?';
            optopt = 0;
            optind = at + 1;
        }
        if (option == nullptr) {
            const int stoppedAt = std::clamp(optind - 1, 1, argc - 1);
            std::string word = words[static_cast<std::size_t>(stoppedAt)];
            // An unknown letter may sit inside a cluster ("-xv"): name the letter alone.
            if (code == '?' && optopt > 0 && optopt < firstCode && optopt != helpCode) {
                word = std::string{'-', static_cast<char>(optopt)};
            }
            return refusal(syntax, options, word, code);
        }
        parsed.add(option->name, optarg != nullptr ? optarg : "");
    }
    if (optind < argc) {
        return L10n::texts().errors.unexpectedArgument(words[static_cast<std::size_t>(optind)],
                                                       helpCommand(syntax));
    }
    return parsed;
}

std::string help(const Syntax& syntax) {
    const std::vector<Option> options = allOptions(syntax);
    std::size_t width = 0;
    for (const Option& option : options) {
        width = std::max(width, label(option).size());
    }
    const std::string indent(width + 4, ' ');
    std::string text(syntax.usage);
    text += "\nOptions:\n";
    for (const Option& option : options) {
        std::string first = label(option);
        first.resize(width + 2, ' ');
        text += "  " + first;
        for (char character : option.help) {
            text += character;
            if (character == '\n') {
                text += indent;
            }
        }
        text += '\n';
    }
    if (!syntax.epilogue.empty()) {
        text += '\n';
        text += syntax.epilogue;
    }
    return text;
}

std::string version(const Syntax& syntax) {
    const std::string_view program = syntax.command.substr(0, syntax.command.find(' '));
    return std::string(program) + " " + KESTRIN_VERSION + "\n";
}

bool answered(const Syntax& syntax, const Parsed& parsed, std::ostream& out) {
    if (parsed.has("help")) {
        out << help(syntax);
        return true;
    }
    if (parsed.has("version")) {
        out << version(syntax);
        return true;
    }
    return false;
}

} // namespace kestrin::CommandLine
