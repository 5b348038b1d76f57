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
    const auto sameProduct = [&](const SerialPortInfo& port) {
        return port.vendorID == vendorID && port.productID == productID;
    };
    if (!serialNumber) {
        return only(sameProduct);
    }
    if (byIdPath) {
        if (const SerialPortInfo* linked =
                only([&](const SerialPortInfo& port) { return port.byIdPath == byIdPath; })) {
            return linked;
        }
    }
    return only(
        [&](const SerialPortInfo& port) { return sameProduct(port) && !isContradictedBy(port); });
}

bool PortIdentity::isContradictedBy(const SerialPortInfo& port) const {
    if (!port.vendorID || !port.productID) {
        return false;
    }
    if (*port.vendorID != vendorID || *port.productID != productID) {
        return true;
    }
    if (!serialNumber) {
        return false;
    }
    return port.serialNumber != serialNumber ||
           (byIdPath && port.byIdPath && port.byIdPath != byIdPath);
}

} // namespace kestrin
