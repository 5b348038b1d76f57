#include "Ledger.h"

#include <cmath>

#include <nlohmann/json.hpp>

namespace kestrin {

namespace {
// To this many parts of the unit; dividing last keeps the text short (0.591759, not 0.5917589999).
double rounded(double value, double parts) {
    return std::round(value * parts) / parts;
}
} // namespace

std::string LedgerEntry::json() const {
    nlohmann::json object{
        {"time", rounded(seconds, 1e6)},   {"frame", frame},
        {"received", hexString(received)}, {"action", action},
        {"sent", hexString(sent)},
    };
    if (frame == "request" && received.size() >= 2) {
        object["unit"] = received[0];
        object["function"] = received[1];
    }
    if (exception) {
        object["exception"] = *exception;
    }
    if (fault) {
        object["fault"] = *fault;
    }
    if (reason) {
        object["reason"] = *reason;
    }
    if (delayMs) {
        object["delayMs"] = rounded(*delayMs, 1e3);
    }
    return object.dump();
}

void Ledger::record(const LedgerEntry& entry) {
    if (file_.isOpen()) {
        file_.append(entry.json());
    }
}

} // namespace kestrin
