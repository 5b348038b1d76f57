#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace kestrin::ChildProcess {

// Starting the command-line tools from tests. Children run with LC_ALL=C and LANGUAGE=en so
// that their texts are the English ones whatever the machine's locale.

// The given arguments followed by the words of line; no word of a test's line holds a space.
std::vector<std::string> command(std::vector<std::string> arguments, const std::string& line);

// The built tools, then arguments and the words of line. A test target that runs a tool names its
// path in KESTRIN_SIM_PATH or KESTRIN_CLI_PATH.
#ifdef KESTRIN_SIM_PATH
inline std::vector<std::string> sim(std::vector<std::string> arguments = {},
                                    const std::string& line = "") {
    arguments.insert(arguments.begin(), KESTRIN_SIM_PATH);
    return command(std::move(arguments), line);
}
#endif
#ifdef KESTRIN_CLI_PATH
inline std::vector<std::string> cli(std::vector<std::string> arguments,
                                    const std::string& line = "") {
    arguments.insert(arguments.begin(), KESTRIN_CLI_PATH);
    return command(std::move(arguments), line);
}

// kestrin-cli's command name on port as a test device, then the words of line.
inline std::vector<std::string> cliOn(const std::string& port, const std::string& name,
                                      const std::string& line) {
    return cli({name, "--port", port, "--test-device"}, line);
}
#endif

struct ProcessResult {
    int exitCode = -1; // -1 when the child did not exit normally
    std::string out;
    std::string err;
};

// Runs a program to its end and collects both output streams. A child still running after the
// limit is killed and reported with exit code -1.
ProcessResult run(const std::vector<std::string>& arguments,
                  std::chrono::milliseconds limit = std::chrono::seconds(60));

// A program that runs while the test goes on, its output readable at any time. The destructor
// stops it if it still runs.
class RunningProcess {
public:
    explicit RunningProcess(const std::vector<std::string>& arguments);
    ~RunningProcess();
    RunningProcess(const RunningProcess&) = delete;
    RunningProcess& operator=(const RunningProcess&) = delete;

    // Waits until the standard output holds text; false when the program ended or the limit
    // passed first.
    bool waitForOutput(const std::string& text,
                       std::chrono::milliseconds limit = std::chrono::seconds(20));
    // Waits for the end as run does, with the same limit rule.
    ProcessResult finish(std::chrono::milliseconds limit = std::chrono::seconds(60));

private:
    pid_t pid_ = -1;
    int out_ = -1;
    int err_ = -1;
};

// A kestrin-sim serving a pseudo-terminal for the life of this object; the first line it prints
// is the path of the terminal. The destructor stops it, however the test ended.
class SimulatorProcess {
public:
    explicit SimulatorProcess(std::vector<std::string> arguments);
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // Empty when the simulator did not announce a port in time.
    const std::string& port() const noexcept { return port_; }
    // Sends signal and waits for the end: SIGKILL takes the port away as a pulled adapter does.
    void end(int signal);

private:
    pid_t pid_ = -1;
    // Kept open, never read after the first line, so a chatty simulator never meets a broken pipe.
    int output_ = -1;
    std::string port_;
};

} // namespace kestrin::ChildProcess
