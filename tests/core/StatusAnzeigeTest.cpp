// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Context.h"
#include "support/ScriptedUi.h"

#include <gtest/gtest.h>

using namespace tsr;
using core::MsgResult;

// A cancel gesture is asked about at the next GetState; No goes on, Yes stops.
TEST(StatusAnzeige, CancelIsAskedAtTheNextGetState) {
    test::ScriptedUi ui;
    core::Context ctx(ui);
    ctx.status.Start(QStringLiteral("Tessarine"), false);
    EXPECT_TRUE(ctx.status.GetState());
    EXPECT_TRUE(ui.boxes.isEmpty());

    ctx.status.cancelRequested();
    ui.answer(MsgResult::No);
    EXPECT_TRUE(ctx.status.GetState());
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Do you really want to cancel?"));
    EXPECT_TRUE(ctx.status.GetState()); // Continue was set again: no second question

    ctx.status.cancelRequested();
    ui.answer(MsgResult::Yes);
    EXPECT_FALSE(ctx.status.GetState());
}

TEST(StatusAnzeige, QuietAsksNothingAndClosingStopsEveryLoop) {
    test::ScriptedUi ui;
    core::Context ctx(ui);
    ctx.status.Start(QStringLiteral("x"), true);
    ctx.status.cancelRequested();
    EXPECT_TRUE(ctx.status.GetState());
    ctx.status.SetText(QStringLiteral("hidden"));
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_TRUE(ui.statusTexts.isEmpty());
    ctx.flags.GlobalClosing = true;
    EXPECT_FALSE(ctx.status.GetState());
}
