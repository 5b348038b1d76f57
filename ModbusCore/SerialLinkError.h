#pragma once

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
    struct OpenFailed {
        std::string path;
        int code = 0;
        friend bool operator==(const OpenFailed&, const OpenFailed&) = default;
    };
    struct Busy {
        std::string path;
        friend bool operator==(const Busy&, const Busy&) = default;
    };
    struct ConfigurationFailed {
        int code = 0;
        friend bool operator==(const ConfigurationFailed&, const ConfigurationFailed&) = default;
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

    using Case =
        std::variant<InvalidPath, OpenFailed, Busy, ConfigurationFailed, UnsupportedBaudRate,
                     WriteFailed, NotOpen, Timeout, Disconnected, Cancelled>;
    Case value;

    template <typename T>
    bool is() const noexcept {
        return std::holds_alternative<T>(value);
    }

    friend bool operator==(const SerialLinkError&, const SerialLinkError&) = default;
};

} // namespace kestrin
