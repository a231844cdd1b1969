// SPDX-License-Identifier: GPL-3.0-or-later
// Clearing the phone after the user's yes, and the status line of the phone.
#include "roads/MobileClear.h"
#include "core/StatusBar.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/RoadsFixture.h"

using namespace tsr;
using tsr::test::RoadsFixture;
using tsr::test::vcs;
using tsr::test::when;

namespace {

class MobileClear : public RoadsFixture {
protected:
    test::EmulatedPhone& readThree() {
        test::EmulatedPhone& p = phoneWith();
        p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
        p.seed(2, vcs("20260302T180000Z", "20260302T193000Z", "MISCELLANEOUS", "Choir", "W1 MO TH #0"));
        p.seed(3, vcs("20260311T090000Z", "20260311T091500Z", "PHONE CALL", "0301234567"));
        appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
        EXPECT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
        EXPECT_TRUE(roads::vCalReadMobile(ctx));
        return p;
    }
};

} // namespace

// Cancel leaves the phone as it is; OK empties it and keeps the store's side of a pair.
TEST_F(MobileClear, AsksThenEmptiesThePhone) {
    test::EmulatedPhone& p = readThree();
    ui.answer(core::MsgResult::Cancel);
    EXPECT_FALSE(roads::vCalClearMobile(ctx));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes.last().text,
              QStringLiteral("Warning! All calendar entries will be deleted from mobile!\nAre you sure?"));
    EXPECT_EQ(p.records().size(), 3);

    ui.answer(core::MsgResult::OK);
    EXPECT_TRUE(roads::vCalClearMobile(ctx));
    EXPECT_TRUE(p.records().isEmpty());
    EXPECT_EQ(rowsByType(), (std::map<int, int>{{1, 1}}));
    EXPECT_EQ(ctx.read.vCalMobileCount, 0);
    EXPECT_EQ(icsFiles().size(), 1);
}

// A phone that fails in the middle: the phone's rows leave the table, the phone keeps the rest.
TEST_F(MobileClear, AFailedDeleteTakesThePhoneRowsOffTheTable) {
    readThree();
    const auto held = phone->records();
    test::EmulatedPhone& p = phoneWith("--first 1 --last 20 --cme 3:$ORGD=4,2");
    for (auto it = held.cbegin(); it != held.cend(); ++it)
        p.seed(it.key(), it.value());
    ui.answer(core::MsgResult::OK);
    EXPECT_FALSE(roads::vCalClearMobile(ctx));
    EXPECT_EQ(p.records().keys(), (QList<int>{2, 3}));
    EXPECT_EQ(rowsByType(), (std::map<int, int>{{1, 1}}));
    EXPECT_FALSE(ctx.read.vCalMobileRead);
}

// The status line after a read, after the phone went away, and not at all in a silent run.
TEST_F(MobileClear, StatusLineFollowsThePhone) {
    readThree();
    const core::StatusBarModel& bar = ctx.statusBar;
    EXPECT_EQ(bar.Mobile, QStringLiteral("Tessarine TX1"));
    EXPECT_EQ(bar.MobilePicture, core::MobileIcon::Connected);
    EXPECT_EQ(bar.MobileStatus, QStringLiteral("Connected"));
    EXPECT_EQ(bar.EntryCounter, QStringLiteral("3/20: Mobile entries occupied"));

    ctx.read.vCalMobileRead = false;
    core::SetStatusBarMobile(ctx, false);
    EXPECT_EQ(bar.EntryCounter, QStringLiteral("?/20: Mobile entries occupied"));
    ctx.read.MobileConnected = false;
    core::SetStatusBarMobile(ctx, false);
    EXPECT_EQ(bar.Mobile, QStringLiteral("No mobile"));
    EXPECT_EQ(bar.MobileStatus, QStringLiteral("Offline"));
    EXPECT_EQ(bar.EntryCounter, QStringLiteral("?: Mobile entries occupied"));

    ctx.flags.GlobalSilent = true;
    ctx.read.MobileConnected = true;
    core::SetStatusBarMobile(ctx, false);
    EXPECT_EQ(bar.MobileStatus, QStringLiteral("Offline"));
}
