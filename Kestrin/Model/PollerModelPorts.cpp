#include "PollerModel.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSettings>

// The ports the user can choose and read from: what discovery reports, and the test devices the
// program was given, listed while their path leads somewhere.
namespace kestrin {

namespace {

// The adapter of the selected port, kept beside its path.
constexpr auto identityGroup = "portIdentity";
constexpr auto vendorKey = "portIdentity/vendorID";
constexpr auto productKey = "portIdentity/productID";
constexpr auto serialNumberKey = "portIdentity/serialNumber";
constexpr auto byIdKey = "portIdentity/byIdPath";

std::optional<std::string> textPreference(const QSettings& settings, const char* key) {
    const QVariant value = settings.value(QLatin1String(key));
    return value.isValid() ? std::optional(value.toString().toStdString()) : std::nullopt;
}

// Follows links: a link to a pseudo-terminal that has closed leads nowhere.
bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

} // namespace

std::optional<PollerModel::StartObstacle> PollerModel::startObstacle() const {
    // A remembered port that is not plugged in cannot be opened; starting would only say so.
    const bool present = std::any_of(ports_.begin(), ports_.end(), [&](const SerialPortInfo& port) {
        return port.path == selectedPath_;
    });
    if (!present) {
        return StartObstacle::noPort;
    }
    if (portLent_) {
        return StartObstacle::portLent;
    }
    if (std::none_of(polls_.begin(), polls_.end(),
                     [](const Poll& poll) { return poll.enabled && !poll.datapoints.empty(); })) {
        return StartObstacle::nothingToRead;
    }
    return std::nullopt;
}

bool PollerModel::canStart() const {
    return !startObstacle();
}

bool PollerModel::isTestDevice(const std::string& path) const {
    return std::any_of(testDevices_.begin(), testDevices_.end(),
                       [&](const SerialPortInfo& port) { return port.path == path; });
}

void PollerModel::addTestDevice(const std::string& path, const std::string& name) {
    if (!isTestDevice(path)) {
        SerialPortInfo device;
        device.path = path;
        device.productName = name;
        testDevices_.push_back(std::move(device));
        watchTestDevice(path);
        publishPorts();
    }
    // Not stored: a pseudo-terminal's name means nothing at the next start. Neither is its
    // identity, which it only has when discovery lists the path too.
    const SerialPortInfo* listed = listedPort(path);
    portIdentity_ = listed != nullptr ? PortIdentity::of(*listed) : std::nullopt;
    if (path != selectedPath_) {
        selectedPath_ = path;
        emit selectedPathChanged();
    }
}

const SerialPortInfo* PollerModel::listedPort(const std::string& path) const {
    const auto found = std::find_if(ports_.begin(), ports_.end(),
                                    [&](const SerialPortInfo& port) { return port.path == path; });
    return found == ports_.end() ? nullptr : &*found;
}

void PollerModel::loadPortIdentity(const QSettings& settings) {
    bool hasVendor = false;
    bool hasProduct = false;
    const int vendor = settings.value(QLatin1String(vendorKey)).toInt(&hasVendor);
    const int product = settings.value(QLatin1String(productKey)).toInt(&hasProduct);
    if (hasVendor && hasProduct) {
        portIdentity_ = PortIdentity{vendor, product, textPreference(settings, serialNumberKey),
                                     textPreference(settings, byIdKey)};
    }
}

void PollerModel::storePortIdentity(std::optional<PortIdentity> identity) {
    portIdentity_ = std::move(identity);
    QSettings* settings = environment_.preferences.get();
    if (settings == nullptr) {
        return;
    }
    settings->remove(QLatin1String(identityGroup));
    if (!portIdentity_) {
        return;
    }
    settings->setValue(QLatin1String(vendorKey), portIdentity_->vendorID);
    settings->setValue(QLatin1String(productKey), portIdentity_->productID);
    if (portIdentity_->serialNumber) {
        settings->setValue(QLatin1String(serialNumberKey),
                           QString::fromStdString(*portIdentity_->serialNumber));
    }
    if (portIdentity_->byIdPath) {
        settings->setValue(QLatin1String(byIdKey),
                           QString::fromStdString(*portIdentity_->byIdPath));
    }
}

bool PollerModel::selectRememberedAdapter() {
    if (!portIdentity_) {
        return false;
    }
    // Without a serial number an adapter is told from an identical one only by when it came: one
    // that was plugged in all along, beside the lost one, is not the lost one come back.
    std::vector<SerialPortInfo> arrived;
    const bool lostWithoutSerial =
        state_ == PollerState::serialLost && !portIdentity_->serialNumber;
    if (lostWithoutSerial) {
        std::copy_if(
            ports_.begin(), ports_.end(), std::back_inserter(arrived),
            [&](const SerialPortInfo& port) { return !presentAtLoss_.contains(port.path); });
    }
    const SerialPortInfo* adapter = portIdentity_->findIn(lostWithoutSerial ? arrived : ports_);
    if (adapter == nullptr) {
        return false;
    }
    setSelectedPath(adapter->path);
    return true;
}

const SerialPortInfo* PollerModel::rememberedPortAtSelectedPath() const {
    const SerialPortInfo* listed = listedPort(selectedPath_);
    if (listed != nullptr && portIdentity_ && portIdentity_->isContradictedBy(*listed)) {
        return nullptr;
    }
    return listed;
}

// Discovery never announces a test device, so its folder is watched instead, and the folder its
// link points into: a simulator's link may outlive the terminal it led to.
void PollerModel::watchTestDevice(const std::string& path) {
    if (testDeviceFolders_ == nullptr) {
        testDeviceFolders_ = new QFileSystemWatcher(this);
        connect(testDeviceFolders_, &QFileSystemWatcher::directoryChanged, this,
                &PollerModel::publishPorts);
    }
    const QFileInfo device(QString::fromStdString(path));
    QStringList folders{device.absolutePath()};
    if (device.isSymLink()) {
        folders.append(QFileInfo(device.symLinkTarget()).absolutePath());
    }
    for (const QString& folder : folders) {
        if (!testDeviceFolders_->directories().contains(folder)) {
            testDeviceFolders_->addPath(folder);
        }
    }
}

void PollerModel::publishPorts() {
    std::vector<SerialPortInfo> listed;
    for (const SerialPortInfo& device : testDevices_) {
        if (!exists(device.path)) {
            continue;
        }
        // Discovery knows more of a device than the name it was given here.
        const auto scanned =
            std::find_if(scannedPorts_.begin(), scannedPorts_.end(),
                         [&](const SerialPortInfo& port) { return port.path == device.path; });
        listed.push_back(scanned != scannedPorts_.end() ? *scanned : device);
    }
    for (const SerialPortInfo& port : scannedPorts_) {
        if (!isTestDevice(port.path)) {
            listed.push_back(port);
        }
    }
    if (listed != ports_) {
        ports_ = std::move(listed);
        emit portListChanged();
    }
}

void PollerModel::portsChanged(const std::vector<SerialPortInfo>& list) {
    scannedPorts_ = list;
    publishPorts();

    const std::optional<std::set<std::string>> previous = std::move(knownPaths_);
    std::set<std::string> paths;
    for (const SerialPortInfo& port : ports_) {
        paths.insert(port.path);
    }
    knownPaths_ = paths;
    std::erase_if(presentAtLoss_, [&](const std::string& path) { return !paths.contains(path); });

    // A choice stored before identities were kept, or made before the port's USB facts had
    // settled, learns its adapter when it is listed. A known adapter is never replaced this way:
    // another adapter that now has its name (after both were replugged) is not the one chosen.
    const SerialPortInfo* selected = listedPort(selectedPath_);
    if (selected != nullptr && !portIdentity_ && !isTestDevice(selectedPath_)) {
        storePortIdentity(PortIdentity::of(*selected));
    }
    if (state_ == PollerState::serialLost &&
        (rememberedPortAtSelectedPath() != nullptr || selectRememberedAdapter())) {
        armResume();
    }
    // An engine that is opening the port counts as reading: its started line names the path.
    if (state_ == PollerState::stopped && !engine_) {
        chooseListedPort(previous);
    }
}

void PollerModel::chooseListedPort(const std::optional<std::set<std::string>>& previous) {
    const SerialPortInfo* selected = listedPort(selectedPath_);
    if (rememberedPortAtSelectedPath() == nullptr && selectRememberedAdapter()) {
        return;
    }
    if (previous) {
        for (const SerialPortInfo& port : ports_) {
            if (!port.isUSB() || previous->contains(port.path)) {
                continue;
            }
            // Someone who just plugged in an adapter wants to use it, unless they already have one.
            if (selected == nullptr || !selected->isUSB()) {
                setSelectedPath(port.path);
            }
            return;
        }
    }
    if (!ports_.empty() && selected == nullptr) {
        const auto adapter = std::find_if(ports_.begin(), ports_.end(),
                                          [](const SerialPortInfo& p) { return p.isUSB(); });
        if (adapter != ports_.end()) {
            setSelectedPath(adapter->path);
        }
    }
}

} // namespace kestrin
