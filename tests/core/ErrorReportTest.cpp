// SPDX-License-Identifier: GPL-3.0-or-later
// The common error path: which text each error number gives, what it switches
// off, when a box comes up and what it says, and the row it leaves in the log.
#include "core/ErrorReport.h"
#include "log/LogInit.h"
#include "support/ScriptedUi.h"

#include <gtest/gtest.h>

using namespace tsr;
using core::TsrError;

namespace {

constexpr int32_t hr(uint32_t v) {
    return static_cast<int32_t>(v);
}

const QString kPimFailed3 = QStringLiteral(
    "Accessing the PIM application and its services has failed.\r\n"
    "Possible cause: The PIM is not installed correct or is not configured properly for the use with Tessarine.\r\n"
    "Please make sure the standard folder structure is available!");
const QString kPimFailed2 = QStringLiteral(
    "Accessing the PIM application and its services has failed.\r\n"
    "Possible cause: The PIM is not installed correct or is not configured properly for the use with Tessarine.");
const QString kServerGone =
    QStringLiteral("Process communication between Tessraine and the mobile has failed.\r\n"
                   "Possible cause: COM-Server is not available.\r\n"
                   "Please restart Tessarine. If the problem still exists, please reinstall the GDX-Server software.");
const QString kGdx =
    QStringLiteral("GDX has returned error.\r\nPossible cause: The mobile is busy, not connected or switched off.");

class ErrorReportTest : public ::testing::Test {
protected:
    ErrorReportTest() {
        log::LogInit(ctx);
        ctx.flags.GlobalLogReady = true;
    }

    // Reports an error with a one-line description; returns the box text shown, if any.
    void report(int32_t number, const QString& modul = QStringLiteral("Mobile"), const QString& extra = {}) {
        core::ErrorsCode(ctx, TsrError(number, QStringLiteral("src"), QStringLiteral("desc")), modul,
                         QStringLiteral("proc"), extra);
    }
    QString lastLogText() {
        auto& t = *ctx.tables.LogErrors;
        t.moveLast();
        return t.value(QStringLiteral("ErrorDesc")).toText();
    }
    bool clearToolEnabled() const {
        return ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRClearMobileCal"));
    }

