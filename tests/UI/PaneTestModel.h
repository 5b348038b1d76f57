#pragma once

#include "FakePortRegistry.h"
#include "PollerModel.h"
#include "PortScanner.h"

#include <memory>
#include <vector>

#include <QSettings>
#include <QTemporaryDir>

namespace kestrin::PaneTest {

// View preferences go to a folder of the test's own, never the user's settings.
inline void isolatePreferences() {
    static QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QSettings("Kestrin", "Kestrin").clear();
}

inline FakePortRegistry::Entry usbAdapter(const std::string& path) {
    FakePortRegistry::Entry entry;
    entry.path = path;
    entry.usb.vendorID = 0x0403;
    entry.usb.productID = 0x6001;
    entry.usb.productName = "FT232R USB UART";
    return entry;
}

inline Datapoint holdingRegister(std::string name, std::uint16_t address) {
    Datapoint point;
    point.name = std::move(name);
    point.setTable(RegisterTable::holdingRegister);
    point.address = address;
    return point;
}

// A model that reads nothing from disk, with the given ports present and one
// poll.
inline std::unique_ptr<PollerModel> model(std::vector<FakePortRegistry::Entry> ports, Poll poll) {
    isolatePreferences();
    auto registry = std::make_shared<FakePortRegistry::State>();
    registry->entries = std::move(ports);
    PollerModel::Environment environment;
    environment.scanner =
        std::make_unique<PortScanner>(std::make_unique<FakePortRegistry>(registry));
    PollerProject project;
    project.polls.push_back(std::move(poll));
    environment.project = std::move(project);
    environment.delays.resume = std::chrono::milliseconds(0);
    environment.delays.publication = std::chrono::milliseconds(0);
    return std::make_unique<PollerModel>(std::move(environment));
}

} // namespace kestrin::PaneTest
