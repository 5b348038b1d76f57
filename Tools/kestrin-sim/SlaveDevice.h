#pragma once

#include "Bytes.h"
#include "Datapoint.h"
#include "ModbusException.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

namespace kestrin {

// The register image of a simulated slave and its answers to requests, as a real device gives
// them: FC01-06, 15 and 16 on the addresses its datapoints cover, exception 01 for any other
// function, 03 for a quantity or value out of bounds, 02 for a range with an address that no
// datapoint covers, silence for units it does not serve, and broadcast writes applied without
// an answer. Pure: no I/O and no clock of its own; the caller says how long it has been running.
class SlaveDevice {
public:
    // Serves every unit that a datapoint names, with each datapoint's value as its first content
    // (overlapping datapoints share registers: the later one's value wins).
    explicit SlaveDevice(const std::vector<Datapoint>& datapoints, std::uint64_t seed = 0);

    // The most registers one request may read or write, as devices with small buffers have it.
    struct RequestLimit {
        int maxRegisters = 0;
        // Some refuse a larger request with exception 03, others ignore it.
        bool silent = false;
    };
    void limitRequests(RequestLimit limit) noexcept { limit_ = limit; }
    // A read of a table in which a unit has no datapoint at all is then refused with exception
    // 01, as by a device that lacks the function, rather than with 02.
    void refuseTablesNotServed() noexcept { refusesTablesNotServed_ = true; }

    bool serves(std::uint8_t unit) const noexcept { return units_.contains(unit); }
    const std::set<std::uint8_t>& units() const noexcept { return units_; }

    // The answer frame to a request frame received `seconds` after start, or nothing where a
    // device stays silent: a bad CRC, a unit it does not serve, a broadcast.
    std::optional<Bytes> respond(ByteView frame, double seconds);

    // The answer PDU of a served unit to a request PDU, against the image as it stands.
    Bytes answer(std::uint8_t unit, ByteView pdu);

    // Moves every animated datapoint to its value at `seconds` after start.
    void animate(double seconds);
    // The same for the animated datapoints a read of count addresses from first touches: a device
    // with thousands of datapoints then answers as fast as one with a few.
    void animate(std::uint8_t unit, RegisterTable table, int first, int count, double seconds);

    // One register (or bit, as 0 or 1) of the image; nothing where no datapoint is.
    std::optional<std::uint16_t> cell(std::uint8_t unit, RegisterTable table,
                                      std::uint16_t address) const;

private:
    using Key = std::tuple<std::uint8_t, RegisterTable::Case, std::uint16_t>;

    void store(const Datapoint& datapoint, const Value& value);
    // Every address from first for count is covered by a datapoint of this unit and table.
    bool covers(std::uint8_t unit, RegisterTable table, int first, int count) const;
    Bytes read(std::uint8_t unit, RegisterTable table, ByteView pdu) const;
    Bytes writeCoil(std::uint8_t unit, ByteView pdu);
    Bytes writeRegister(std::uint8_t unit, ByteView pdu);
    Bytes writeCoils(std::uint8_t unit, ByteView pdu);
    Bytes writeRegisters(std::uint8_t unit, ByteView pdu);

    // Whether a register request of pdu asks for more than the limit allows.
    bool exceedsLimit(ByteView pdu) const;

    std::map<Key, std::uint16_t> image_;
    std::optional<RequestLimit> limit_;
    std::set<std::pair<std::uint8_t, RegisterTable::Case>> tables_;
    bool refusesTablesNotServed_ = false;
    std::set<std::uint8_t> units_;
    struct Animated {
        Key key;
        // Each datapoint draws its own random sequence, from the seed and its place in the list.
        std::uint64_t seed;
        Datapoint datapoint;
    };
    // Sorted by key.
    std::vector<Animated> animated_;
    std::uint64_t seed_;
};

} // namespace kestrin
