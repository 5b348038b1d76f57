#include "PortScanner.h"

#include "SerialLink.h"
#include "Text.h"

#include <QTimer>

namespace kestrin {

namespace {

std::optional<std::string> trimmed(const std::optional<std::string>& text) {
    return text ? std::optional<std::string>(Text::trimmed(*text)) : std::nullopt;
}

// Registries pad names with blanks and line ends; a serial number of blanks is none.
SerialPortInfo portOf(const PortRegistry::Device& device, std::string path) {
    const PortRegistry::USBIdentity usb = device.usbIdentity();
    std::optional<std::string> serialNumber = trimmed(usb.serialNumber);
    if (serialNumber && serialNumber->empty()) {
        serialNumber.reset();
    }
    return {std::move(path), trimmed(usb.productName), usb.vendorID,
            usb.productID,   std::move(serialNumber),  device.byIdPath()};
}

} // namespace

PortScanner::PortScanner(std::unique_ptr<PortRegistry> registry,
                         std::chrono::milliseconds settleDelay, QObject* parent)
    : QObject(parent)
    , registry_(std::move(registry))
    , settleDelay_(settleDelay) {}

PortScanner::~PortScanner() = default;

void PortScanner::start() {
    if (watching_) {
        return;
    }
    watching_ = registry_->subscribe([this] { devicesChanged(); });
    if (watching_) {
        emit portsChanged(currentPorts());
    }
}

std::vector<SerialPortInfo> PortScanner::currentPorts() const {
    auto devices = registry_->serialDevices();
    if (!devices) {
        return {};
    }
    std::vector<SerialPortInfo> ports;
    ports.reserve(devices->size());
    for (const auto& device : *devices) {
        auto path = device->path();
        if (path && SerialLink::isValidPath(*path)) {
            ports.push_back(portOf(*device, std::move(*path)));
        }
    }
    SerialPortInfo::sortForListing(ports);
    return ports;
}

void PortScanner::devicesChanged() {
    emit portsChanged(currentPorts());
    // The scanner is the timer's context, so a pending delivery dies with it.
    QTimer::singleShot(settleDelay_, this, [this] { emit portsChanged(currentPorts()); });
}

} // namespace kestrin
