#include "PollerModel.h"

#include "PollerEngine.h"
#include "PortScanner.h"
#include "ProjectStore.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <utility>

#include <QMetaObject>
#include <QPointer>
#include <QSettings>

namespace kestrin {

namespace {

constexpr auto portKey = "port";
constexpr auto timestampsKey = "timestamps";
constexpr auto rawFramesKey = "rawFrames";
constexpr auto onlyProblemsKey = "onlyProblems";
constexpr auto autoscrollKey = "autoscroll";

// A stored value that is not a boolean counts as absent.
bool booleanPreference(const QSettings& settings, const char* key, bool fallback) {
    const QVariant value = settings.value(QLatin1String(key));
    if (value.typeId() == QMetaType::Bool) {
        return value.toBool();
    }
    // INI files hand booleans back as text.
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString();
        if (text == QLatin1String("true")) {
            return true;
        }
        if (text == QLatin1String("false")) {
            return false;
        }
    }
    return fallback;
}

} // namespace

// The engine's events wait here for the main thread, which takes them a frame at a time: one
// queued call per event kept the main thread busy at a few hundred answers a second. The model
// cuts the relay off in its destructor, so a thread that outlives the model never touches a
// destroyed object.
class PollerModel::EventRelay {
public:
    // The longest an event waits: one frame of a 60 Hz display.
    static constexpr std::chrono::milliseconds frame{16};

    explicit EventRelay(PollerModel* model)
        : model_(model) {}

    // Any thread. The first event into an empty queue schedules the drain that takes it.
    void push(std::uint64_t generation, const PollerEvent& event) {
        const std::lock_guard lock(mutex_);
        if (model_ == nullptr) {
            return;
        }
        queue_.push_back({generation, event});
        if (queue_.size() == 1) {
            const auto due = std::chrono::steady_clock::now() + frame;
            QMetaObject::invokeMethod(
                model_, [this, model = model_, due] { scheduleDrain(*model, due); },
                Qt::QueuedConnection);
        }
    }

    void detach() {
        const std::lock_guard lock(mutex_);
        model_ = nullptr;
    }

    // Main thread: everything queued so far, in order, as one batch. The lock is not held while
    // the model handles it: a handler may stop the engine, which waits for the engine thread.
    void drain(PollerModel& model) {
        std::vector<Queued> taken;
        {
            const std::lock_guard lock(mutex_);
            taken.swap(queue_);
        }
        model.beginBatch();
        for (const Queued& queued : taken) {
            model.deliver(queued.generation, queued.event);
        }
        model.endBatch();
    }

private:
    struct Queued {
        std::uint64_t generation;
        PollerEvent event;
    };

    // Main thread; the model is the timer's context, so a drain never outlives it.
    void scheduleDrain(PollerModel& model, std::chrono::steady_clock::time_point due) {
        const auto wait =
            std::chrono::ceil<std::chrono::milliseconds>(due - std::chrono::steady_clock::now());
        QTimer::singleShot(std::max(wait, std::chrono::milliseconds{0}), Qt::PreciseTimer, &model,
                           [this, &model] { drain(model); });
    }

    std::mutex mutex_;
    PollerModel* model_;
    std::vector<Queued> queue_;
};

std::unique_ptr<PollerEngine> PollerModel::makeEngine() {
    const std::uint64_t generation = ++engineGeneration_;
    std::weak_ptr<EventRelay> relay = relay_;
    auto onEvent = [relay, generation](const PollerEvent& event) {
        if (const auto alive = relay.lock()) {
            alive->push(generation, event);
        }
    };
    return std::make_unique<PollerEngine>(
        selectedPath_, serial_, static_cast<double>(timeoutMs_) / 1000.0,
        isTestDevice(selectedPath_), std::move(onEvent),
        listening_ ? PollerEngine::Mode::listening : PollerEngine::Mode::reading);
}

void PollerModel::flushEvents() {
    // Within a batch the queue holds only later events; taking them now would reorder them.
    if (!batch_) {
        relay_->drain(*this);
    }
}

PollerModel::Environment PollerModel::Environment::application() {
    Environment environment;
    const QString path = ProjectStore::defaultAutosavePath();
    if (!path.isEmpty()) {
        environment.autosavePath = path;
    }
    environment.preferences =
        std::make_unique<QSettings>(QStringLiteral("Kestrin"), QStringLiteral("Kestrin"));
    return environment;
}

PollerModel::PollerModel(Environment environment, QObject* parent)
    : QObject(parent)
    , environment_(std::move(environment))
    , output_(new OutputBuffer(OutputBuffer::defaultMaxCharacters, OutputBuffer::defaultTrimTarget,
                               this))
    , relay_(std::make_shared<EventRelay>(this)) {
    loadPreferences();

    PollerProject project = environment_.project.value_or(PollerProject::firstRun());
    if (environment_.autosavePath) {
        project = ProjectStore(*environment_.autosavePath).load().project;
    }
    applyProjectFields(project);
    output_->setAutoscroll(autoscroll_);

    autosaveTimer_.setSingleShot(true);
    autosaveTimer_.setInterval(environment_.delays.autosave);
    connect(&autosaveTimer_, &QTimer::timeout, this, &PollerModel::autosave);
    publicationTimer_.setSingleShot(true);
    publicationTimer_.setInterval(environment_.delays.publication);
    connect(&publicationTimer_, &QTimer::timeout, this, &PollerModel::publishHistory);
    // Only a port that reads shows what its adapter's latency costs the polls.
    connect(this, &PollerModel::stateChanged, this, [this] {
        if (state_ == PollerState::running) {
            checkLatency();
        }
    });
    connect(this, &PollerModel::selectedPathChanged, this,
            [this] { setLatencyNotice(std::nullopt); });

    scanner_ =
        environment_.scanner ? std::move(environment_.scanner) : std::make_unique<PortScanner>();
    connect(scanner_.get(), &PortScanner::portsChanged, this,
            [this](const std::vector<SerialPortInfo>& list) { portsChanged(list); });
    scanner_->start();
}

