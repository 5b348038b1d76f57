#pragma once

#include "Datapoint.h"

#include <string>

namespace kestrin::DatapointLabel {

// How log lines, the chart and the history export name a datapoint.

// Its name, or its table code and address ("HR 100") when the name is empty.
std::string name(const Datapoint& datapoint);
// The name followed by " (unit)" when the datapoint has an engineering unit.
std::string withUnit(const Datapoint& datapoint);

} // namespace kestrin::DatapointLabel
