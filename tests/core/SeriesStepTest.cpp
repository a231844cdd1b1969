// SPDX-License-Identifier: GPL-3.0-or-later
// The series stepping: the day mask's forms and where a series' occurrence lands
// in a period, for weekly series over one and several days, monthly and yearly.
#include "core/SeriesStep.h"
#include "core/Error.h"

#include <gtest/gtest.h>

using namespace tsr::core;

namespace {
VbDate day(int y, int m, int d) {
    return DateSerial(y, m, d);
}
VbDate endOf(int y, int m, int d) {
    return VbDate(DateSerial(y, m, d).value + TimeSerial(23, 59, 59).value);
}
QDate asDate(const std::optional<VbDate>& d) {
    return d ? toQDate(*d) : QDate();
}
constexpr int64_t Su = 1, Mo = 2, Tu = 4, We = 8, Th = 16, Fr = 32, Sa = 64;
} // namespace

// The text form lists the days Sunday first, and reading it back sums the bits.
TEST(SeriesStep, MaskTextFormsBothWays) {
    EXPECT_EQ(DayOfWeekMaskToString(127), QStringLiteral("SU MO TU WE TH FR SA"));
    EXPECT_EQ(DayOfWeekMaskToString(Mo | Th), QStringLiteral("MO TH"));
    EXPECT_EQ(DayOfWeekMaskToString(0), QString());
    EXPECT_EQ(StringToDayOfWeekMask(QStringLiteral("mo we")), 10);
    EXPECT_EQ(StringToDayOfWeekMask(QStringLiteral("MO MO")), 4);
    EXPECT_EQ(StringToDayOfWeekMask(QStringLiteral("MO TH #0")), Mo | Th);
    EXPECT_EQ(StringToDayOfWeekMask(QString()), 0);
    for (int64_t mask = 0; mask <= 127; ++mask)
        EXPECT_EQ(StringToDayOfWeekMask(DayOfWeekMaskToString(mask)), mask) << mask;
}

