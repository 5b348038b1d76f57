#pragma once

#include "SerialPortInfo.h"

#include <optional>
#include <span>
#include <string>

namespace kestrin {

// What is remembered of a USB adapter beside its path, so that it is found again when the
// kernel gives it another name (ttyUSB0 coming back as ttyUSB1 after a replug or a reboot).
struct PortIdentity {
    int vendorID = 0;
    int productID = 0;
    std::optional<std::string> serialNumber;
    // The /dev/serial/by-id link, which names the adapter, its serial number and its interface.
    std::optional<std::string> byIdPath;

    // Absent for a port without a USB identity.
    static std::optional<PortIdentity> of(const SerialPortInfo& port);

    // The listed port that is this adapter, or null. For an adapter with a serial number, the
    // by-id link decides when one port has it; else vendor, product and serial number, where the
    // by-id links of a multi-port adapter (one serial number for all its ports) must not differ.
    // For adapters without serial numbers, vendor and product when exactly one listed port has
    // them: identical adapters then share one by-id name, so the link tells nothing. Anything less
    // certain is no match: taking a stranger's adapter would write to the wrong device.
    const SerialPortInfo* findIn(std::span<const SerialPortInfo> listed) const;

    // Whether port is certainly another adapter: another vendor or product, another serial
    // number, or another port of the same multi-port adapter. A port whose USB facts are not
    // known yet, or an identical adapter without serial numbers, is not.
    bool isContradictedBy(const SerialPortInfo& port) const;

    friend bool operator==(const PortIdentity&, const PortIdentity&) = default;
};

} // namespace kestrin
