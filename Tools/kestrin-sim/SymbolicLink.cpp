#include "SymbolicLink.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kestrin {

namespace {

std::string linkTarget(const std::string& path) {
    std::array<char, 4096> buffer{};
    const ssize_t length = readlink(path.c_str(), buffer.data(), buffer.size() - 1);
    return length < 0 ? std::string()
                      : std::string(buffer.data(), static_cast<std::size_t>(length));
}

} // namespace

SymbolicLink::SymbolicLink(std::string path, std::string target)
    : path_(std::move(path))
    , target_(std::move(target)) {}

SymbolicLink::SymbolicLink(SymbolicLink&& other) noexcept
    : path_(std::exchange(other.path_, std::string()))
    , target_(std::move(other.target_)) {}

SymbolicLink::~SymbolicLink() {
    if (!path_.empty() && linkTarget(path_) == target_) {
        unlink(path_.c_str());
    }
}

Result<SymbolicLink, std::string> SymbolicLink::create(const std::string& path,
                                                       const std::string& target) {
    struct stat status {};
    if (lstat(path.c_str(), &status) == 0) {
        if (!S_ISLNK(status.st_mode)) {
            return path + " exists and is not a symbolic link";
        }
        unlink(path.c_str());
    }
    if (symlink(target.c_str(), path.c_str()) != 0) {
        return "cannot create the link " + path + ": " + std::strerror(errno);
    }
    return SymbolicLink(path, target);
}

} // namespace kestrin
