#pragma once

#include "CSVDialect.h"
#include "Datapoint.h"
#include "History.h"
#include "Poll.h"

#include <cstdint>
#include <span>
#include <string>

#include <QDateTime>
#include <QString>

namespace kestrin::HistoryCSV {

// The recorded history as a CSV file for a spreadsheet in the user's locale: one row per sample
// of every datapoint of every poll, oldest first.

// "modbus-history-2026-11-16T160512.csv".
QString fileName(const QDateTime& now);
// A value as the datapoint's device meant it: a scaled integer rounded to the digits the table
// shows, a float32 in the shortest digits of the single; every other value as the datapoint list
// writes numbers. A whole number has no decimal part; "," for "." in the decimal-comma dialect.
std::string valueText(const Datapoint& datapoint, const Value& value, const CSVDialect& dialect);
// "2026-11-16 16:05:12" in the local time zone, whatever the user's locale; a row's time adds
// ".345".
std::string secondText(std::int64_t secsSinceEpoch);
// Header "Time", "Poll", "Name", "Value", "Unit", then the rows in time order, merged from each
// datapoint's samples in the order they were recorded (a system clock set back shows as a step
// back, as it happened); rows of equal time keep poll, table and recording order. Datapoints in no
// poll are left out. CR LF endings. At once, for small histories; HistoryExport writes a large one
// to a file in slices.
std::string text(std::span<const Poll> polls, const History& history, const CSVDialect& dialect);

} // namespace kestrin::HistoryCSV
