#include "PollerModel.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <QFileInfo>
#include <QFileSystemWatcher>

// The ports the user can choose and read from: what discovery reports, and the test devices the
// program was given, listed while their path leads somewhere.
namespace kestrin {

namespace {

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
    // Not stored: a pseudo-terminal's name means nothing at the next start.
    if (path != selectedPath_) {
        selectedPath_ = path;
        emit selectedPathChanged();
    }
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
        if (exists(device.path)) {
            listed.push_back(device);
        }
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

    if (state_ == PollerState::serialLost && paths.contains(selectedPath_)) {
        armResume();
    }
    // An engine that is opening the port counts as reading: its started line names the path.
    if (state_ != PollerState::stopped || engine_) {
        return;
    }

    const auto selected = std::find_if(ports_.begin(), ports_.end(), [&](const SerialPortInfo& p) {
        return p.path == selectedPath_;
    });
    if (previous) {
        for (const SerialPortInfo& port : ports_) {
            if (!port.isUSB() || previous->contains(port.path)) {
                continue;
            }
            // Someone who just plugged in an adapter wants to use it, unless they already have one.
            if (selected == ports_.end() || !selected->isUSB()) {
                setSelectedPath(port.path);
            }
            return;
        }
    }
    if (!ports_.empty() && selected == ports_.end()) {
        const auto adapter = std::find_if(ports_.begin(), ports_.end(),
                                          [](const SerialPortInfo& p) { return p.isUSB(); });
        if (adapter != ports_.end()) {
            setSelectedPath(adapter->path);
        }
    }
}

} // namespace kestrin
