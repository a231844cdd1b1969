// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/SeriesMove.h"
#include "SyncTestSupport.h"

using namespace tsr;
using namespace tsr::sync;
using core::DateSerial;
using core::VbDate;
using test::setFields;
using test::SyncTest;

namespace {
class SeriesMove : public SyncTest {
protected:
    SeriesMove() {
        // The period: December 2026.
        ctx.flags.GlobalStartDate = DateSerial(2026, 12, 1);
        ctx.flags.GlobalEndDate = VbDate(DateSerial(2026, 12, 31).value + core::TimeSerial(23, 59, 59).value);
    }
    // A series row starting on `start` at 09:30, ending a day later at 11:00.
    void addSeries(const QString& kind, VbDate start, int64_t mask = 0, VbDate patt = VbDate()) {
        addCalendarRow(cal(), {{u"ISRecurring", true},
                               {u"RecurrenceType", kind},
                               {u"Weekdaymask", mask},
                               {u"PIMRecPatt", patt},
                               {u"StartDate", start},
                               {u"StartTime", u"09:30:00"},
                               {u"Start", VbDate(start.value + 0.5)},
                               {u"StartEndDiff", int64_t(1)},
                               {u"EndTime", core::TimeSerial(11, 0, 0)},
                               {u"DAlarmFlag", true},
                               {u"DAlarm", VbDate(start.value - 1 + 0.75)}});
    }
    VbDate date(const char16_t* field) { return cal().value(QString::fromUtf16(field)).toDate(); }
};
} // namespace

// A daily, monthly and yearly series each lands on its first occurrence in the
// period, with start, end and alarm moved along; the pattern start stays.
TEST_F(SeriesMove, KindsMoveToTheirFirstOccurrence) {
    addSeries(QStringLiteral("D"), DateSerial(2026, 11, 20));
    addSeries(QStringLiteral("M"), DateSerial(2026, 3, 15));
    addSeries(QStringLiteral("Y"), DateSerial(2020, 12, 24), 0, DateSerial(2020, 12, 24));
    calcnewStartDateSerie(ctx, cal());

    cal().moveFirst();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 1));
    EXPECT_EQ(date(u"Start"), VbDate(DateSerial(2026, 12, 1).value + core::TimeSerial(9, 30, 0).value));
    EXPECT_EQ(date(u"DTStart"), date(u"Start"));
    EXPECT_EQ(date(u"EndDate"), DateSerial(2026, 12, 2));
    EXPECT_EQ(date(u"DTEnd"), VbDate(DateSerial(2026, 12, 2).value + core::TimeSerial(11, 0, 0).value));
    // The alarm the evening before keeps its time and its distance to the start.
    EXPECT_EQ(date(u"DAlarm"), VbDate(DateSerial(2026, 11, 30).value + 0.75));
    cal().moveNext();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 15));
    cal().moveNext();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 24));
    EXPECT_EQ(date(u"PIMRecPatt"), DateSerial(2020, 12, 24));
}

// Rows that start inside the period, single entries and a series without an
// occurrence in the period stay as they are; the cursor stays on its row.
TEST_F(SeriesMove, RowsThatDoNotMoveAndThePosition) {
    addSeries(QStringLiteral("D"), DateSerial(2026, 12, 5));
    addCalendarRow(cal(), {{u"StartDate", DateSerial(2026, 1, 1)}, {u"RecurrenceType", u"D"}});
    addSeries(QStringLiteral("Y"), DateSerial(2026, 2, 10));
    cal().setAbsolutePosition(2);
    calcnewStartDateSerie(ctx, cal());
    EXPECT_EQ(cal().absolutePosition(), 2);
    cal().moveFirst();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 5));
    cal().moveNext();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 1, 1));
    cal().moveNext();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 2, 10));
}

// A freshly admitted series moves on its own row only; other rows stay.
TEST_F(SeriesMove, CreateSerieRecordsMovesTheCurrentRow) {
    addSeries(QStringLiteral("D"), DateSerial(2026, 11, 20));
    addSeries(QStringLiteral("M"), DateSerial(2026, 11, 15));
    EXPECT_TRUE(vCalCreateMobileSerieRecords(ctx, cal()));
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 15));
    cal().moveFirst();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 11, 20));
    EXPECT_TRUE(vCalCreatePIMSerieRecords(ctx, cal()));
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 1));
}

