#pragma once

#include "SerialLinkError.h"
#include "SystemRoot.h"

#include <optional>
#include <string_view>
#include <unistd.h>

namespace kestrin::PortHolders {

// The process that holds a lock on the device (from /proc/locks, which every user may read), else
// one that has it open, found through the descriptors in /proc/<pid>/fd (a /dev/serial/by-id path
// matches its ttyUSB node), the lowest process id first; self, this process, is never named.
// Another user's descriptors are hidden from everyone but root, so without root the holder is
// often out of sight. When nobody visible holds the device but ModemManager, which probes every
// new adapter, is among the hidden, it is named as the probable holder.
std::optional<SerialLinkError::PortHolder> holder(std::string_view path,
                                                  const SystemRoot& root = SystemRoot::machine(),
                                                  pid_t self = ::getpid());

// Whether the braille display driver brltty is installed: its program or its udev rules.
bool brlttyInstalled(const SystemRoot& root = SystemRoot::machine());

} // namespace kestrin::PortHolders
