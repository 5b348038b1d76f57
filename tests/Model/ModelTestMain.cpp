#include "LanguageForTesting.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

// The model's timers, queued engine events and the port scanner need a Qt application on the
// main thread; its texts are checked in English.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    int result = 0;
    kestrin::L10n::withLanguageForTesting(kestrin::Language::en, [&] { result = RUN_ALL_TESTS(); });
    return result;
}