// A weekly series of one day steps by weeks and leaves StartasText alone; one of
// several days lands on the first day of its mask in the period and writes StartasText.
TEST_F(SeriesMove, WeeklySeries) {
    const VbDate monday = DateSerial(2026, 10, 5);
    addSeries(QStringLiteral("W"), monday, 2);
    cal().setValue(QStringLiteral("StartasText"), QStringLiteral("old"));
    // Thursday and Saturday; 1 December 2026 is a Tuesday.
    addSeries(QStringLiteral("W"), monday, 16 + 64);
    // No mask: the start's weekday is taken (Monday).
    addSeries(QStringLiteral("W"), monday, 0);
    calcnewStartDateSerie(ctx, cal());

    cal().moveFirst();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 7));
    EXPECT_EQ(test::textOf(cal(), u"StartasText"), QStringLiteral("old"));
    cal().moveNext();
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 3));
    EXPECT_EQ(test::textOf(cal(), u"StartasText"), cal().dateAsText(date(u"Start")));
    cal().moveNext();
    EXPECT_EQ(cal().value(QStringLiteral("Weekdaymask")).toInt64(), 2);
    EXPECT_EQ(date(u"StartDate"), DateSerial(2026, 12, 7));
}

// Where a series row can be read two ways, the reading that keeps it the same on
// both sides: a weekly series of several days lands on its first day in the period
// (the one the phone counts from), not on the last day a walk through the period
// reaches; and both alarms move with the start by whole days, so they keep their
// time and their lead, never landing behind the start they announce.
TEST_F(SeriesMove, EveryRoadMovesBothAlarmsAndTakesTheFirstOccurrence) {
    struct Case {
        const char* kind;
        VbDate start;
        int64_t mask;
        VbDate expected;
    };
    const QList<Case> cases = {
        {"D", DateSerial(2026, 11, 20), 0, DateSerial(2026, 12, 1)},
        {"M", DateSerial(2026, 3, 15), 0, DateSerial(2026, 12, 15)},
        {"Y", DateSerial(2020, 12, 24), 0, DateSerial(2026, 12, 24)},
        {"W", DateSerial(2026, 10, 5), 2, DateSerial(2026, 12, 7)},
        // Monday, Wednesday and Friday: thirteen days of December lie in the mask.
        {"W", DateSerial(2026, 10, 5), 2 + 8 + 32, DateSerial(2026, 12, 2)},
    };
    const double evenBefore = -1 + 0.75 - 0.5;       // 18:00 the day before a 12:00 start
    const double twoDaysBefore = -2 - 15.0 / 1440.0; // 11:45 two days before
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.kind) + " mask " + std::to_string(c.mask));
        tables::ClearRecordSet(cal());
        addSeries(QString::fromLatin1(c.kind), c.start, c.mask);
        const VbDate noon(c.start.value + 0.5);
        setFields(cal(), {{u"StartTime", u"12:00:00"},
                          {u"Start", noon},
                          {u"DAlarm", VbDate(noon.value + evenBefore)},
                          {u"AAlarmFlag", true},
                          {u"AAlarm", VbDate(noon.value + twoDaysBefore)}});
        calcnewStartDateSerie(ctx, cal());
        cal().moveFirst();
        EXPECT_EQ(date(u"StartDate"), c.expected);
        const VbDate start(c.expected.value + 0.5);
        EXPECT_EQ(date(u"Start"), start);
        EXPECT_NEAR(date(u"DAlarm").value, start.value + evenBefore, 1e-9);
        EXPECT_NEAR(date(u"AAlarm").value, start.value + twoDaysBefore, 1e-9);
    }

    // Without their flags the alarms stay where they were.
    tables::ClearRecordSet(cal());
    addSeries(QStringLiteral("D"), DateSerial(2026, 11, 20));
    setFields(cal(), {{u"DAlarmFlag", false}});
    const VbDate alarm = date(u"DAlarm");
    calcnewStartDateSerie(ctx, cal());
    cal().moveFirst();
    EXPECT_EQ(date(u"DAlarm"), alarm);
}

// The counts look at EntryType only and keep the cursor; the old start is kept.
TEST_F(SeriesMove, CountsAndOldStart) {
    for (int type : {1, 2, 3, 2, 3, 3})
        addCalendarRow(cal(), {{u"EntryType", int32_t(type)}, {u"StartDate", DateSerial(2026, 1, type)}});
    cal().setAbsolutePosition(4);
    EXPECT_EQ(CountMobileOnlyRows(ctx, cal()), 2);
    EXPECT_EQ(CountPairedRows(ctx, cal()), 3);
    EXPECT_EQ(cal().absolutePosition(), 4);
    auto empty = makeCalendar(QStringLiteral("empty"));
    EXPECT_EQ(CountPairedRows(ctx, *empty), 0);
    CopyonFirstRec(ctx, cal());
    EXPECT_EQ(date(u"altesStartDate"), DateSerial(2026, 1, 2));
}
