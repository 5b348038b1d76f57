#include "PortScanner.h"

#include "SerialLink.h"

#include <algorithm>
#include <string_view>

#include <QTimer>

namespace kestrin {
namespace {

std::optional<std::string> trimmed(std::optional<std::string> text) {
    if (!text) {
        return text;
    }
    constexpr std::string_view blanks = " \t\n\r\v\f";
    const std::size_t first = text->find_first_not_of(blanks);
    if (first == std::string::npos) {
        return std::string();
    }
    const std::size_t last = text->find_last_not_of(blanks);
    return text->substr(first, last - first + 1);
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
        if (!path || !SerialLink::isValidPath(*path)) {
            continue;
        }
        auto usb = device->usbIdentity();
        ports.push_back(
            {std::move(*path), trimmed(std::move(usb.productName)), usb.vendorID, usb.productID});
    }
    std::sort(ports.begin(), ports.end(), SerialPortInfo::listedBefore);
    return ports;
}

void PortScanner::devicesChanged() {
    emit portsChanged(currentPorts());
    // The scanner is the timer's context, so a pending delivery dies with it.
    QTimer::singleShot(settleDelay_, this, [this] { emit portsChanged(currentPorts()); });
}

} // namespace kestrin
