#pragma once

#include "JSONValue.h"
#include "Poll.h"
#include "Result.h"
#include "SerialConfiguration.h"
#include "WriteMode.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace kestrin {

// Everything the user sets up, in the form that is saved: the project file and the autosave.
// Encoding and decoding are pure so that the file store alone touches the disk.
struct PollerProject {
    static constexpr int currentVersion = 1;
    static constexpr int defaultTimeoutMs = 1000;
    // The time-out picker's choices; any other time-out read from a file becomes the default.
    static constexpr std::array allowedTimeoutsMs{100, 200, 500, 1000, 2000, 5000};

    int version = currentVersion;
    SerialConfiguration serial;
    int timeoutMs = defaultTimeoutMs;
    WriteMode writeMode = WriteMode::single;
    int maxGap = 0;
    std::vector<Poll> polls; // in tab order

    // The time-out itself when the picker offers it, else the default.
    static int allowedTimeout(double timeoutMs) noexcept;

    // Every key, version included.
    nlohmann::json json() const;
    // Pretty-printed with two spaces, keys sorted at every level, UTF-8 without a final newline.
    std::string encoded() const;

    // Absent or null keys take their defaults, "version" is never read and a time-out the
    // picker does not offer becomes the default; a value of the wrong type fails the whole
    // document at its key path. Polls and datapoints that repeat an id get fresh ones.
    static Result<PollerProject, JSONValue::Error> fromJSON(const nlohmann::json& object);
    static Result<PollerProject, JSONValue::Error> decode(std::string_view text);

    // What a user sees on the very first start: one poll with the example device, in the
    // current language, its first datapoint charted.
    static PollerProject firstRun();
    // An empty project that keeps the line settings of the current one: one empty poll.
    static PollerProject newProject(const PollerProject& current);

    friend bool operator==(const PollerProject&, const PollerProject&) = default;
};

} // namespace kestrin
