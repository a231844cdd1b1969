// SPDX-License-Identifier: GPL-3.0-or-later
// The main of every test program: a Qt application object (offscreen where the
// environment says so) so that Qt's event loop, sockets and timers work. The
// tests run in one time zone unless the caller names another, so that a
// failure seen on one machine is seen on all.
#include <QCoreApplication>
#include <ctime>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
