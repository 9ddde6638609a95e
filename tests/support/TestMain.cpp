#include <QCoreApplication>
#include <QStandardPaths>
#include <gtest/gtest.h>

// Every test program has an event loop at hand and keeps its hands off the user's own files.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
