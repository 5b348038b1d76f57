#include "PortScanner.h"

#include "SerialLink.h"
#include "Text.h"

#include <QTimer>

namespace kestrin {

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
        if (!path || !SerialLink::isValidPath(*path)) {
            continue;
        }
        auto usb = device->usbIdentity();
        std::optional<std::string> productName;
        if (usb.productName) {
            productName = std::string(Text::trimmed(*usb.productName));
        }
        ports.push_back({std::move(*path), std::move(productName), usb.vendorID, usb.productID});
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
