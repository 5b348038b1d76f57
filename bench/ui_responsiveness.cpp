// ui_responsiveness: the main window over a model reading 2,000 datapoints from kestrin-sim as
// fast as the pseudo-terminal allows, and how well the main thread keeps up: its stalls, its load,
// how long a posted task waits and how old an engine event is when the model has handled it.
// Prints one line of key=value pairs for bench/ui-responsiveness; with --profile, where the main
// thread's time went. With --listen, the model listens instead to kestrin-sim replaying a recorded
// stream, decoding it into the datapoints of --project, for bench/listen-keep-up.

#include "BottomPane.h"
#include "ChartView.h"
#include "FakePortRegistry.h"
#include "MainWindow.h"
#include "OutputBuffer.h"
#include "PollerModel.h"
#include "PortScanner.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <time.h>
#include <type_traits>
#include <utility>
#include <vector>

#include <QApplication>
#include <QCommandLineParser>
#include <QEventLoop>
#include <QFile>
#include <QMetaEnum>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

namespace kestrin {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int probeIntervalMs = 5;
// A tick later than one frame at 60 Hz is a stutter the user can see.
constexpr double visibleStallMs = 16;
constexpr int windowWidth = 1180;
constexpr int windowHeight = 760;
constexpr int simulatorLimitMs = 10000;

struct Options {
    QString simulator;
    BottomPane::Page page = BottomPane::Page::chart;
    double seconds = 30;
    double warmUpSeconds = 3;
    int datapoints = 2000;
    int polls = 10;
    int intervalMs = 100;
    int plotted = 20;
    // Datapoints per read block; blocks of a poll are apart by more than the gap of 0.
    int blockSize = 50;
    bool profile = false;
    QString screenshot;
    // A recorded stream to listen to, and the project whose datapoints it fills.
    QString listen;
    QString project;
};

std::optional<Options> parse(const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption simulator("sim", "kestrin-sim to start", "path", KESTRIN_SIM_PATH);
    const QCommandLineOption page("page", "bottom pane page: chart or log", "page", "chart");
    const QCommandLineOption seconds("seconds", "measured seconds", "s", "30");
    const QCommandLineOption warmUp("warm-up", "seconds read before measuring", "s", "3");
    const QCommandLineOption datapoints("datapoints", "datapoints in all", "n", "2000");
    const QCommandLineOption polls("polls", "polls sharing them", "n", "10");
    const QCommandLineOption interval("interval-ms", "interval of every poll", "ms", "100");
    const QCommandLineOption plotted("plotted", "charted datapoints of the shown poll", "n", "20");
    const QCommandLineOption blockSize("block-size", "datapoints per read block", "n", "50");
    const QCommandLineOption profile("profile", "print where the main thread's time went");
    const QCommandLineOption screenshot("screenshot", "save the window at the end", "png");
    const QCommandLineOption listen("listen", "listen to this recorded stream replayed", "file");
    const QCommandLineOption project("project", "with --listen: the datapoints heard", "json");
    parser.addOptions({simulator, page, seconds, warmUp, datapoints, polls, interval, plotted,
                       blockSize, profile, screenshot, listen, project});
    if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty()) {
        std::fprintf(stderr, "ui_responsiveness: %s\n%s", qPrintable(parser.errorText()),
                     qPrintable(parser.helpText()));
        return std::nullopt;
    }
    Options options;
    options.simulator = parser.value(simulator);
    options.profile = parser.isSet(profile);
    options.screenshot = parser.value(screenshot);
    options.listen = parser.value(listen);
    options.project = parser.value(project);
    bool valid = (parser.value(page) == "chart" || parser.value(page) == "log") &&
                 options.listen.isEmpty() == options.project.isEmpty();
    options.page = parser.value(page) == "log" ? BottomPane::Page::log : BottomPane::Page::chart;
    const auto number = [&](const QCommandLineOption& option, auto& field) {
        bool ok = false;
        const double value = parser.value(option).toDouble(&ok);
        valid = valid && ok && value >= 0;
        field = static_cast<std::remove_reference_t<decltype(field)>>(value);
    };
    number(seconds, options.seconds);
    number(warmUp, options.warmUpSeconds);
    number(datapoints, options.datapoints);
    number(polls, options.polls);
    number(interval, options.intervalMs);
    number(plotted, options.plotted);
    number(blockSize, options.blockSize);
    if (!valid || options.polls < 1 || options.blockSize < 1 || options.seconds <= 0) {
        std::fprintf(stderr, "ui_responsiveness: invalid option\n%s",
                     qPrintable(parser.helpText()));
        return std::nullopt;
    }
    return options;
}

