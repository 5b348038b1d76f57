#include "ChildProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <thread>
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
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

struct Pipe {
    int read = -1;
    int write = -1;
};

Pipe makePipe() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    return {ends[0], ends[1]};
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

int exitCode(int waitStatus) {
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : -1;
}

// Stops a child: politely first, by force when it does not go within a few seconds.
void stop(pid_t pid) {
    ::kill(pid, SIGTERM);
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(5);
    int waitStatus = 0;
    while (::waitpid(pid, &waitStatus, WNOHANG) == 0) {
        if (Clock::now() > deadline) {
            ::kill(pid, SIGKILL);
            ::waitpid(pid, &waitStatus, 0);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
}

} // namespace

ProcessResult run(const std::vector<std::string>& arguments, std::chrono::milliseconds limit) {
    ProcessResult result;
    Pipe out = makePipe();
    Pipe err = makePipe();
    const pid_t pid = spawn(arguments, out.write, err.write);
    ::close(out.write);
    ::close(err.write);
    if (pid == -1) {
        ::close(out.read);
        ::close(err.read);
        return result;
    }
    std::array<pollfd, 2> streams{pollfd{out.read, POLLIN, 0}, pollfd{err.read, POLLIN, 0}};
    std::array<std::string*, 2> texts{&result.out, &result.err};
    const Clock::time_point deadline = Clock::now() + limit;
    int open = 2;
    while (open > 0) {
        const int ready = ::poll(streams.data(), streams.size(), millisecondsUntil(deadline));
        if (ready == 0) {
            stop(pid);
            break;
        }
        if (ready < 0) {
            if (errno == EINTR) {
                continue;
            }
            break;
        }
        for (std::size_t i = 0; i < streams.size(); ++i) {
            if (streams[i].fd == -1 || streams[i].revents == 0) {
                continue;
            }
            std::array<char, 4096> chunk{};
            const ssize_t count = ::read(streams[i].fd, chunk.data(), chunk.size());
            if (count > 0) {
                texts[i]->append(chunk.data(), static_cast<std::size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                streams[i].fd = -1;
                --open;
            }
        }
    }
    ::close(out.read);
    ::close(err.read);
    int waitStatus = 0;
    if (::waitpid(pid, &waitStatus, 0) == pid) {
        result.exitCode = exitCode(waitStatus);
    }
    return result;
}

SimulatorProcess::SimulatorProcess(std::vector<std::string> arguments) {
    Pipe out = makePipe();
    pid_ = spawn(std::move(arguments), out.write, -1);
    ::close(out.write);
    output_ = out.read;
    if (pid_ == -1) {
        return;
    }
    // Generous: a sanitizer build under load can take seconds to start.
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(20);
    std::string line;
    pollfd readable{output_, POLLIN, 0};
    while (line.find('\n') == std::string::npos) {
        const int ready = ::poll(&readable, 1, millisecondsUntil(deadline));
        if (ready == 0) {
            return;
        }
        if (ready < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        // One byte at a time, so nothing after the first line is taken from the pipe.
        char byte = 0;
        const ssize_t count = ::read(output_, &byte, 1);
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return;
        }
        if (count == 1) {
            line += byte;
        }
    }
    port_ = line.substr(0, line.find('\n'));
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
