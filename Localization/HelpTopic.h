#pragma once

#include "Language.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kestrin {

// One row of a two-column help table.
struct HelpRow {
    std::string key;
    std::string value;

    friend bool operator==(const HelpRow&, const HelpRow&) = default;
};

// A typed piece of a help page. Texts may hold **emphasis** and `code`; the help window renders
// them.
struct HelpBlock {
    struct Paragraph {
        std::string text;
        friend bool operator==(const Paragraph&, const Paragraph&) = default;
    };
    struct Heading {
        std::string text;
        friend bool operator==(const Heading&, const Heading&) = default;
    };
    struct Bullets {
        std::vector<std::string> items;
        friend bool operator==(const Bullets&, const Bullets&) = default;
    };
    struct Table {
        std::vector<HelpRow> rows;
        friend bool operator==(const Table&, const Table&) = default;
    };
    // A highlighted hint, shown with the label L10n::texts().help.tipLabel().
    struct Tip {
        std::string text;
        friend bool operator==(const Tip&, const Tip&) = default;
    };
    // An image of the program, looked up by name and language, with its caption.
    struct Screenshot {
        std::string name;
        std::string caption;
        friend bool operator==(const Screenshot&, const Screenshot&) = default;
    };

    using Case = std::variant<Paragraph, Heading, Bullets, Table, Tip, Screenshot>;
    Case value;

    template <typename T>
    bool is() const noexcept {
        return std::holds_alternative<T>(value);
    }

    friend bool operator==(const HelpBlock&, const HelpBlock&) = default;
};

// One page of the built-in help. The id and symbol are the same in every language; the symbol
// names an icon the help window maps to the icon theme.
struct HelpTopic {
    std::string id;
    std::string title;
    std::string symbol;
    std::vector<HelpBlock> blocks;

    // The nine topics in their fixed order, built anew in the current language.
    static std::vector<HelpTopic> all();
    static std::vector<HelpTopic> all(Language language);

    // The topics whose title or texts contain the search text, ignoring case but not accents
    // ("EXCEPTION" finds "exception", "fur" does not find "für"), in their order; all of them
    // when the search text is blank. Markup is not searched: "Value column" finds
    // "**Value** column".
    static std::vector<HelpTopic> matching(std::vector<HelpTopic> topics,
                                           std::string_view searchText);
    // The help window's search: matching(all(), searchText).
    static std::vector<HelpTopic> search(std::string_view searchText);

    friend bool operator==(const HelpTopic&, const HelpTopic&) = default;
};

} // namespace kestrin

template <>
struct std::hash<kestrin::HelpRow> {
    std::size_t operator()(const kestrin::HelpRow& row) const noexcept;
};

// Topics are identified by id, so equal topics (equal in every field) hash alike.
template <>
struct std::hash<kestrin::HelpTopic> {
    std::size_t operator()(const kestrin::HelpTopic& topic) const noexcept;
};
