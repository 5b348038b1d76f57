#include "RegisterMapReport.h"

#include "CSVDialect.h"
#include "DatapointCSV.h"
#include "JsonLines.h"
#include "L10n.h"

#include <array>
#include <string>

#if KESTRIN_HAS_POLL
#include "TextFile.h"

#include <QFile>
#endif

namespace kestrin::RegisterMapReport {

namespace {

// By table, in case order.
constexpr std::array tableWordsByCase{"coils", "discrete inputs", "holding registers",
                                      "input registers"};
constexpr std::array tableWord{"coil", "discrete input", "holding register", "input register"};

std::string tableText(const TableMap& table) {
    const std::string words(tableWords(table.table));
    if (!table.supported) {
        return words + " refused (exception 01)";
    }
    if (table.ranges.empty()) {
        // Too busy to read is not absent: the busy sentence counts what is unknown.
        return table.unknown.empty() ? "no " + words : words + " unknown";
    }
    const int count = table.addressCount();
    const std::string counted =
        count == 1 ? tableWord[static_cast<std::size_t>(table.table)] : words;
    return std::to_string(count) + " " + counted + " (" + rangesText(table.ranges, "-") + ")";
}

// The bit limit only where a device imposed one: 2000 bits is the protocol's own.
std::string limitsText(const RegisterMap& map) {
    std::string text = "largest read " + std::to_string(map.largestRegisterRead) + " registers";
    if (map.largestBitRead < FunctionCode::maxReadBits) {
        text += ", " + std::to_string(map.largestBitRead) + " bits";
    }
    return text;
}

nlohmann::json rangesJson(const std::vector<Datapoint::AddressRange>& ranges) {
    nlohmann::json list = nlohmann::json::array();
    for (const Datapoint::AddressRange& range : ranges) {
        list.push_back({range.first, range.last});
    }
    return list;
}

void printJson(const RegisterMap& map, std::ostream& out) {
    for (const TableMap& table : map.tables) {
        nlohmann::json line{{"unit", map.unit},
                            {"table", std::string(table.table.code())},
                            {"supported", table.supported},
                            {"count", table.addressCount()},
                            {"ranges", rangesJson(table.ranges)}};
        // Only where the device was busy, so that a plain map reads as it always did.
        if (!table.unknown.empty()) {
            line["unknown"] = rangesJson(table.unknown);
        }
        JsonLines::print(line, out);
    }
    JsonLines::print({{"unit", map.unit},
                      {"largestRegisterRead", map.largestRegisterRead},
                      {"largestBitRead", map.largestBitRead},
                      {"requests", map.requests},
                      {"complete", map.complete},
                      {"fellSilent", map.fellSilent}},
                     out);
}

Result<void, std::string> writeCsv(const RegisterMap& map, const std::string& path) {
    const auto datapoints = mappedDatapoints(map);
    const std::string text = DatapointCSV::exportText(datapoints, CSVDialect::current());
#if KESTRIN_HAS_POLL
    if (auto written = TextFile::write(QFile::decodeName(path.c_str()), text); !written) {
        return L10n::texts().errors.saveFailed(written.error());
    }
    return {};
#else
    // The one atomic writer lives with the application's model; a build without it has no
    // way to replace a file whole or not at all, and a half-written list would import wrong.
    (void)path;
    (void)text;
    return L10n::texts().scan.csvNeedsQt();
#endif
}

} // namespace

std::string_view tableWords(RegisterTable table) {
    return tableWordsByCase[static_cast<std::size_t>(table)];
}

std::string summary(const RegisterMap& map) {
    std::string tables;
    for (const TableMap& table : map.tables) {
        tables += (tables.empty() ? "" : ", ") + tableText(table);
    }
    return "Unit " + std::to_string(map.unit) + ": " + tables + "; " + limitsText(map) +
           (map.busy() ? "; the device was busy, " + std::to_string(map.unknownCount()) +
                             " addresses unknown"
                       : "") +
           (map.complete ? "" : "; stopped before the end") +
           (map.fellSilent ? ": the unit stopped answering" : "");
}

ExitCode print(const RegisterMap& map, bool json, const std::optional<std::string>& csv,
               std::ostream& out, std::ostream& err) {
    // A device busy throughout still proved it is there: what is unknown is the result.
    if (!map.answered || !(map.found() || map.busy())) {
        err << (map.answered ? L10n::texts().scan.noAddressFound()
                             : L10n::texts().scan.noUnitAnswered())
            << '\n';
        return ExitCode::requestFailed;
    }
    if (json) {
        printJson(map, out);
    } else {
        out << summary(map) << '\n';
    }
    if (csv) {
        if (auto written = writeCsv(map, *csv); !written) {
            err << written.error() << '\n';
            return ExitCode::requestFailed;
        }
    }
    return ExitCode::success;
}

} // namespace kestrin::RegisterMapReport
