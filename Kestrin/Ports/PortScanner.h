#pragma once

#include "PortRegistry.h"
#include "SerialPortInfo.h"

#include <chrono>
#include <memory>
#include <vector>

#include <QObject>

namespace kestrin {

// Watches the system's serial devices and delivers the complete, sorted port list whenever it
// may have changed: once on start, then at once and again after a settling delay on every
// arrival or departure, since a device's properties may settle a moment after it is reported.
// Keeps no list of its own: every delivery is a fresh enumeration.
// Thread contract: created, started and destroyed on the main thread, which also receives the
// notifications and the delayed delivery.
class PortScanner : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultSettleDelay{500};

    explicit PortScanner(std::unique_ptr<PortRegistry> registry = PortRegistry::system(),
                         std::chrono::milliseconds settleDelay = defaultSettleDelay,
                         QObject* parent = nullptr);
    ~PortScanner() override;

    // Subscribes to device changes and delivers the first list. When the registry cannot
    // notify, nothing is delivered and a later call tries again; once watching, does nothing.
    void start();
    bool isWatching() const noexcept { return watching_; }

    // A fresh enumeration, sorted; empty when the registry cannot be asked.
    std::vector<SerialPortInfo> currentPorts() const;

signals:
    void portsChanged(const std::vector<kestrin::SerialPortInfo>& ports);

private:
    void devicesChanged();

    std::unique_ptr<PortRegistry> registry_;
    std::chrono::milliseconds settleDelay_;
    bool watching_ = false;
};

} // namespace kestrin
