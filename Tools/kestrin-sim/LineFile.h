#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace kestrin {

// A text file the simulator writes line by line, flushed after each line so that a reader sees
// every line at once and a stop by signal, or a kill, loses none that was written. Without a file
// it writes nothing. what names it in the messages on standard error ("the ledger").
class LineFile {
public:
    explicit LineFile(std::string what);
    ~LineFile();
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;

    // Truncates the file. False with errno set when it cannot be opened.
    bool open(const std::string& path);
    bool isOpen() const noexcept { return file_ != nullptr; }
    // The line and its line break; a failure is said once.
    void append(std::string_view line);

private:
    std::string what_;
    std::FILE* file_ = nullptr;
    bool failed_ = false;
};

} // namespace kestrin
