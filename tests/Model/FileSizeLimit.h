#pragma once

#include <csignal>
#include <sys/resource.h>

namespace kestrin::Testing {

// A file-size limit for this process while the object lives: writes past it fail with EFBIG,
// half-way through a file, which permissions cannot do for a test that runs as root.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : previousHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &original_);
        rlimit limited = original_;
        limited.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &original_);
        std::signal(SIGXFSZ, previousHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*previousHandler_)(int);
    rlimit original_{};
};

} // namespace kestrin::Testing
