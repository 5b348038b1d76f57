#pragma once

#include "PortRegistry.h"

#include <memory>

struct udev;
struct udev_monitor;
class QSocketNotifier;

namespace kestrin {

// The registry through libudev: tty devices with a parent bus device, their DEVNAME and by-id
// link, and the idVendor, idProduct, product and serial attributes of their USB device ancestor.
// Arrivals and departures come from a udev monitor whose socket is watched by the main thread's
// event loop.
// Thread contract: main thread only.
class UdevPortRegistry final : public PortRegistry {
public:
    UdevPortRegistry();
    ~UdevPortRegistry() override;
    UdevPortRegistry(const UdevPortRegistry&) = delete;
    UdevPortRegistry& operator=(const UdevPortRegistry&) = delete;

    std::optional<std::vector<std::unique_ptr<Device>>> serialDevices() override;
    // Fails without udev, when the monitor cannot be set up, or when this thread runs no Qt
    // event loop to watch it.
    bool subscribe(std::function<void()> onChange) override;

private:
    struct UdevRelease {
        void operator()(udev* context) const noexcept;
        void operator()(udev_monitor* monitor) const noexcept;
    };

    void drainMonitor();

    std::unique_ptr<udev, UdevRelease> udev_;
    std::unique_ptr<udev_monitor, UdevRelease> monitor_;
    // Declared after the monitor so that it stops watching the socket before the socket closes.
    std::unique_ptr<QSocketNotifier> notifier_;
    std::function<void()> onChange_;
};

} // namespace kestrin
