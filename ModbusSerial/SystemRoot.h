#pragma once

#include <filesystem>
#include <string_view>

namespace kestrin {

// Where the system's own trees (/sys, /dev, /proc, /etc) are found. The machine's root is "/";
// tests build a fake tree in a temporary folder and pass its root instead, so every reader of
// system facts runs the same code on both.
class SystemRoot {
public:
    explicit SystemRoot(std::filesystem::path prefix);
    // The running machine, rooted at "/".
    static const SystemRoot& machine();

    // An absolute system path inside this root: "/sys/x" -> prefix/sys/x. A relative path is
    // taken as if it began at "/".
    std::filesystem::path at(std::string_view absolutePath) const;
    const std::filesystem::path& prefix() const noexcept { return prefix_; }

    // Follows symbolic links the way the kernel would if this root were "/": absolute targets
    // start again at the root, relative ones at the link's folder, ".." never climbs above the
    // root. Gives the system path (not the prefixed one) of what the links end at, whether or
    // not it exists; empty after too many hops (a loop).
    std::filesystem::path resolve(std::string_view absolutePath) const;
    // The file a system path leads to, ready to open: at(resolve(absolutePath)). Opening at()
    // directly would let an absolute link inside a fake tree escape to the machine's files.
    std::filesystem::path located(std::string_view absolutePath) const;

private:
    std::filesystem::path prefix_;
};

} // namespace kestrin
