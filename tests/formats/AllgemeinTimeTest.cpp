// SPDX-License-Identifier: GPL-3.0-or-later
// Whether a series row from the phone must stay for the date range, and the
// reading of a typed time.
#include "formats/AllgemeinTime.h"
#include "vCalFixture.h"

using namespace tsr;

namespace {
class MustbeStandTest : public test::vCalFixture {
protected:
    MustbeStandTest() {
        // The range: Wednesday 18 November to Tuesday 24 November 2026.
        ctx.flags.GlobalStartDate = at(2026, 11, 18);
        ctx.flags.GlobalEndDate = at(2026, 11, 24, 23, 59, 59);
    }
    void series(const char* type, core::VbDate startDate, int64_t mask = 0, const char* id = "5") {
        const test::FieldValues values = {
            {u"Mobile", true},         {u"ISRecurring", true}, {u"RecurrenceType", QString::fromUtf8(type)},
            {u"StartDate", startDate}, {u"Weekdaymask", mask}, {u"EntryID", QString::fromUtf8(id)}};
        setFields(values);
    }
};
} // namespace

// Only series rows of the phone are examined.
TEST_F(MustbeStandTest, OnlyMobileSeriesRows) {
    series("M", at(2026, 1, 20));
    EXPECT_TRUE(formats::MustbeStand(ctx, *table));
    set(QStringLiteral("Mobile"), false);
    EXPECT_FALSE(formats::MustbeStand(ctx, *table));
    setFields({{u"Mobile", true}, {u"ISRecurring", false}});
    EXPECT_FALSE(formats::MustbeStand(ctx, *table));
}

// A weekly series on one day stays when its weekday falls into the range.
TEST_F(MustbeStandTest, WeeklyOneDay) {
    series("W", at(2026, 1, 5), 2); // Mondays: 23 November is in the range
    EXPECT_TRUE(formats::MustbeStand(ctx, *table));
    ctx.flags.GlobalEndDate = at(2026, 11, 22, 23, 59, 59); // Wednesday to Sunday
    EXPECT_FALSE(formats::MustbeStand(ctx, *table));
}

// Monthly and yearly series stay only when an occurrence lies in the range, and
// not for a start after the range.
TEST_F(MustbeStandTest, MonthlyAndYearly) {
    series("M", at(2026, 2, 20));
    EXPECT_TRUE(formats::MustbeStand(ctx, *table));
    series("M", at(2026, 2, 10));
    EXPECT_FALSE(formats::MustbeStand(ctx, *table));
    series("Y", at(2019, 11, 24));
    EXPECT_TRUE(formats::MustbeStand(ctx, *table));
    series("Y", at(2019, 11, 25));
    EXPECT_FALSE(formats::MustbeStand(ctx, *table));
    series("Y", at(2027, 11, 20));
    EXPECT_FALSE(formats::MustbeStand(ctx, *table));
}

// A daily series from before the range always reaches it.
TEST_F(MustbeStandTest, Daily) {
    series("D", at(2020, 1, 1));
    EXPECT_TRUE(formats::MustbeStand(ctx, *table));
    series("D", at(2026, 11, 25));
    EXPECT_FALSE(formats::MustbeStand(ctx, *table));
}

// A weekly series over several days stays while other rows of it are in the
// table; the cursor comes back to the row it was on.
TEST_F(MustbeStandTest, WeeklySeveralDaysCountsItsRows) {
    series("W", at(2026, 1, 5), 2 | 16, "7");
    EXPECT_FALSE(formats::MustbeStand(ctx, *table));
    const int position = table->absolutePosition();
    tables::vCalCreateNewRecord(*table);
    set(QStringLiteral("EntryID"), QStringLiteral("7"));
    tables::vCalCreateNewRecord(*table);
    set(QStringLiteral("EntryID"), QStringLiteral("8"));
    table->setAbsolutePosition(position);
    EXPECT_TRUE(formats::MustbeStand(ctx, *table));
    EXPECT_EQ(table->absolutePosition(), position);
}

namespace {
class TimeTest : public test::vCalFixture {
protected:
    TimeTest() { ctx.clock.setFixed(QDateTime(QDate(2026, 11, 22), QTime(14, 25, 36))); }
    QString shown(core::VbDate t) { return core::Format(t, QStringLiteral("hh:mm:ss")); }
};
} // namespace

