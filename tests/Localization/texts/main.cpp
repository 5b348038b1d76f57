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

void printHeader(std::string_view first) {
    std::cout << "| " << first << " |";
    for (Language language : Language::allCases) {
        std::cout << ' ' << language.rawValue() << " |";
    }
    std::cout << "\n|---|";
    for (std::size_t i = 0; i < Language::allCases.size(); ++i) {
        std::cout << "---|";
    }
    std::cout << '\n';
}

void printRow(const std::string& name, const std::vector<std::string>& texts) {
    std::cout << "| " << name << " |";
    for (const std::string& text : texts) {
        std::cout << ' ' << cell(text) << " |";
    }
    std::cout << '\n';
}

// Lines of a list or table block, for one cell.
std::string lines(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) {
        text += (text.empty() ? "" : "\n") + item;
    }
    return text;
}

struct Shown {
    std::string kind;
    std::string text;
};

Shown shown(const HelpBlock& block) {
    return std::visit(Overloaded{
                          [](const HelpBlock::Paragraph& p) {
                              return Shown{"paragraph", p.text};
                          },
                          [](const HelpBlock::Heading& h) {
                              return Shown{"heading", h.text};
                          },
                          [](const HelpBlock::Tip& t) {
                              return Shown{"tip", t.text};
                          },
                          [](const HelpBlock::Screenshot& s) {
                              return Shown{"screenshot " + s.name, s.caption};
                          },
                          [](const HelpBlock::Bullets& b) {
                              return Shown{"bullets", lines(b.items)};
                          },
                          [](const HelpBlock::Table& t) {
                              std::vector<std::string> rows;
                              for (const HelpRow& row : t.rows) {
                                  rows.push_back(row.key + ": " + row.value);
                              }
                              return Shown{"table", lines(rows)};
                          },
                      },
                      block.value);
}

void printKeys() {
    std::vector<std::vector<TranslatedKey>> languages;
    for (Language language : Language::allCases) {
        languages.push_back(translatedKeys(L10n::texts(language)));
    }
    printHeader("Key");
    for (std::size_t i = 0; i < languages.front().size(); ++i) {
        std::vector<std::string> texts;
        for (const std::vector<TranslatedKey>& keys : languages) {
            texts.push_back(keys[i].text);
        }
        printRow(languages.front()[i].name, texts);
    }
}

// The topics have the same blocks in every language, so the rows line up.
void printHelp() {
    std::vector<std::vector<HelpTopic>> languages;
    for (Language language : Language::allCases) {
        languages.push_back(HelpTopic::all(language));
    }
    for (std::size_t t = 0; t < languages.front().size(); ++t) {
        std::cout << "\n## Help: " << languages.front()[t].id << "\n\n";
        printHeader("Block");
        std::vector<std::string> titles;
        for (const std::vector<HelpTopic>& topics : languages) {
            titles.push_back(topics[t].title);
        }
        printRow("title", titles);
        for (std::size_t b = 0; b < languages.front()[t].blocks.size(); ++b) {
            std::vector<std::string> texts;
            for (const std::vector<HelpTopic>& topics : languages) {
                texts.push_back(shown(topics[t].blocks[b]).text);
            }
            printRow(shown(languages.front()[t].blocks[b]).kind, texts);
        }
    }
}

} // namespace

int main() {
    printKeys();
    printHelp();
    return 0;
}
