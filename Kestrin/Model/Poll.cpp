#include "Poll.h"

#include "JSONValue.h"

#include <limits>

#include <nlohmann/json.hpp>

namespace kestrin {

nlohmann::json Poll::json() const {
    nlohmann::json points = nlohmann::json::array();
    for (const Datapoint& datapoint : datapoints) {
        points.push_back(datapoint.json());
    }
    nlohmann::json plottedIDs = nlohmann::json::array();
    for (const Uuid& plottedID : plotted) {
        plottedIDs.push_back(plottedID.text());
    }
    nlohmann::json object = nlohmann::json::object();
    object["id"] = id.text();
    object["name"] = name;
    object["intervalMs"] = intervalMs;
    object["enabled"] = enabled;
    object["datapoints"] = std::move(points);
    object["plotted"] = std::move(plottedIDs);
    return object;
}

namespace {

Result<Uuid, JSONValue::Error> plottedID(const nlohmann::json& value) {
    std::optional<Uuid> parsed;
    if (value.is_string()) {
        parsed = Uuid::parse(value.get_ref<const std::string&>());
    }
    if (!parsed) {
        return JSONValue::Error(JSONValue::Error::Kind::expectedUUID);
    }
    return *parsed;
}

Result<Poll, JSONValue::Error> decodeLists(Poll poll, const nlohmann::json& object) {
    const auto datapoints = JSONValue::list(object, "datapoints");
    if (!datapoints) {
        return datapoints.error();
    }
    if (datapoints.value()) {
        auto decoded =
            JSONValue::elements<Datapoint>(**datapoints.value(), "datapoints", Datapoint::fromJSON);
        if (!decoded) {
            return decoded.error();
        }
        poll.datapoints = std::move(decoded).value();
    }
    const auto plotted = JSONValue::list(object, "plotted");
    if (!plotted) {
        return plotted.error();
    }
    if (plotted.value()) {
        auto decoded = JSONValue::elements<Uuid>(**plotted.value(), "plotted", plottedID);
        if (!decoded) {
            return decoded.error();
        }
        poll.plotted = std::set<Uuid>(decoded.value().begin(), decoded.value().end());
    }
    return poll;
}

} // namespace

Result<Poll, JSONValue::Error> Poll::fromJSON(const nlohmann::json& object) {
    if (!object.is_object()) {
        return JSONValue::Error(JSONValue::Error::Kind::expectedObject);
    }
    const auto id = JSONValue::uuid(object, "id");
    if (!id) {
        return id.error();
    }
    const auto name = JSONValue::string(object, "name");
    if (!name) {
        return name.error();
    }
    const auto interval =
        JSONValue::integer(object, "intervalMs", std::numeric_limits<std::int64_t>::min(),
                           std::numeric_limits<std::int64_t>::max());
    if (!interval) {
        return interval.error();
    }
    const auto enabled = JSONValue::boolean(object, "enabled");
    if (!enabled) {
        return enabled.error();
    }
    Poll poll;
    poll.id = id.value().value_or(poll.id);
    poll.name = name.value().value_or(std::string());
    poll.intervalMs = interval.value().value_or(defaultIntervalMs);
    poll.enabled = enabled.value().value_or(true);
    return decodeLists(std::move(poll), object);
}

} // namespace kestrin
