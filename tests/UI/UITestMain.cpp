#include <QApplication>
#include <gtest/gtest.h>

// Widgets need a QApplication on the main thread; without a display they draw offscreen (test
// discovery at build time runs this binary too).
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