// Each poll's datapoints lie in blocks of blockSize registers, 10 addresses apart, so the
// planner makes several requests per poll. Values move so that the chart has lines to draw.
PollerProject benchProject(const Options& options) {
    constexpr int blockSpacing = 10;
    constexpr int pollSpacing = 10'000;
    PollerProject project;
    project.serial.baudRate = 115200;
    project.timeoutMs = 200;
    const int perPoll = options.datapoints / options.polls;
    for (int p = 0; p < options.polls; ++p) {
        Poll poll;
        poll.name = "Poll " + std::to_string(p + 1);
        poll.intervalMs = options.intervalMs;
        for (int k = 0; k < perPoll; ++k) {
            Datapoint point;
            point.name = "P" + std::to_string(p + 1) + "." + std::to_string(k + 1);
            point.setTable(RegisterTable::holdingRegister);
            point.address = static_cast<std::uint16_t>(p * pollSpacing + k +
                                                       (k / options.blockSize) * blockSpacing);
            point.simulation = {Simulation::Kind::sine, 0, 1000, 5.0 + k % 7};
            if (p == 0 && k < options.plotted) {
                poll.plotted.insert(point.id);
            }
            poll.datapoints.push_back(std::move(point));
        }
        project.polls.push_back(std::move(poll));
    }
    return project;
}

// kestrin-sim serving the project on a pseudo-terminal for the life of this object.
class Simulator {
public:
    static std::unique_ptr<Simulator> start(const QString& program, const QStringList& arguments) {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(program, arguments);
        if (!process->waitForStarted(simulatorLimitMs)) {
            return nullptr;
        }
        while (!process->canReadLine()) {
            if (!process->waitForReadyRead(simulatorLimitMs)) {
                return nullptr;
            }
        }
        const std::string path = process->readLine().trimmed().toStdString();
        return path.empty() ? nullptr
                            : std::unique_ptr<Simulator>(new Simulator(std::move(process), path));
    }

    ~Simulator() {
        process_->terminate();
        if (!process_->waitForFinished(simulatorLimitMs)) {
            process_->kill();
            process_->waitForFinished(simulatorLimitMs);
        }
    }
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    const std::string& path() const { return path_; }

private:
    Simulator(std::unique_ptr<QProcess> process, std::string path)
        : process_(std::move(process))
        , path_(std::move(path)) {}

    std::unique_ptr<QProcess> process_;
    std::string path_;
};

// Nearest rank; 0 for no values.
double percentile(std::vector<double> values, double fraction) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const auto rank =
        static_cast<std::size_t>(std::ceil(fraction * static_cast<double>(values.size())));
    return values[std::clamp<std::size_t>(rank, 1, values.size()) - 1];
}

double largest(const std::vector<double>& values) {
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

// A precise 5 ms timer on the main thread: how much later than due each tick came.
class TickProbe {
public:
    TickProbe() {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(probeIntervalMs);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            const Clock::time_point now = Clock::now();
            stallsMs_.push_back(std::max(0.0, Milliseconds(now - last_).count() - probeIntervalMs));
            last_ = now;
        });
    }

    void start() {
        stallsMs_.clear();
        last_ = Clock::now();
        timer_.start();
    }
    void stop() { timer_.stop(); }
    const std::vector<double>& stallsMs() const { return stallsMs_; }

private:
    QTimer timer_;
    Clock::time_point last_;
    std::vector<double> stallsMs_;
};

// Posts a task to the main thread every 5 ms from another thread, the way the engine posts its
// events: the time until it runs is the wait an engine event has in the queue.
class QueueProbe {
public:
    void start() {
        latenciesMs_.clear();
        running_ = true;
        thread_ = std::thread([this] {
            while (running_) {
                const Clock::time_point posted = Clock::now();
                QMetaObject::invokeMethod(
                    &receiver_,
                    [this, posted] {
                        if (recording_) {
                            latenciesMs_.push_back(Milliseconds(Clock::now() - posted).count());
                        }
                    },
                    Qt::QueuedConnection);
                std::this_thread::sleep_for(std::chrono::milliseconds(probeIntervalMs));
            }
        });
        recording_ = true;
    }

