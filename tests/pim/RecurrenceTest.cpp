// SPDX-License-Identifier: GPL-3.0-or-later
// Series: the pattern members as the write road sets them, their round trip,
// and the expansion of IncludeRecurrences inside the filter's range.
#include "PimTestSupport.h"

namespace tsr::test {
namespace {

class Recurrence : public PimStoreTest {
protected:
    // A series set up in the order the write road uses.
    std::shared_ptr<pim::AppointmentItem> series(core::VbDate start, int minutes, int type, int interval,
                                                 const std::function<void(pim::RecurrencePattern&)>& more = {}) {
        auto a = newAppointment();
        a->setSubject(QStringLiteral("series"));
        auto p = a->GetRecurrencePattern();
        p->setPatternStartDate(core::DateValue(start));
        p->setStartTime(core::TimeValue(start));
        p->setInterval(interval);
        p->setEndTime(core::VbDate(core::TimeValue(start).value + minutes / 1440.0));
        p->setDuration(minutes);
        p->setRecurrenceType(type);
        if (more)
            more(*p);
        a->Save();
        return a;
    }

    QList<core::VbDate> startsIn(const QString& filter) {
        auto items = calendarItems();
        items->setIncludeRecurrences(true);
        items->Sort(QStringLiteral("[Start]"));
        QList<core::VbDate> out;
        for (const auto& a : findAll<pim::AppointmentItem>(*items, filter))
            out << a->Start();
        return out;
    }
};

// Weekly on Monday and Wednesday: the pattern comes back, and only occurrences
// inside the range (times counted) are items, each with the series' EntryID.
TEST_F(Recurrence, WeeklyOnTwoDaysAcrossTheRangeEnds) {
    auto a = series(at(2026, 3, 2, 10, 0), 90, pim::olRecursWeekly, 1,
                    [](pim::RecurrencePattern& p) { p.setDayOfWeekMask(2 | 8); });
    open();
    auto b = pim::asAppointment(ns->GetItemFromID(a->EntryID()));
    ASSERT_TRUE(b->IsRecurring());
    auto p = b->GetRecurrencePattern();
    EXPECT_EQ(p->RecurrenceType(), pim::olRecursWeekly);
    EXPECT_EQ(p->DayOfWeekMask(), 2 | 8);
    EXPECT_EQ(p->Interval(), 1);
    EXPECT_EQ(p->PatternStartDate(), at(2026, 3, 2));
    EXPECT_EQ(p->StartTime(), core::TimeSerial(10, 0, 0));
    EXPECT_EQ(p->EndTime(), core::TimeSerial(11, 30, 0));
    EXPECT_EQ(p->Duration(), 90);

    auto items = calendarItems();
    items->setIncludeRecurrences(true);
    items->Sort(QStringLiteral("[Start]"));
    auto found = findAll<pim::AppointmentItem>(
        *items, QStringLiteral("[Start]>=\"04.03.2026 12:00\" and [Start] <=\"16.03.2026 09:00\""));
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0]->Start(), at(2026, 3, 9, 10, 0));
    EXPECT_EQ(found[0]->End(), at(2026, 3, 9, 11, 30));
    EXPECT_EQ(found[1]->Start(), at(2026, 3, 11, 10, 0));
    for (const auto& o : found) {
        EXPECT_EQ(o->EntryID(), a->EntryID());
        EXPECT_TRUE(o->IsRecurring());
    }
    // One occurrence can neither be moved nor deleted on its own: the series stays whole.
    EXPECT_THROW(found[0]->setStart(at(2026, 3, 9, 12, 0)), core::TsrError);
    EXPECT_THROW(found[0]->Delete(), core::TsrError);
    EXPECT_EQ(filesIn(QStringLiteral("calendar")).filter(QStringLiteral(".ics")).size(), 1);
    // Without IncludeRecurrences the series is one item at its first start.
    auto plain = calendarItems();
    EXPECT_TRUE(findAll(*plain, QStringLiteral("[Start]>=\"04.03.2026\" and [Start] <=\"16.03.2026\"")).isEmpty());
    EXPECT_EQ(findAll(*plain, QStringLiteral("[Start]=\"02.03.2026 10:00\"")).size(), 1);
}

// Every second day, across a month's end.
TEST_F(Recurrence, DailyWithIntervalAcrossMonthEnd) {
    series(at(2026, 3, 30, 8, 0), 30, pim::olRecursDaily, 2);
    EXPECT_EQ(startsIn(QStringLiteral("[Start]>=\"29.03.2026\" and [Start] <=\"04.04.2026 23:59\"")),
              (QList<core::VbDate>{at(2026, 3, 30, 8, 0), at(2026, 4, 1, 8, 0), at(2026, 4, 3, 8, 0)}));
}

