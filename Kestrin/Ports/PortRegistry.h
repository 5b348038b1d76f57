#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrin {

// The system's device registry as port discovery needs it: list the serial devices, read each
// one's path, USB identity and stable link, and hear of arrivals and departures. Releasing is
// destruction. Thread contract: main thread only.
class PortRegistry {
public:
    // What the USB device a port belongs to reports; every field absent for other ports.
    struct USBIdentity {
        std::optional<std::string> productName;
        std::optional<int> vendorID;
        std::optional<int> productID;
        // The device's own serial number, untrimmed; many cheap adapters report none.
        std::optional<std::string> serialNumber{};
    };

    // One device of one enumeration; destroying it releases the registry's hold on it.
    class Device {
    public:
        virtual ~Device() = default;
        // The device node, such as /dev/ttyUSB0; absent when the device has none.
        virtual std::optional<std::string> path() const = 0;
        // Searched through the device's ancestors; a property that is missing or unreadable
        // is absent. The product name comes untrimmed.
        virtual USBIdentity usbIdentity() const = 0;
        // The port's link under /dev/serial/by-id, which udev makes for USB adapters; absent
        // when there is none.
        virtual std::optional<std::string> byIdPath() const = 0;
    };

    // Destruction ends the subscription.
    virtual ~PortRegistry() = default;

    // Every serial device that sits on a bus; absent when the registry cannot be asked.
    virtual std::optional<std::vector<std::unique_ptr<Device>>> serialDevices() = 0;

    // Calls onChange on the main thread after serial devices arrived or departed, once per
    // batch of notifications. False when the notification channel cannot be created.
    virtual bool subscribe(std::function<void()> onChange) = 0;

    // The registry of this system: udev.
    static std::unique_ptr<PortRegistry> system();
};

} // namespace kestrin
