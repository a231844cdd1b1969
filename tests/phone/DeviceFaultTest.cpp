// SPDX-License-Identifier: GPL-3.0-or-later
// Every fault the phone or the line can show, through the real serial code:
// the routine returns false, the error reaches the user with its number and
// text, nothing hangs, and the next step finds the port usable again.
#include "phone/ATC.h"
#include "phone/ATCServer.h"
#include "phone/ComDrvCode.h"
#include "phone/LinkFixture.h"
#include "tables/TSRADODB.h"

#include <QElapsedTimer>
#include <unistd.h>

using namespace tsr;
using tsr::test::LinkFixture;

namespace {

struct FaultCase {
    const char* name;
    const char* options;
    bool viaDelete; // the fault is met by deleting the empty record 6, else by a read of record 7
    uint32_t number;
    const char* text;
};

void PrintTo(const FaultCase& c, std::ostream* os) {
    *os << c.name;
}

class DeviceFault : public LinkFixture, public ::testing::WithParamInterface<FaultCase> {};

} // namespace

// The fault gives its number and text in one box, and record 8 reads right after it.
TEST_P(DeviceFault, MapsToNumberAndTextAndLeavesThePortUsable) {
    const FaultCase& c = GetParam();
    auto& emu = startPhone(c.options);
    emu.seed(7, "seven");
    emu.seed(8, "eight");
    QByteArray text;
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 8)) << "the phone works before the fault";

    QElapsedTimer clock;
    clock.start();
    tables::Recordset row;
    tables::InitCalendarRS(row);
    tables::vCalCreateNewRecord(row);
    row.setValue(QStringLiteral("SubType"), int32_t(6));
    const bool ok =
        c.viaDelete ? phone::ATCRemoveEntryFromMobile(ctx, row) : phone::ATCGetSingleMobileEntry(ctx, text, 7);
    EXPECT_FALSE(ok);
    EXPECT_LT(clock.elapsed(), kTimeOut + 1500) << "a fault never waits much beyond GlobalTimeOut";
    ASSERT_EQ(ui.boxes.size(), 1) << boxTexts().toStdString();
    const QString box = ui.boxes.first().text;
    EXPECT_TRUE(box.contains(QString::fromLatin1(c.text))) << box.toStdString();
    EXPECT_TRUE(box.contains(QStringLiteral("Number:") + QString::number(int32_t(c.number)))) << box.toStdString();
    EXPECT_EQ(ui.boxes.first().icon, core::MsgIcon::Exclamation);

    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 8)) << boxTexts().toStdString();
    EXPECT_EQ(text, QByteArray("eight"));
}

constexpr FaultCase kFaults[] = {
    {"PhoneBusy", "--cme 515:$ORGR=4,7", false, 0x80042203, "ATC_E_PHONEBUSY"},
    {"InvalidIndex", "--cme 21:$ORGR=4,7", false, 0x80042015, "ATC_E_INVALIDINDEX"},
    {"PhoneFailure", "--cme 0:$ORGR=4,7", false, 0x80042000, "ATC_E_PHONEFAILURE"},
    {"MemoryFailure", "--cme 23:$ORGR=4,7", false, 0x80042017, "ATC_E_MEMORYFAILURE"},
    {"NotFoundOnDelete", "", true, 0x80042016, "ATC_E_NOTFOUND"},
    {"BareError", "--error $ORGR=4,7", false, 0x80004005, "GDX has returned error."},
    {"Silence", "--silent $ORGR=4,7", false, 0x80010001, "Mobile is not responding within Tessarine timeout."},
    {"LineBreaks", "--break-after 12:$ORGR=4,7", false, 462,
     "Process communication between Tessraine and the mobile has failed."},
};
INSTANTIATE_TEST_SUITE_P(Faults, DeviceFault, ::testing::ValuesIn(kFaults),
                         [](const auto& info) { return std::string(info.param.name); });

class LinkFault : public LinkFixture {};

