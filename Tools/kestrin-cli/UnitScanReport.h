#pragma once

#include "SettingsSweep.h"
#include "UnitScan.h"

#include <ostream>
#include <string>

namespace kestrin::UnitScanReport {

// What `kestrin-cli scan` prints of the units that answer, and `scan --sweep` of the settings at
// which one does. The lines are English and fixed, like the register map's, so that scripts can
// read them.

// One unit that answered, on its own line as text ("Unit 17: holding registers (FC03)", "Unit 3:
// exception 02 to FC03") or, with json, one object, flushed so that a long scan shows each unit
// as it is found. A slow device's line says so, as its polls need a longer time-out.
void print(const UnitScan::Answer& answer, bool json, std::ostream& out);

// "19200 8N2: unit 3 answers", with ", after the time-out" for a slow device, or with json the
// answer's object with the baud rate and frame.
void print(const SettingsSweep::Found& found, bool json, std::ostream& out);

} // namespace kestrin::UnitScanReport
