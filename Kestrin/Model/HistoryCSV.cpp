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

struct Row {
    QDateTime time;
    std::string cells; // every cell but the time, each preceded by the separator
};

} // namespace

QString fileName(const QDateTime& now) {
    return TextFile::stampedName("modbus-history-", now, ".csv");
}

std::string valueText(const Datapoint& datapoint, const Value& value, const CSVDialect& dialect) {
    const DataType type = datapoint.dataType;
    const double real = value.toDouble();
    if (value.isInteger() || !std::isfinite(real)) {
        return dialect.number(value);
    }
    if (type.isFloat()) {
        const bool single = type == DataType::float32 && !ValueCodec::scales(datapoint.scale);
        return single ? dialect.decimal(NumberText::single(static_cast<float>(real)))
                      : dialect.number(value);
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

std::string text(std::span<const Poll> polls, const History& history, const CSVDialect& dialect) {
    // Names and units are written as they are; only the datapoint list is read back and trimmed.
    constexpr auto plain = CSVDialect::EdgeSpace::plain;
    std::vector<Row> rows;
    for (const Poll& poll : polls) {
        std::string pollCell;
        dialect.appendCell(pollCell, poll.name, plain);
        for (const Datapoint& datapoint : poll.datapoints) {
            const SampleRing* samples = history.samples(datapoint.id);
            if (samples == nullptr) {
                continue;
            }
            std::string nameCells = dialect.separator + pollCell + dialect.separator;
            dialect.appendCell(nameCells, DatapointLabel::name(datapoint), plain);
            std::string unitCell;
            dialect.appendCell(unitCell, datapoint.engineeringUnit, plain);
            for (std::size_t index = 0; index < samples->size(); ++index) {
                const Sample& sample = (*samples)[index];
                std::string cells = nameCells + dialect.separator;
                dialect.appendCell(cells, valueText(datapoint, sample.value, dialect), plain);
                cells += dialect.separator;
                cells += unitCell;
                rows.push_back({sample.time, std::move(cells)});
            }
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& a, const Row& b) { return a.time < b.time; });

    std::string out;
    dialect.appendRow(out, {"Time", "Poll", "Name", "Value", "Unit"}, plain);
    for (const Row& row : rows) {
        dialect.appendCell(out, timeText(row.time), plain);
        out += row.cells;
        out += CSVDialect::lineEnd;
    }
    return out;
}

} // namespace kestrin::HistoryCSV
