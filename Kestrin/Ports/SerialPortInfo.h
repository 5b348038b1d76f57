#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin {

// One serial port as the port picker shows it, identified by its path.
struct SerialPortInfo {
    // The device node the link opens, such as /dev/ttyUSB0.
    std::string path;
    // The USB product name of the port's device, trimmed; absent when the device has none.
    std::optional<std::string> productName;
    // Absent for ports without a USB device (built-in or virtual ports).
    std::optional<int> vendorID;
    std::optional<int> productID;
    // The USB device's serial number, trimmed; absent when it reports none. Tells identical
    // adapters apart.
    std::optional<std::string> serialNumber{};
    // The port's link under /dev/serial/by-id, when udev made one.
    std::optional<std::string> byIdPath{};

    // A name from the fixed tables of boards, USB-serial chips and brands.
    struct KnownName {
        std::string name;
        bool isChip = false;
        friend bool operator==(const KnownName&, const KnownName&) = default;
    };

    // A port with a vendor ID is a USB adapter; the model prefers those when it picks a port.
    bool isUSB() const noexcept { return vendorID.has_value(); }

    std::optional<KnownName> knownName() const;
    // The known name (a chip as "USB serial (chip)"), else the product name, else the path
    // without "/dev/".
    std::string name() const;
    // The name as the port picker lists it among these ports: when another of them has the same
    // name (two identical adapters), with " · " and the serial number where there is one.
    std::string nameAmong(std::span<const SerialPortInfo> listed) const;

    // USB adapters first, then paths in the order of the user's locale with digit runs by value:
    // ttyUSB2 before ttyUSB10, case and accents as the locale has them.
    static void sortForListing(std::vector<SerialPortInfo>& ports);

    friend bool operator==(const SerialPortInfo&, const SerialPortInfo&) = default;
};

} // namespace kestrin

template <>
struct std::hash<kestrin::SerialPortInfo> {
    std::size_t operator()(const kestrin::SerialPortInfo& port) const noexcept;
};
