#include "HistoryCSV.h"

#include "DatapointLabel.h"
#include "TextFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include <QLocale>

namespace kestrin::HistoryCSV {
namespace {

void appendField(std::string& out, std::string_view field, char separator) {
    if (field.find_first_of(std::string{separator, '"', '\n', '\r'}) == std::string_view::npos) {
        out += field;
        return;
    }
    out += '"';
    for (const char c : field) {
        if (c == '"') {
            out += '"';
        }
        out += c;
    }
    out += '"';
}

struct Row {
    QDateTime time;
    std::string fields; // every field but the time, each preceded by the separator
};

} // namespace

QString fileName(const QDateTime& now) {
    return TextFile::stampedName("modbus-history-", now, ".csv");
}

std::string valueText(double value, const DatapointCSV::Dialect& dialect) {
    // 1e15 keeps every whole number exactly representable and far inside int64.
    if (std::trunc(value) == value && std::fabs(value) < 1e15) {
        return std::to_string(static_cast<std::int64_t>(value));
    }
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    std::string text(buffer.data(), end);
    if (dialect.decimalComma) {
        std::replace(text.begin(), text.end(), '.', ',');
    }
    return text;
}

std::string timeText(const QDateTime& time) {
    return QLocale::c()
        .toString(time.toLocalTime(), QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"))
        .toStdString();
}

std::string text(std::span<const Poll> polls, const History& history,
                 const DatapointCSV::Dialect& dialect) {
    const char separator = dialect.separator;
    std::vector<Row> rows;
    for (const Poll& poll : polls) {
        std::string pollField;
        appendField(pollField, poll.name, separator);
        for (const Datapoint& datapoint : poll.datapoints) {
            const SampleRing* samples = history.samples(datapoint.id);
            if (samples == nullptr) {
                continue;
            }
            std::string nameField;
            appendField(nameField, DatapointLabel::name(datapoint), separator);
            std::string unitField;
            appendField(unitField, datapoint.engineeringUnit, separator);
            for (std::size_t index = 0; index < samples->size(); ++index) {
                const Sample& sample = (*samples)[index];
                std::string fields;
                fields += separator;
                fields += pollField;
                fields += separator;
                fields += nameField;
                fields += separator;
                appendField(fields, valueText(sample.value, dialect), separator);
                fields += separator;
                fields += unitField;
                rows.push_back({sample.time, std::move(fields)});
            }
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& a, const Row& b) { return a.time < b.time; });

    std::string out;
    for (const std::string_view header : {"Time", "Poll", "Name", "Value", "Unit"}) {
        if (!out.empty()) {
            out += separator;
        }
        out += header;
    }
    out += "\r\n";
    for (const Row& row : rows) {
        appendField(out, timeText(row.time), separator);
        out += row.fields;
        out += "\r\n";
    }
    return out;
}

} // namespace kestrin::HistoryCSV
