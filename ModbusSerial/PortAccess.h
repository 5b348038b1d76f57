#pragma once

#include "SerialLinkError.h"
#include "SystemRoot.h"

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace kestrin {

// Who this process runs as, as the kernel checks a device's permissions: the facts that decide
// whether a group change has reached this login yet. Tests build one by hand.
struct Login {
    std::string user;
    uid_t uid = 0;
    gid_t gid = 0;
    // The supplementary groups, fixed when the login began.
    std::vector<gid_t> groups;

    static Login current();
    bool hasGroup(gid_t group) const;
};

namespace PortAccess {

// How the device's permissions stand for this login: the group that owns it (through its links),
// whether the group database counts the user in it and whether this process has it, and whether
// the group may read and write at all. Explains a refusal, and serves a port listing as well.
// Absent when the device cannot be examined.
std::optional<SerialLinkError::PortAccess> facts(std::string_view path, const Login& login,
                                                 const SystemRoot& root = SystemRoot::machine());

} // namespace PortAccess
} // namespace kestrin
