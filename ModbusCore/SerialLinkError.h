#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace kestrin {

// Why the serial link could not open, send or receive. It lives beside the protocol vocabulary,
// not in ModbusSerial, because the text catalogue describes every case and must not depend on the
// POSIX layer. Codes are raw errno values, turned into text only when described.
struct SerialLinkError {
    struct InvalidPath {
        std::string path;
        friend bool operator==(const InvalidPath&, const InvalidPath&) = default;
    };
    // Why the system refused the device (EACCES): which group owns it and how this user stands
    // with it, so the message can name the one command that helps.
    struct PortAccess {
        std::string group;
        std::string user;
        // inThisLogin: this process has the group already; notInThisLogin: the group database
        // lists the user, but the login began before that and the process lacks the group.
        enum class Membership : std::uint8_t { none, notInThisLogin, inThisLogin };
        Membership membership = Membership::none;
        // Whether the device's mode gives its group read and write at all (0600 does not).
        bool groupMayOpen = true;
        friend bool operator==(const PortAccess&, const PortAccess&) = default;
    };
    // The process found holding the device open.
    struct PortHolder {
        std::string program;
        int pid = 0;
        // Its descriptors could not be read, so it is only the likeliest suspect.
        bool probable = false;
        friend bool operator==(const PortHolder&, const PortHolder&) = default;
    };
    struct OpenFailed {
        std::string path;
        int code = 0;
        // Absent when the code is not EACCES or the facts could not be read. The braces let
        // {path, code} stay a complete initialisation.
        std::optional<PortAccess> access{};
        friend bool operator==(const OpenFailed&, const OpenFailed&) = default;
    };
    struct Busy {
        std::string path;
        std::optional<PortHolder> holder{};
        // A CH34x adapter on a machine where the braille display driver grabs such adapters.
        bool brlttyTakesAdapter = false;
        friend bool operator==(const Busy&, const Busy&) = default;
    };
    struct ConfigurationFailed {
        int code = 0;
        friend bool operator==(const ConfigurationFailed&, const ConfigurationFailed&) = default;
    };
    // The driver has no RS-485 mode for RTS to switch direction by, as with USB adapters, which
    // switch by themselves.
    struct RS485Refused {
        int code = 0;
        friend bool operator==(const RS485Refused&, const RS485Refused&) = default;
    };
    struct UnsupportedBaudRate {
        int baudRate = 0;
        friend bool operator==(const UnsupportedBaudRate&, const UnsupportedBaudRate&) = default;
    };
    struct WriteFailed {
        int code = 0;
        friend bool operator==(const WriteFailed&, const WriteFailed&) = default;
    };
    struct NotOpen {
        friend bool operator==(const NotOpen&, const NotOpen&) = default;
    };
    // The link only listens: another master owns the line, and a byte sent would collide with it.
    struct SendRefused {
        friend bool operator==(const SendRefused&, const SendRefused&) = default;
    };
    struct Timeout {
        friend bool operator==(const Timeout&, const Timeout&) = default;
    };
    struct Disconnected {
        friend bool operator==(const Disconnected&, const Disconnected&) = default;
    };
    // Another thread called off the wait (reading is being stopped); the device did nothing wrong.
    struct Cancelled {
        friend bool operator==(const Cancelled&, const Cancelled&) = default;
    };

    using Case = std::variant<InvalidPath, OpenFailed, Busy, ConfigurationFailed, RS485Refused,
                              UnsupportedBaudRate, WriteFailed, NotOpen, SendRefused, Timeout,
                              Disconnected, Cancelled>;
    Case value;

    template <typename T>
    bool is() const noexcept {
        return std::holds_alternative<T>(value);
    }

    friend bool operator==(const SerialLinkError&, const SerialLinkError&) = default;
};

} // namespace kestrin