// Monthly on a day of the month, and on the second Tuesday.
TEST_F(Recurrence, MonthlyByDayAndByWeekday) {
    series(at(2026, 1, 15, 9, 0), 60, pim::olRecursMonthly, 1, [](pim::RecurrencePattern& p) { p.setDayOfMonth(15); });
    EXPECT_EQ(startsIn(QStringLiteral("[Start]>=\"01.02.2026\" and [Start] <=\"15.04.2026 08:59\"")),
              (QList<core::VbDate>{at(2026, 2, 15, 9, 0), at(2026, 3, 15, 9, 0)}));
    open();
    auto items = calendarItems();
    auto p = pim::asAppointment(items->ItemAt(1))->GetRecurrencePattern();
    EXPECT_EQ(p->RecurrenceType(), pim::olRecursMonthly);
    EXPECT_EQ(p->DayOfMonth(), 15);

    pim::asAppointment(items->ItemAt(1))->Delete();
    series(at(2026, 1, 13, 18, 0), 60, pim::olRecursMonthNth, 1, [](pim::RecurrencePattern& p) {
        p.setDayOfWeekMask(4); // Tuesday
        p.setInstance(2);
    });
    EXPECT_EQ(startsIn(QStringLiteral("[Start]>=\"01.02.2026\" and [Start] <=\"31.03.2026\"")),
              (QList<core::VbDate>{at(2026, 2, 10, 18, 0), at(2026, 3, 10, 18, 0)}));
}

// A yearly series in a range of one year less a minute gives one occurrence.
TEST_F(Recurrence, YearlyAcrossYearBoundary) {
    auto a = series(at(1990, 7, 14, 10, 0), 60, pim::olRecursYearly, 1);
    EXPECT_EQ(startsIn(QStringLiteral("[Start]>=\"14.07.2026 10:00\" and [Start] <=\"14.07.2027 09:59\"")),
              QList<core::VbDate>{at(2026, 7, 14, 10, 0)});
    EXPECT_EQ(startsIn(QStringLiteral("[Start]>=\"01.12.2026\" and [Start] <=\"31.01.2027\"")), QList<core::VbDate>{});
    open();
    auto p = pim::asAppointment(ns->GetItemFromID(a->EntryID()))->GetRecurrencePattern();
    EXPECT_EQ(p->RecurrenceType(), pim::olRecursYearly);
    EXPECT_EQ(p->DayOfMonth(), 14);
    EXPECT_EQ(p->MonthOfYear(), 7);
}

// A series longer than a day: Duration counts the whole days too.
TEST_F(Recurrence, DurationOverMidnight) {
    auto a = series(at(2026, 3, 6, 22, 0), 24 * 60 + 120, pim::olRecursWeekly, 1);
    EXPECT_EQ(a->End(), at(2026, 3, 8, 0, 0));
    open();
    EXPECT_EQ(pim::asAppointment(ns->GetItemFromID(a->EntryID()))->GetRecurrencePattern()->Duration(), 24 * 60 + 120);
}

// Clearing the pattern makes a single entry again, in memory and in the file.
TEST_F(Recurrence, ClearedPatternIsASingleEntry) {
    auto a = series(at(2026, 3, 2, 10, 0), 60, pim::olRecursDaily, 1);
    a->ClearRecurrencePattern();
    a->Save();
    EXPECT_FALSE(readFile(QStringLiteral("calendar/") + a->EntryID() + QStringLiteral(".ics")).contains("RRULE"));
    open();
    EXPECT_FALSE(pim::asAppointment(ns->GetItemFromID(a->EntryID()))->IsRecurring());
    EXPECT_EQ(startsIn(QStringLiteral("[Start]>=\"01.03.2026\" and [Start] <=\"31.03.2026\"")),
              QList<core::VbDate>{at(2026, 3, 2, 10, 0)});
}

// Rules as other tools write them: a removed occurrence (EXDATE), a moved one,
// and a rule the object model cannot describe, which still expands.
TEST_F(Recurrence, ForeignRules) {
    copyData(QStringLiteral("series-weekly-exdate-moved.ics"), QStringLiteral("calendar/w.ics"));
    copyData(QStringLiteral("series-hourly-count.ics"), QStringLiteral("calendar/h.ics"));
    open();
    auto w = pim::asAppointment(ns->GetItemFromID(QStringLiteral("w1")));
    EXPECT_EQ(w->GetRecurrencePattern()->RecurrenceType(), pim::olRecursWeekly);
    EXPECT_EQ(w->GetRecurrencePattern()->DayOfWeekMask(), 2);
    EXPECT_EQ(startsIn(QStringLiteral("[Start]>=\"01.03.2026\" and [Start] <=\"22.03.2026\"")),
              (QList<core::VbDate>{berlin(2026, 3, 2, 9, 0), berlin(2026, 3, 17, 11, 0)}));
    auto h = pim::asAppointment(ns->GetItemFromID(QStringLiteral("h1")));
    EXPECT_TRUE(h->IsRecurring());
    EXPECT_EQ(h->GetRecurrencePattern()->RecurrenceType(), -1);
    EXPECT_EQ(startsIn(QStringLiteral("[Start]>=\"01.04.2026\" and [Start] <=\"02.04.2026\"")),
              (QList<core::VbDate>{at(2026, 4, 1, 8, 0), at(2026, 4, 1, 14, 0), at(2026, 4, 1, 20, 0)}));
}

} // namespace
} // namespace tsr::test
