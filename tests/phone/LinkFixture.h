// SPDX-License-Identifier: GPL-3.0-or-later
// A context wired to an emulated phone: the port is the emulator's link, the
// settings live in a temporary folder, the phone may be used and the timeout is
// short, so a silent phone costs a test little time.
#pragma once

#include "core/Context.h"
#include "phone/EmulatedPhone.h"
#include "support/ScriptedUi.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace tsr::test {

class LinkFixture : public ::testing::Test {
protected:
    static constexpr int16_t kTimeOut = 700;

    LinkFixture();
    // Starts (or restarts) the phone with these emulator options and points the port at it.
    EmulatedPhone& startPhone(const QStringList& options = {});
    // The text of every box shown so far, joined.
    QString boxTexts() const;

    ScriptedUi ui;
    core::Context ctx{ui};
    QTemporaryDir config;
    std::unique_ptr<EmulatedPhone> phone;
};

} // namespace tsr::test
