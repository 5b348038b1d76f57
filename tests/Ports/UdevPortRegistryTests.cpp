#include "UdevPortRegistry.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// Runs against this machine's devices, which may be none at all.
TEST(UdevPortRegistry, ListsNoVirtualTerminals) {
    UdevPortRegistry registry;
    const auto devices = registry.serialDevices();
    if (!devices) {
        GTEST_SKIP() << "udev cannot enumerate here";
    }
    for (const auto& device : *devices) {
        const auto path = device->path();
        if (!path) {
            continue;
        }
        SCOPED_TRACE(*path);
        for (const char* virtualTerminal :
             {"/dev/console", "/dev/ptmx", "/dev/tty", "/dev/tty0", "/dev/tty1"}) {
            EXPECT_NE(*path, virtualTerminal);
        }
    }
}

} // namespace
} // namespace kestrin
