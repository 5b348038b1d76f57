#include "HistoryCSV.h"

#include "HistoryRows.h"
#include "NumberText.h"
#include "TextFile.h"
#include "ValueCodec.h"

#include <cmath>

#include <QLocale>

namespace kestrin::HistoryCSV {

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

std::string secondText(std::int64_t secsSinceEpoch) {
    return QLocale::c()
        .toString(QDateTime::fromSecsSinceEpoch(secsSinceEpoch, Qt::UTC).toLocalTime(),
                  QStringLiteral("yyyy-MM-dd HH:mm:ss"))
        .toStdString();
}

std::string text(std::span<const Poll> polls, const History& history, const CSVDialect& dialect) {
    std::string out;
    HistoryRows rows(polls, history, dialect);
    rows.appendTo(out, std::string::npos);
    return out;
}

} // namespace kestrin::HistoryCSV