    void stop() {
        recording_ = false;
        running_ = false;
        thread_.join();
    }

    const std::vector<double>& latenciesMs() const { return latenciesMs_; }

    // How long a task posted now waits: what is still queued at the end.
    double drainMs() {
        const Clock::time_point posted = Clock::now();
        std::optional<double> waited;
        QMetaObject::invokeMethod(
            &receiver_, [&] { waited = Milliseconds(Clock::now() - posted).count(); },
            Qt::QueuedConnection);
        while (!waited) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return *waited;
    }

private:
    QObject receiver_;
    std::thread thread_;
    std::atomic<bool> running_ = false;
    // Main thread only.
    bool recording_ = false;
    std::vector<double> latenciesMs_;
};

// The calling thread's CPU time in seconds.
double threadCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// How old the oldest event of each batch is once the model has handled it: from the engine's
// stamp to the status change. Events wait in the model's queue for up to a frame before the
// posted task that takes them waits in the main thread's, so the queue probe alone no longer
// tells an event's wait. A datapoint read twice in one batch shows only its newer answer, so
// the oldest is taken over every id of the change.
class EventAgeProbe {
public:
    explicit EventAgeProbe(PollerModel& model) {
        QObject::connect(
            &model, &PollerModel::statusChanged, [this, &model](const std::vector<Uuid>& ids) {
                if (!recording || ids.empty()) {
                    return;
                }
                std::optional<qint64> oldest;
                for (const Uuid& id : ids) {
                    const PointStatus* status = model.status(id);
                    if (status != nullptr && status->updated) {
                        const qint64 time = status->updated->toMSecsSinceEpoch();
                        oldest = std::min(oldest.value_or(time), time);
                    }
                }
                if (oldest) {
                    agesMs.push_back(
                        static_cast<double>(QDateTime::currentMSecsSinceEpoch() - *oldest));
                }
            });
    }

    bool recording = false;
    std::vector<double> agesMs;
};

struct Cost {
    std::int64_t count = 0;
    double totalMs = 0;
    double maxMs = 0;

    void add(double ms) {
        ++count;
        totalMs += ms;
        maxMs = std::max(maxMs, ms);
    }
};

// Times every event the main thread dispatches (outermost only), by receiver class and type.
class ProfilingApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        if (!profiling || depth_ > 0) {
            return QApplication::notify(receiver, event);
        }
        const QEvent::Type type = event->type();
        const char* className = receiver->metaObject()->className();
        ++depth_;
        const Clock::time_point begin = Clock::now();
        const bool handled = QApplication::notify(receiver, event);
        const double ms = Milliseconds(Clock::now() - begin).count();
        --depth_;
        const char* typeName = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
        costs[std::string(className) + " " + (typeName != nullptr ? typeName : "?")].add(ms);
        return handled;
    }

    bool profiling = false;
    std::map<std::string, Cost> costs;

private:
    int depth_ = 0;
};

// Times the slots of one signal: a first connection made before the views connect theirs and a
// last one made after, so the span covers every view's handler.
class SignalCost {
public:
    template <typename Sender, typename Signal>
    void open(Sender* sender, Signal signal) {
        QObject::connect(sender, signal, [this] { begin_ = Clock::now(); });
    }
    template <typename Sender, typename Signal>
    void close(Sender* sender, Signal signal) {
        QObject::connect(sender, signal, [this] {
            if (recording) {
                cost.add(Milliseconds(Clock::now() - begin_).count());
            }
        });
    }

    bool recording = false;
    Cost cost;

private:
    Clock::time_point begin_;
};

void runFor(double seconds) {
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
}

bool waitForState(PollerModel& model, PollerState state) {
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(10);
    while (model.state() != state && Clock::now() < deadline) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    return model.state() == state;
}

