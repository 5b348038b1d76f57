#pragma once

#include "Bytes.h"
#include "LineFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin {

// What the simulator received and what it did with it, one JSON object per line, so that a test
// can check afterwards which faults it met. Keys: "time" (seconds since start), "frame"
// ("request", "response" or "garbage"), "received" and "sent" (hex bytes), "action", and where
// they apply "unit", "function", "exception", "fault", "delayMs" and "reason".
struct LedgerEntry {
    double seconds = 0;
    std::string_view frame; // how the splitter classified the bytes
    Bytes received;
    // "answered", "exception", "broadcast" (applied, no answer), "silent" (a unit not served),
    // "ignored" (an answer of another device, or a request that came while an answer was held
    // back, with its reason) or "discarded" (garbage).
    std::string_view action;
    std::optional<std::string_view> reason; // why a request was ignored
    Bytes sent;                             // what went out, after any fault
    std::optional<std::uint8_t> exception;
    std::optional<std::string_view> fault;
    std::optional<double> delayMs; // how long after the request the answer is due

    // The entry as one line of JSON, without the line break.
    std::string json() const;
};

// Appends entries to a file, flushed line by line so that a reader sees every request at once.
// Without a file it records nothing.
class Ledger {
public:
    // Truncates the file. False with errno set when it cannot be opened.
    bool open(const std::string& path) { return file_.open(path); }
    void record(const LedgerEntry& entry);

private:
    LineFile file_{"the ledger"};
};

} // namespace kestrin
