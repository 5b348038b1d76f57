#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace kestrin::Testing {

// A pseudo-terminal nobody answers on: the engine runs, and every reading is the test's own.
class QuietTerminal {
public:
    QuietTerminal() = default;
    ~QuietTerminal() { ::close(master_); }
    QuietTerminal(const QuietTerminal&) = delete;
    QuietTerminal& operator=(const QuietTerminal&) = delete;
    // Empty when no terminal could be had.
    const std::string& path() const { return path_; }

private:
    int master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    std::string path_ =
        ::grantpt(master_) == 0 && ::unlockpt(master_) == 0 ? ::ptsname(master_) : "";
};

} // namespace kestrin::Testing
