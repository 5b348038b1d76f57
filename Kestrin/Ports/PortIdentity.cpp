#include "PortIdentity.h"

#include <algorithm>

namespace kestrin {

std::optional<PortIdentity> PortIdentity::of(const SerialPortInfo& port) {
    if (!port.vendorID || !port.productID) {
        return std::nullopt;
    }
    return PortIdentity{*port.vendorID, *port.productID, port.serialNumber, port.byIdPath};
}

const SerialPortInfo* PortIdentity::findIn(std::span<const SerialPortInfo> listed) const {
    const auto only = [&](const auto& matches) -> const SerialPortInfo* {
        const auto found = std::find_if(listed.begin(), listed.end(), matches);
        if (found == listed.end() ||
            std::find_if(found + 1, listed.end(), matches) != listed.end()) {
            return nullptr;
        }
        return &*found;
    };
    if (byIdPath) {
        const auto link =
            std::find_if(listed.begin(), listed.end(),
                         [&](const SerialPortInfo& port) { return port.byIdPath == byIdPath; });
        if (link != listed.end()) {
            return &*link;
        }
    }
    const auto sameProduct = [&](const SerialPortInfo& port) {
        return port.vendorID == vendorID && port.productID == productID;
    };
    if (serialNumber) {
        return only([&](const SerialPortInfo& port) {
            return sameProduct(port) && port.serialNumber == serialNumber &&
                   !(byIdPath && port.byIdPath && port.byIdPath != byIdPath);
        });
    }
    return only(sameProduct);
}

} // namespace kestrin
