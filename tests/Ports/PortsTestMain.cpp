#include <QCoreApplication>
#include <gtest/gtest.h>

// The scanner's timers and socket watching need a Qt application on the main thread.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