PollerModel::~PollerModel() {
    relay_->detach();
    if (engine_) {
        engine_->stop();
        engine_.reset();
    }
}

void PollerModel::loadPreferences() {
    const QSettings* settings = environment_.preferences.get();
    if (settings == nullptr) {
        return;
    }
    selectedPath_ = settings->value(QLatin1String(portKey)).toString().toStdString();
    loadPortIdentity(*settings);
    logOptions_.showTimestamps = booleanPreference(*settings, timestampsKey, true);
    logOptions_.showRawFrames = booleanPreference(*settings, rawFramesKey, false);
    logOptions_.onlyProblems = booleanPreference(*settings, onlyProblemsKey, false);
    autoscroll_ = booleanPreference(*settings, autoscrollKey, true);
}

void PollerModel::storePreference(const char* key, const QVariant& value) {
    if (environment_.preferences) {
        environment_.preferences->setValue(QLatin1String(key), value);
    }
}

void PollerModel::applyProjectFields(const PollerProject& project) {
    serial_ = takenSerial(project.serial);
    timeoutMs_ = PollerProject::allowedTimeout(project.timeoutMs);
    writeMode_ = project.writeMode;
    maxGap_ = project.maxGap;
    polls_ = project.polls;
    selectedPollID_ = polls_.empty() ? std::nullopt : std::optional<Uuid>(polls_.front().id);
}

const PointStatus* PollerModel::status(const Uuid& datapointID) const {
    const auto found = status_.find(datapointID);
    return found == status_.end() ? nullptr : &found->second;
}

void PollerModel::setErrorMessage(std::optional<std::string> message) {
    if (message == errorMessage_) {
        return;
    }
    errorMessage_ = std::move(message);
    emit errorMessageChanged();
}

void PollerModel::setWriteError(std::optional<std::string> message) {
    if (message == writeError_) {
        return;
    }
    writeError_ = std::move(message);
    emit writeErrorChanged();
}

void PollerModel::setSelectedPath(std::string path) {
    if (path == selectedPath_) {
        return;
    }
    selectedPath_ = std::move(path);
    storePreference(portKey, QString::fromStdString(selectedPath_));
    const SerialPortInfo* port = listedPort(selectedPath_);
    storePortIdentity(port != nullptr ? PortIdentity::of(*port) : std::nullopt);
    emit selectedPathChanged();
}

void PollerModel::setSerial(const SerialConfiguration& serial) {
    if (serial == serial_) {
        return;
    }
    serial_ = serial;
    scheduleAutosave();
    emit serialChanged();
}

void PollerModel::setTimeoutMs(int timeoutMs) {
    if (timeoutMs == timeoutMs_) {
        return;
    }
    timeoutMs_ = timeoutMs;
    // An offer names the time-out it would replace; against the new one, one may be made again.
    setTimeoutOffer(std::nullopt);
    timeoutOffered_ = false;
    scheduleAutosave();
    emit timeoutMsChanged();
}

void PollerModel::setWriteMode(WriteMode mode) {
    if (mode == writeMode_) {
        return;
    }
    writeMode_ = mode;
    scheduleAutosave();
    emit writeModeChanged();
}

void PollerModel::setMaxGap(int gap) {
    if (gap == maxGap_) {
        return;
    }
    maxGap_ = gap;
    scheduleAutosave();
    replan();
    emit maxGapChanged();
}

void PollerModel::setPolls(std::vector<Poll> polls) {
    if (polls == polls_) {
        return;
    }
    replacePolls(std::move(polls));
}

void PollerModel::setSelectedPollID(std::optional<Uuid> pollID) {
    if (pollID == selectedPollID_) {
        return;
    }
    selectedPollID_ = pollID;
    emit selectedPollIDChanged();
}

void PollerModel::setShowTimestamps(bool on) {
    storePreference(timestampsKey, on);
    if (on != logOptions_.showTimestamps) {
        logOptions_.showTimestamps = on;
        emit logOptionsChanged();
    }
}

void PollerModel::setShowRawFrames(bool on) {
    storePreference(rawFramesKey, on);
    if (on != logOptions_.showRawFrames) {
        logOptions_.showRawFrames = on;
        emit logOptionsChanged();
    }
}

void PollerModel::setLogOnlyProblems(bool on) {
    storePreference(onlyProblemsKey, on);
    if (on != logOptions_.onlyProblems) {
        logOptions_.onlyProblems = on;
        emit logOptionsChanged();
    }
}

void PollerModel::setAutoscroll(bool on) {
    storePreference(autoscrollKey, on);
    output_->setAutoscroll(on);
    if (on != autoscroll_) {
        autoscroll_ = on;
        emit logOptionsChanged();
    }
}

const Poll* PollerModel::selectedPoll() const {
    if (!selectedPollID_) {
        return nullptr;
    }
    const auto found = std::find_if(polls_.begin(), polls_.end(),
                                    [&](const Poll& poll) { return poll.id == *selectedPollID_; });
    return found == polls_.end() ? nullptr : &*found;
}

const Datapoint* PollerModel::datapoint(const Uuid& datapointID) const {
    for (const Poll& poll : polls_) {
        for (const Datapoint& point : poll.datapoints) {
            if (point.id == datapointID) {
                return &point;
            }
        }
    }
    return nullptr;
}

} // namespace kestrin
