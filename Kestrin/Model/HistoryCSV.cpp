#include "HistoryCSV.h"

#include "DatapointLabel.h"
#include "NumberText.h"
#include "TextFile.h"
#include "ValueCodec.h"

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

std::string valueText(const Datapoint& datapoint, const Value& value,
                      const DatapointCSV::Dialect& dialect) {
    const DataType type = datapoint.dataType;
    const double real = value.toDouble();
    if (value.isInteger() || !std::isfinite(real)) {
        return dialect.decimal(NumberText::plain(value));
    }
    if (type.isFloat()) {
        const bool single = type == DataType::float32 && !ValueCodec::scales(datapoint.scale);
        return dialect.decimal(single ? NumberText::single(static_cast<float>(real))
                                      : NumberText::plain(value));
    }
    std::string text = NumberText::fixed(real, datapoint.decimals());
    // 11.0 is written 11, as every other whole number.
    if (const auto point = text.find('.');
        point != std::string::npos && text.find_first_not_of('0', point + 1) == std::string::npos) {
        text.erase(point);
    }
    return dialect.decimal(std::move(text));
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
                appendField(fields, valueText(datapoint, sample.value, dialect), separator);
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