    test::ScriptedUi ui;
    core::Context ctx{ui};
};

// Every row of the number table gives its text, and only the mobile failures switch the clear tool off.
TEST_F(ErrorReportTest, EachNumberGivesItsTextAndSwitchesOnlyTheMobileFailuresOff) {
    struct Row {
        int32_t number;
        QString text;
        bool disables;
    };
    std::vector<Row> rows = {
        {-1987, kPimFailed3, false},
        {462, kServerGone, true},
        {hr(0x80010001),
         QStringLiteral("Mobile is not responding within Tessarine timeout.\r\n"
                        "Possible cause: The mobile is busy, not connected or switched off."),
         true},
        {hr(0x80070005), QStringLiteral("Access denied!"), false},
        {hr(0x80070002),
         QStringLiteral("Mobile does not respond.\r\nPossible cause: The mobile is not connected or is switched off."),
         true},
        {-2001, QStringLiteral("Process communication has failed."), false},
        {hr(0x80000002), QStringLiteral("Process communication has failed."), false},
        {hr(0x80000001), QString(), false},
        {-2000, QString(), false},
        {-1996, QString(), false},
        {6, QString(), false},
        {hr(0x80042016), QStringLiteral("Process communication has failed."), false},
    };
    for (uint32_t n : {0x8004A001u, 0x8004A004u, 0x8004A002u, 0x8004B001u, 0x80048001u, 0x80070050u, 0x80030002u,
                       0x8007000Eu, 0x80030070u, 0x80004005u, 0x8007041Cu, 0x8007001Au, 0x8007006Fu})
        rows.push_back({hr(n), kGdx, true});
    for (uint32_t n : {0x8E64010Fu, 0x9494010Fu, 0x98B4010Fu, 0x9074010Fu, 0xBDC4010Fu, 0xC1E4010Fu, 0xC824010Fu,
                       0xC404010Fu, 0xCE54010Fu, 0xD274010Fu})
        rows.push_back({hr(n), kPimFailed2, false});

    for (const Row& row : rows) {
        SCOPED_TRACE(row.number);
        core::Context fresh{ui};
        EXPECT_EQ(core::friendlyText(fresh, row.number, QStringLiteral("Mobile")), row.text);
        ui.boxes.clear();
        core::ErrorsCode(fresh, TsrError(row.number, QStringLiteral("src"), QStringLiteral("desc")),
                         QStringLiteral("Mobile"), QStringLiteral("proc"));
        ASSERT_EQ(ui.boxes.size(), 1);
        EXPECT_TRUE(ui.boxes[0].text.startsWith(QStringLiteral("Description:") + row.text + QStringLiteral("\r\n")));
        EXPECT_EQ(!fresh.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRClearMobileCal")),
                  row.disables);
    }
}

// The two PIM "not available" numbers give the three-line text, count, and keep every later box away.
TEST_F(ErrorReportTest, PimNotAvailableCountsAndSilencesAllLaterBoxes) {
    for (uint32_t n : {0x98A4011Du, 0xA504011Du}) {
        SCOPED_TRACE(n);
        core::Context fresh{ui};
        log::LogInit(fresh);
        fresh.flags.GlobalLogReady = true;
        ui.boxes.clear();
        core::ErrorsCode(fresh, TsrError(hr(n), QString(), QStringLiteral("desc")), QStringLiteral("DOROutlook"),
                         QStringLiteral("Check4Outlook"));
        EXPECT_EQ(fresh.log.PIMErrorCount, 1);
        EXPECT_EQ(core::friendlyText(fresh, hr(n), QString()), kPimFailed3);
        // The count is raised before the box is considered, so this one is not shown either.
        EXPECT_TRUE(ui.boxes.isEmpty());
        core::ErrorsCode(fresh, TsrError(462, QString(), QStringLiteral("gone")), QStringLiteral("ATC"),
                         QStringLiteral("InitComm"));
        EXPECT_TRUE(ui.boxes.isEmpty());
        EXPECT_EQ(fresh.tables.LogErrors->recordCount(), 2);
        EXPECT_EQ(fresh.log.LogProgramErrors, 2);
    }
}

// Access denied reads as a full card only for the model QX71 reached through the file-transfer module.
TEST_F(ErrorReportTest, AccessDeniedDependsOnModelAndModule) {
    const int32_t denied = hr(0x80070005);
    const QString full = QStringLiteral("Mobile has denied access.\r\nPossible cause: MMC full or no free entries.");
    ctx.phone.MobileModel = QStringLiteral("QX71");
    EXPECT_EQ(core::friendlyText(ctx, denied, QStringLiteral("GDX")), full);
    EXPECT_EQ(core::friendlyText(ctx, denied, QStringLiteral("ATC")), QStringLiteral("Access denied!"));
    EXPECT_EQ(core::friendlyText(ctx, denied, QStringLiteral("gdx")), QStringLiteral("Access denied!"));
    ctx.phone.MobileModel = QStringLiteral("Q71");
    EXPECT_EQ(core::friendlyText(ctx, denied, QStringLiteral("GDX")), QStringLiteral("Access denied!"));
}

// From the module ATC a listed number shows its name, 0x80042229 its signed number, others keep their text.
TEST_F(ErrorReportTest, AtcModuleShowsTheServerNames) {
    const std::pair<uint32_t, const char*> names[] = {
        {0x80042000, "ATC_E_PHONEFAILURE"},       {0x80042001, "ATC_E_NOCONNECTION"},
        {0x80042002, "ATC_E_LINKRESERVED"},       {0x80042005, "ATC_E_PH_PINREQUIRED"},
        {0x80042014, "ATC_E_MEMORYFULL"},         {0x80042015, "ATC_E_INVALIDINDEX"},
        {0x80042016, "ATC_E_NOTFOUND"},           {0x80042017, "ATC_E_MEMORYFAILURE"},
        {0x80042018, "ATC_E_TEXTTOOLONG"},        {0x80042019, "ATC_E_INVCHARINTEXT"},
        {0x8004201A, "ATC_E_DIALSTRINGTOOLONG"},  {0x8004201B, "ATC_E_INVCHARINDIAL"},
        {0x8004201E, "ATC_E_NONETWORKSERVICE"},   {0x8004201F, "ATC_E_NETWORKTIMEOUT"},
        {0x80042130, "ATC_E_INVALIDPDU"},         {0x80042131, "ATC_E_INVALIDTEXTMODE"},
        {0x8004214A, "ATC_E_SMSCUNKNOWN"},        {0x80042200, "ATC_E_CALLBARREDBYBLACKLIST"},
        {0x80042201, "ATC_E_PHONELINKRESERVED"},  {0x80042202, "ATC_E_INVALIDDIALSTRING"},
        {0x80042203, "ATC_E_PHONEBUSY"},          {0x80042226, "ATC_E_PH_SIMPUKREQUIRED"},
        {0x80042227, "ATC_E_NTF_SIMPINREQUIRED"}, {0x80042228, "ATC_E_NTFSIM_PUKREQUIRED"},
        {0x8004222A, "ATC_E_PH_NETPUKREQUIRED"},  {0x8004222B, "ATC_E_PH_SPPINREQUIRED"},
        {0x8004222C, "ATC_E_PH_SPPUKREQUIRED"},   {0x8004222D, "ATC_E_PH_CPPINREQUIRED"},
        {0x8004222E, "ATC_E_PH_CPPUKREQUIRED"},   {0x8004222F, "ATC_E_FEATUREPINREQUIRED"},
        {0x80042230, "ATC_E_FEATUREPUKREQUIRED"},
    };
    for (const auto& [number, name] : names) {
        SCOPED_TRACE(name);
        ui.boxes.clear();
        report(hr(number), QStringLiteral("ATC"));
        ASSERT_EQ(ui.boxes.size(), 1);
        EXPECT_TRUE(ui.boxes[0].text.startsWith(QStringLiteral("Description:") + QLatin1String(name) +
                                                QStringLiteral("\r\n\r\n")));
        EXPECT_EQ(lastLogText(), QLatin1String(name) + QStringLiteral(" : desc "));
    }

    report(hr(0x80042229), QStringLiteral("ATC"));
    EXPECT_TRUE(ui.boxes.last().text.startsWith(QStringLiteral("Description:-2147212759\r\n")));
    // An unlisted number keeps the text of the number table.
    report(hr(0x80042003), QStringLiteral("ATC"));
    EXPECT_TRUE(ui.boxes.last().text.startsWith(QStringLiteral("Description:Process communication has failed.")));
    report(462, QStringLiteral("ATC"));
    EXPECT_TRUE(ui.boxes.last().text.startsWith(QStringLiteral("Description:") + kServerGone));
    // Another module never shows the names.
    report(hr(0x80042014), QStringLiteral("atc"));
    EXPECT_TRUE(ui.boxes.last().text.startsWith(QStringLiteral("Description:Process communication has failed.")));
}

// The box: icon, title, button and the exact lines, with the extra text behind the friendly one.
TEST_F(ErrorReportTest, BoxLayoutAndFocusBackToMainWindow) {
    ui.mainVisible = true;
    core::ErrorsCode(ctx, TsrError(hr(0x80010001), QStringLiteral("ATCServer"), QStringLiteral("Timeout")),
                     QStringLiteral("Mobile"), QStringLiteral("vCalReadMobile"), QStringLiteral("Entry 7"));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].title, QStringLiteral("Tessarine"));
    EXPECT_EQ(ui.boxes[0].icon, core::MsgIcon::Exclamation);
    EXPECT_EQ(ui.boxes[0].buttons, core::MsgButtons::OK);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Description:Mobile is not responding within Tessarine timeout.\r\n"
                                               "Possible cause: The mobile is busy, not connected or switched off.\r\n"
                                               "Entry 7\r\n\r\nNumber:-2147418111\r\nTimeout\r\n"));
    EXPECT_EQ(ui.focusCount, 1);
    EXPECT_TRUE(ctx.flags.GlobalStartDone);

    // The log keeps the extra text's line, the description behind it.
    auto& t = *ctx.tables.LogErrors;
    ASSERT_EQ(t.recordCount(), 1);
    t.moveFirst();
    EXPECT_EQ(t.value(QStringLiteral("ErrorDesc")).toText(), QStringLiteral("Entry 7 : Timeout "));
    EXPECT_EQ(t.value(QStringLiteral("ErrorNum")).toText(), QStringLiteral("-2147418111"));
    EXPECT_EQ(t.value(QStringLiteral("Modul")).toText(), QStringLiteral("Mobile"));
    EXPECT_EQ(t.value(QStringLiteral("Proc")).toText(), QStringLiteral("vCalReadMobile"));

    // A hidden main window does not take the focus; labels follow the language.
    ui.mainVisible = false;
    ctx.strings.set(480, QStringLiteral("Beschreibung:"));
    ctx.strings.set(482, QStringLiteral("Nummer:"));
    report(6);
    EXPECT_EQ(ui.boxes.last().text, QStringLiteral("Beschreibung:\r\n\r\nNummer:6\r\ndesc\r\n"));
    EXPECT_EQ(ui.focusCount, 1);
}

