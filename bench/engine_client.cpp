// engine_client: one poll of several blocks read by a PollerEngine, and what it cost. Prints
// "<blocks read> <seconds> <failures> <cpu seconds>" for bench/engine-efficiency; blocks and
// seconds are counted from the end of the warm-up reading to the last block read.

#include "PollerEngine.h"

#include <charconv>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kestrin {
namespace {

using Clock = std::chrono::steady_clock;

struct Options {
    std::string port;
    SerialConfiguration serial;
    int blocks = 4;
    int quantity = 10;
    double interval = 0;
    double seconds = 3;
    double timeout = 1.0;
};

std::optional<double> number(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(value >= 0)) {
        return std::nullopt;
    }
    return value;
}

std::optional<Options> parse(int argc, char** argv) {
    Options options;
    if (argc % 2 == 0) {
        return std::nullopt;
    }
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string_view name = argv[i];
        const std::string_view value = argv[i + 1];
        if (name == "--port") {
            options.port = value;
            continue;
        }
        if (name == "--frame") {
            const std::optional<SerialConfiguration> serial = options.serial.withFrame(value);
            if (!serial) {
                return std::nullopt;
            }
            options.serial = *serial;
            continue;
        }
        const std::optional<double> parsed = number(value);
        if (!parsed) {
            return std::nullopt;
        }
        if (name == "--baud") {
            options.serial.baudRate = static_cast<int>(*parsed);
        } else if (name == "--blocks") {
            options.blocks = static_cast<int>(*parsed);
        } else if (name == "--quantity") {
            options.quantity = static_cast<int>(*parsed);
        } else if (name == "--interval") {
            options.interval = *parsed;
        } else if (name == "--seconds") {
            options.seconds = *parsed;
        } else if (name == "--timeout") {
            options.timeout = *parsed;
        } else {
            return std::nullopt;
        }
    }
    if (options.port.empty() || options.blocks < 1 || options.quantity < 1) {
        return std::nullopt;
    }
    return options;
}

double processSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// The blocks all read the same registers: the simulator's list is short, the line cost the same.
PollPlan poll(const Options& options) {
    PollPlan plan{Uuid::random(), options.interval, {}, {}};
    plan.blocks.assign(static_cast<std::size_t>(options.blocks),
                       ReadBlock{1, RegisterTable::holdingRegister, 0, options.quantity});
    return plan;
}

int run(const Options& options) {
    std::mutex mutex;
    std::vector<Clock::time_point> reads;
    int failures = 0;
    PollerEngine engine(options.port, options.serial, options.timeout, true,
                        [&](const PollerEvent& event) {
                            if (const auto* read = event.as<PollerEvent::Read>()) {
                                const std::lock_guard lock(mutex);
                                reads.push_back(Clock::now());
                                failures += read->result.ok() ? 0 : 1;
                            }
                        });
    if (!engine.start({poll(options)})) {
        std::fprintf(stderr, "engine_client: cannot open %s\n", options.port.c_str());
        return 1;
    }
    // The first reading has no silence to wait out and pays for the thread's start.
    const double cpuBefore = processSeconds();
    std::this_thread::sleep_for(std::chrono::duration<double>(options.seconds));
    const double cpu = processSeconds() - cpuBefore;
    engine.stop();

    const std::lock_guard lock(mutex);
    const auto warmUp = static_cast<std::size_t>(options.blocks);
    if (reads.size() <= warmUp) {
        std::fprintf(stderr, "engine_client: only %zu blocks read\n", reads.size());
        return 1;
    }
    const std::chrono::duration<double> elapsed = reads.back() - reads[warmUp - 1];
    std::printf("%zu %.6f %d %.6f\n", reads.size() - warmUp, elapsed.count(), failures, cpu);
    return 0;
}

} // namespace
} // namespace kestrin

int main(int argc, char** argv) {
    const std::optional<kestrin::Options> options = kestrin::parse(argc, argv);
    if (!options) {
        std::fputs("usage: engine_client --port PATH [--baud B] [--frame 8E1] [--blocks N] "
                   "[--quantity Q] [--interval S] [--seconds S] [--timeout S]\n",
                   stderr);
        return 2;
    }
    return kestrin::run(*options);
}
