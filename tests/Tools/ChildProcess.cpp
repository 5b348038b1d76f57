#include "ChildProcess.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <string_view>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace kestrin::ChildProcess {

namespace {

using Clock = std::chrono::steady_clock;

// The caller's environment without its language settings, then the English C locale.
std::vector<std::string> childEnvironment() {
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view variable = *entry;
        if (!variable.starts_with("LC_") && !variable.starts_with("LANG")) {
            variables.emplace_back(variable);
        }
    }
    variables.emplace_back("LC_ALL=C");
    variables.emplace_back("LANGUAGE=en");
    return variables;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

// Starts arguments[0] with stdout and stderr on the given descriptors (-1 inherits).
pid_t spawn(std::vector<std::string> arguments, int out, int err) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (out != -1) {
        posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    }
    if (err != -1) {
        posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
    }
    std::vector<std::string> environment = childEnvironment();
    pid_t pid = -1;
    const int failed = ::posix_spawn(&pid, arguments.front().c_str(), &actions, nullptr,
                                     pointers(arguments).data(), pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    return failed == 0 ? pid : -1;
}

// Waits for the child to end, without reaping it; false when it still runs after the limit.
bool ended(pid_t pid, std::chrono::milliseconds limit) {
    // Through syscall(): this glibc's <sys/pidfd.h> declares pidfd_open without C linkage.
    const int process = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    if (process == -1) {
        return true;
    }
    pollfd readable{process, POLLIN, 0};
    const bool done = ::poll(&readable, 1, static_cast<int>(limit.count())) == 1;
    ::close(process);
    return done;
}

// Stops a child and reaps it: politely first, by force when it does not go within a few seconds.
void stop(pid_t pid) {
    ::kill(pid, SIGTERM);
    if (!ended(pid, std::chrono::seconds(5))) {
        ::kill(pid, SIGKILL);
    }
    ::waitpid(pid, nullptr, 0);
}

int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
}

// Everything written to an anonymous file so far.
std::string contents(int file) {
    std::string text;
    std::array<char, 4096> chunk{};
    ssize_t count = 0;
    while ((count = ::pread(file, chunk.data(), chunk.size(), static_cast<off_t>(text.size()))) >
           0) {
        text.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return text;
}

} // namespace

std::vector<std::string> command(std::vector<std::string> arguments, const std::string& line) {
    std::istringstream words(line);
    arguments.insert(arguments.end(), std::istream_iterator<std::string>(words),
                     std::istream_iterator<std::string>());
    return arguments;
}

ProcessResult run(const std::vector<std::string>& arguments, std::chrono::milliseconds limit) {
    return RunningProcess(arguments).finish(limit);
}

// Files rather than pipes: nothing has to drain them while the child runs.
RunningProcess::RunningProcess(const std::vector<std::string>& arguments)
    : out_(::memfd_create("out", MFD_CLOEXEC))
    , err_(::memfd_create("err", MFD_CLOEXEC)) {
    pid_ = spawn(arguments, out_, err_);
}

RunningProcess::~RunningProcess() {
    if (pid_ != -1) {
        stop(pid_);
    }
    ::close(out_);
    ::close(err_);
}

bool RunningProcess::waitForOutput(const std::string& text, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    while (pid_ != -1 && contents(out_).find(text) == std::string::npos) {
        // Waiting for the end doubles as the pause between two looks.
        if (ended(pid_, std::chrono::milliseconds(20)) || Clock::now() >= deadline) {
            return contents(out_).find(text) != std::string::npos;
        }
    }
    return pid_ != -1;
}

ProcessResult RunningProcess::finish(std::chrono::milliseconds limit) {
    ProcessResult result;
    if (pid_ != -1 && ended(pid_, limit)) {
        int waitStatus = 0;
        ::waitpid(pid_, &waitStatus, 0);
        result.exitCode = WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : -1;
    } else if (pid_ != -1) {
        stop(pid_);
    }
    pid_ = -1;
    result.out = contents(out_);
    result.err = contents(err_);
    return result;
}

SimulatorProcess::SimulatorProcess(std::vector<std::string> arguments) {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return;
    }
    pid_ = spawn(std::move(arguments), ends[1], -1);
    ::close(ends[1]);
    output_ = ends[0];
    if (pid_ == -1) {
        return;
    }
    // Generous: a sanitizer build under load can take seconds to start.
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(20);
    std::string line;
    pollfd readable{output_, POLLIN, 0};
    while (line.find('\n') == std::string::npos) {
        // One byte at a time, so nothing after the first line is taken from the pipe.
        char byte = 0;
        if (::poll(&readable, 1, millisecondsUntil(deadline)) != 1 ||
            ::read(output_, &byte, 1) != 1) {
            return;
        }
        line += byte;
    }
    port_ = line.substr(0, line.find('\n'));
}

void SimulatorProcess::end(int signal) {
    if (pid_ != -1) {
        ::kill(pid_, signal);
        ::waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }
}

SimulatorProcess::~SimulatorProcess() {
    if (pid_ != -1) {
        stop(pid_);
    }
    if (output_ != -1) {
        ::close(output_);
    }
}

} // namespace kestrin::ChildProcess
