#include "Model/ModelBuilders.h"
#include "QuitSignals.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <unistd.h>

#include <QApplication>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

// In a fresh process: a change whose autosave is still pending, then the signal, then the event
// loop as main runs it. Exits 0 when the loop ended and the autosave holds the change.
[[noreturn]] void quitOnSignal(int signal) {
    QTemporaryDir folder;
    const QString autosavePath = folder.filePath("Kestrin/project.json");
    PollerModel::Environment environment = Testing::environment();
    environment.autosavePath = autosavePath;
    // Only the quit can write it.
    environment.delays.autosave = std::chrono::hours(1);
    PollerModel model(std::move(environment));
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &model, [&model] { model.shutdown(); });
    if (!QuitSignals::install(*qApp)) {
        std::_Exit(2);
    }
    model.setTimeoutMs(2000);
    std::raise(signal);
    QApplication::exec();
    QFile saved(autosavePath);
    const bool written = saved.open(QIODevice::ReadOnly) &&
                         saved.readAll().toStdString() == model.currentProject().encoded();
    std::fprintf(stderr, written ? "saved\n" : "autosave missing or old\n");
    std::_Exit(written ? 0 : 1);
}

TEST(QuitSignals, TermIntAndHupQuitTheLoopAndWriteThePendingAutosave) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        EXPECT_EXIT(quitOnSignal(signal), testing::ExitedWithCode(0), "saved");
    }
}

} // namespace
} // namespace kestrin
