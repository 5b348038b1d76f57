#include "SystemRoot.h"

#include <deque>
#include <system_error>
#include <utility>

namespace kestrin {

namespace fs = std::filesystem;

namespace {

// Linux gives up after 40 links (ELOOP); so does this.
constexpr int maxLinkHops = 40;

void prependComponents(std::deque<fs::path>& remaining, const fs::path& path) {
    std::deque<fs::path> components;
    for (const fs::path& component : path.relative_path()) {
        components.push_back(component);
    }
    remaining.insert(remaining.begin(), components.begin(), components.end());
}

} // namespace

SystemRoot::SystemRoot(fs::path prefix)
    : prefix_(std::move(prefix)) {}

const SystemRoot& SystemRoot::machine() {
    static const SystemRoot root{"/"};
    return root;
}

fs::path SystemRoot::at(std::string_view absolutePath) const {
    return prefix_ / fs::path(absolutePath).relative_path();
}

fs::path SystemRoot::resolve(std::string_view absolutePath) const {
    std::deque<fs::path> remaining;
    prependComponents(remaining, fs::path(absolutePath));
    fs::path current = "/";
    int hops = 0;
    while (!remaining.empty()) {
        const fs::path component = remaining.front();
        remaining.pop_front();
        if (component == "." || component.empty()) {
            continue;
        }
        if (component == "..") {
            current = current.parent_path();
            continue;
        }
        const fs::path next = current / component;
        std::error_code error;
        const fs::path target = fs::read_symlink(at(next.native()), error);
        if (error) { // not a link, or not there: either way the walk goes on by name
            current = next;
            continue;
        }
        if (++hops > maxLinkHops) {
            return {};
        }
        prependComponents(remaining, target);
        if (target.is_absolute()) {
            current = "/";
        }
    }
    return current;
}

fs::path SystemRoot::located(std::string_view absolutePath) const {
    const fs::path resolved = resolve(absolutePath);
    return resolved.empty() ? fs::path{} : at(resolved.native());
}

} // namespace kestrin
