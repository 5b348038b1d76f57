#pragma once

#include "RegisterTable.h"
#include "Result.h"
#include "SerialConfiguration.h"
#include "SerialLinkError.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kestrin {

class SerialLink;

// Which unit IDs answer on a line at its current settings. Each unit gets the cheapest request
// that any device understands, with a time-out barely above the answer's wire time, so that an
// empty bus is done in seconds. Runs on the caller's thread through the link, which it leaves
// open; the link's cancellation signal ends a scan at once.
namespace UnitScan {

// What answered a unit: the read whose answer proved the device, and the exception it answered
// with, if any. A refusal other than 01 says the table exists without address 0; a device that
// knows none of the reads is reported with its 01 to FC03.
struct Answer {
    std::uint8_t unit = 0;
    RegisterTable table = RegisterTable::holdingRegister;
    std::optional<std::uint8_t> exception;
    // It answered only after its time-out, while the next unit was being asked: a slow device,
    // which polls need a longer time-out for.
    bool late = false;
    friend bool operator==(const Answer&, const Answer&) = default;
};

struct Progress {
    int done = 0;
    int total = 0;
    // From the line's timing: every unit left staying silent until its time-out (silentSeconds).
    double remainingSeconds = 0;
    // What the step proved: a unit that answered late, the unit just probed.
    std::vector<Answer> answers;
};

using ProgressCallback = std::function<void(const Progress&)>;

// The wire time of the longest answer to a probe plus 30 ms for the device to think: long
// enough for a device that answers at all, short enough that 247 silent units pass quickly.
double defaultTimeout(const SerialConfiguration& serial);

// Seconds a scan of this many units costs when none answers: for each the request on the wire,
// the time-out and the silence before the next request, then the late window after the last.
double silentSeconds(const SerialConfiguration& serial, double timeout, int units);

// One unit: a read of one holding register at 0, and when the device does not know that
// function (exception 01), coils, discrete inputs and input registers in turn. Any well-formed
// answer proves a device; nothing when it stayed silent or answered garbage twice. An error only
// when the link failed or was cancelled. The late answer of another unit that arrives instead
// goes to lateAnswers. After garbage or a late answer the request is sent once more, as the
// unit's own answer may have been lost behind or in a collision with a slow unit's.
Result<std::optional<Answer>, SerialLinkError> probe(SerialLink& link, std::uint8_t unit,
                                                     double timeout,
                                                     std::vector<Answer>* lateAnswers = nullptr);

// After the last probe of a scan, when no next request gives a slow unit's answer time to
// arrive: waits out the link's late window of timeout for it.
Result<std::optional<Answer>, SerialLinkError> lateAnswer(SerialLink& link, double timeout);

// Every unit of units in order, with progress after each; the units that answered, or the
// link's failure (Cancelled included), which ends the scan. A last unit that stayed silent is
// given the late window to answer in.
Result<std::vector<Answer>, SerialLinkError> run(SerialLink& link,
                                                 const std::vector<std::uint8_t>& units,
                                                 double timeout, const ProgressCallback& progress);

} // namespace UnitScan
} // namespace kestrin
