// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/SeriesMask.h"
#include "SyncTestSupport.h"

using namespace tsr;
using namespace tsr::sync;
using core::DateSerial;
using core::VbDate;
using test::SyncTest;

namespace {
class SeriesMask : public SyncTest {};
constexpr int32_t kMon = 2, kTue = 4, kWed = 8, kThu = 16, kFri = 32, kSat = 64, kSun = 1;

VbDate at(int y, int m, int d, int hh, int mm) {
    return VbDate(DateSerial(y, m, d).value + core::TimeSerial(hh, mm, 0).value);
}
} // namespace

// The context forms hand through to the core conversions (tested there in full);
// an unknown token and a double blank are skipped.
TEST_F(SeriesMask, TextAndNumberForms) {
    EXPECT_EQ(DayOfWeekMaskToString(ctx, kMon + kFri), QStringLiteral("MO FR"));
    EXPECT_EQ(StringToDayOfWeekMask(ctx, QStringLiteral("XX su  sa")), kSun + kSat);
}

// The check boxes and the number stand for the same days, Sunday first.
TEST_F(SeriesMask, CheckBoxesRoundTrip) {
    const WeekdayBoxes boxes = BinärtoCheckbox(kSun + kWed + kSat);
    EXPECT_EQ(boxes, (WeekdayBoxes{true, false, false, true, false, false, true}));
    EXPECT_EQ(CheckBoxToBinär(boxes), kSun + kWed + kSat);
    EXPECT_EQ(CheckBoxToBinär(WeekdayBoxes{}), 0);
    EXPECT_EQ(setString(3), QStringLiteral("www"));
    EXPECT_EQ(setString(0), QString());
}

// Moving an entry from one weekday to another moves its bit and keeps the others.
TEST_F(SeriesMask, MoveWeekdayInMaskSwapsTheDay) {
    const VbDate monday = DateSerial(2026, 11, 23), thursday = DateSerial(2026, 11, 26);
    EXPECT_EQ(MoveWeekdayInMask(ctx, kMon + kSat, monday, thursday), kThu + kSat);
    EXPECT_EQ(MoveWeekdayInMask(ctx, 0, monday, monday), kMon);
    // A day already in the mask is not added twice.
    EXPECT_EQ(MoveWeekdayInMask(ctx, kMon + kThu, monday, thursday), kThu);
}

// The result is built from the smallest step, with the count that runs on past
// a set day that does not improve it.
TEST_F(SeriesMask, WeekSeriesmaxDiffCountsAsRequired) {
    EXPECT_EQ(WeekSeriesmaxDiff(ctx, kMon), 168);
    EXPECT_EQ(WeekSeriesmaxDiff(ctx, kMon + kThu), 72);
    EXPECT_EQ(WeekSeriesmaxDiff(ctx, kMon + kTue + kFri), 24);
    EXPECT_EQ(WeekSeriesmaxDiff(ctx, 0), 0);
    // Sunday, Wednesday, Saturday: gaps 3, 3, 1; the count does not start again at
    // Saturday, so the one-day gap Saturday to Sunday is never seen.
    EXPECT_EQ(WeekSeriesmaxDiff(ctx, kSun + kWed + kSat), 72);
}

// A length equal to a kind's limit passes, one minute more refuses.
TEST_F(SeriesMask, SerieControlLimitsByKind) {
    cal().addNew();
    cal().setValue(QStringLiteral("Weekdaymask"), int64_t(kMon + kThu));
    const VbDate start = at(2026, 11, 23, 10, 0);
    auto check = [&](SerieKind kind, int minutes) {
        int16_t refuse = -1;
        SerieControl(ctx, cal(), kind, start, VbDate(start.value + minutes / 1440.0), refuse);
        return refuse != 0;
    };
    const std::pair<SerieKind, int> limits[] = {{SerieKind::Daily, 1440},
                                                {SerieKind::Weekly, 72 * 60},
                                                {SerieKind::Monthly, 40320},
                                                {SerieKind::Yearly, 525600}};
    for (const auto& [kind, minutes] : limits) {
        SCOPED_TRACE(minutes);
        EXPECT_TRUE(check(kind, minutes));
        EXPECT_FALSE(check(kind, minutes + 1));
    }
    EXPECT_TRUE(check(SerieKind::Single, 600000));
    // Once refused, no later test clears it again.
    int16_t refuse = 0;
    SerieControl(ctx, cal(), SerieKind::Daily, start, start, refuse);
    EXPECT_EQ(refuse, 0);
}

// The editor's start moves to the next checked weekday, only for a weekly series.
TEST_F(SeriesMask, StartDateActMovesToTheNextCheckedDay) {
    const VbDate sunday = DateSerial(2026, 11, 22);
    WeekdayBoxes wednesday{};
    wednesday[3] = true;
    EXPECT_EQ(startDate_act(ctx, sunday, wednesday, true), DateSerial(2026, 11, 25));
    EXPECT_EQ(startDate_act(ctx, sunday, wednesday, false), sunday);
    EXPECT_EQ(startDate_act(ctx, sunday, WeekdayBoxes{}, true), sunday);
    // The walk starts on the following day: a checked start day comes round a week later.
    WeekdayBoxes onSunday{};
    onSunday[0] = true;
    EXPECT_EQ(startDate_act(ctx, sunday, onSunday, true), DateSerial(2026, 11, 29));
    ctx.clock.setFixed(QDateTime(QDate(2026, 11, 22), QTime(15, 0)));
    EXPECT_EQ(startDate_act(ctx, std::nullopt, wednesday, true), DateSerial(2026, 11, 25));
}

// Seven names, Sunday first, each behind a comma; two languages keep the last character.
TEST_F(SeriesMask, SetShortDateNames) {
    const QString names = SetShortDate(ctx, 1033);
    EXPECT_EQ(names.count(u','), 7);
    EXPECT_TRUE(names.endsWith(u','));
    EXPECT_TRUE(names.startsWith(QLocale().dayName(7, QLocale::ShortFormat) + u','));
    const QStringList cut = SetShortDate(ctx, 2052).split(u',', Qt::SkipEmptyParts);
    ASSERT_EQ(cut.size(), 7);
    for (const QString& n : cut)
        EXPECT_EQ(n.size(), 1);
}
