#pragma once

#include "Result.h"

#include <string>

namespace kestrin {

// A symbolic link to the served line under a fixed name, so that scripts need not read the
// simulator's output; removed again when the simulator ends.
class SymbolicLink {
public:
    // Replaces an existing symbolic link at path, but never any other kind of file. The error is
    // a message for the user.
    static Result<SymbolicLink, std::string> create(const std::string& path,
                                                    const std::string& target);

    SymbolicLink(SymbolicLink&& other) noexcept;
    SymbolicLink& operator=(SymbolicLink&&) = delete;
    SymbolicLink(const SymbolicLink&) = delete;
    SymbolicLink& operator=(const SymbolicLink&) = delete;
    // Removes the link only while it still points to the target: another simulator may have
    // taken the name over.
    ~SymbolicLink();

private:
    SymbolicLink(std::string path, std::string target);

    std::string path_;
    std::string target_;
};

} // namespace kestrin