void printProfile(const std::map<std::string, Cost>& costs,
                  const std::vector<std::pair<const char*, const SignalCost*>>& signalCosts,
                  double seconds) {
    std::vector<std::pair<std::string, Cost>> sorted(costs.begin(), costs.end());
    std::sort(sorted.begin(), sorted.end(),
              [](const auto& a, const auto& b) { return a.second.totalMs > b.second.totalMs; });
    std::fprintf(stderr, "%-44s %9s %10s %9s %9s %8s\n", "event (receiver, type)", "count",
                 "total ms", "mean ms", "max ms", "busy");
    for (std::size_t i = 0; i < std::min<std::size_t>(sorted.size(), 12); ++i) {
        const auto& [name, cost] = sorted[i];
        std::fprintf(stderr, "%-44s %9lld %10.1f %9.3f %9.2f %7.1f%%\n", name.c_str(),
                     static_cast<long long>(cost.count), cost.totalMs,
                     cost.totalMs / static_cast<double>(cost.count), cost.maxMs,
                     cost.totalMs / (10 * seconds));
    }
    std::fprintf(stderr, "%-44s %9s %10s %9s %9s %8s\n", "signal (all slots)", "count", "total ms",
                 "mean ms", "max ms", "busy");
    for (const auto& [name, signal] : signalCosts) {
        const Cost& cost = signal->cost;
        std::fprintf(stderr, "%-44s %9lld %10.1f %9.3f %9.2f %7.1f%%\n", name,
                     static_cast<long long>(cost.count), cost.totalMs,
                     cost.count > 0 ? cost.totalMs / static_cast<double>(cost.count) : 0.0,
                     cost.maxMs, cost.totalMs / (10 * seconds));
    }
}

// The two halves of a chart redraw that are not Qt Charts itself: taking the series from the
// history, and turning sample times into the chart's milliseconds.
void profileChartParts(const PollerModel& model) {
    const Clock::time_point begin = Clock::now();
    const std::vector<ChartSeries> lines =
        model.chartSeries(QDateTime::currentDateTimeUtc(), ChartView::defaultPeriodSeconds);
    const Clock::time_point taken = Clock::now();
    std::size_t samples = 0;
    qint64 checksum = 0;
    for (const ChartSeries& line : lines) {
        for (const Sample& sample : line.points) {
            checksum ^= sample.time.toMSecsSinceEpoch();
            ++samples;
        }
    }
    const Clock::time_point converted = Clock::now();
    std::fprintf(stderr,
                 "chart parts: %zu series, %zu samples (time spec %d): chartSeries %.2f ms, "
                 "toMSecsSinceEpoch %.2f ms (%llx)\n",
                 lines.size(), samples,
                 lines.empty() || lines.front().points.empty()
                     ? -1
                     : static_cast<int>(lines.front().points.front().time.timeSpec()),
                 Milliseconds(taken - begin).count(), Milliseconds(converted - taken).count(),
                 static_cast<unsigned long long>(checksum));
}

// The slots of the model's four busiest signals, timed together.
struct SignalCosts {
    SignalCost status;
    SignalCost log;
    SignalCost chart;
    SignalCost statistics;

    // Before the window connects its handlers.
    void open(PollerModel& model) {
        status.open(&model, &PollerModel::statusChanged);
        log.open(&model.output(), &OutputBuffer::appended);
        chart.open(&model, &PollerModel::historyVersionChanged);
        statistics.open(&model, &PollerModel::statisticsChanged);
    }
    // After it has.
    void close(PollerModel& model) {
        status.close(&model, &PollerModel::statusChanged);
        log.close(&model.output(), &OutputBuffer::appended);
        chart.close(&model, &PollerModel::historyVersionChanged);
        statistics.close(&model, &PollerModel::statisticsChanged);
    }
    void record() {
        for (SignalCost* signal : {&status, &log, &chart, &statistics}) {
            signal->recording = true;
        }
    }
    std::vector<std::pair<const char*, const SignalCost*>> named() const {
        return {{"statusChanged (table, tabs)", &status},
                {"appended (log view)", &log},
                {"historyVersionChanged (chart)", &chart},
                {"statisticsChanged (counters)", &statistics}};
    }
};

// The lines the log has taken, and how many of them are the system's own. One append may carry
// several lines, each ending in its line break.
struct LogLines {
    std::int64_t all = 0;
    std::int64_t system = 0;

