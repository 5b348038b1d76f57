#pragma once

#include "Bytes.h"
#include "SerialConfiguration.h"
#include "SerialLink.h"
#include "WakeSignal.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace kestrin {

// A device played on the master side of a pseudo-terminal, for what the simulator cannot be made
// to do at a chosen request: answers that are late, garbled or from another unit, silence at the
// nth asking, a hang-up. Every request it reads is 8 bytes long (a read or a single write). It
// keeps the line open itself, so the master may close and reopen it between requests (as a
// settings sweep does) without the device seeing a hang-up.
class ScriptedDevice {
public:
    struct Request {
        Bytes frame;
        // Of all requests, from 1.
        int nth = 0;
        // Of the requests identical to this one, from 1.
        int repeat = 0;
    };
    struct Reply {
        // None: silence.
        Bytes bytes;
        // Before the bytes go out.
        std::chrono::milliseconds delay{0};
        // After the delay and the bytes, the device hangs up the line.
        bool hangUp = false;
    };
    using Script = std::function<Reply(const Request&)>;

    explicit ScriptedDevice(Script script);
    ~ScriptedDevice();
    ScriptedDevice(const ScriptedDevice&) = delete;
    ScriptedDevice& operator=(const ScriptedDevice&) = delete;

    const std::string& path() const { return path_; }
    // A link to the device, open.
    std::unique_ptr<SerialLink> link(const SerialConfiguration& serial = {}) const;
    std::size_t requests();

private:
    void serve();
    bool readRequest(Bytes& request) const;
    // False when the device is stopped first or the wait fails.
    bool wait(std::chrono::milliseconds delay) const;

    Script script_;
    int master_ = -1;
    int slave_ = -1;
    std::string path_;
    WakeSignal stop_;
    std::mutex mutex_;
    std::vector<Bytes> asked_;
    std::thread thread_;
};

// The answer of a device whose holding registers hold their own address and exist where present
// says: a read of any other is refused with exception 02, a single write is echoed.
Bytes registersAnswer(ByteView request, const std::function<bool(int address)>& present);

// The first address and the count a read request asks for.
int requestAddress(ByteView request);
int requestCount(ByteView request);

} // namespace kestrin
