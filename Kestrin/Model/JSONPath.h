#pragma once

#include <string>

namespace kestrin::JSONPath {

// A decoding error of a nested value, prefixed with where it sits: "polls[0].name: expected a
// string" for a key inside, "polls[0]: expected an object" for the value itself.
inline std::string nested(const std::string& path, const std::string& error) {
    return path + (error.starts_with("expected") ? ": " : ".") + error;
}

} // namespace kestrin::JSONPath
