// SPDX-License-Identifier: GPL-3.0-or-later
// The main of the window tests: a widget application (offscreen in ctest) in
// the tests' fixed time zone.
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
