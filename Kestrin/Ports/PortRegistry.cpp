#include "PortRegistry.h"

#include "UdevPortRegistry.h"

namespace kestrin {

std::unique_ptr<PortRegistry> PortRegistry::system() {
    return std::make_unique<UdevPortRegistry>();
}

} // namespace kestrin
