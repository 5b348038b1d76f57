#include "PortHolders.h"

#include "NumberText.h"
#include "Text.h"
#include "TextFileReader.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <system_error>
#include <vector>

namespace kestrin::PortHolders {

namespace fs = std::filesystem;

namespace {

using Holder = SerialLinkError::PortHolder;

// Calls visit with each entry of folder until it returns true; false when the folder cannot be
// listed. Never throws: processes end while /proc is read, and a failed step ends the listing
// instead (a range-for would throw from the iterator's increment).
template <typename Visit>
bool eachEntry(const fs::path& folder, Visit visit) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    if (error) {
        return false;
    }
    for (; entry != fs::directory_iterator(); entry.increment(error)) {
        if (error || visit(entry->path())) {
            break;
        }
    }
    return true;
}

std::vector<int> processIds(const SystemRoot& root) {
    std::vector<int> pids;
    eachEntry(root.at("/proc"), [&](const fs::path& entry) {
        const std::optional<std::uint64_t> pid =
            NumberText::unsignedInteger(entry.filename().string(), 10);
        if (pid && *pid > 0 && *pid <= INT32_MAX) {
            pids.push_back(static_cast<int>(*pid));
        }
        return false;
    });
    std::ranges::sort(pids);
    return pids;
}

std::string programOf(const SystemRoot& root, int pid) {
    const Result<std::string, int> comm =
        TextFileReader::read(root.at("/proc/" + std::to_string(pid) + "/comm").string());
    return comm ? std::string(Text::trimmed(comm.value())) : std::string();
}

// Whether one of the process's descriptors leads to device; absent when they cannot be listed.
std::optional<bool> opens(const SystemRoot& root, int pid, const fs::path& device) {
    bool found = false;
    const bool listed =
        eachEntry(root.at("/proc/" + std::to_string(pid) + "/fd"), [&](const fs::path& descriptor) {
            std::error_code error;
            const fs::path target = fs::read_symlink(descriptor, error);
            // The kernel shows the resolved node, so links need following only in fake trees and
            // for paths opened through /dev links; sockets and pipes are never followed.
            found = !error && (target == device || (target.string().starts_with("/dev/") &&
                                                    root.resolve(target.native()) == device));
            return found;
        });
    return listed ? std::optional(found) : std::nullopt;
}

// The process that holds a lock on the device, from /proc/locks, which every user may read:
// "1: FLOCK  ADVISORY  WRITE 812 00:19:3 0 EOF", the device as hexadecimal major and minor of its
// file system and the inode. Waiters ("1: -> FLOCK ...") hold nothing.
std::optional<int> lockingProcess(const SystemRoot& root, const fs::path& device, pid_t self) {
    struct stat node {};
    const Result<std::string, int> locks = TextFileReader::read(root.at("/proc/locks").string());
    if (!locks || ::stat(root.at(device.native()).c_str(), &node) != 0) {
        return std::nullopt;
    }
    std::istringstream lines(locks.value());
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string number, kind, advisory, mode, pid, file;
        words >> number >> kind >> advisory >> mode >> pid >> file;
        const std::size_t first = file.find(':');
        const std::size_t second = file.find(':', first == std::string::npos ? first : first + 1);
        if (kind == "->" || second == std::string::npos) {
            continue;
        }
        const auto process = NumberText::unsignedInteger(pid, 10);
        if (NumberText::unsignedInteger(file.substr(0, first), 16) == major(node.st_dev) &&
            NumberText::unsignedInteger(file.substr(first + 1, second - first - 1), 16) ==
                minor(node.st_dev) &&
            NumberText::unsignedInteger(file.substr(second + 1), 10) == node.st_ino && process &&
            *process <= INT32_MAX && static_cast<pid_t>(*process) != self) {
            return static_cast<int>(*process);
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<Holder> holder(std::string_view path, const SystemRoot& root, pid_t self) {
    const fs::path device = root.resolve(path);
    if (device.empty()) {
        return std::nullopt;
    }
    // Among the programs that have the port open, the one with the lock is the one in the way.
    if (const std::optional<int> pid = lockingProcess(root, device, self)) {
        return Holder{programOf(root, *pid), *pid};
    }
    std::optional<Holder> hiddenModemManager;
    for (const int pid : processIds(root)) {
        if (pid == self) {
            continue;
        }
        const std::optional<bool> holds = opens(root, pid, device);
        if (holds.value_or(false)) {
            return Holder{programOf(root, pid), pid};
        }
        if (!holds && !hiddenModemManager && programOf(root, pid) == "ModemManager") {
            hiddenModemManager = Holder{"ModemManager", pid, true};
        }
    }
    return hiddenModemManager;
}

bool brlttyInstalled(const SystemRoot& root) {
    std::error_code error;
    for (const char* program : {"/usr/bin/brltty", "/bin/brltty", "/usr/sbin/brltty"}) {
        if (fs::exists(root.located(program), error)) {
            return true;
        }
    }
    // Distributions that split the package may ship only the rules that claim the adapters.
    bool found = false;
    for (const char* rules : {"/usr/lib/udev/rules.d", "/lib/udev/rules.d", "/etc/udev/rules.d"}) {
        eachEntry(root.located(rules), [&](const fs::path& entry) {
            found = found || entry.filename().string().find("brltty") != std::string::npos;
            return found;
        });
    }
    return found;
}

} // namespace kestrin::PortHolders
