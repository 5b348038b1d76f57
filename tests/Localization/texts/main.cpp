// Prints every translated key with its text in each language as one Markdown table, then every
// help topic block by block in the same way, so that a reviewer can read the translations side
// by side.
#include "HelpTopic.h"
#include "L10n.h"
#include "Overloaded.h"
#include "TranslatedKeys.h"

#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace kestrin;

// Table cells cannot hold a raw "|" or a line break.
std::string cell(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '|') {
            out += "\\|";
        } else if (c == '\n') {
            out += "<br>";
        } else {
            out += c;
        }
    }
    return out;
}

// One language's rows: a name and its text. Every language has the same names in the same order.
using Row = std::pair<std::string, std::string>;
using Column = std::vector<Row>;

// One row per name, one cell per language.
void printTable(std::string_view first, const std::vector<Column>& languages) {
    std::cout << "| " << first << " |";
    for (Language language : Language::allCases) {
        std::cout << ' ' << language.rawValue() << " |";
    }
    std::cout << "\n|---|";
    for (std::size_t i = 0; i < Language::allCases.size(); ++i) {
        std::cout << "---|";
    }
    std::cout << '\n';
    for (std::size_t row = 0; row < languages.front().size(); ++row) {
        std::cout << "| " << languages.front()[row].first << " |";
        for (const Column& column : languages) {
            std::cout << ' ' << cell(column[row].second) << " |";
        }
        std::cout << '\n';
    }
}

// Lines of a list or table block, for one cell.
std::string lines(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) {
        text += (text.empty() ? "" : "\n") + item;
    }
    return text;
}

// A block as a row: its kind and its texts in one cell.
Row shown(const HelpBlock& block) {
    return std::visit(Overloaded{
                          [](const HelpBlock::Paragraph& p) {
                              return Row{"paragraph", p.text};
                          },
                          [](const HelpBlock::Heading& h) {
                              return Row{"heading", h.text};
                          },
                          [](const HelpBlock::Tip& t) {
                              return Row{"tip", t.text};
                          },
                          [](const HelpBlock::Screenshot& s) {
                              return Row{"screenshot " + s.name, s.caption};
                          },
                          [](const HelpBlock::Bullets& b) {
                              return Row{"bullets", lines(b.items)};
                          },
                          [](const HelpBlock::Table& t) {
                              std::vector<std::string> rows;
                              for (const HelpRow& row : t.rows) {
                                  rows.push_back(row.key + ": " + row.value);
                              }
                              return Row{"table", lines(rows)};
                          },
                      },
                      block.value);
}

Column keys(Language language) {
    Column rows;
    for (TranslatedKey& key : translatedKeys(L10n::texts(language))) {
        rows.emplace_back(std::move(key.name), std::move(key.text));
    }
    return rows;
}

Column help(Language language, std::size_t topic) {
    const HelpTopic page = HelpTopic::all(language).at(topic);
    Column rows{{"title", page.title}};
    for (const HelpBlock& block : page.blocks) {
        rows.push_back(shown(block));
    }
    return rows;
}

} // namespace

int main() {
    std::vector<Column> languages;
    for (Language language : Language::allCases) {
        languages.push_back(keys(language));
    }
    printTable("Key", languages);
    const std::vector<HelpTopic> english = HelpTopic::all(Language::en);
    for (std::size_t topic = 0; topic < english.size(); ++topic) {
        std::cout << "\n## Help: " << english[topic].id << "\n\n";
        languages.clear();
        for (Language language : Language::allCases) {
            languages.push_back(help(language, topic));
        }
        printTable("Block", languages);
    }
    return 0;
}
