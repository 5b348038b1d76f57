#pragma once

#include "SystemRoot.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kestrin {

// A throw-away system tree for tests of code that reads /sys, /dev, /proc and /etc through a
// SystemRoot. Every path given to it is the system path ("/dev/ttyUSB0"); it lands under a fresh
// temporary folder that the destructor removes. Link targets are stored exactly as given, so an
// absolute target ("/dev/ttyUSB0") points into the fake tree only for code that resolves links
// with SystemRoot::resolve, as the production code must.
//
//     FakeSystemTree tree;
//     tree.usbSerial({.name = "ttyUSB0", .driver = "ftdi_sio", .byId = "usb-FTDI_A1-if00-port0"})
//         .file("/etc/group", "dialout:x:20:alice\n");
//     AdapterFacts::driver("/dev/ttyUSB0", tree.root());   // "ftdi_sio"
class FakeSystemTree {
public:
    FakeSystemTree()
        : root_(makeTemporaryFolder()) {
        for (const char* top : {"/sys", "/dev", "/proc", "/etc"}) {
            folder(top);
        }
    }
    ~FakeSystemTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root_.prefix(), ignored);
    }
    FakeSystemTree(const FakeSystemTree&) = delete;
    FakeSystemTree& operator=(const FakeSystemTree&) = delete;

    const SystemRoot& root() const noexcept { return root_; }
    // Where a system path lies in the temporary folder, for checks on what the code wrote.
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
    // A symbolic link at path whose target is stored as given (absolute or relative).
    FakeSystemTree& link(std::string_view path, std::string_view target) {
        folder(parentOf(path));
        std::filesystem::create_symlink(target, at(path));
        return *this;
    }
    // Owner and group of a fake device node, as numbers (the tests' /etc/group gives the names).
    // Needs root; tests that depend on it skip otherwise.
    FakeSystemTree& owner(std::string_view path, uid_t uid, gid_t gid) {
        if (::lchown(at(path).c_str(), uid, gid) != 0) {
            throw std::runtime_error("lchown needs root");
        }
        return *this;
    }

    // A USB serial adapter as the kernel lays it out: the device node, its /dev/serial/by-id
    // link when byId is set, the USB device with its identity, the interface, the usb-serial
    // port with its driver (and latency timer when set), the tty class entry and, for drivers
    // outside usb-serial (cdc_acm), the interface's driver instead.
    struct UsbSerial {
        std::string name = "ttyUSB0";
        std::string driver = "ftdi_sio";
        std::string vendorId = "0403";
        std::string productId = "6001";
        std::string serialNumber = {};
        std::string byId = {};
        std::string usbPort = "1-2";
        std::optional<int> latencyMs = std::nullopt;
    };
    FakeSystemTree& usbSerial(const UsbSerial& adapter) {
        const std::string usbDevice =
            "/sys/devices/pci0000:00/0000:00:14.0/usb1/" + adapter.usbPort;
        const std::string interface = usbDevice + "/" + adapter.usbPort + ":1.0";
        const bool acm = adapter.driver == "cdc_acm";
        const std::string port = acm ? interface : interface + "/" + adapter.name;
        file("/dev/" + adapter.name);
        if (!adapter.byId.empty()) {
            link("/dev/serial/by-id/" + adapter.byId, "../../" + adapter.name);
        }
        file(usbDevice + "/idVendor", adapter.vendorId + "\n");
        file(usbDevice + "/idProduct", adapter.productId + "\n");
        if (!adapter.serialNumber.empty()) {
            file(usbDevice + "/serial", adapter.serialNumber + "\n");
        }
        const std::string bus = acm ? "/sys/bus/usb/drivers/" : "/sys/bus/usb-serial/drivers/";
        link(port + "/driver", bus + adapter.driver);
        if (adapter.latencyMs) {
            file(port + "/latency_timer", std::to_string(*adapter.latencyMs) + "\n");
        }
        const std::string ttyEntry = port + "/tty/" + adapter.name;
        folder(ttyEntry);
        link(ttyEntry + "/device", "../../../" + std::filesystem::path(port).filename().string());
        link("/sys/class/tty/" + adapter.name, "../.." + ttyEntry.substr(4));
        if (!acm) {
            link("/sys/bus/usb-serial/devices/" + adapter.name, "../../.." + port.substr(4));
        }
        return *this;
    }

    // A running process: its name in /proc/<pid>/comm and one descriptor link per target
    // (numbered from 3) in /proc/<pid>/fd. With readable false the fd entry is a plain file, which
    // cannot be listed even by root, as another user's fd folder cannot be by anyone else.
    FakeSystemTree& process(int pid, std::string_view program, const std::vector<std::string>& fds,
                            bool readable = true) {
        const std::string base = "/proc/" + std::to_string(pid);
        file(base + "/comm", std::string(program) + "\n");
        if (!readable) {
            return file(base + "/fd", {}, std::filesystem::perms::none);
        }
        folder(base + "/fd");
        int number = 3;
        for (const std::string& target : fds) {
            link(base + "/fd/" + std::to_string(number++), target);
        }
        return *this;
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
