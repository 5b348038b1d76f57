#pragma once

#include "BusBudget.h"
#include "BusMeter.h"
#include "Poll.h"
#include "SerialConfiguration.h"

#include <optional>
#include <span>
#include <string>

namespace kestrin {

// The bus budget of a project's polls and what the window and kestrin-cli say about it.
namespace PollBudgets {

// Every poll's requests planned as the engine plans them, in the polls' order; nothing when the
// baud rate is not positive. handoverSeconds: the adapter's latency timer, 0 for a UART.
std::optional<BusBudget::Budget> of(std::span<const Poll> polls, const SerialConfiguration& serial,
                                    int maxGap, const BusBudget::Turnarounds& turnarounds = {},
                                    double handoverSeconds = 0);

// Each unit the meter heard answer at its median turnaround, the others at the typical one;
// only the typical one without a meter.
BusBudget::Turnarounds turnarounds(const BusMeter* meter);

// Seconds as whole milliseconds.
int milliseconds(double seconds);

// The line's load as a whole percentage.
int percent(double lineLoad);

// "Unit 1 · HR 0–9 · 10 ms".
std::string requestLine(const BusBudget::Request& request);

// What goes wrong with the poll, worst first: an answer that takes longer than the response
// time-out (so that request fails every time), or why the poll is read less often than its
// interval asks (its own reading is longer, or the line is overloaded). Nothing when it is read
// as asked.
std::optional<std::string> warning(const BusBudget::PollBudget& poll,
                                   const BusBudget::Budget& budget, int timeoutMs);

} // namespace PollBudgets
} // namespace kestrin
