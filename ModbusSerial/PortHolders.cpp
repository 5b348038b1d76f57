#include "PortHolders.h"

#include "NumberText.h"
#include "Text.h"
#include "TextFileReader.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace kestrin::PortHolders {

namespace fs = std::filesystem;

namespace {

using Holder = SerialLinkError::PortHolder;

std::vector<int> processIds(const SystemRoot& root) {
    std::vector<int> pids;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(root.at("/proc"), error)) {
        const std::optional<std::uint64_t> pid =
            NumberText::unsignedInteger(entry.path().filename().string(), 10);
        if (pid && *pid > 0 && *pid <= INT32_MAX) {
            pids.push_back(static_cast<int>(*pid));
        }
    }
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
    std::error_code error;
    fs::directory_iterator descriptors(root.at("/proc/" + std::to_string(pid) + "/fd"), error);
    if (error) {
        return std::nullopt;
    }
    for (const fs::directory_entry& descriptor : descriptors) {
        const fs::path target = fs::read_symlink(descriptor.path(), error);
        // The kernel shows the resolved node, so links need following only in fake trees and
        // for paths opened through /dev links; sockets and pipes are never followed.
        if (!error && (target == device || (target.string().starts_with("/dev/") &&
                                            root.resolve(target.native()) == device))) {
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<Holder> holder(std::string_view path, const SystemRoot& root, pid_t self) {
    const fs::path device = root.resolve(path);
    if (device.empty()) {
        return std::nullopt;
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
    for (const char* rules : {"/usr/lib/udev/rules.d", "/lib/udev/rules.d", "/etc/udev/rules.d"}) {
        for (const fs::directory_entry& entry :
             fs::directory_iterator(root.located(rules), error)) {
            if (entry.path().filename().string().find("brltty") != std::string::npos) {
                return true;
            }
        }
    }
    return false;
}

} // namespace kestrin::PortHolders
