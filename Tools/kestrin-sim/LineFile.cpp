#include "LineFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

namespace kestrin {

LineFile::LineFile(std::string what)
    : what_(std::move(what)) {}

LineFile::~LineFile() {
    if (file_ != nullptr && std::fclose(file_) != 0) {
        std::fprintf(stderr, "kestrin-sim: %s could not be completed\n", what_.c_str());
    }
}

bool LineFile::open(const std::string& path) {
    file_ = std::fopen(path.c_str(), "we");
    return file_ != nullptr;
}

void LineFile::append(std::string_view line) {
    if (file_ == nullptr) {
        return;
    }
    const bool buffered = std::fwrite(line.data(), 1, line.size(), file_) == line.size() &&
                          std::fputc('\n', file_) != EOF;
    // A full disk is said once, not at every line.
    if ((!buffered || std::fflush(file_) != 0) && !failed_) {
        failed_ = true;
        std::fprintf(stderr, "kestrin-sim: writing %s failed: %s\n", what_.c_str(),
                     std::strerror(errno));
    }
}

} // namespace kestrin
