#include "PollerProject.h"

#include "ExampleList.h"
#include "JSONValue.h"
#include "L10n.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <set>

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

// A new id that none of the others has, recorded among them.
Uuid freshID(std::set<Uuid>& taken) {
    Uuid id = Uuid::random();
    while (!taken.insert(id).second) {
        id = Uuid::random();
    }
    return id;
}

// Files written by hand or by other programs may repeat ids. The model keys statuses, history
// and the chart by id and finds polls by id, so a repeat would show one datapoint's values under
// another and leave a poll unread. The first holder keeps the id; a chart entry of the poll that
// held the repeat follows the renamed datapoint.
void renewRepeatedIDs(std::vector<Poll>& polls) {
    std::set<Uuid> pollIDs;
    std::set<Uuid> datapointIDs;
    for (Poll& poll : polls) {
        if (!pollIDs.insert(poll.id).second) {
            poll.id = freshID(pollIDs);
        }
        std::map<Uuid, Uuid> renewed;
        for (Datapoint& datapoint : poll.datapoints) {
            if (!datapointIDs.insert(datapoint.id).second) {
                const Uuid repeated = datapoint.id;
                datapoint.id = freshID(datapointIDs);
                renewed.emplace(repeated, datapoint.id);
            }
        }
        for (const auto& [repeated, fresh] : renewed) {
            const bool keptHere = std::ranges::find(poll.datapoints, repeated, &Datapoint::id) !=
                                  poll.datapoints.end();
            if (!keptHere && poll.plotted.erase(repeated) != 0) {
                poll.plotted.insert(fresh);
            }
        }
    }
}

Result<std::vector<Poll>, JSONValue::Error> decodePolls(const nlohmann::json& object) {
    const auto list = JSONValue::list(object, "polls");
    if (!list) {
        return list.error();
    }
    if (!list.value()) {
        return std::vector<Poll>();
    }
    auto polls = JSONValue::elements<Poll>(**list.value(), "polls", Poll::fromJSON);
    if (polls) {
        renewRepeatedIDs(polls.value());
    }
    return polls;
}

// The keys besides the polls, each read into the project as it stands.
std::optional<JSONValue::Error> decodeSettings(const nlohmann::json& object,
                                               PollerProject& project) {
    const auto serial = JSONValue::object(object, "serial");
    if (!serial) {
        return serial.error();
    }
    if (serial.value()) {
        auto decoded = SerialConfiguration::fromJSON(**serial.value());
        if (!decoded) {
            return JSONValue::Error(decoded.error()).inside("serial");
        }
        project.serial = decoded.value();
    }
    const auto timeout = JSONValue::finiteNumber(object, "timeoutMs");
    if (!timeout) {
        return timeout.error();
    }
    project.timeoutMs =
        PollerProject::allowedTimeout(timeout.value().value_or(PollerProject::defaultTimeoutMs));
    const auto writeMode = JSONValue::enumeration<WriteMode>(object, "writeMode");
    if (!writeMode) {
        return writeMode.error();
    }
    project.writeMode = writeMode.value().value_or(WriteMode::single);
    const auto maxGap = JSONValue::integer(object, "maxGap", std::numeric_limits<int>::min(),
                                           std::numeric_limits<int>::max());
    if (!maxGap) {
        return maxGap.error();
    }
    project.maxGap = static_cast<int>(maxGap.value().value_or(0));
    return std::nullopt;
}

} // namespace

Result<PollerProject, JSONValue::Error> PollerProject::fromJSON(const nlohmann::json& object) {
    if (!object.is_object()) {
        return JSONValue::Error(JSONValue::Error::Kind::expectedObject);
    }
    PollerProject project;
    if (auto error = decodeSettings(object, project)) {
        return *error;
    }
    auto polls = decodePolls(object);
    if (!polls) {
        return polls.error();
    }
    project.polls = std::move(polls).value();
    return project;
}

Result<PollerProject, JSONValue::Error> PollerProject::decode(std::string_view text) {
    const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    if (document.is_discarded()) {
        return JSONValue::Error(JSONValue::Error::Kind::notJSON);
    }
    return fromJSON(document);
}

PollerProject PollerProject::firstRun() {
    Poll example;
    example.name = L10n::texts().example.pollName();
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
    poll.name = L10n::texts().polls.newName(1);
    project.polls.push_back(std::move(poll));
    return project;
}

} // namespace kestrin
