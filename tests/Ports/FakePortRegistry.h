#pragma once

#include "PortRegistry.h"

#include <memory>

namespace kestrin {

// A registry whose devices and notifications the test controls through a shared state, since
// the scanner owns the registry itself.
class FakePortRegistry final : public PortRegistry {
public:
    struct Entry {
        std::optional<std::string> path;
        USBIdentity usb;
    };
    struct State {
        // Absent: the registry cannot be asked.
        std::optional<std::vector<Entry>> entries = std::vector<Entry>{};
        bool channelFails = false;
        int subscriptions = 0;
        std::function<void()> onChange;

        // An arrival or departure as the main thread's event loop would report it.
        void notify() const { onChange(); }
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
        if (state_->channelFails) {
            return false;
        }
        ++state_->subscriptions;
        state_->onChange = std::move(onChange);
        return true;
    }

private:
    class FakeDevice final : public Device {
    public:
        explicit FakeDevice(Entry entry)
            : entry_(std::move(entry)) {}
        std::optional<std::string> path() const override { return entry_.path; }
        USBIdentity usbIdentity() const override { return entry_.usb; }

    private:
        Entry entry_;
    };

    std::shared_ptr<State> state_;
};

} // namespace kestrin