// A list long enough to pass 16 bits is the overflow error, not a wrapped mask.
TEST(SeriesStep, MaskSumBeyondSixteenBitsOverflows) {
    QStringList many;
    for (int i = 0; i < 600; ++i)
        many << QStringLiteral("SA");
    try {
        StringToDayOfWeekMask(many.join(u' '));
        FAIL() << "no overflow";
    } catch (const TsrError& e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
}

// BitToDec doubles from 1; only masks of one weekday count as single-day.
TEST(SeriesStep, BitsAndSingleDayMasks) {
    EXPECT_EQ(BitToDec(0), 1);
    EXPECT_EQ(BitToDec(-3), 1);
    EXPECT_EQ(BitToDec(6), 64);
    for (int64_t m : {Su, Mo, Tu, We, Th, Fr, Sa})
        EXPECT_TRUE(isSingleDayMask(m)) << m;
    for (int64_t m : {int64_t(0), Mo | Th, int64_t(127), int64_t(128), int64_t(-2)})
        EXPECT_FALSE(isSingleDayMask(m)) << m;
}

// Each kind of series steps by its own unit; unknown kinds step daily.
TEST(SeriesStep, StepUnitsByKind) {
    EXPECT_EQ(seriesStepInterval(QStringLiteral("W")), QStringLiteral("ww"));
    EXPECT_EQ(seriesStepInterval(QStringLiteral("M")), QStringLiteral("m"));
    EXPECT_EQ(seriesStepInterval(QStringLiteral("Y")), QStringLiteral("yyyy"));
    EXPECT_EQ(seriesStepInterval(QStringLiteral("D")), QStringLiteral("d"));
    EXPECT_EQ(seriesStepInterval(QString()), QStringLiteral("d"));
}

// A weekly series on one day lands on the same weekday inside the period, or
// nowhere when the period holds no such weekday.
TEST(SeriesStep, WeeklySingleDayLandsOnItsWeekday) {
    const VbDate start = day(2026, 1, 5); // a Monday
    const auto hit = stepIntoPeriod(start, QStringLiteral("ww"), day(2026, 11, 18), endOf(2026, 11, 24));
    EXPECT_EQ(asDate(hit), QDate(2026, 11, 23));
    EXPECT_EQ(Weekday(*hit), 2);
    // Wednesday to Sunday: no Monday inside.
    EXPECT_FALSE(stepIntoPeriod(start, QStringLiteral("ww"), day(2026, 11, 18), endOf(2026, 11, 22)));
    // A start inside the period is its own occurrence.
    EXPECT_EQ(asDate(stepIntoPeriod(day(2026, 11, 20), QStringLiteral("ww"), day(2026, 11, 18), endOf(2026, 11, 24))),
              QDate(2026, 11, 20));
    // A start after the period never comes back into it.
    EXPECT_FALSE(stepIntoPeriod(day(2026, 12, 1), QStringLiteral("ww"), day(2026, 11, 18), endOf(2026, 11, 24)));
}

// The last second of the period still counts; the time of day of the start is kept.
TEST(SeriesStep, PeriodEndIsInclusiveAndTimeIsKept) {
    const VbDate start(day(2026, 11, 1).value + TimeSerial(9, 30, 0).value);
    const auto hit = stepIntoPeriod(start, QStringLiteral("d"), day(2026, 11, 22), endOf(2026, 11, 22));
    ASSERT_TRUE(hit);
    EXPECT_EQ(toQDateTime(*hit), QDateTime(QDate(2026, 11, 22), QTime(9, 30)));
}

// A monthly series adds one month at a time, so a start on the 31st drifts to
// the shorter months' last day and stays there.
TEST(SeriesStep, MonthlyStepsOneMonthAtATime) {
    const VbDate start = day(2026, 1, 31);
    EXPECT_EQ(asDate(stepIntoPeriod(start, QStringLiteral("m"), day(2026, 2, 1), endOf(2026, 2, 28))),
              QDate(2026, 2, 28));
    // After February the series stands on the 28th, not the 31st.
    EXPECT_EQ(asDate(stepIntoPeriod(start, QStringLiteral("m"), day(2026, 5, 1), endOf(2026, 5, 31))),
              QDate(2026, 5, 28));
    // A period of a few days that misses the series' day holds no occurrence.
    EXPECT_FALSE(stepIntoPeriod(day(2026, 1, 15), QStringLiteral("m"), day(2026, 6, 16), endOf(2026, 6, 30)));
}

// A yearly series on 29 February falls back to the 28th and stays there.
TEST(SeriesStep, YearlyFromLeapDay) {
    const VbDate start = day(2024, 2, 29);
    EXPECT_EQ(asDate(stepIntoPeriod(start, QStringLiteral("yyyy"), day(2025, 1, 1), endOf(2025, 12, 31))),
              QDate(2025, 2, 28));
    EXPECT_EQ(asDate(stepIntoPeriod(start, QStringLiteral("yyyy"), day(2028, 1, 1), endOf(2028, 12, 31))),
              QDate(2028, 2, 28));
    EXPECT_FALSE(stepIntoPeriod(start, QStringLiteral("yyyy"), day(2026, 3, 1), endOf(2026, 12, 31)));
}

// The distance to the next mask day wraps from Saturday to Sunday.
TEST(SeriesStep, DistanceToNextMaskDay) {
    EXPECT_EQ(daysToNextMaskDay(2, Mo | Th), 3); // Monday -> Thursday
    EXPECT_EQ(daysToNextMaskDay(5, Mo | Th), 4); // Thursday -> Monday
    EXPECT_EQ(daysToNextMaskDay(7, Su), 1);      // Saturday -> Sunday
    EXPECT_EQ(daysToNextMaskDay(2, Mo), 7);      // a one-day mask: a week on
    EXPECT_EQ(daysToNextMaskDay(3, 0), 0);
}

// A weekly series over several days lands on the first mask day in the period,
// whichever weekday the series started on.
TEST(SeriesStep, WeeklyMultiDayLandsOnFirstMaskDay) {
    const VbDate monday = day(2026, 1, 5);
    // Period Wednesday 18 Nov to Sunday 22 Nov: Thursday 19 is the first of Mo/Th.
    EXPECT_EQ(asDate(stepMaskIntoPeriod(monday, Mo | Th, day(2026, 11, 18), endOf(2026, 11, 22))), QDate(2026, 11, 19));
    // Period Friday to Sunday holds neither Monday nor Thursday.
    EXPECT_FALSE(stepMaskIntoPeriod(monday, Mo | Th, day(2026, 11, 20), endOf(2026, 11, 22)));
    // A start on a day outside the mask goes first to the next mask day.
    const VbDate tuesday = day(2026, 11, 17);
    EXPECT_EQ(asDate(stepMaskIntoPeriod(tuesday, Mo | Sa, day(2026, 11, 17), endOf(2026, 11, 30))),
              QDate(2026, 11, 21));
    EXPECT_FALSE(stepMaskIntoPeriod(tuesday, 0, day(2026, 11, 17), endOf(2026, 11, 30)));
}
