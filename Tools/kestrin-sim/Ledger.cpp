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
    if (delayMs) {
        object["delayMs"] = rounded(*delayMs, 1e3);
    }
    return object.dump();
}

Ledger::~Ledger() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
}

bool Ledger::open(const std::string& path) {
    file_ = std::fopen(path.c_str(), "we");
    return file_ != nullptr;
}

void Ledger::record(const LedgerEntry& entry) {
    if (file_ == nullptr) {
        return;
    }
    const std::string line = entry.json();
    std::fputs(line.c_str(), file_);
    std::fputc('\n', file_);
    std::fflush(file_);
}

} // namespace kestrin
