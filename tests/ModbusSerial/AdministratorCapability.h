#pragma once

#include <array>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace kestrin {

// Root bypasses TIOCEXCL through CAP_SYS_ADMIN; capabilities are per thread, so a thread that
// drops it sees the kernel's refusal as any user would.
inline void dropAdministratorCapability() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> data{};
    ASSERT_EQ(syscall(SYS_capget, &header, data.data()), 0);
    data[CAP_TO_INDEX(CAP_SYS_ADMIN)].effective &= ~CAP_TO_MASK(CAP_SYS_ADMIN);
    ASSERT_EQ(syscall(SYS_capset, &header, data.data()), 0);
}

} // namespace kestrin
