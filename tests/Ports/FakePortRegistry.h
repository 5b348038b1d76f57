#pragma once

#include "PortRegistry.h"

namespace kestrin {

// Devices and notifications under the test's control through a shared state, since the scanner
// owns its registry.
class FakePortRegistry final : public PortRegistry {
public:
    struct Entry {
        std::optional<std::string> path;
        USBIdentity usb;
        std::optional<std::string> byIdPath{};
    };
    struct State {
        // Absent: the registry cannot be asked.
        std::optional<std::vector<Entry>> entries = std::vector<Entry>{};
        bool channelFails = false;
        int subscriptions = 0;
        // An arrival or departure, as the event loop would report it.
        std::function<void()> notify;
    };

    explicit FakePortRegistry(std::shared_ptr<State> state)
        : state_(std::move(state)) {}

    std::optional<std::vector<std::unique_ptr<Device>>> serialDevices() override {
        if (!state_->entries) {
            return std::nullopt;
        }
        std::vector<std::unique_ptr<Device>> devices;
        for (const Entry& entry : *state_->entries) {
            devices.push_back(std::make_unique<FakeDevice>(entry));
        }
        return devices;
    }
    bool subscribe(std::function<void()> onChange) override {
        if (!state_->channelFails) {
            ++state_->subscriptions;
            state_->notify = std::move(onChange);
        }
        return !state_->channelFails;
    }

private:
    struct FakeDevice final : Device {
        explicit FakeDevice(Entry entry)
            : entry(std::move(entry)) {}
        std::optional<std::string> path() const override { return entry.path; }
        USBIdentity usbIdentity() const override { return entry.usb; }
        std::optional<std::string> byIdPath() const override { return entry.byIdPath; }
        Entry entry;
    };

    std::shared_ptr<State> state_;
};

} // namespace kestrin
