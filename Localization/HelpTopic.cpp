#include "HelpTopic.h"

#include "DatapointCSV.h"
#include "HelpContent.h"
#include "L10n.h"
#include "Overloaded.h"
#include "PollFailure.h"
#include "Text.h"

#include <functional>
#include <initializer_list>

namespace kestrin {

namespace {
using L10n::HelpContent;
using L10n::Literal;

HelpBlock paragraph(std::string text) {
    return {HelpBlock::Paragraph{std::move(text)}};
}
HelpBlock heading(Literal text) {
    return {HelpBlock::Heading{text()}};
}
HelpBlock tip(Literal text) {
    return {HelpBlock::Tip{text()}};
}
HelpBlock screenshot(std::string name, Literal caption) {
    return {HelpBlock::Screenshot{std::move(name), caption()}};
}
HelpBlock bullets(std::initializer_list<Literal> items) {
    HelpBlock::Bullets list;
    for (Literal item : items) {
        list.items.push_back(item());
    }
    return {std::move(list)};
}
HelpBlock table(std::initializer_list<std::pair<std::string, Literal>> rows) {
    HelpBlock::Table grid;
    for (const auto& [key, value] : rows) {
        grid.rows.push_back({key, value()});
    }
    return {std::move(grid)};
}

// A key combination as Qt writes it: the names joined by "+".
std::string keys(std::initializer_list<std::string_view> names) {
    std::string combination;
    for (std::string_view name : names) {
        if (!combination.empty()) {
            combination += '+';
        }
        combination += name;
    }
    return combination;
}

std::string csvHeader(DatapointCSV::Column column) {
    return std::string(column.rawValue());
}

HelpTopic startTopic(const HelpContent& help) {
    return {"start",
            help.start.title(),
            "play.circle",
            {
                paragraph(help.start.intro(L10n::appName())),
                heading(help.start.stepsHeading),
                bullets({help.start.connect, help.start.enterDatapoints, help.start.choosePort,
                         help.start.clickStart}),
                screenshot("overview", help.start.overviewCaption),
                tip(help.start.simulatorTip),
                paragraph(help.start.autosave()),
                heading(help.start.listenHeading),
                paragraph(help.start.listen()),
                paragraph(help.start.listenCoverage()),
                tip(help.start.listenWritingOff),
            }};
}

HelpTopic pollsTopic(const HelpContent& help) {
    return {"polls",
            help.polls.title(),
            "square.stack",
            {
                paragraph(help.polls.intro()),
                paragraph(help.polls.tabDot()),
                paragraph(help.polls.combining()),
                paragraph(help.polls.oneRequest()),
                heading(help.polls.cycleHeading),
                paragraph(help.polls.cycleEstimate()),
                paragraph(help.polls.cycleWarning()),
                paragraph(help.polls.busFigures()),
                paragraph(help.polls.timeoutOffer()),
            }};
}

HelpTopic datapointsTopic(const HelpContent& help, const L10n::Texts::TableTexts& column) {
    return {"datapoints",
            help.datapoints.title(),
            "tablecells",
            {
                paragraph(help.datapoints.intro()),
                table({
                    {column.unitID(), help.datapoints.unitID},
                    {column.table(), help.datapoints.table},
                    {column.address(), help.datapoints.address},
                    {column.dataType(), help.datapoints.dataType},
                    {column.wordOrder(), help.datapoints.wordOrder},
                    {column.scale(), help.datapoints.scale},
                    {column.format(), help.datapoints.format},
                }),
                heading(help.datapoints.wordOrderHeading),
                paragraph(help.datapoints.wordOrderIntro()),
                table({
                    {"ABCD", help.datapoints.abcd},
                    {"CDAB", help.datapoints.cdab},
                    {"BADC", help.datapoints.badc},
                    {"DCBA", help.datapoints.dcba},
                }),
                tip(help.datapoints.orderTip),
                paragraph(help.datapoints.overlap()),
            }};
}

HelpTopic writingTopic(const HelpContent& help) {
    return {"writing",
            help.writing.title(),
            "pencil",
            {
                paragraph(help.writing.howTo()),
                paragraph(help.writing.functionCodes()),
                tip(help.writing.onlyWhileReading),
            }};
}

HelpTopic chartTopic(const HelpContent& help) {
    return {"chart",
            help.chart.title(),
            "chart.xyaxis.line",
            {
                paragraph(help.chart.howTo()),
                screenshot("chart", help.chart.chartCaption),
                paragraph(help.chart.history()),
            }};
}

HelpTopic csvTopic(const HelpContent& help) {
    using Column = DatapointCSV::Column;
    return {
        "csv",
        help.csv.title(),
        "doc.text",
        {
            paragraph(help.csv.spreadsheets()),
            paragraph(help.csv.columns()),
            table({
                {csvHeader(Column::name), help.csv.name},
                {csvHeader(Column::unitID), help.csv.unitID},
                {csvHeader(Column::table), help.csv.table},
                {csvHeader(Column::address), help.csv.address},
                {csvHeader(Column::dataType), help.csv.dataType},
                {csvHeader(Column::wordOrder), help.csv.wordOrder},
                {L10n::concat(csvHeader(Column::scale), ", ", csvHeader(Column::engineeringUnit),
                              ", ", csvHeader(Column::format), ", ", csvHeader(Column::value), ", ",
                              csvHeader(Column::notes)),
                 help.csv.optional},
            }),
            tip(help.csv.separatorTip),
            tip(help.csv.simulatorTip),
        }};
}

HelpTopic logTopic(const HelpContent& help,
                   const L10n::Texts::LogTexts::ShortFailureTexts& status) {
    return {"log",
            help.log.title(),
            "text.alignleft",
            {
                table({
                    {L10n::Table::ok(24), help.log.ok},
                    {status.timeout(), help.log.noResponse},
                    {status.exception("02"), help.log.exception},
                    {status.crcMismatch(), help.log.crcError},
                }),
                paragraph(help.log.lastGoodValue()),
                heading(help.log.exceptionCodesHeading),
                table({
                    {"01", help.log.exception01},
                    {"02", help.log.exception02},
                    {"03", help.log.exception03},
                    {"04", help.log.exception04},
                    {"06", help.log.exception06},
                }),
                paragraph(help.log.logLines()),
            }};
}

HelpTopic troubleshootingTopic(const HelpContent& help) {
    return {"troubleshooting",
            help.troubleshooting.title(),
            "wrench.and.screwdriver",
            {
                heading(help.troubleshooting.noResponseHeading),
                bullets({help.troubleshooting.unitID, help.troubleshooting.timeout,
                         help.troubleshooting.frame, help.troubleshooting.wiring,
                         help.troubleshooting.cabling, help.troubleshooting.busyPort}),
                heading(help.troubleshooting.findHeading),
                paragraph(help.troubleshooting.findIntro()),
                bullets({help.troubleshooting.findUnits, help.troubleshooting.findSettings,
                         help.troubleshooting.findRegisters}),
                heading(help.troubleshooting.oddValuesHeading),
                bullets({help.troubleshooting.scale, help.troubleshooting.order,
                         help.troubleshooting.offByOne}),
                heading(help.troubleshooting.adaptersHeading),
                paragraph(help.troubleshooting.privacy()),
                paragraph(help.troubleshooting.portMoved()),
                paragraph(help.troubleshooting.slowAdapter()),
                paragraph(help.troubleshooting.rs485()),
                tip(help.troubleshooting.portsVerbose),
            }};
}

HelpTopic shortcutsTopic(const HelpContent& help) {
    const std::string_view ctrl = help.shortcuts.ctrl.value;
    const std::string_view shift = help.shortcuts.shift.value;
    return {"shortcuts",
            help.shortcuts.title(),
            "keyboard",
            {
                table({
                    {keys({ctrl, "R"}), help.shortcuts.startStop},
                    {keys({ctrl, "L"}), help.shortcuts.listen},
                    {keys({ctrl, "T"}), help.shortcuts.newPoll},
                    {keys({ctrl, shift, "D"}), help.shortcuts.addDatapoint},
                    {help.shortcuts.del(), help.shortcuts.deleteDatapoints},
                    {L10n::concat(keys({ctrl, shift, "I"}), " / ", keys({ctrl, shift, "E"})),
                     help.shortcuts.importExport},
                    {L10n::concat(keys({ctrl, "N"}), " / ", keys({ctrl, "O"}), " / ",
                                  keys({ctrl, shift, "S"})),
                     help.shortcuts.projects},
                    {keys({ctrl, "F"}), help.shortcuts.findInLog},
                    {keys({ctrl, "S"}), help.shortcuts.saveLog},
                    {keys({ctrl, "K"}), help.shortcuts.clearLog},
                    {"F1", help.shortcuts.openHelp},
                }),
            }};
}

std::vector<HelpTopic> topics(const HelpContent& help, const L10n::Texts& texts) {
    return {startTopic(help),
            pollsTopic(help),
            datapointsTopic(help, texts.table),
            writingTopic(help),
            chartTopic(help),
            csvTopic(help),
            logTopic(help, texts.log.shortFailure),
            troubleshootingTopic(help),
            shortcutsTopic(help)};
}

// The words the reader sees, without the ** and ` of emphasis and code.
void appendPlain(std::string& text, std::string_view markedUp) {
    text += '\n';
    for (std::size_t i = 0; i < markedUp.size(); ++i) {
        if (markedUp[i] == '`') {
            continue;
        }
        if (markedUp.substr(i, 2) == "**") {
            ++i;
            continue;
        }
        text += markedUp[i];
    }
}

// The title and every text of the blocks, one per line, so that no match spans two texts.
std::string searchableText(const HelpTopic& topic) {
    std::string text = topic.title;
    for (const HelpBlock& block : topic.blocks) {
        std::visit(Overloaded{
                       [&](const HelpBlock::Bullets& bullets) {
                           for (const std::string& item : bullets.items) {
                               appendPlain(text, item);
                           }
                       },
                       [&](const HelpBlock::Table& table) {
                           for (const HelpRow& row : table.rows) {
                               appendPlain(text, row.key);
                               appendPlain(text, row.value);
                           }
                       },
                       [&](const HelpBlock::Screenshot& screenshot) {
                           appendPlain(text, screenshot.caption);
                       },
                       [&](const auto& single) { appendPlain(text, single.text); },
                   },
                   block.value);
    }
    return text;
}
} // namespace

std::vector<HelpTopic> HelpTopic::all() {
    return all(L10n::language());
}

std::vector<HelpTopic> HelpTopic::matching(std::vector<HelpTopic> topics,
                                           std::string_view searchText) {
    const std::string wanted = Text::folded(Text::trimmed(searchText));
    if (wanted.empty()) {
        return topics;
    }
    std::erase_if(topics, [&](const HelpTopic& topic) {
        return Text::folded(searchableText(topic)).find(wanted) == std::string::npos;
    });
    return topics;
}

std::vector<HelpTopic> HelpTopic::search(std::string_view searchText) {
    return matching(all(), searchText);
}

std::vector<HelpTopic> HelpTopic::all(Language language) {
    return topics(L10n::helpContent(language), L10n::texts(language));
}

} // namespace kestrin

std::size_t std::hash<kestrin::HelpRow>::operator()(const kestrin::HelpRow& row) const noexcept {
    const std::hash<std::string> hash;
    return hash(row.key) ^ (hash(row.value) * 31);
}

std::size_t
std::hash<kestrin::HelpTopic>::operator()(const kestrin::HelpTopic& topic) const noexcept {
    return std::hash<std::string>{}(topic.id);
}
