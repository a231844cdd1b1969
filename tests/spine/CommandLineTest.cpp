// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/CommandLine.h"
#include "SpineFixture.h"
#include "spine/DebugTrace.h"

#include <QFile>

using namespace tsr;
using tsr::test::SpineFixture;

namespace {

class CommandLineTest : public SpineFixture {
protected:
    void read(const QString& line) { spine::TSRCommandLine(ctx, line, QStringLiteral("/opt/tessarine")); }
    // The boxes the common error path showed for an overflow.
    int overflowBoxes() const {
        int n = 0;
        for (const auto& box : ui.boxes)
            n += box.text.contains(QStringLiteral("Overflow"));
        return n;
    }
};

// An empty line leaves dialog mode with every flag false.
TEST_F(CommandLineTest, EmptyLineIsDialogMode) {
    read(QString());
    const core::StartFlags& f = ctx.flags;
    EXPECT_FALSE(f.GlobalSilent || f.GlobalCommandKill || f.GlobalCommandDebug || f.GlobalCommandNoOrg ||
                 f.GlobalCommandShowData || f.GlobalCommandBoth || f.GlobalCommandVCal || f.GlobalCommandVCard ||
                 f.GlobalCommandOptions);
    EXPECT_TRUE(f.GlobalCaller.isEmpty());
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// Tokens are upper-cased and compared whole: "kill" counts, "/KILL" does not.
TEST_F(CommandLineTest, KillIsCaseBlindButWhole) {
    read(QStringLiteral("kill"));
    EXPECT_TRUE(ctx.flags.GlobalCommandKill);

    ctx.flags = {};
    read(QStringLiteral("/KILL"));
    EXPECT_FALSE(ctx.flags.GlobalCommandKill);
}

// CALLER= matches anywhere in a token and keeps everything behind the first "=".
TEST_F(CommandLineTest, CallerIsAPatternMatch) {
    read(QStringLiteral("XCALLER=ol"));
    EXPECT_EQ(ctx.flags.GlobalCaller, QStringLiteral("OL"));
    read(QStringLiteral("CALLER=OL=X"));
    EXPECT_EQ(ctx.flags.GlobalCaller, QStringLiteral("OL=X"));
}

// Flags add up and two blanks in a row give an empty token that matches nothing.
TEST_F(CommandLineTest, FlagsAddUp) {
    read(QStringLiteral("BOTH  VCARD noorg d debugx"));
    EXPECT_TRUE(ctx.flags.GlobalSilent);
    EXPECT_TRUE(ctx.flags.GlobalCommandBoth);
    EXPECT_TRUE(ctx.flags.GlobalCommandVCard);
    EXPECT_FALSE(ctx.flags.GlobalCommandVCal);
    EXPECT_TRUE(ctx.flags.GlobalCommandNoOrg);
    EXPECT_FALSE(ctx.flags.GlobalOrganizerOK);
    EXPECT_TRUE(ctx.flags.GlobalCommandShowData);
    EXPECT_FALSE(ctx.flags.GlobalCommandDebug);
}

// A value that is no number shows the warning with its four lines and keeps 0.
TEST_F(CommandLineTest, TimerNotNumericWarns) {
    read(QStringLiteral("TIMER=abc"));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Delivery value:ABC\r\nTimer interval is not a numeric value. Only "
                                               "values between 0 and 65000 are valid!\r\nz.B. TIMER=1000 fuer 1000 "
                                               "ms.\r\nDas Intervall wird auf 0 gesetzt!"));
    EXPECT_EQ(ui.boxes[0].icon, core::MsgIcon::Exclamation);
    EXPECT_EQ(ui.boxes[0].title, QStringLiteral("Tessarine"));
    EXPECT_EQ(ctx.flags.GlobalCommandTimer, 0);
}

// A negative value shows the warning with the second line for an inadmissible value.
TEST_F(CommandLineTest, TimerNegativeWarns) {
    read(QStringLiteral("TIMER=-1"));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.startsWith(QStringLiteral("Delivery value:-1\r\nTimer interval is inadmissible!")));
    EXPECT_EQ(ctx.flags.GlobalCommandTimer, 0);
}