// No answer at all is bounded by GlobalTimeOut, not by anything longer.
TEST_F(LinkFault, SilenceIsBoundedByTheTimeOut) {
    startPhone("--silent $ORGS");
    ctx.flags.GlobalTimeOut = 300;
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(phone::ATCInfo(ctx));
    EXPECT_GE(clock.elapsed(), 300);
    EXPECT_LT(clock.elapsed(), 1300);
}

// A busy phone refuses its store but still identifies itself over the same open line.
TEST_F(LinkFault, ABusyPhoneStillAnswersIdentification) {
    startPhone("--busy --model QX71");
    EXPECT_FALSE(phone::ATCInfo(ctx));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes.first().text.contains(QStringLiteral("ATC_E_PHONEBUSY")));
    EXPECT_EQ(phone::atcServer(ctx).Model(), QStringLiteral("QX71"));
}

// A device that is not there reads as a phone that does not respond; pointing at the phone again works.
TEST_F(LinkFault, AMissingDeviceIsReportedAndTheNextPortWorks) {
    auto& emu = startPhone();
    emu.seed(8, "eight");
    ctx.options.port = config.filePath(QStringLiteral("no-such-device"));
    QByteArray text;
    EXPECT_FALSE(phone::ATCGetSingleMobileEntry(ctx, text, 8));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes.first().text.contains(QStringLiteral("Mobile does not respond.")));
    EXPECT_TRUE(ui.boxes.first().text.contains(QString::number(int32_t(0x80070002))));
    ctx.options.port = emu.link();
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 8));
    EXPECT_EQ(text, QByteArray("eight"));
}

// A device the user may not open is "Access denied!".
TEST_F(LinkFault, ADeviceClosedToTheUserIsAccessDenied) {
    if (geteuid() == 0)
        GTEST_SKIP() << "root opens every device";
    auto& emu = startPhone();
    const QString device = emu.devices().last();
    ASSERT_EQ(::chmod(device.toLocal8Bit().constData(), 0), 0);
    QByteArray text;
    EXPECT_FALSE(phone::ATCGetSingleMobileEntry(ctx, text, 1));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes.first().text.contains(QStringLiteral("Access denied!")));
}

// A line that breaks empties both server slots; the next step makes a fresh server that reaches
// the phone's new device through the same port name.
TEST_F(LinkFault, ABrokenLineGivesAFreshServerOnTheNextStep) {
    auto& emu = startPhone("--break-after 0:$ORGR=4,7");
    emu.seed(8, "eight");
    QByteArray text;
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 8));
    const std::weak_ptr<phone::ATCServer> before = ctx.servers.ATCServer;
    EXPECT_FALSE(phone::ATCGetSingleMobileEntry(ctx, text, 7));
    EXPECT_FALSE(ctx.servers.ATCServer) << "the slot is emptied";
    EXPECT_TRUE(before.expired()) << "and the old server is gone";
    EXPECT_FALSE(ctx.servers.GDXServer);
    EXPECT_FALSE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRClearMobileCal")));
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 8));
    EXPECT_EQ(text, QByteArray("eight"));
    ASSERT_TRUE(ctx.servers.ATCServer);
    EXPECT_EQ(emu.devices(2).size(), 2) << "the emulator opened a new device after the break";
}

// The phone vanishing (its process gone) is the server's process gone too.
TEST_F(LinkFault, APhoneThatVanishesIsTheServerGone) {
    auto& emu = startPhone();
    emu.seed(8, "eight");
    QByteArray text;
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 8));
    emu.kill();
    EXPECT_FALSE(phone::ATCGetSingleMobileEntry(ctx, text, 8));
    ASSERT_FALSE(ui.boxes.isEmpty());
    EXPECT_TRUE(ui.boxes.first().text.contains(QStringLiteral("Number:462"))) << ui.boxes.first().text.toStdString();
    EXPECT_FALSE(ctx.servers.ATCServer);
}