// Short texts and formats without separator give the current time.
TEST_F(TimeTest, CreateTimeFallsBackToNow) {
    EXPECT_EQ(shown(formats::CreateTime(ctx, QStringLiteral("12"))), QStringLiteral("14:25:36"));
    ctx.formats.TimeFormat = QStringLiteral("hhmmss");
    EXPECT_EQ(shown(formats::CreateTime(ctx, QStringLiteral("10:30"))), QStringLiteral("14:25:36"));
}

// Pieces are read in the order of the time format; missing ones keep the current
// value; a piece that is no number ends the reading. The result is a pure time.
TEST_F(TimeTest, CreateTimeReadsThePieces) {
    core::VbDate t = formats::CreateTime(ctx, QStringLiteral("09:05"));
    EXPECT_EQ(shown(t), QStringLiteral("09:05:36"));
    EXPECT_LT(t.value, 1.0);
    EXPECT_EQ(shown(formats::CreateTime(ctx, QStringLiteral("09:xx:10"))), QStringLiteral("09:25:36"));
    ctx.formats.TimeFormat = QStringLiteral("mm:hh:ss");
    EXPECT_EQ(shown(formats::CreateTime(ctx, QStringLiteral("05:09:01"))), QStringLiteral("09:05:01"));
}

// There is no range check: a number past its unit carries over like a clock, and
// only the date the reading started from is taken off. Every blank splits, so an
// empty piece can stand where the time is looked for.
TEST_F(TimeTest, CreateTimeCarriesOverAndKeepsEmptyPieces) {
    struct Case {
        const char* text;
        int markPos;
        double days;
        const char* shown;
    };
    const QList<Case> cases = {
        {"25:10", 0, 1, "01:10:36"},     {"24:00", 0, 1, "00:00:36"},     {"10:75", 0, 0, "11:15:36"},
        {"08:15:90", 0, 0, "08:16:30"},  {" 08:15", 0, 0, "14:25:36"},    {"AM  08:15", 1, 0, "14:25:36"},
        {"AM 08:15 ", 1, 0, "08:15:36"}, {"08:15  PM", 0, 0, "08:15:36"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        ctx.formats.TimeMarkPos = c.markPos;
        const core::VbDate t = formats::CreateTime(ctx, QString::fromLatin1(c.text));
        EXPECT_EQ(shown(t), QString::fromLatin1(c.shown));
        EXPECT_EQ(std::floor(t.value), c.days);
    }
    EXPECT_TRUE(ui.boxes.isEmpty());

    // An hour beyond 16 bits is an overflow, reported; the reading gives the current time.
    ctx.formats.TimeMarkPos = 0;
    EXPECT_EQ(shown(formats::CreateTime(ctx, QStringLiteral("40000:00"))), QStringLiteral("14:25:36"));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("Number:6"))) << ui.boxes[0].text.toStdString();
}

// With the day-half mark in front, the time is the second piece.
TEST_F(TimeTest, CreateTimeWithMarkInFront) {
    ctx.formats.TimeMarkPos = 1;
    EXPECT_EQ(shown(formats::CreateTime(ctx, QStringLiteral("AM 08:15"))), QStringLiteral("08:15:36"));
}

// A well-typed time is read as it stands; a bare number is not taken as a day count.
TEST_F(TimeTest, CreateTimeFromStringGuardsBareNumbers) {
    core::VbDate t;
    formats::CreateTimeFromString(ctx, QStringLiteral("10:30:00"), t);
    EXPECT_EQ(shown(t), QStringLiteral("10:30:00"));
    formats::CreateTimeFromString(ctx, QStringLiteral("10:30"), t);
    EXPECT_EQ(shown(t), QStringLiteral("10:30:00"));
    formats::CreateTimeFromString(ctx, QStringLiteral("12"), t);
    EXPECT_EQ(shown(t), QStringLiteral("14:25:36"));
    // Without a separator the whole text is the hour: 1230 hours carry over into days.
    formats::CreateTimeFromString(ctx, QStringLiteral("1230"), t);
    EXPECT_EQ(shown(t), QStringLiteral("06:25:36"));
    EXPECT_EQ(std::floor(t.value), 51.0);
    EXPECT_TRUE(ui.boxes.isEmpty());
}
