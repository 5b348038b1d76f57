#include "DatapointLabel.h"

#include "L10n.h"

namespace kestrin::DatapointLabel {

std::string name(const Datapoint& datapoint) {
    if (!datapoint.name.empty()) {
        return datapoint.name;
    }
    return L10n::Table::newName(datapoint.table(), datapoint.address);
}

std::string withUnit(const Datapoint& datapoint) {
    std::string label = name(datapoint);
    if (!datapoint.engineeringUnit.empty()) {
        label += " (" + datapoint.engineeringUnit + ")";
    }
    return label;
}

} // namespace kestrin::DatapointLabel
