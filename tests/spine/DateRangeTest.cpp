// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/DateRange.h"
#include "SpineFixture.h"

using namespace tsr;
using tsr::test::SpineFixture;

namespace {

class DateRangeTest : public SpineFixture {
protected:
    core::VbDate at(int y, int m, int d, int h = 0, int n = 0, int s = 0) const {
        return core::VbDate(core::DateSerial(y, m, d).value + core::TimeSerial(h, n, s).value);
    }
};

// Six days from the setting end today + 6; six days in the frame end today + 5. Both stand.
TEST_F(DateRangeTest, TheTwoEndComputationsDiffer) {
    ctx.settings.DateRange = 6;
    EXPECT_EQ(spine::settingEndDate(ctx), at(2026, 11, 28, 23, 59, 59));
    EXPECT_EQ(spine::CalcDateAddNew(ctx, QStringLiteral("d"), 6, today()), at(2026, 11, 27, 23, 59, 59));
}

// Each unit of the frame: weeks, months across a year's end, years across a leap day.
TEST_F(DateRangeTest, FrameEndForEachUnit) {
    EXPECT_EQ(spine::CalcDateAddNew(ctx, spine::PeriodIntervals[1], 2, at(2026, 11, 22, 14, 0)),
              at(2026, 12, 5, 23, 59, 59));
    EXPECT_EQ(spine::CalcDateAddNew(ctx, spine::PeriodIntervals[2], 3, at(2026, 11, 30)), at(2027, 2, 27, 23, 59, 59));
    EXPECT_EQ(spine::CalcDateAddNew(ctx, spine::PeriodIntervals[3], 1, at(2028, 2, 29)), at(2029, 2, 27, 23, 59, 59));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// An unknown interval goes to the common error path and gives day 0.
TEST_F(DateRangeTest, UnknownIntervalIsReported) {
    EXPECT_EQ(spine::CalcDateAddNew(ctx, QStringLiteral("fortnight"), 1, today()), core::VbDate());
    EXPECT_EQ(ui.boxes.size(), 1);
}

// A number beyond a unit's limit is cut to it: 2000 days as years gives 3.
TEST_F(DateRangeTest, PeriodLimits) {
    EXPECT_EQ(spine::limitPeriod(2000, 3), 3);
    EXPECT_EQ(spine::limitPeriod(2000, 0), 1095);
    EXPECT_EQ(spine::limitPeriod(200, 1), 156);
    EXPECT_EQ(spine::limitPeriod(40, 2), 36);
    EXPECT_EQ(spine::limitPeriod(12, 2), 12);
}

// The unit names are singular for 1 and plural otherwise.
TEST_F(DateRangeTest, UnitNames) {
    const auto one = spine::PeriodUnits(ctx, 1);
    const auto two = spine::PeriodUnits(ctx, 2);
    EXPECT_EQ(one[0], QStringLiteral("Day"));
    EXPECT_EQ(one[3], QStringLiteral("Year"));
    EXPECT_EQ(two[0], QStringLiteral("Days"));
    EXPECT_EQ(two[1], QStringLiteral("Weeks"));
    EXPECT_EQ(two[2], QStringLiteral("Months"));
}

// DateRange follows the whole days between start and end, only when start lies before end.
TEST_F(DateRangeTest, PeriodeAct) {
    ctx.settings.DateRange = 6;
    spine::PeriodeAct(ctx, today(), at(2026, 12, 1, 23, 59, 59));
    EXPECT_EQ(ctx.settings.DateRange, 9);
    spine::PeriodeAct(ctx, at(2026, 12, 1), today());
    EXPECT_EQ(ctx.settings.DateRange, 9);
    spine::PeriodeAct(ctx, today(), core::VbDate(today().value + 40000));
    EXPECT_EQ(ctx.settings.DateRange, 9);
    EXPECT_EQ(ui.boxes.size(), 1); // 40000 days do not fit the 16-bit setting
}

// The time helpers format with the time format without seconds.
TEST_F(DateRangeTest, TimeTexts) {
    ctx.formats.TimeFormatNoSec = QStringLiteral("hh:mm");
    EXPECT_EQ(spine::SetActTime(ctx), QStringLiteral("10:30"));
    EXPECT_EQ(spine::SetActTimeEnd(ctx), QStringLiteral("11:00"));
    EXPECT_EQ(spine::CalcTimeAdd(ctx, QStringLiteral("n"), 45, at(2026, 11, 22, 23, 30)), QStringLiteral("00:15"));
    EXPECT_EQ(spine::SetStartDate(ctx, at(2026, 1, 5, 8)), QStringLiteral("05.01.26"));
}

} // namespace
