#pragma once

#include "PortAccess.h"
#include "SerialLinkError.h"
#include "SystemRoot.h"

namespace kestrin::PortTrouble {

// Adds what the system can tell about a failed open so the message can say what to do: for an
// OpenFailed with EACCES the owning group and how this login stands with it, for a Busy the
// process holding the port and whether brltty takes the adapter (a CH34x while brltty is
// installed). Leaves every other case, and any fact it cannot read, as it was.
void explain(SerialLinkError& error, const SystemRoot& root = SystemRoot::machine(),
             const Login& login = Login::current());

} // namespace kestrin::PortTrouble
