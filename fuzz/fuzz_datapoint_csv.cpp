// DatapointCSV::parse. Input: the text of a file the user imports.
#include "DatapointCSV.h"

#include <cmath>
#include <cstdlib>
#include <string_view>

using namespace kestrin;

namespace {

bool sameNumber(const Value& a, const Value& b) {
    return a == b || (std::isnan(a.toDouble()) && std::isnan(b.toDouble()));
}

// Everything the CSV carries: ids and simulations are not in it, the word order of a
// one-register type is left out, and NaN reads back as NaN.
bool sameRow(const Datapoint& a, const Datapoint& b) {
    return a.name == b.name && a.unitID == b.unitID && a.table() == b.table() &&
           a.address == b.address && a.dataType == b.dataType &&
           (!a.dataType.usesWordOrder() || a.wordOrder == b.wordOrder) && a.scale == b.scale &&
           a.engineeringUnit == b.engineeringUnit && a.format == b.format &&
           sameNumber(a.value, b.value) && a.notes == b.notes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const DatapointCSV::ImportResult imported = DatapointCSV::parse(text);
    int previousLine = 1;
    for (const DatapointCSV::ImportIssue& issue : imported.issues) {
        if (issue.line < previousLine) {
            std::abort();
        }
        previousLine = issue.line;
    }
    // What was imported is usable as it stands: a valid unit, a type its table allows, and a
    // scale that shown values can be computed with.
    for (const Datapoint& point : imported.datapoints) {
        if (point.unitID < 1 || point.unitID > 247 || !point.dataType.isAllowed(point.table()) ||
            point.scale == 0 || !std::isfinite(point.scale) || point.decimals() < 0 ||
            point.decimals() > 6) {
            std::abort();
        }
    }
    // An exported list imports back to the same rows, in either dialect.
    for (const CSVDialect dialect : {CSVDialect{',', false}, CSVDialect{';', true}}) {
        const auto again =
            DatapointCSV::parse(DatapointCSV::exportText(imported.datapoints, dialect));
        if (!again.issues.empty() || again.datapoints.size() != imported.datapoints.size()) {
            std::abort();
        }
        for (std::size_t i = 0; i < again.datapoints.size(); ++i) {
            if (!sameRow(again.datapoints[i], imported.datapoints[i])) {
                std::abort();
            }
        }
    }
    return 0;
}
