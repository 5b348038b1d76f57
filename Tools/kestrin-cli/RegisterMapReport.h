#pragma once

#include "ExitCode.h"
#include "RegisterMap.h"

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace kestrin::RegisterMapReport {

// What `kestrin-cli scan --registers` prints of a unit's map. The lines are English and fixed,
// like the other commands' results, so that scripts can read them.

// "holding registers": a table as the command lines of scan name it.
std::string_view tableWords(RegisterTable table);

// "Unit 1: 12 holding registers (0-9, 100-101), 4 coils (0-3), no discrete inputs, input
// registers refused (exception 01); largest read 32 registers"; a device that was busy adds "; the
// device was busy, 32 addresses unknown".
std::string summary(const RegisterMap& map);

// The map on out as the summary or, with json, one object per table and one with the unit's
// limits; with csv, the datapoints found written there as the datapoint list the window imports,
// replacing the file whole or not at all. Why nothing was found goes to err. success when an
// address was found or left unknown by a busy device, requestFailed when neither or the list
// could not be written.
ExitCode print(const RegisterMap& map, bool json, const std::optional<std::string>& csv,
               std::ostream& out, std::ostream& err);

} // namespace kestrin::RegisterMapReport
