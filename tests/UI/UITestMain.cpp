#include "LanguageForTesting.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// Widgets need a QApplication on the main thread; without a display they draw offscreen (test
// discovery at build time runs this binary too). Texts are checked in English, whatever the
// machine's locale, and the views keep their preferences in the run's own folder, never the
// user's.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    const QTemporaryDir preferences;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, preferences.path());
    testing::InitGoogleTest(&argc, argv);
    int result = 0;
    kestrin::L10n::withLanguageForTesting(kestrin::Language::en, [&] { result = RUN_ALL_TESTS(); });
    return result;
}
