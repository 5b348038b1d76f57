#pragma once

#include "BusMeter.h"

#include <string>
#include <vector>

namespace kestrin {

// The bus meter's figures as the log, the command line and the window word them.
namespace BusSummary {

// "Unit 3: 812 answers, round trip 24 ms (99 %: 31 ms), turnaround 6 ms (99 %: 9 ms)".
std::string unitLine(const BusMeter::UnitFigures& figures);

// One unitLine per unit that answered.
std::vector<std::string> lines(const BusMeter& meter);

} // namespace BusSummary
} // namespace kestrin
