#include "AdapterFacts.h"

#include "NumberText.h"
#include "Text.h"
#include "TextFileReader.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace kestrin::AdapterFacts {

namespace fs = std::filesystem;

namespace {

constexpr int maxLatencyMs = 255; // the chips keep it in one byte

} // namespace

std::string latencyAttribute(std::string_view deviceName) {
    return "/sys/bus/usb-serial/devices/" + std::string(deviceName) + "/latency_timer";
}

std::optional<std::string> deviceName(std::string_view path, const SystemRoot& root) {
    const fs::path device = root.resolve(path);
    std::error_code error;
    if (device.empty() || !fs::exists(root.at(device.native()), error)) {
        return std::nullopt;
    }
    return device.filename().string();
}

std::optional<std::string> driver(std::string_view path, const SystemRoot& root) {
    const std::optional<std::string> name = deviceName(path, root);
    if (!name) {
        return std::nullopt;
    }
    fs::path device = root.resolve("/sys/class/tty/" + *name + "/device");
    // Since Linux 6.5 a UART's tty hangs under the serial core's own "port" and "ctrl" devices;
    // the driver that names the hardware (serial8250, pl011) sits on the device above them.
    for (int level = 0; level < 3 && !device.empty(); ++level) {
        std::error_code error;
        const fs::path target = fs::read_symlink(root.at((device / "driver").native()), error);
        if (error || target.filename().empty()) {
            return std::nullopt;
        }
        // Only the link's last component names the driver; its target lies far off in /sys/bus.
        if (target.parent_path().parent_path().filename() != "serial-base") {
            return target.filename().string();
        }
        device = device.parent_path();
    }
    return std::nullopt;
}

std::optional<LatencyTimer> latencyTimer(std::string_view path, const SystemRoot& root) {
    const std::optional<std::string> name = deviceName(path, root);
    if (!name) {
        return std::nullopt;
    }
    const fs::path file = root.located(latencyAttribute(*name));
    const Result<std::string, int> text = TextFileReader::read(file.string());
    if (!text) {
        return std::nullopt;
    }
    const std::optional<std::uint64_t> ms =
        NumberText::unsignedInteger(Text::trimmed(text.value()), 10);
    if (!ms || *ms > maxLatencyMs) {
        return std::nullopt;
    }
    return LatencyTimer{static_cast<int>(*ms), ::access(file.c_str(), W_OK) == 0};
}

std::optional<int> setLatencyTimer(std::string_view path, int milliseconds,
                                   const SystemRoot& root) {
    if (milliseconds < 0 || milliseconds > maxLatencyMs) {
        return EINVAL;
    }
    const std::optional<std::string> name = deviceName(path, root);
    if (!name) {
        return ENOENT;
    }
    const fs::path file = root.located(latencyAttribute(*name));
    // Never create the attribute: a missing one means the driver has no such timer.
    const int fd = ::open(file.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (fd < 0) {
        return errno;
    }
    // sysfs takes an attribute in one write; a short write would be a refusal all the same.
    const std::string text = std::to_string(milliseconds) + "\n";
    const ssize_t written = ::write(fd, text.data(), text.size());
    const int code = written == static_cast<ssize_t>(text.size()) ? 0 : (written < 0 ? errno : EIO);
    ::close(fd);
    return code == 0 ? std::nullopt : std::optional<int>(code);
}

std::string latencyUdevRule() {
    return R"(ACTION=="add", SUBSYSTEM=="usb-serial", DRIVER=="ftdi_sio", ATTR{latency_timer}="1")";
}

std::string_view latencyRulePath() {
    return "/etc/udev/rules.d/99-kestrin-latency.rules";
}

} // namespace kestrin::AdapterFacts
