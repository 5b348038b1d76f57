#pragma once

#include "Datapoint.h"
#include "Result.h"
#include "SerialConfiguration.h"

#include <memory>
#include <string>
#include <vector>

#include <QString>

class QProcess;

namespace kestrin {

// A kestrin-sim serving the example list on a pseudo-terminal, for trying the program without
// hardware. The simulator ends with this object, and on its own when this process ends.
class DemoDevice {
public:
    ~DemoDevice();
    DemoDevice(const DemoDevice&) = delete;
    DemoDevice& operator=(const DemoDevice&) = delete;

    // The simulator beside this program, else the build tree's, else the one on PATH; empty when
    // there is none.
    static QString findSimulator(const QString& programFolder);

    // The example list with the values the device serves: the measurements move, the run time
    // counts, the alarm comes and goes, and the set values start somewhere plausible and keep
    // what is written to them. The list the user sees is the example list unchanged.
    static std::vector<Datapoint> servedList();

    // Starts the simulator serving servedList() and waits for the path it announces on its
    // first line. It answers when a real device on a line with this frame would, so the times
    // shown are those of a real device.
    static Result<std::unique_ptr<DemoDevice>, std::string>
    start(const QString& simulator, const SerialConfiguration& serial);

    const std::string& path() const { return path_; }

private:
    DemoDevice(std::unique_ptr<QProcess> process, std::string path);

    std::unique_ptr<QProcess> process_;
    std::string path_;
};

} // namespace kestrin
