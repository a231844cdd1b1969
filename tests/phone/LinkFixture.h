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

    LinkFixture() {
        ctx.options.config = config.path();
        ctx.flags.GDX_Check = true;
        ctx.flags.GlobalTimeOut = kTimeOut;
    }
    // Starts (or restarts) the phone with these emulator options and points the port at it.
    EmulatedPhone& startPhone(const char* options = "") {
        phone.reset();
        phone = std::make_unique<EmulatedPhone>(options);
        ctx.options.port = phone->link();
        return *phone;
    }
    // The text of every box shown so far, joined.
    QString boxTexts() const {
        QStringList texts;
        for (const ShownBox& box : ui.boxes)
            texts << box.text;
        return texts.join(u'\n');
    }

    ScriptedUi ui;
    core::Context ctx{ui};
    QTemporaryDir config;
    std::unique_ptr<EmulatedPhone> phone;
};

} // namespace tsr::test
