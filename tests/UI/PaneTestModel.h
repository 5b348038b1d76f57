#pragma once

#include "Model/ModelBuilders.h"

#include <memory>
#include <vector>

#include <QSettings>

namespace kestrin::PaneTest {

using namespace std::chrono_literals;
using Testing::holding;

inline FakePortRegistry::Entry usbAdapter(const std::string& path) {
    FakePortRegistry::Entry entry;
    entry.path = path;
    entry.usb.vendorID = 0x0403;
    entry.usb.productID = 0x6001;
    entry.usb.productName = "FT232R USB UART";
    return entry;
}

// A model that reads nothing from disk, with the given ports present and one poll, and views that
// start from their default preferences. Recorded samples are published on the next turn of the
// event loop, so a view shows them at once.
inline std::unique_ptr<PollerModel> model(std::vector<FakePortRegistry::Entry> ports, Poll poll) {
    QSettings("Kestrin", "Kestrin").clear();
    auto registry = std::make_shared<FakePortRegistry::State>();
    registry->entries = std::move(ports);
    PollerModel::Environment environment = Testing::environment(std::move(registry));
    environment.project = Testing::project({std::move(poll)});
    environment.delays.resume = 0ms;
    environment.delays.publication = 0ms;
    return std::make_unique<PollerModel>(std::move(environment));
}

} // namespace kestrin::PaneTest
