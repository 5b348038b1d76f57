#include "PortTrouble.h"

#include "AdapterFacts.h"
#include "PortHolders.h"

#include <cerrno>

namespace kestrin::PortTrouble {

void explain(SerialLinkError& error, const SystemRoot& root, const Login& login) {
    if (auto* refused = std::get_if<SerialLinkError::OpenFailed>(&error.value)) {
        if (refused->code == EACCES) {
            refused->access = PortAccess::facts(refused->path, login, root);
        }
    } else if (auto* busy = std::get_if<SerialLinkError::Busy>(&error.value)) {
        busy->holder = PortHolders::holder(busy->path, root);
        busy->brlttyTakesAdapter = AdapterFacts::driver(busy->path, root) == "ch341-uart" &&
                                   PortHolders::brlttyInstalled(root);
    }
}

} // namespace kestrin::PortTrouble