    void count(OutputBuffer& output) {
        QObject::connect(&output, &OutputBuffer::appended, [this](const QList<StyledRun>& runs) {
            bool systemLine = false;
            for (const StyledRun& run : runs) {
                systemLine = systemLine || run.kind == LogSegment::Kind::system;
                if (run.text.endsWith(QLatin1Char('\n'))) {
                    ++all;
                    system += systemLine;
                    systemLine = false;
                }
            }
        });
    }
};

struct Measurement {
    double elapsedSeconds = 0;
    PollerStatistics before;
    PollerStatistics after;
    std::int64_t measuredLines = 0;
    LogLines atEnd;
    std::vector<double> stallsMs;
    std::vector<double> queueMs;
    std::vector<double> eventAgeMs;
    double mainLoadPct = 0;
    double drainMs = 0;
};

// kestrin-sim reads the project from this file; false when it cannot be written.
bool writeProject(const PollerProject& project, const QString& path) {
    QFile file(path);
    const std::string encoded = project.encoded();
    return file.open(QIODevice::WriteOnly) &&
           file.write(encoded.data(), static_cast<qint64>(encoded.size())) ==
               static_cast<qint64>(encoded.size());
}

// The project, and a port list that holds only the simulator's terminal.
PollerModel::Environment benchEnvironment(PollerProject project) {
    PollerModel::Environment environment;
    environment.project = std::move(project);
    environment.scanner = std::make_unique<PortScanner>(
        std::make_unique<FakePortRegistry>(std::make_shared<FakePortRegistry::State>()));
    return environment;
}

// Every line the log can show, so the log view does its most work.
void logEverything(PollerModel& model) {
    model.setShowTimestamps(true);
    model.setShowRawFrames(true);
    model.setLogOnlyProblems(false);
    model.setAutoscroll(true);
}

// Reads for the measured seconds with the probes running.
Measurement measure(ProfilingApplication& application, const Options& options, PollerModel& model,
                    SignalCosts& signalCosts, const LogLines& lines) {
    TickProbe ticks;
    QueueProbe queue;
    EventAgeProbe ages(model);
    Measurement result;
    result.before = model.statistics();
    const std::int64_t linesBefore = lines.all;
    signalCosts.record();
    application.profiling = options.profile;
    const Clock::time_point begin = Clock::now();
    const double cpuBegin = threadCpuSeconds();
    ticks.start();
    queue.start();
    ages.recording = true;
    runFor(options.seconds);
    ages.recording = false;
    ticks.stop();
    queue.stop();
    const double cpuSeconds = threadCpuSeconds() - cpuBegin;
    result.elapsedSeconds = std::chrono::duration<double>(Clock::now() - begin).count();
    result.mainLoadPct = 100 * cpuSeconds / result.elapsedSeconds;
    result.eventAgeMs = std::move(ages.agesMs);
    application.profiling = false;
    result.after = model.statistics();
    result.measuredLines = lines.all - linesBefore;
    result.atEnd = lines;
    result.drainMs = queue.drainMs();
    result.stallsMs = ticks.stallsMs();
    result.queueMs = queue.latenciesMs();
    return result;
}

void printMeasurement(const Measurement& measured) {
    const std::vector<double>& stalls = measured.stallsMs;
    const auto late = std::count_if(stalls.begin(), stalls.end(),
                                    [](double stall) { return stall > visibleStallMs; });
    const PollerStatistics& before = measured.before;
    const PollerStatistics& after = measured.after;
    const std::int64_t requests = after.requests - before.requests;
    const std::int64_t failures =
        requests - (after.responses - before.responses) + (after.exceptions - before.exceptions);
    std::printf("max_stall_ms=%.2f p99_stall_ms=%.2f late_ticks=%lld ticks=%zu "
                "requests_per_s=%.1f requests=%lld failures=%lld log_lines=%lld "
                "total_requests=%lld total_log_lines=%lld system_lines=%lld "
                "max_queue_ms=%.2f p99_queue_ms=%.2f max_event_ms=%.0f p99_event_ms=%.0f "
                "main_load_pct=%.1f drain_ms=%.2f responses=%lld no_response=%lld "
                "exceptions=%lld invalid=%lld\n",
                largest(stalls), percentile(stalls, 0.99), static_cast<long long>(late),
                stalls.size(), static_cast<double>(requests) / measured.elapsedSeconds,
                static_cast<long long>(requests), static_cast<long long>(failures),
                static_cast<long long>(measured.measuredLines),
                static_cast<long long>(after.requests), static_cast<long long>(measured.atEnd.all),
                static_cast<long long>(measured.atEnd.system), largest(measured.queueMs),
                percentile(measured.queueMs, 0.99), largest(measured.eventAgeMs),
                percentile(measured.eventAgeMs, 0.99), measured.mainLoadPct, measured.drainMs,
                static_cast<long long>(after.responses - before.responses),
                static_cast<long long>(after.timeouts - before.timeouts),
                static_cast<long long>(after.exceptions - before.exceptions),
                static_cast<long long>(after.errors - before.errors));
}

