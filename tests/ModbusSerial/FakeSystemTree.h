#pragma once

#include "SystemRoot.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>

namespace kestrin {

// A throw-away system tree for code that reads /sys, /dev, /proc and /etc through a SystemRoot.
// Paths are given as on the machine ("/dev/ttyUSB0") and land under a temporary folder that the
// destructor removes. Link targets are stored as given, so an absolute one points into the fake
// tree only for code that follows links with SystemRoot::resolve, as the product code must.
class FakeSystemTree {
public:
    FakeSystemTree()
        : root_(makeTemporaryFolder()) {}
    ~FakeSystemTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root_.prefix(), ignored);
    }
    FakeSystemTree(const FakeSystemTree&) = delete;
    FakeSystemTree& operator=(const FakeSystemTree&) = delete;

    const SystemRoot& root() const noexcept { return root_; }
    std::filesystem::path at(std::string_view path) const { return root_.at(path); }

    // A regular file with the content, its folders made first; mode replaces the permissions.
    FakeSystemTree& file(std::string_view path, std::string_view content = {},
                         std::optional<std::filesystem::perms> mode = std::nullopt) {
        folder(parentOf(path));
        std::ofstream(at(path), std::ios::binary | std::ios::trunc) << content;
        if (mode) {
            std::filesystem::permissions(at(path), *mode);
        }
        return *this;
    }
    FakeSystemTree& folder(std::string_view path) {
        std::filesystem::create_directories(at(path));
        return *this;
    }
    FakeSystemTree& link(std::string_view path, std::string_view target) {
        folder(parentOf(path));
        std::filesystem::create_symlink(target, at(path));
        return *this;
    }
    // Giving a fake device node a group needs root; tests that depend on it skip otherwise.
    FakeSystemTree& owner(std::string_view path, uid_t uid, gid_t gid) {
        if (::lchown(at(path).c_str(), uid, gid) != 0) {
            throw std::runtime_error("lchown needs root");
        }
        return *this;
    }

    // A USB serial adapter laid out as the kernel does it: the node, its by-id link when byId is
    // set, the usb-serial port with its driver (and latency timer when set), and the tty class
    // entry reached through relative links.
    struct UsbSerial {
        std::string name = "ttyUSB0";
        std::string driver = "ftdi_sio";
        std::string byId = {};
        std::optional<int> latencyMs = std::nullopt;
    };
    FakeSystemTree& usbSerial(const UsbSerial& adapter) {
        const std::string port = "/sys/devices/pci0000:00/usb1/1-2/1-2:1.0/" + adapter.name;
        file("/dev/" + adapter.name);
        if (!adapter.byId.empty()) {
            link("/dev/serial/by-id/" + adapter.byId, "../../" + adapter.name);
        }
        link(port + "/driver", "/sys/bus/usb-serial/drivers/" + adapter.driver);
        if (adapter.latencyMs) {
            file(port + "/latency_timer", std::to_string(*adapter.latencyMs) + "\n");
        }
        folder(port + "/tty/" + adapter.name);
        link(port + "/tty/" + adapter.name + "/device", "../../../" + adapter.name);
        link("/sys/class/tty/" + adapter.name, "../.." + port.substr(4) + "/tty/" + adapter.name);
        return link("/sys/bus/usb-serial/devices/" + adapter.name, "../../.." + port.substr(4));
    }

    // A running process: its name in /proc/<pid>/comm and, as descriptor 3, a link to openFile.
    // Without openFile the fd entry is a plain file, which cannot be listed even by root, as
    // another user's fd folder cannot be.
    FakeSystemTree& process(int pid, std::string_view program,
                            std::optional<std::string_view> openFile) {
        const std::string base = "/proc/" + std::to_string(pid);
        file(base + "/comm", std::string(program) + "\n");
        return openFile ? link(base + "/fd/3", *openFile)
                        : file(base + "/fd", {}, std::filesystem::perms::none);
    }

private:
    static std::string parentOf(std::string_view path) {
        return std::filesystem::path(path).parent_path().string();
    }
    static std::filesystem::path makeTemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kestrin-root-XXXXXX");
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("mkdtemp failed");
        }
        return pattern;
    }

    SystemRoot root_;
};

} // namespace kestrin
