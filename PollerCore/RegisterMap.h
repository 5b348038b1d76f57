#pragma once

#include "Datapoint.h"
#include "RegisterTable.h"
#include "Result.h"
#include "SerialLinkError.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin {

class SerialLink;

// Which addresses of one unit's tables exist, found by reading them over the line: a range the
// device refuses with exception 02 holds a hole and is read again in halves until every address
// is known, and a request the device refuses as too large (exception 03, or no answer twice) is
// halved for the rest of the map, though never below a size it has answered.

struct TableMap {
    RegisterTable table;
    // False when the device refused the table's read function (exception 01).
    bool supported = true;
    // The addresses that answered, ascending, adjacent ones merged.
    std::vector<Datapoint::AddressRange> ranges;
    // The addresses the device was still too busy to read (exception 06) after a few tries,
    // likewise: neither found nor missing.
    std::vector<Datapoint::AddressRange> unknown;

    int addressCount() const noexcept;
    int unknownCount() const noexcept;
};

struct RegisterMap {
    std::uint8_t unit = 1;
    // In the order they were mapped.
    std::vector<TableMap> tables;
    // The largest read the device accepted, or the limit it was never pushed past.
    int largestRegisterRead = FunctionCode::maxReadRegisters;
    int largestBitRead = FunctionCode::maxReadBits;
    int requests = 0;
    // False when not one request was answered: no device, or other settings.
    bool answered = false;
    // False when cancelled or fellSilent: the last table holds what was found up to then, later
    // ones are missing.
    bool complete = true;
    // True when the unit answered at first and then stopped answering at all.
    bool fellSilent = false;

    bool found() const noexcept;
    // Whether a table has addresses left unknown because the device was busy.
    bool busy() const noexcept;
    // Of all tables.
    int unknownCount() const noexcept;
};

struct RegisterMapOptions {
    std::uint8_t unit = 1;
    int first = 0;
    int last = 999;
    // Registers first: most devices have them, and a unit that is not there costs fewer
    // requests to give up on at 125 registers than at 2000 bits.
    std::vector<RegisterTable> tables{RegisterTable::holdingRegister, RegisterTable::inputRegister,
                                      RegisterTable::coil, RegisterTable::discreteInput};
    // What a device may take to think beyond the answer's own wire time; a read waits for the
    // largest answer it can have, plus this and the adapter's handover.
    double thinkSeconds = 0.030;
    // A USB adapter's latency timer, 0 for a UART.
    double handoverSeconds = 0.0;
    // How long a device that answered busy (exception 06) is given before it is asked again.
    double busyPauseSeconds = 0.2;
};

struct RegisterMapProgress {
    int requests = 0;
    // The rest at the line's speed as if no further holes turned up: a floor, not a promise.
    double remainingSeconds = 0.0;
};

using RegisterMapProgressHandler = std::function<void(const RegisterMapProgress&)>;

// Maps the unit's tables through an open link on the caller's thread. The link's cancellation
// signal ends the map early with what was found so far; any other link failure but a time-out
// ends it with that failure.
// first and last must lie within 0...65535, first <= last.
Result<RegisterMap, SerialLinkError> mapRegisters(SerialLink& link,
                                                  const RegisterMapOptions& options,
                                                  const RegisterMapProgressHandler& progress = {});

// "0-9, 12" with dash "-": the command line's words for ranges, which scripts read, and the
// window's with its own dash; empty for none.
std::string rangesText(const std::vector<Datapoint::AddressRange>& ranges, std::string_view dash);

// One datapoint per address found, in table order: uint16 for registers, bool for bits, named
// by table code and address ("HR 17").
std::vector<Datapoint> mappedDatapoints(const RegisterMap& map);

} // namespace kestrin
