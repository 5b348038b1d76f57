#include "TextFileReader.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace kestrin::TextFileReader {

Result<std::string, int> read(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor == -1) {
        return errno;
    }
    std::string bytes;
    std::array<char, 65536> buffer{};
    while (true) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            // A directory opens but does not read (EISDIR).
            const int code = errno;
            ::close(descriptor);
            return code;
        }
        if (count == 0) {
            break;
        }
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(descriptor);
    return bytes;
}

} // namespace kestrin::TextFileReader
