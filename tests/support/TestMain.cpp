// SPDX-License-Identifier: GPL-3.0-or-later
// The main of every test program: a Qt application object (offscreen where the
// environment says so) so that Qt's event loop, sockets and timers work.
#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
