#include "ui/widgets/Theme.h"

#include <QApplication>
#include <QStandardPaths>
#include <gtest/gtest.h>

// Widgets need an application of their own kind, dressed as the program is; no display is used.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    const harbrix::Theme theme(application);
    return RUN_ALL_TESTS();
}
