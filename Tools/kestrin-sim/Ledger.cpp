#include "Ledger.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

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

Ledger::~Ledger() {
    if (file_ != nullptr && std::fclose(file_) != 0) {
        std::fputs("kestrin-sim: the ledger could not be completed\n", stderr);
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
    // Flushed per line so a test can read it while the device runs; a full disk is said once.
    if (std::fflush(file_) != 0 && !flushFailed_) {
        flushFailed_ = true;
        std::fprintf(stderr, "kestrin-sim: writing the ledger failed: %s\n", std::strerror(errno));
    }
}

} // namespace kestrin