// A valid value shows nothing and is only kept.
TEST_F(CommandLineTest, TimerValidIsQuiet) {
    read(QStringLiteral("TIMER=1000 VCAL"));
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_EQ(ctx.flags.GlobalCommandTimer, 1000);
    EXPECT_TRUE(ctx.flags.GlobalCommandVCal);
}

// 40000 does not fit 16 bits: the overflow goes to the common error path and the
// tokens behind it are not read any more.
TEST_F(CommandLineTest, TimerOverflowStopsReading) {
    read(QStringLiteral("TIMER=40000 KILL"));
    EXPECT_EQ(overflowBoxes(), 1);
    EXPECT_TRUE(ctx.flags.GlobalStartDone); // the first reported error marks the start as done
    EXPECT_FALSE(ctx.flags.GlobalCommandKill);
}

// The "--" options are taken out with their case before the tokens are read.
TEST_F(CommandLineTest, PlatformOptionsKeepTheirCase) {
    const auto split = spine::takePlatformOptions(
        ctx.options, {QStringLiteral("--home=/Data/Home"), QStringLiteral("vcal"), QStringLiteral("--config=/Cfg"),
                      QStringLiteral("--port=/dev/ttyUSB0"), QStringLiteral("--headless"), QStringLiteral("--pim=/P"),
                      QStringLiteral("--bogus"), QStringLiteral("CALLER=ol")});
    EXPECT_EQ(ctx.options.home, QStringLiteral("/Data/Home"));
    EXPECT_EQ(ctx.options.config, QStringLiteral("/Cfg"));
    EXPECT_EQ(ctx.options.port, QStringLiteral("/dev/ttyUSB0"));
    EXPECT_EQ(ctx.options.pim, QStringLiteral("/P"));
    EXPECT_TRUE(ctx.options.headless);
    EXPECT_EQ(split.classic, QStringLiteral("vcal CALLER=ol"));
    EXPECT_EQ(split.unknown, QStringList{QStringLiteral("--bogus")});
    EXPECT_FALSE(split.help);
    EXPECT_TRUE(spine::takePlatformOptions(ctx.options, {QStringLiteral("--help")}).help);
    EXPECT_TRUE(spine::takePlatformOptions(ctx.options, {QStringLiteral("--version")}).version);
}

// DEBUG opens TSRDebug.txt afresh and writes the first record: quoted date-time,
// CR LF, the call text, quote, CR LF.
TEST_F(CommandLineTest, DebugWritesTheCallRecord) {
    QFile old(home.filePath(QStringLiteral("TSRDebug.txt")));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old content");
    old.close();

    read(QStringLiteral("debug vcal"));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Debug: Aufrufstring = /opt/tessarine debug vcal"));
    EXPECT_EQ(ui.boxes[0].icon, core::MsgIcon::None);

    QFile file(home.filePath(QStringLiteral("TSRDebug.txt")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(),
              QByteArray("\"22.11.26 10:30:15\r\nDebug: Aufrufstring = /opt/tessarine debug vcal\"\r\n"));
}

// Box and file texts differ where the caller says so, and nothing happens with the trace off.
TEST_F(CommandLineTest, TracePointsWriteTheFileText) {
    spine::tracePoint(ctx, QStringLiteral("Debug: NoPrevInstance"));
    EXPECT_TRUE(ui.boxes.isEmpty());

    ctx.flags.GlobalCommandDebug = true;
    ASSERT_TRUE(spine::openDebugFile(ctx));
    spine::tracePoint(ctx, QStringLiteral("Debug: AppTimer.Interval"), QStringLiteral("Debug:  AppTimer.Interval"));
    spine::tracePoint(ctx, QStringLiteral("Debug: TSRInitForm"));
    ASSERT_EQ(ui.boxes.size(), 2);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Debug: AppTimer.Interval"));
    QFile file(ctx.flags.DebugFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("\"22.11.26 10:30:15\r\nDebug:  AppTimer.Interval\"\r\n"
                                         "\"22.11.26 10:30:15\r\nDebug: TSRInitForm\"\r\n"));
}

} // namespace
