// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/DateTimeFormats.h"
#include "SpineFixture.h"
#include "core/CreateTime.h"

using namespace tsr;
using tsr::test::SpineFixture;

namespace {

class DateTimeFormatsTest : public SpineFixture {};

// A German locale gives the day-first date, the 24-hour clock and no marks.
TEST_F(DateTimeFormatsTest, GermanLocale) {
    spine::RegDateTimeFormatGet(ctx, QLocale(QLocale::German, QLocale::Germany));
    const core::DateFormats& f = ctx.formats;
    EXPECT_EQ(f.DateFormat, QStringLiteral("dd.mm.yy"));
    EXPECT_EQ(f.DateChar, QStringLiteral("."));
    EXPECT_EQ(f.TimeFormat, QStringLiteral("hh:mm:ss"));
    EXPECT_EQ(f.TimeChar, QStringLiteral(":"));
    EXPECT_EQ(f.TimeIs24, 1);
    EXPECT_EQ(f.TimeMark, QString());
    EXPECT_EQ(f.GridTimeStyle, QStringLiteral("Short Time"));
    EXPECT_EQ(f.TimeFormatNoSec, QStringLiteral("hh:mm"));
    EXPECT_EQ(f.DateTimeFormat, QStringLiteral("hh:mm dd.mm.yy"));
    EXPECT_EQ(core::Format(ctx.clock.Now(), f.DateTimeFormat), QStringLiteral("10:30 22.11.26"));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A US locale gives month-first dates and the 12-hour clock with its marks behind the time.
TEST_F(DateTimeFormatsTest, UsLocaleTwelveHours) {
    spine::RegDateTimeFormatGet(ctx, QLocale(QLocale::English, QLocale::UnitedStates));
    const core::DateFormats& f = ctx.formats;
    EXPECT_EQ(f.DateFormat, QStringLiteral("m/d/yy"));
    EXPECT_EQ(f.DateChar, QStringLiteral("/"));
    EXPECT_EQ(f.TimeFormat, QStringLiteral("h:mm:ss AM/PM"));
    EXPECT_EQ(f.TimeIs24, 0);
    EXPECT_EQ(f.TimeAM, QStringLiteral("AM"));
    EXPECT_EQ(f.TimeMarkPM, QStringLiteral("PM"));
    EXPECT_EQ(f.TimeMark, QStringLiteral("AMPM"));
    EXPECT_EQ(f.GridTimeStyle, QStringLiteral("Medium Time"));
    EXPECT_EQ(f.TimeMarkPos, 0);
    EXPECT_EQ(f.TimeFormatNoSec, QStringLiteral("h:mm AMPM"));
    const core::VbDate afternoon(core::DateSerial(2026, 11, 22).value + core::TimeSerial(15, 5, 0).value);
    EXPECT_EQ(core::Format(afternoon, f.TimeFormatNoSec), QStringLiteral("3:05 PM"));
    EXPECT_EQ(core::Format(afternoon, f.DateFormat), QStringLiteral("11/22/26"));
}

// A typed time under the 12-hour format of a real locale: the mark decides the
// half of the day, upper or lower case; a 24-hour text that the format does not
// show falls to the piece reading, which keeps the current second.
TEST_F(DateTimeFormatsTest, TypedTimesUnderDayHalfMarks) {
    struct Case {
        const char* typed;
        const char* read;
    };
    spine::RegDateTimeFormatGet(ctx, QLocale(QLocale::English, QLocale::UnitedStates));
    const QList<Case> cases = {
        {"3:05:00 PM", "15:05:00"}, {"3:05 PM", "15:05:00"},  {"3:05 pm", "15:05:00"}, {"3:05 AM", "03:05:00"},
        {"12:00 AM", "00:00:00"},   {"12:30 PM", "12:30:00"}, {"15:05", "15:05:15"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed);
        core::VbDate t;
        core::CreateTimeFromString(ctx, QString::fromLatin1(c.typed), t);
        EXPECT_EQ(core::Format(t, QStringLiteral("hh:mm:ss")), QString::fromLatin1(c.read));
        EXPECT_LT(t.value, 1.0);
    }
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// Only the four items of dates and times can fail the locale query; a day-half
// mark keeps what fits the buffer, and a short one stays whole.
TEST_F(DateTimeFormatsTest, DayHalfMarksNeverFail) {
    EXPECT_EQ(spine::dayHalfMark(QString(39, u'a')), QString(39, u'a'));
    EXPECT_EQ(spine::dayHalfMark(QString(40, u'a')), QString(39, u'a'));
    EXPECT_EQ(spine::dayHalfMark(QString(100, u'p')), QString(39, u'p'));
    EXPECT_EQ(spine::dayHalfMark(QStringLiteral("vorm.")), QStringLiteral("vorm."));
    spine::RegDateTimeFormatGet(ctx, QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(ctx.formats.TimeAM, QStringLiteral("AM"));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A locale that puts the day-part mark before the hour says so in TimeMarkPos.
TEST_F(DateTimeFormatsTest, MarkBeforeTheHour) {
    spine::RegDateTimeFormatGet(ctx, QLocale(QLocale::Korean, QLocale::SouthKorea));
    EXPECT_EQ(ctx.formats.TimeIs24, 0);
    EXPECT_EQ(ctx.formats.TimeMarkPos, 1);
    EXPECT_EQ(ctx.formats.TimeMark, ctx.formats.TimeAM + ctx.formats.TimeMarkPM);
}

// Locale formats turn into the program's masks: quoted text, time zones and fractions.
TEST_F(DateTimeFormatsTest, MaskConversion) {
    EXPECT_EQ(spine::maskFromLocaleFormat(QStringLiteral("HH:mm:ss t")), QStringLiteral("hh:mm:ss"));
    EXPECT_EQ(spine::maskFromLocaleFormat(QStringLiteral("t HH:mm:ss.zzz")), QStringLiteral("hh:mm:ss."));
    EXPECT_EQ(spine::maskFromLocaleFormat(QStringLiteral("d.MM.yy 'г'.")), QStringLiteral("d.mm.yy \"г\"."));
    EXPECT_EQ(spine::maskFromLocaleFormat(QStringLiteral("ap h:mm")), QStringLiteral("am/pm h:mm"));
    EXPECT_EQ(spine::separatorOf(QStringLiteral("yyyy-MM-dd")), QStringLiteral("-"));
    EXPECT_EQ(spine::separatorOf(QStringLiteral("'x.'yyyy/MM")), QStringLiteral("/"));
}

// Date format repair: too short becomes yy.mm.dd, an overlong part is cut to four
// characters, and a format that still gives no date falls back.
TEST_F(DateTimeFormatsTest, DateFormatRepair) {
    const core::VbDate day = today();
    const QString dot = QStringLiteral(".");
    EXPECT_EQ(spine::repairDateFormat(QStringLiteral("dd"), dot, day), QStringLiteral("yy.mm.dd"));
    EXPECT_EQ(spine::repairDateFormat(QStringLiteral("dd.mm.yyyy"), dot, day), QStringLiteral("dd.mm.yyyy"));
    EXPECT_EQ(spine::repairDateFormat(QStringLiteral("dd.mm.yyyyyy"), dot, day), QStringLiteral("dd.mm.yyyy"));
    EXPECT_EQ(spine::repairDateFormat(QStringLiteral("dddd.mm.yyyy"), dot, day), QStringLiteral("yy.mm.dd"));
}

// Without seconds in the format, the format is taken as it is.
TEST_F(DateTimeFormatsTest, NoSecondsStaysAsItIs) {
    core::DateFormats f;
    f.TimeFormat = QStringLiteral("hh.mm");
    f.TimeChar = QStringLiteral(".");
    EXPECT_EQ(spine::BuildTimeNosSecFormat(f), QStringLiteral("hh.mm"));
    f.TimeFormat = QStringLiteral("h.mm.ss");
    EXPECT_EQ(spine::BuildTimeNosSecFormat(f), QStringLiteral("h.mm"));
}

} // namespace
