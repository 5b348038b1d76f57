#include "SerialPortInfo.h"

#include "L10n.h"

#include <algorithm>
#include <array>
#include <functional>

#include <QCollator>
#include <QLocale>
#include <QString>

namespace kestrin {
namespace {

struct ProductEntry {
    int vendor;
    int product;
    std::string_view name;
};

struct BrandEntry {
    int vendor;
    std::string_view name;
};

// Arduino boards by the IDs their USB interfaces report; 0x2A03 is the arduino.org vendor.
constexpr std::array boards{
    ProductEntry{0x2341, 0x0001, "Arduino Uno"},
    ProductEntry{0x2341, 0x0043, "Arduino Uno"},
    ProductEntry{0x2341, 0x0243, "Arduino Uno"},
    ProductEntry{0x2341, 0x0010, "Arduino Mega 2560"},
    ProductEntry{0x2341, 0x0042, "Arduino Mega 2560"},
    ProductEntry{0x2341, 0x0242, "Arduino Mega 2560"},
    ProductEntry{0x2341, 0x8036, "Arduino Leonardo"},
    ProductEntry{0x2341, 0x0036, "Arduino Leonardo"},
    ProductEntry{0x2341, 0x8037, "Arduino Micro"},
    ProductEntry{0x2341, 0x0037, "Arduino Micro"},
    ProductEntry{0x2341, 0x0058, "Arduino Nano Every"},
    ProductEntry{0x2341, 0x0069, "Arduino UNO R4 Minima"},
    ProductEntry{0x2341, 0x1002, "Arduino UNO R4 WiFi"},
    ProductEntry{0x2A03, 0x0043, "Arduino Uno"},
    ProductEntry{0x2A03, 0x0042, "Arduino Mega 2560"},
    ProductEntry{0x2A03, 0x8036, "Arduino Leonardo"},
};

constexpr std::array chips{
    ProductEntry{0x1A86, 0x7523, "CH340"},       ProductEntry{0x1A86, 0x5523, "CH341"},
    ProductEntry{0x1A86, 0x55D4, "CH9102"},      ProductEntry{0x10C4, 0xEA60, "CP210x"},
    ProductEntry{0x0403, 0x6001, "FTDI FT232R"}, ProductEntry{0x0403, 0x6010, "FTDI FT2232"},
    ProductEntry{0x0403, 0x6014, "FTDI FT232H"}, ProductEntry{0x0403, 0x6015, "FTDI FT231X"},
    ProductEntry{0x067B, 0x2303, "PL2303"},
};

// Vendors whose boards carry their own USB interface, named when the product is not listed.
constexpr std::array brands{
    BrandEntry{0x2341, "Arduino"},         BrandEntry{0x2A03, "Arduino"},
    BrandEntry{0x303A, "Espressif ESP32"}, BrandEntry{0x2E8A, "Raspberry Pi Pico"},
    BrandEntry{0x239A, "Adafruit"},        BrandEntry{0x1B4F, "SparkFun"},
    BrandEntry{0x16C0, "Teensy"},
};

template <std::size_t N>
std::optional<std::string_view> lookUp(const std::array<ProductEntry, N>& table, int vendor,
                                       int product) {
    const auto found = std::find_if(table.begin(), table.end(), [&](const ProductEntry& entry) {
        return entry.vendor == vendor && entry.product == product;
    });
    return found == table.end() ? std::nullopt : std::optional(found->name);
}

} // namespace

std::optional<SerialPortInfo::KnownName> SerialPortInfo::knownName() const {
    if (!vendorID) {
        return std::nullopt;
    }
    if (productID) {
        if (const auto board = lookUp(boards, *vendorID, *productID)) {
            return KnownName{std::string(*board), false};
        }
        if (const auto chip = lookUp(chips, *vendorID, *productID)) {
            return KnownName{std::string(*chip), true};
        }
    }
    const auto brand = std::find_if(brands.begin(), brands.end(), [&](const BrandEntry& entry) {
        return entry.vendor == *vendorID;
    });
    if (brand == brands.end()) {
        return std::nullopt;
    }
    return KnownName{std::string(brand->name), false};
}

namespace {

// The name from the tables or the product, absent when only the path can name the port.
std::optional<std::string> displayName(const SerialPortInfo& port) {
    if (const auto known = port.knownName()) {
        return known->isChip ? L10n::texts().board.usbSerial(known->name) : known->name;
    }
    if (port.productName && !port.productName->empty()) {
        return *port.productName;
    }
    return std::nullopt;
}

} // namespace

std::string SerialPortInfo::name() const {
    if (auto name = displayName(*this)) {
        return std::move(*name);
    }
    constexpr std::size_t devicesPrefix = std::string_view("/dev/").size();
    return path.size() > devicesPrefix ? path.substr(devicesPrefix) : std::string();
}

std::string SerialPortInfo::nameAmong(std::span<const SerialPortInfo> listed) const {
    std::string own = name();
    const bool shared = std::any_of(listed.begin(), listed.end(), [&](const SerialPortInfo& other) {
        return other.path != path && other.name() == own;
    });
    return shared && serialNumber ? own + " \u00b7 " + *serialNumber : own;
}

void SerialPortInfo::sortForListing(std::vector<SerialPortInfo>& ports) {
    // Qt compares code points under the C locale and ignores numeric mode there; English has no
    // tailoring of its own, so it stands for the Unicode default order.
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    std::sort(ports.begin(), ports.end(), [&](const SerialPortInfo& a, const SerialPortInfo& b) {
        if (a.isUSB() != b.isUSB()) {
            return a.isUSB();
        }
        const int order =
            collator.compare(QString::fromStdString(a.path), QString::fromStdString(b.path));
        // Paths equal in that order (leading zeros apart) still need a fixed order.
        return order != 0 ? order < 0 : a.path < b.path;
    });
}

} // namespace kestrin

std::size_t
std::hash<kestrin::SerialPortInfo>::operator()(const kestrin::SerialPortInfo& port) const noexcept {
    std::size_t seed = std::hash<std::string>{}(port.path);
    const auto combine = [&seed](std::size_t value) {
        seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
    };
    combine(std::hash<std::optional<std::string>>{}(port.productName));
    combine(std::hash<std::optional<int>>{}(port.vendorID));
    combine(std::hash<std::optional<int>>{}(port.productID));
    combine(std::hash<std::optional<std::string>>{}(port.serialNumber));
    combine(std::hash<std::optional<std::string>>{}(port.byIdPath));
    return seed;
}
