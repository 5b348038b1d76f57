#pragma once

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace kestrin {

// A kestrin-sim child on a fresh pseudo-terminal, killed when the object goes.
class SimulatorProcess {
public:
    explicit SimulatorProcess(const std::vector<std::string>& options) {
        std::array<int, 2> out{};
        if (::pipe2(out.data(), O_CLOEXEC) != 0) {
            return;
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        std::vector<std::string> arguments{KESTRIN_SIM};
        arguments.insert(arguments.end(), options.begin(), options.end());
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        if (posix_spawn(&pid_, KESTRIN_SIM, &actions, nullptr, argv.data(), environ) != 0) {
            pid_ = -1;
        }
        posix_spawn_file_actions_destroy(&actions);
        ::close(out[1]);
        path_ = firstLine(out[0]);
        ::close(out[0]);
    }
    ~SimulatorProcess() { end(SIGTERM); }
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // The pseudo-terminal the master opens; empty when the simulator did not come up.
    const std::string& path() const { return path_; }

    // Ends the simulator, and with it the master side of its pseudo-terminal.
    void end(int signal) {
        if (pid_ > 0) {
            ::kill(pid_, signal);
            ::waitpid(pid_, nullptr, 0);
            pid_ = -1;
        }
    }

private:
    static std::string firstLine(int fd) {
        std::string line;
        char c = 0;
        pollfd readable{fd, POLLIN, 0};
        while (::poll(&readable, 1, 10000) > 0 && ::read(fd, &c, 1) == 1 && c != '\n') {
            line += c;
        }
        return c == '\n' ? line : std::string();
    }

    pid_t pid_ = -1;
    std::string path_;
};

// A scratch folder removed with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kestrin-poller-XXXXXX").string();
        if (::mkdtemp(pattern.data()) != nullptr) {
            path_ = pattern;
        }
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file(const std::string& name, const std::string& text = {}) const {
        const std::filesystem::path path = path_ / name;
        std::ofstream(path) << text;
        return path.string();
    }

private:
    std::filesystem::path path_;
};

} // namespace kestrin
