#include "UdevPortRegistry.h"

#include <charconv>
#include <cstring>
#include <string_view>
#include <system_error>

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <libudev.h>

namespace kestrin {
namespace {

struct DeviceRelease {
    void operator()(udev_device* device) const noexcept { udev_device_unref(device); }
};
struct EnumerateRelease {
    void operator()(udev_enumerate* enumerate) const noexcept { udev_enumerate_unref(enumerate); }
};

using DevicePointer = std::unique_ptr<udev_device, DeviceRelease>;

std::optional<std::string> attribute(udev_device* device, const char* name) {
    const char* value = udev_device_get_sysattr_value(device, name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

// idVendor and idProduct are four hex digits without a prefix, such as "0403".
std::optional<int> hexAttribute(udev_device* device, const char* name) {
    const auto text = attribute(device, name);
    if (!text || text->empty()) {
        return std::nullopt;
    }
    int value = 0;
    const char* end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, value, 16);
    if (error != std::errc() || stop != end || value < 0) {
        return std::nullopt;
    }
    return value;
}

// Virtual terminals (consoles, ptmx, tty) hang under /sys/devices/virtual with no parent device.
bool sitsOnBus(udev_device* device) {
    udev_device* parent = udev_device_get_parent(device);
    return parent != nullptr && udev_device_get_subsystem(parent) != nullptr;
}

// The 8250 driver registers ttyS0... for UARTs it merely reserves; their type reads 0
// (PORT_UNKNOWN) until hardware is found, and opening them fails.
bool isReservedUart(udev_device* device) {
    const auto type = attribute(device, "type");
    return type && *type == "0";
}

class UdevDevice final : public PortRegistry::Device {
public:
    explicit UdevDevice(DevicePointer device)
        : device_(std::move(device)) {}

    std::optional<std::string> path() const override {
        const char* node = udev_device_get_devnode(device_.get());
        return node ? std::optional<std::string>(node) : std::nullopt;
    }

    PortRegistry::USBIdentity usbIdentity() const override {
        // Owned by device_, released with it.
        udev_device* usb =
            udev_device_get_parent_with_subsystem_devtype(device_.get(), "usb", "usb_device");
        if (usb == nullptr) {
            return {};
        }
        return {attribute(usb, "product"), hexAttribute(usb, "idVendor"),
                hexAttribute(usb, "idProduct"), attribute(usb, "serial")};
    }

    std::optional<std::string> byIdPath() const override {
        constexpr std::string_view byID = "/dev/serial/by-id/";
        udev_list_entry* link = nullptr;
        udev_list_entry_foreach(link, udev_device_get_devlinks_list_entry(device_.get())) {
            const std::string_view name = udev_list_entry_get_name(link);
            if (name.starts_with(byID)) {
                return std::string(name);
            }
        }
        return std::nullopt;
    }

private:
    DevicePointer device_;
};

} // namespace

void UdevPortRegistry::UdevRelease::operator()(udev* context) const noexcept {
    udev_unref(context);
}

void UdevPortRegistry::UdevRelease::operator()(udev_monitor* monitor) const noexcept {
    udev_monitor_unref(monitor);
}

UdevPortRegistry::UdevPortRegistry()
    : udev_(udev_new()) {}

UdevPortRegistry::~UdevPortRegistry() = default;

std::optional<std::vector<std::unique_ptr<PortRegistry::Device>>>
UdevPortRegistry::serialDevices() {
    if (!udev_) {
        return std::nullopt;
    }
    const std::unique_ptr<udev_enumerate, EnumerateRelease> enumerate(
        udev_enumerate_new(udev_.get()));
    if (!enumerate || udev_enumerate_add_match_subsystem(enumerate.get(), "tty") < 0 ||
        udev_enumerate_scan_devices(enumerate.get()) < 0) {
        return std::nullopt;
    }
    std::vector<std::unique_ptr<Device>> devices;
    udev_list_entry* entry = nullptr;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(enumerate.get())) {
        DevicePointer device(
            udev_device_new_from_syspath(udev_.get(), udev_list_entry_get_name(entry)));
        if (device && sitsOnBus(device.get()) && !isReservedUart(device.get())) {
            devices.push_back(std::make_unique<UdevDevice>(std::move(device)));
        }
    }
    return devices;
}

bool UdevPortRegistry::subscribe(std::function<void()> onChange) {
    if (monitor_) {
        onChange_ = std::move(onChange);
        return true;
    }
    if (!udev_ || QAbstractEventDispatcher::instance() == nullptr) {
        return false;
    }
    // The "udev" group hears of a device after udev has made its node and set its permissions.
    std::unique_ptr<udev_monitor, UdevRelease> monitor(
        udev_monitor_new_from_netlink(udev_.get(), "udev"));
    if (!monitor ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), "tty", nullptr) < 0 ||
        udev_monitor_enable_receiving(monitor.get()) < 0) {
        return false;
    }
    const int descriptor = udev_monitor_get_fd(monitor.get());
    if (descriptor < 0) {
        return false;
    }
    monitor_ = std::move(monitor);
    onChange_ = std::move(onChange);
    notifier_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { drainMonitor(); });
    return true;
}

void UdevPortRegistry::drainMonitor() {
    bool arrivedOrDeparted = false;
    while (const DevicePointer device{udev_monitor_receive_device(monitor_.get())}) {
        const char* action = udev_device_get_action(device.get());
        if (action != nullptr &&
            (std::strcmp(action, "add") == 0 || std::strcmp(action, "remove") == 0)) {
            arrivedOrDeparted = true;
        }
    }
    if (arrivedOrDeparted && onChange_) {
        onChange_();
    }
}

} // namespace kestrin
