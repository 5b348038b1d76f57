#pragma once

#include "DeviceFinder.h"

#include <QString>

class QTableWidget;

namespace kestrin::FinderResults {

// What a scan found, as the Find Devices dialog shows it: a table whose columns follow the
// scan, and a line beneath for what the table cannot say.

// "Holding register · FC03", "Holding register · Illegal data address (02)".
QString answerText(const UnitScan::Answer& answer);

// Units: unit, answer, late. Settings: baud rate, frame, unit, answer, late. Registers: table,
// address ranges, count. The unit of a units row is its item's user data; a unit chosen before
// stays chosen where the new rows still list it.
void fill(QTableWidget& table, const DeviceFinder::Findings& findings);

// The unit of the chosen row; nothing when no units row is chosen.
std::optional<int> chosenUnit(const QTableWidget& table);

// Why the table is empty or ends early; empty when the table says it all.
QString summary(const DeviceFinder::Findings& findings);

} // namespace kestrin::FinderResults
