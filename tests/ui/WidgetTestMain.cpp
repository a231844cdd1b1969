// SPDX-License-Identifier: GPL-3.0-or-later
// The main of the window tests: a full application object on the offscreen
// platform, in one time zone, so that a failure seen on one machine is seen on all.
#include <QApplication>
#include <ctime>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }
    // Test discovery runs the program without ctest's environment.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
