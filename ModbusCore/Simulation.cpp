#include "Simulation.h"

#include "JSONValue.h"

#include <nlohmann/json.hpp>

namespace kestrin {

namespace {
constexpr std::array<std::string_view, 6> rawValues{"none", "counter", "ramp",
                                                    "sine", "random",  "toggle"};
} // namespace

std::string_view Simulation::Kind::rawValue() const noexcept {
    return rawValues[case_];
}

std::optional<Simulation::Kind> Simulation::Kind::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return Kind(c);
        }
    }
    return std::nullopt;
}

nlohmann::json Simulation::json() const {
    nlohmann::json object = nlohmann::json::object();
    object["kind"] = std::string(kind.rawValue());
    object["minimum"] = JSONValue::number(minimum);
    object["maximum"] = JSONValue::number(maximum);
    object["period"] = JSONValue::number(period);
    return object;
}

Result<Simulation, JSONValue::Error> Simulation::fromJSON(const nlohmann::json& object) {
    if (!object.is_object()) {
        return JSONValue::Error(JSONValue::Error::Kind::expectedObject);
    }
    Simulation simulation;
    auto kind = JSONValue::required(JSONValue::enumeration<Kind>(object, "kind"), "kind");
    if (!kind.ok()) {
        return kind.error();
    }
    simulation.kind = kind.value();
    for (auto [key, field] :
         {std::pair{"minimum", &Simulation::minimum}, std::pair{"maximum", &Simulation::maximum},
          std::pair{"period", &Simulation::period}}) {
        auto number = JSONValue::required(JSONValue::number(object, key), key);
        if (!number.ok()) {
            return number.error();
        }
        simulation.*field = number.value();
    }
    return simulation;
}

} // namespace kestrin
