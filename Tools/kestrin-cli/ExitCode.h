#pragma once

namespace kestrin {

// What kestrin-cli tells a calling script.
enum class ExitCode : int {
    success = 0,
    // The device did not answer, or answered with an exception or a defective frame; for a
    // poll, the history or the log could not be written.
    requestFailed = 1,
    usageError = 2,
    // The port could not be opened, or failed while in use.
    portFailed = 3,
};

constexpr int status(ExitCode code) noexcept {
    return static_cast<int>(code);
}

} // namespace kestrin
