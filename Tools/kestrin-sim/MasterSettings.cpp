#include "MasterSettings.h"

#include <asm/termbits.h>
#include <sys/ioctl.h>

namespace kestrin {

std::optional<MasterSettings> MasterSettings::of(int fd) {
    termios2 settings{};
    if (::ioctl(fd, TCGETS2, &settings) != 0) {
        return std::nullopt;
    }
    return MasterSettings{static_cast<int>(settings.c_ospeed),
                          (settings.c_cflag & CSTOPB) != 0 ? 2 : 1};
}

} // namespace kestrin
