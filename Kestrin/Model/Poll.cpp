#include "Poll.h"

#include "JSONPath.h"
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

std::optional<Uuid> parseID(const nlohmann::json& value) {
    if (!value.is_string()) {
        return std::nullopt;
    }
    return Uuid::parse(value.get_ref<const std::string&>());
}

Result<Poll, std::string> decode(const nlohmann::json& object) {
    if (!object.is_object()) {
        return std::string("expected an object");
    }
    Poll poll;
    if (auto found = object.find("id"); found != object.end()) {
        auto id = parseID(*found);
        if (!id) {
            return std::string("id: expected a UUID");
        }
        poll.id = *id;
    }
    auto name = JSONValue::string(object, "name");
    if (!name) {
        return name.error();
    }
    poll.name = name.value().value_or(std::string());
    auto interval =
        JSONValue::integer(object, "intervalMs", std::numeric_limits<std::int64_t>::min(),
                           std::numeric_limits<std::int64_t>::max());
    if (!interval) {
        return interval.error();
    }
    poll.intervalMs = interval.value().value_or(Poll::defaultIntervalMs);
    if (auto found = object.find("enabled"); found != object.end()) {
        if (!found->is_boolean()) {
            return std::string("enabled: expected a boolean");
        }
        poll.enabled = found->get<bool>();
    }
    if (auto found = object.find("datapoints"); found != object.end()) {
        if (!found->is_array()) {
            return std::string("datapoints: expected an array");
        }
        for (std::size_t index = 0; index < found->size(); ++index) {
            auto datapoint = Datapoint::fromJSON((*found)[index]);
            if (!datapoint) {
                return JSONPath::nested("datapoints[" + std::to_string(index) + "]",
                                        datapoint.error());
            }
            poll.datapoints.push_back(std::move(datapoint).value());
        }
    }
    if (auto found = object.find("plotted"); found != object.end()) {
        if (!found->is_array()) {
            return std::string("plotted: expected an array");
        }
        for (std::size_t index = 0; index < found->size(); ++index) {
            auto id = parseID((*found)[index]);
            if (!id) {
                return "plotted[" + std::to_string(index) + "]: expected a UUID";
            }
            poll.plotted.insert(*id);
        }
    }
    return poll;
}

} // namespace

Result<Poll, std::string> Poll::fromJSON(const nlohmann::json& object) {
    try {
        return decode(object);
    } catch (const nlohmann::json::exception& error) {
        return std::string(error.what());
    }
}

} // namespace kestrin
