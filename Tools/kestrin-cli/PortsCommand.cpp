#include "PortsCommand.h"

#include "JsonLines.h"
#include "L10n.h"
#include "NumberText.h"
#include "PortScanner.h"
#include "PortTrouble.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <unistd.h>

namespace kestrin::PortsCommand {

namespace {

constexpr std::array options{
    CommandLine::Option{"json", "",
                        "one JSON object per port: path, name (null when it has none),\n"
                        "vendor-id, product-id (null for a port without a USB device),\n"
                        "serial-number, by-id (the /dev/serial/by-id link; null when absent)"},
    CommandLine::Option{"verbose", "",
                        "also the driver, the owning group and whether this user can open\n"
                        "the port, the process holding it, the latency timer and RS-485\n"
                        "support, for which a free built-in UART is opened for a moment\n"
                        "(with --json: driver, group, group-may-open, membership,\n"
                        "can-open, holder, latency-timer-ms, latency-timer-writable, rs485)"},
};

using Membership = SerialLinkError::PortAccess::Membership;

// The name the window shows, when the port has one of its own rather than its path.
std::optional<std::string> ownName(const SerialPortInfo& port) {
    if (!port.knownName() && !port.productName) {
        return std::nullopt;
    }
    return port.name();
}

nlohmann::json optional(const auto& value) {
    return value ? nlohmann::json(*value) : nlohmann::json();
}

// The four hexadecimal digits USB IDs are known by, without "0x".
std::string hex4(int value) {
    return NumberText::hexadecimal(static_cast<std::uint64_t>(value), 4).substr(2);
}

std::string orNone(const std::optional<std::string>& value) {
    return value.value_or("none");
}

std::string usbText(const SerialPortInfo& port) {
    if (!port.isUSB()) {
        return "none";
    }
    std::string text = "vendor " + hex4(*port.vendorID);
    if (port.productID) {
        text += ", product " + hex4(*port.productID);
    }
    if (port.productName) {
        text += ", \"" + *port.productName + "\"";
    }
    return text + ", serial number " + orNone(port.serialNumber);
}

std::string groupText(const SerialLinkError::PortAccess& access) {
    std::string text = access.group;
    text += access.groupMayOpen ? ", which may read and write" : ", which may not read and write";
    switch (access.membership) {
    case Membership::inThisLogin:
        return text + "; this login is in it";
    case Membership::notInThisLogin:
        return text + "; you are in it from your next login on";
    case Membership::none:
        break;
    }
    return text + "; you are not in it";
}

std::string accessText(const SerialPortInfo& port, const Details& details) {
    if (details.canOpen) {
        return "this user can open it";
    }
    if (!details.access) {
        return "this user cannot open it";
    }
    // The same advice the refusal gives when the port is opened.
    return L10n::Errors::describe(
        SerialLinkError{SerialLinkError::OpenFailed{port.path, EACCES, details.access}});
}

// The sentence an open of the held port gives, with its advice, as the access line does.
std::string holderText(const Details& details) {
    if (!details.busy.holder) {
        return "nobody";
    }
    return L10n::Errors::describe(SerialLinkError{details.busy});
}

std::string latencyText(const SerialPortInfo& port, const Details& details) {
    if (!details.latency) {
        return "none";
    }
    const int milliseconds = details.latency->milliseconds;
    std::string text = std::to_string(milliseconds) + " ms";
    if (milliseconds <= 1) {
        return text;
    }
    return text + "; every answer waits that long in the adapter. Kestrin asks the driver for " +
           "1 ms while it reads; for every program: echo 1 | sudo tee " +
           AdapterFacts::latencyAttribute(details.deviceName.value_or(port.path));
}

std::string rs485Text(RS485Mode::Support support) {
    switch (support) {
    case RS485Mode::Support::yes:
        return "supported";
    case RS485Mode::Support::no:
        return "not supported";
    case RS485Mode::Support::unknown:
        break;
    }
    return "unknown";
}

std::string membershipName(Membership membership) {
    switch (membership) {
    case Membership::inThisLogin:
        return "in-this-login";
    case Membership::notInThisLogin:
        return "not-in-this-login";
    case Membership::none:
        break;
    }
    return "none";
}

void addDetails(nlohmann::json& object, const Details& details) {
    object["driver"] = optional(details.driver);
    object["group"] = details.access ? nlohmann::json(details.access->group) : nlohmann::json();
    object["group-may-open"] =
        details.access ? nlohmann::json(details.access->groupMayOpen) : nlohmann::json();
    object["membership"] = details.access
                               ? nlohmann::json(membershipName(details.access->membership))
                               : nlohmann::json();
    object["can-open"] = details.canOpen;
    const auto& holder = details.busy.holder;
    object["holder"] = holder ? nlohmann::json{{"program", holder->program},
                                               {"pid", holder->pid},
                                               {"probable", holder->probable}}
                              : nlohmann::json();
    object["latency-timer-ms"] =
        details.latency ? nlohmann::json(details.latency->milliseconds) : nlohmann::json();
    object["latency-timer-writable"] =
        details.latency ? nlohmann::json(details.latency->writable) : nlohmann::json();
    object["rs485"] = details.rs485 == RS485Mode::Support::yes  ? "yes"
                      : details.rs485 == RS485Mode::Support::no ? "no"
                                                                : "unknown";
}

} // namespace

const CommandLine::Syntax& syntax() {
    static const CommandLine::Syntax ports{
        "kestrin-cli ports",
        "Usage: kestrin-cli ports [--json] [--verbose]\n\n"
        "Lists the serial ports: the path, and a tab and the name the window shows when the\n"
        "port has one.\n",
        options};
    return ports;
}

Details details(const SerialPortInfo& port, const System& system) {
    Details found;
    found.deviceName = AdapterFacts::deviceName(port.path, system.root);
    found.driver = AdapterFacts::driver(port.path, system.root);
    found.access = PortAccess::facts(port.path, system.login, system.root);
    const std::string located = system.root.located(port.path).string();
    found.canOpen = ::access(located.c_str(), R_OK | W_OK) == 0;
    SerialLinkError busy{SerialLinkError::Busy{port.path}};
    PortTrouble::explain(busy, system.root, system.login);
    found.busy = std::get<SerialLinkError::Busy>(busy.value);
    found.latency = AdapterFacts::latencyTimer(port.path, system.root);
    // USB serial drivers have no kernel RS-485 mode, and opening a USB adapter raises DTR, which
    // resets many boards; a held port is not ours to open.
    if (port.isUSB()) {
        found.rs485 = RS485Mode::Support::no;
    } else if (!found.busy.holder && found.canOpen) {
        found.rs485 = RS485Mode::probe(located, system.terminal);
    }
    return found;
}

std::string line(const SerialPortInfo& port) {
    const std::optional<std::string> name = ownName(port);
    return name ? port.path + '\t' + *name : port.path;
}

std::string verboseText(const SerialPortInfo& port, const Details& details) {
    std::string text = line(port) + '\n';
    const auto fact = [&](std::string_view label, const std::string& value) {
        text.append("  ").append(label).append(value).append("\n");
    };
    fact("by-id:     ", orNone(port.byIdPath));
    fact("driver:    ", orNone(details.driver));
    fact("USB:       ", usbText(port));
    fact("group:     ", details.access ? groupText(*details.access) : "unknown");
    fact("access:    ", accessText(port, details));
    fact("held by:   ", holderText(details));
    fact("latency:   ", latencyText(port, details));
    if (details.latency && details.latency->milliseconds > 1) {
        fact("udev rule: ", AdapterFacts::latencyUdevRule() + "  (in " +
                                std::string(AdapterFacts::latencyRulePath()) + ")");
    }
    fact("RS-485:    ", rs485Text(details.rs485));
    return text;
}

nlohmann::json json(const SerialPortInfo& port, const Details* details) {
    nlohmann::json object{{"path", port.path},
                          {"name", optional(ownName(port))},
                          {"vendor-id", optional(port.vendorID)},
                          {"product-id", optional(port.productID)},
                          {"serial-number", optional(port.serialNumber)},
                          {"by-id", optional(port.byIdPath)}};
    if (details != nullptr) {
        addDetails(object, *details);
    }
    return object;
}

void list(const std::vector<SerialPortInfo>& ports, Listing listing, const System& system,
          std::ostream& out) {
    bool first = true;
    for (const SerialPortInfo& port : ports) {
        const std::optional<Details> found =
            listing.verbose ? std::optional(details(port, system)) : std::nullopt;
        if (listing.json) {
            JsonLines::print(json(port, found ? &*found : nullptr), out);
        } else if (found) {
            // A blank line between ports, so that each block reads on its own.
            out << (first ? "" : "\n") << verboseText(port, *found);
        } else {
            out << line(port) << '\n';
        }
        first = false;
    }
}

ExitCode run(Listing listing, std::ostream& out) {
    // Enumeration needs no event loop, so no Qt application is created.
    const PortScanner scanner;
    list(scanner.currentPorts(), listing,
         System{SystemRoot::machine(), Login::current(), PosixTerminal::system()}, out);
    return ExitCode::success;
}

} // namespace kestrin::PortsCommand