// Silent runs and errors marked with "~" log a row but show no box; number 0 does nothing at all.
TEST_F(ErrorReportTest, SilentAndKnownErrorsAreLoggedWithoutBox) {
    report(0);
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_EQ(ctx.tables.LogErrors->recordCount(), 0);
    EXPECT_FALSE(ctx.flags.GlobalStartDone);

    core::ErrorsCode(ctx, TsrError(13, QString(), QStringLiteral("known ~ case")), QStringLiteral("vCal"),
                     QStringLiteral("ParsEntryFromMobile"));
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_EQ(ctx.tables.LogErrors->recordCount(), 1);
    EXPECT_TRUE(ctx.flags.GlobalStartDone);

    ctx.flags.GlobalSilent = true;
    report(-1987);
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_EQ(ctx.tables.LogErrors->recordCount(), 2);
    EXPECT_EQ(lastLogText(), QStringLiteral("Please make sure the standard folder structure is available! : desc "));
    EXPECT_EQ(ctx.log.LogProgramErrors, 2);
}

// Error 462 empties both server slots and switches the clear tool off.
TEST_F(ErrorReportTest, ServerGoneEmptiesBothSlots) {
    // Stand-ins that only hold a reference; the slots never call them here.
    auto owner = std::make_shared<int>(0);
    ctx.servers.ATCServer = std::shared_ptr<phone::ATCServer>(owner, reinterpret_cast<phone::ATCServer*>(owner.get()));
    ctx.servers.GDXServer =
        std::shared_ptr<phone::GDXServerInterface>(owner, reinterpret_cast<phone::GDXServerInterface*>(owner.get()));
    ASSERT_EQ(owner.use_count(), 3);
    EXPECT_TRUE(clearToolEnabled());

    report(462, QStringLiteral("ATC"));
    EXPECT_EQ(ctx.servers.ATCServer, nullptr);
    EXPECT_EQ(ctx.servers.GDXServer, nullptr);
    EXPECT_EQ(owner.use_count(), 1);
    EXPECT_FALSE(clearToolEnabled());
}