// What the model reads or listens to: kestrin-sim serving the bench project, or replaying a
// recorded stream that the project's datapoints are heard in.
struct Source {
    std::unique_ptr<Simulator> simulator;
    PollerProject project;
};

std::optional<Source> startSource(const Options& options, const QTemporaryDir& work) {
    Source source;
    QStringList arguments;
    if (options.listen.isEmpty()) {
        source.project = benchProject(options);
        const QString projectFile = work.filePath("bench.json");
        if (!writeProject(source.project, projectFile)) {
            std::fputs("ui_responsiveness: cannot write the project\n", stderr);
            return std::nullopt;
        }
        arguments = {"--project", projectFile, "--baud", "115200"};
    } else {
        QFile file(options.project);
        const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        auto project = PollerProject::decode(std::string_view(text.constData(), text.size()));
        if (!project) {
            std::fprintf(stderr, "ui_responsiveness: cannot read %s\n",
                         qPrintable(options.project));
            return std::nullopt;
        }
        source.project = std::move(project).value();
        // Ample time to open and flush the line before the first byte, as listen-keep-up gives.
        arguments = {"--replay", options.listen, "--replay-delay-ms", "1000"};
    }
    source.simulator = Simulator::start(options.simulator, arguments);
    if (!source.simulator) {
        std::fprintf(stderr, "ui_responsiveness: %s did not start\n",
                     qPrintable(options.simulator));
        return std::nullopt;
    }
    return source;
}

int run(ProfilingApplication& application, const Options& options) {
    // The views keep their own preferences; none of them may touch the user's.
    const QTemporaryDir settings;
    const QTemporaryDir work;
    if (!settings.isValid() || !work.isValid()) {
        std::fputs("ui_responsiveness: no temporary folder\n", stderr);
        return 1;
    }
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());

    std::optional<Source> source = startSource(options, work);
    if (!source) {
        return 1;
    }

    PollerModel model(benchEnvironment(std::move(source->project)));
    logEverything(model);
    model.addTestDevice(source->simulator->path(), "kestrin-sim");
    SignalCosts signalCosts;
    signalCosts.open(model);
    MainWindow window(model);
    signalCosts.close(model);
    LogLines lines;
    lines.count(model.output());

    window.resize(windowWidth, windowHeight);
    window.show();
    window.bottomPane()->setPage(options.page);
    const bool listening = !options.listen.isEmpty();
    listening ? model.listen() : model.start();
    if (!waitForState(model, listening ? PollerState::listening : PollerState::running)) {
        std::fprintf(stderr, "ui_responsiveness: %s did not start: %s\n",
                     listening ? "listening" : "reading",
                     model.errorMessage().value_or("").c_str());
        return 1;
    }
    runFor(options.warmUpSeconds);

    const Measurement measured = measure(application, options, model, signalCosts, lines);
    if (options.profile) {
        profileChartParts(model);
    }
    if (!options.screenshot.isEmpty()) {
        window.grab().save(options.screenshot);
    }
    model.stop();
    printMeasurement(measured);
    if (options.profile) {
        printProfile(application.costs, signalCosts.named(), measured.elapsedSeconds);
    }
    return 0;
}

} // namespace
} // namespace kestrin

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    kestrin::ProfilingApplication application(argc, argv);
    const auto options = kestrin::parse(QCoreApplication::arguments());
    if (!options) {
        return 2;
    }
    return kestrin::run(application, *options);
}
