// SPDX-License-Identifier: GPL-3.0-or-later
// The main of the window tests: a full application object (windows and fonts),
// offscreen unless the caller names a platform, and one time zone.
#include <QApplication>
#include <ctime>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
