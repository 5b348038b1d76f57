#include "PollerProject.h"

#include "ExampleList.h"
#include "JSONPath.h"
#include "JSONValue.h"
#include "L10n.h"

#include <algorithm>
#include <limits>

#include <nlohmann/json.hpp>

namespace kestrin {

int PollerProject::allowedTimeout(double timeoutMs) noexcept {
    const auto* found = std::find_if(allowedTimeoutsMs.begin(), allowedTimeoutsMs.end(),
                                     [&](int allowed) { return allowed == timeoutMs; });
    return found == allowedTimeoutsMs.end() ? defaultTimeoutMs : *found;
}

nlohmann::json PollerProject::json() const {
    nlohmann::json pollObjects = nlohmann::json::array();
    for (const Poll& poll : polls) {
        pollObjects.push_back(poll.json());
    }
    nlohmann::json object = nlohmann::json::object();
    object["version"] = version;
    object["serial"] = serial.json();
    object["timeoutMs"] = timeoutMs;
    object["writeMode"] = std::string(writeMode.rawValue());
    object["maxGap"] = maxGap;
    object["polls"] = std::move(pollObjects);
    return object;
}

std::string PollerProject::encoded() const {
    // nlohmann's objects are std::maps, so every level comes out sorted by key; text that is not
    // UTF-8 is replaced rather than thrown on, since a save must never fail on a name.
    return json().dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
}

namespace {

Result<PollerProject, std::string> decodeObject(const nlohmann::json& object) {
    if (!object.is_object()) {
        return std::string("expected an object");
    }
    PollerProject project;
    if (auto found = object.find("serial"); found != object.end()) {
        if (!found->is_object()) {
            return std::string("serial: expected an object");
        }
        auto serial = SerialConfiguration::fromJSON(*found);
        if (!serial) {
            return JSONPath::nested("serial", serial.error());
        }
        project.serial = serial.value();
    }
    if (auto found = object.find("timeoutMs"); found != object.end()) {
        if (!found->is_number()) {
            return std::string("timeoutMs: expected a number");
        }
        project.timeoutMs = PollerProject::allowedTimeout(found->get<double>());
    }
    auto writeMode = JSONValue::string(object, "writeMode");
    if (!writeMode) {
        return writeMode.error();
    }
    if (writeMode.value()) {
        auto mode = WriteMode::fromRawValue(*writeMode.value());
        if (!mode) {
            return "writeMode: unknown value \"" + *writeMode.value() + "\"";
        }
        project.writeMode = *mode;
    }
    auto maxGap = JSONValue::integer(object, "maxGap", std::numeric_limits<int>::min(),
                                     std::numeric_limits<int>::max());
    if (!maxGap) {
        return maxGap.error();
    }
    project.maxGap = static_cast<int>(maxGap.value().value_or(0));
    if (auto found = object.find("polls"); found != object.end()) {
        if (!found->is_array()) {
            return std::string("polls: expected an array");
        }
        for (std::size_t index = 0; index < found->size(); ++index) {
            auto poll = Poll::fromJSON((*found)[index]);
            if (!poll) {
                return JSONPath::nested("polls[" + std::to_string(index) + "]", poll.error());
            }
            project.polls.push_back(std::move(poll).value());
        }
    }
    return project;
}

} // namespace

Result<PollerProject, std::string> PollerProject::fromJSON(const nlohmann::json& object) {
    try {
        return decodeObject(object);
    } catch (const nlohmann::json::exception& error) {
        return std::string(error.what());
    }
}

Result<PollerProject, std::string> PollerProject::decode(std::string_view text) {
    const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    if (document.is_discarded()) {
        return std::string("not a JSON document");
    }
    return fromJSON(document);
}

PollerProject PollerProject::firstRun() {
    Poll example;
    example.name = L10n::Example::pollName();
    example.intervalMs = ExampleList::intervalMs;
    example.datapoints = ExampleList::datapoints();
    example.plotted.insert(example.datapoints.front().id);
    PollerProject project;
    project.polls.push_back(std::move(example));
    return project;
}

PollerProject PollerProject::newProject(const PollerProject& current) {
    PollerProject project;
    project.serial = current.serial;
    project.timeoutMs = current.timeoutMs;
    project.writeMode = current.writeMode;
    project.maxGap = current.maxGap;
    Poll poll;
    poll.name = L10n::Polls::newName(1);
    project.polls.push_back(std::move(poll));
    return project;
}

} // namespace kestrin