// A procedure's handler reports under its module and proc and gives back its default.
TEST_F(ErrorReportTest, GuardedReportsAndReturnsTheDefault) {
    const int r = core::guarded(ctx, QStringLiteral("Verwaltung"), QStringLiteral("InsertEntry"), -1, [&]() -> int {
        core::raise(-1996, QStringLiteral("vCal"), QStringLiteral("Unexpected key"));
    });
    EXPECT_EQ(r, -1);
    const int ok =
        core::guarded(ctx, QStringLiteral("Verwaltung"), QStringLiteral("InsertEntry"), -1, [] { return 4; });
    EXPECT_EQ(ok, 4);
    core::guarded(ctx, QStringLiteral("Allgemein"), QStringLiteral("Other"), [] { throw std::runtime_error("boom"); });

    auto& t = *ctx.tables.LogErrors;
    ASSERT_EQ(t.recordCount(), 2);
    t.moveFirst();
    EXPECT_EQ(t.value(QStringLiteral("ErrorNum")).toText(), QStringLiteral("-1996"));
    EXPECT_EQ(t.value(QStringLiteral("ErrorDesc")).toText(), QStringLiteral("Unexpected key "));
    EXPECT_EQ(t.value(QStringLiteral("Modul")).toText(), QStringLiteral("Verwaltung"));
    EXPECT_EQ(t.value(QStringLiteral("Proc")).toText(), QStringLiteral("InsertEntry"));
    t.moveNext();
    EXPECT_EQ(t.value(QStringLiteral("ErrorDesc")).toText(), QStringLiteral("boom "));
    EXPECT_EQ(t.value(QStringLiteral("Modul")).toText(), QStringLiteral("Allgemein"));
    EXPECT_EQ(ui.boxes.size(), 2);
}

} // namespace
