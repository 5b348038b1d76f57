// PollerProject::decode. Input: the bytes of a project file the user opens.
#include "L10n.h"
#include "PollerProject.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <string_view>

using namespace kestrin;

namespace {

// What the model relies on once a project is loaded: ids it can key statuses and polls by, the
// bit-table invariant, scales it can compute with and a time-out the picker offers.
bool usable(const PollerProject& project) {
    std::set<Uuid> pollIDs;
    std::set<Uuid> datapointIDs;
    for (const Poll& poll : project.polls) {
        if (!pollIDs.insert(poll.id).second) {
            return false;
        }
        for (const Datapoint& point : poll.datapoints) {
            if (!datapointIDs.insert(point.id).second ||
                (point.table().isBit() && point.dataType != DataType::boolean) ||
                !std::isfinite(point.scale)) {
                return false;
            }
        }
    }
    return std::ranges::find(PollerProject::allowedTimeoutsMs, project.timeoutMs) !=
           PollerProject::allowedTimeoutsMs.end();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto decoded =
        PollerProject::decode(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!decoded) {
        if (L10n::Errors::describe(decoded.error()).empty()) {
            std::abort();
        }
        return 0;
    }
    if (!usable(decoded.value())) {
        std::abort();
    }
    // Saving and opening again gives the same file: nothing is lost or changed on the way.
    const std::string saved = decoded.value().encoded();
    const auto reopened = PollerProject::decode(saved);
    if (!reopened || reopened.value().encoded() != saved) {
        std::abort();
    }
    return 0;
}
