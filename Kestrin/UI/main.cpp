// kestrin: the desktop Modbus RTU master.

#include "AppOptions.h"
#include "DarkStyle.h"
#include "DemoDevice.h"
#include "Icons.h"
#include "L10n.h"
#include "MainWindow.h"
#include "PollerModel.h"
#include "PortScanner.h"
#include "QtText.h"
#include "QtTranslation.h"
#include "QuitSignals.h"
#include "Screenshot.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

using namespace kestrin;

namespace {

constexpr int exitUsage = 2;
constexpr int exitFailure = 1;
// Long enough for the demo device to answer a few polls before the picture is taken.
constexpr double demoWaitSeconds = 3;
// Without a device there is nothing to wait for but the first layout.
constexpr double plainWaitSeconds = 0.2;

bool hasArgument(int argc, char** argv, const char* name) {
    return std::any_of(argv + 1, argv + argc,
                       [name](const char* argument) { return std::strcmp(argument, name) == 0; });
}

// Answered before the QApplication exists: it needs a display, and a man page is made from the
// help on machines that have none.
std::optional<int> answerWithoutDisplay(int argc, char** argv) {
    if (hasArgument(argc, argv, "--help") || hasArgument(argc, argv, "-h")) {
        std::cout << AppOptions::usage;
        return 0;
    }
    if (hasArgument(argc, argv, "--version")) {
        std::cout << "kestrin " << KESTRIN_VERSION << "\n";
        return 0;
    }
    return std::nullopt;
}

void startDemo(PollerModel& model, std::unique_ptr<DemoDevice>& demo) {
    const QString simulator = DemoDevice::findSimulator(QCoreApplication::applicationDirPath());
    if (simulator.isEmpty()) {
        model.setErrorMessage(L10n::texts().errors.demoFailed("kestrin-sim"));
        return;
    }
    auto started = DemoDevice::start(simulator, model.serial());
    if (!started) {
        model.setErrorMessage(L10n::texts().errors.demoFailed(started.error()));
        return;
    }
    demo = std::move(started).value();
    model.addTestDevice(demo->path(), L10n::texts().header.demoDevice());
}

// A picture shows the first-run project with default preferences, and leaves the user's own
// project and preferences as they were.
PollerModel::Environment screenshotEnvironment(std::optional<QTemporaryDir>& preferences) {
    preferences.emplace();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, preferences->path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, preferences->path());
    return PollerModel::Environment{};
}

// Reads the demo device for a while when there is one, renders the named view to the file and
// ends the program.
int takeScreenshot(PollerModel& model, MainWindow& window, const AppOptions& options,
                   bool withDemo) {
    const QString file = qt(*options.outFile);
    int result = 0;
    if (withDemo && model.canStart()) {
        model.start();
    }
    const double wait = options.waitSeconds.value_or(withDemo ? demoWaitSeconds : plainWaitSeconds);
    QTimer::singleShot(static_cast<int>(wait * 1000), &window, [&] {
        const auto rendered =
            Screenshot::render(model, window, *options.screenshot, file, options.width.value_or(0));
        if (!rendered) {
            std::cerr << "kestrin: " << rendered.error() << "\n";
            result = exitFailure;
        }
        QApplication::quit();
    });
    QApplication::exec();
    return result;
}

// The name and mark the desktop shows, and the folder of the preferences.
void describeApplication() {
    QApplication::setApplicationName(QStringLiteral("Kestrin"));
    QApplication::setOrganizationName(QStringLiteral("Kestrin"));
    QApplication::setDesktopFileName(QStringLiteral("org.kestrin.kestrin"));
    QApplication::setWindowIcon(Icons::application());
}

// The exit code when the options end the program before a window opens.
std::optional<int> exitBeforeWindow(const Result<AppOptions, std::string>& options) {
    if (!options) {
        std::cerr << "kestrin: " << options.error() << "\n" << AppOptions::usage;
        return exitUsage;
    }
    if (const auto& name = options.value().screenshot) {
        const auto& known = Screenshot::names();
        if (std::find(known.begin(), known.end(), *name) == known.end()) {
            std::cerr << "kestrin: no view named " << *name << "\n" << AppOptions::usage;
            return exitUsage;
        }
    }
    return std::nullopt;
}

// The device given on the command line, or the simulated one of the demo.
void addDevices(PollerModel& model, const AppOptions& options, std::unique_ptr<DemoDevice>& demo) {
    if (options.port) {
        model.addTestDevice(*options.port, *options.port);
    }
    if (options.demo) {
        startDemo(model, demo);
    }
}

} // namespace

int main(int argc, char** argv) {
    // Past a file-size limit a save then fails with a message, where the default action would
    // end the program without a word.
    std::signal(SIGXFSZ, SIG_IGN);
    if (const std::optional<int> exitCode = answerWithoutDisplay(argc, argv)) {
        return *exitCode;
    }
    // Screenshots need no display.
    if (hasArgument(argc, argv, "--screenshot") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    describeApplication();
    // Before the first window, so that Qt's dialog buttons and shortcut names speak the language
    // of Kestrin's own texts.
    const QtTranslation qtTranslation(L10n::language());

    // Qt has taken its own options out of argv by now.
    const auto parsed = AppOptions::parse(std::vector<std::string>(argv + 1, argv + argc));
    if (const std::optional<int> exitCode = exitBeforeWindow(parsed)) {
        return *exitCode;
    }
    const AppOptions& options = parsed.value();

    if (options.dark) {
        // The platform style may ignore a palette; Fusion draws with it everywhere.
        QApplication::setStyle(new DarkStyle);
        QApplication::setPalette(Screenshot::darkPalette());
    }

    std::optional<QTemporaryDir> screenshotPreferences;
    PollerModel model(options.screenshot ? screenshotEnvironment(screenshotPreferences)
                                         : PollerModel::Environment::application());
    std::unique_ptr<DemoDevice> demo;
    addDevices(model, options, demo);
    // Stop reading and save at once, before the window and the demo device go.
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &model,
                     [&model] { model.shutdown(); });
    // Logout, systemctl stop and kill take the same way out, and save the last changes too.
    QuitSignals::install(application);

    MainWindow window(model);
    window.show();

    if (options.screenshot) {
        return takeScreenshot(model, window, options, demo != nullptr);
    }
    return QApplication::exec();
}
