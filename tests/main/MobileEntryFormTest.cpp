// SPDX-License-Identifier: GPL-3.0-or-later
// The entry editor's checks without a window: each series kind's length limit
// at its edge (equal passes, one minute more is refused), the order of the
// checks, the phone's text limits by type, and what counts as a change.
#include "main/MobileEntryForm.h"
#include "core/Context.h"
#include "support/ScriptedUi.h"
#include "tables/TSRADODB.h"

#include <gtest/gtest.h>

using namespace tsr;
using main::EntryProblem;
using sync::SerieKind;

namespace {

class EntryForm : public ::testing::Test {
protected:
    EntryForm() {
        ctx.clock.setFixed(QDateTime(QDate(2026, 3, 2), QTime(9, 15)));
        ctx.formats.TimeFormat = QStringLiteral("hh:mm:ss");
        ctx.formats.TimeFormatNoSec = QStringLiteral("hh:mm");
        EXPECT_TRUE(tables::CreateInitAndSetAllRS(ctx));
    }
    // An entry from Monday 02.03.2026 at `from` lasting `minutes`.
    main::MobileEntryForm entry(SerieKind kind, int minutes, int mask = 0) {
        main::MobileEntryForm form(ctx);
        auto& v = form.values();
        v.description = QStringLiteral("Course");
        v.serie = kind;
        v.startDate = core::DateSerial(2026, 3, 2);
        v.startTime = QStringLiteral("08:00");
        const core::VbDate end =
            core::DateAdd(QStringLiteral("n"), minutes, core::VbDate(v.startDate.value + 8.0 / 24));
        v.endDate = core::DateValue(end);
        v.endTime = core::Format(end, QStringLiteral("hh:mm"));
        v.weekdays = sync::BinärtoCheckbox(mask);
        return form;
    }

    test::ScriptedUi ui;
    core::Context ctx{ui};
};

} // namespace

TEST_F(EntryForm, SeriesLengthLimitsAtTheirEdge) {
    struct Case {
        SerieKind kind;
        int mask;
        int limitMinutes;
    };
    const Case cases[] = {
        {SerieKind::Daily, 0, 1440},
        {SerieKind::Weekly, 2, 168 * 60},         // Monday only: a week
        {SerieKind::Weekly, 2 | 16, 72 * 60},     // Monday and Thursday: three days
        {SerieKind::Weekly, 2 | 4 | 32, 24 * 60}, // Monday, Tuesday, Friday: one day
        {SerieKind::Monthly, 0, 40320},
        {SerieKind::Yearly, 0, 525600},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(entry(c.kind, c.limitMinutes, c.mask).checkEntry(), EntryProblem::None)
            << int(c.kind) << " mask " << c.mask;
        EXPECT_EQ(entry(c.kind, c.limitMinutes + 1, c.mask).checkEntry(), EntryProblem::SeriesTooLong)
            << int(c.kind) << " mask " << c.mask;
    }
    // A single entry may last as long as it likes.
    EXPECT_EQ(entry(SerieKind::Single, 600000).checkEntry(), EntryProblem::None);
    // The scratch table the weekly test reads from is left empty.
    EXPECT_EQ(ctx.tables.RSCalendarWork->recordCount(), 0);
}

// The first failing check names the problem: text, then order of times, then weekdays.
TEST_F(EntryForm, ChecksComeInOrder) {
    auto form = entry(SerieKind::Weekly, -5, 0);
    form.values().description.clear();
    EXPECT_EQ(form.checkEntry(), EntryProblem::EmptyText);
    form.values().summary = QStringLiteral("only a summary");
    EXPECT_EQ(form.checkEntry(), EntryProblem::EndBeforeStart);
    form.values().endTime = QStringLiteral("08:00");
    EXPECT_EQ(form.checkEntry(), EntryProblem::NoWeekday);
    form.values().weekdays[1] = true;
    EXPECT_EQ(form.checkEntry(), EntryProblem::None);
    EXPECT_EQ(form.problemText(EntryProblem::SeriesTooLong),
              QStringLiteral("The duration of the appointment must be shorter than how frequently it occurs.\n"
                             "Shorten the duration, or change the series."));
}

// The phone keeps 32 characters of a text and 40 digits of a call's number, 41 with "+".
TEST_F(EntryForm, TextLimitFollowsTheType) {
    main::MobileEntryForm form(ctx);
    auto& v = form.values();
    EXPECT_EQ(form.textLimit(), 32);
    v.kind = main::EntryKind::Call;
    v.description = QStringLiteral("0228123");
    EXPECT_EQ(form.textLimit(), 40);
    v.description = QStringLiteral("+49228123");
    EXPECT_EQ(form.textLimit(), 41);
    v.kind = main::EntryKind::Birthday;
    EXPECT_EQ(form.textLimit(), 32);
}

// A new entry starts now for 30 minutes; a typed time is read and shown in the
// user's format; the tools set now and now + 30 minutes.
TEST_F(EntryForm, TimesOfANewEntry) {
    main::MobileEntryForm form(ctx);
    auto& v = form.values();
    EXPECT_EQ(v.startTime, QStringLiteral("09:15"));
    EXPECT_EQ(v.endTime, QStringLiteral("09:45"));
    EXPECT_FALSE(v.pim); // no PIM in this context
    EXPECT_FALSE(form.Check4Changes());
    v.startTime = QStringLiteral("7:05");
    form.StartTime_LostFocus();
    EXPECT_EQ(v.startTime, QStringLiteral("07:05"));
    EXPECT_TRUE(form.Check4Changes());
    v.endTime = QStringLiteral("12"); // too short to be a time: the time now
    form.EndTime_LostFocus();
    EXPECT_EQ(v.endTime, QStringLiteral("09:15"));
    form.EntryTime_Click();
    form.EntryTimeEnd_Click();
    EXPECT_EQ(v.startTime, QStringLiteral("09:15"));
    EXPECT_EQ(v.endTime, QStringLiteral("09:45"));
}
