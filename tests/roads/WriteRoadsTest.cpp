// SPDX-License-Identifier: GPL-3.0-or-later
// The write roads with changes transferred at once: a new entry, a new weekly
// series, a change and a delete reach the phone's record files and the store's
// .ics files in the same step; khal shows what the store got on the right days.
#include "formats/vCal.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/MobileWrite.h"
#include "roads/RoadsFixture.h"
#include "support/UserTools.h"
#include "sync/Verwaltung.h"

using namespace tsr;
using tsr::test::RoadsFixture;
using tsr::test::vcs;
using tsr::test::when;

namespace {

QByteArray golden(const char* name) {
    QFile f(QStringLiteral(TESSARINE_TEST_DATA "/vcal/sent/") + QString::fromLatin1(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("missing golden file");
}

class WriteRoads : public RoadsFixture {
protected:
    // A row as the entry editor makes it for both sides, on the first free number.
    void newEntry(core::VbDate start, core::VbDate end, const QString& subject, const QString& typ = {}) {
        tables::Recordset& t = cal();
        int16_t id = -1;
        ASSERT_TRUE(sync::GetFreeMobileEntryID(ctx, t, id));
        tables::vCalCreateNewRecord(t);
        auto set = [&](const char* field, const core::Value& v) { t.setValue(QString::fromLatin1(field), v); };
        set("Mobile", true);
        set("PIM", true);
        set("EntryType", int32_t(3));
        set("EntryID", QString::number(id));
        set("SubType", int32_t(id));
        set("Start", start);
        set("DTStart", start);
        set("DTStartFlag", true);
        set("StartasText", start);
        set("StartDate", core::DateValue(start));
        set("StartTime", core::Format(core::TimeValue(start), ctx.formats.TimeFormat));
        set("DTEnd", end);
        set("EndDate", core::DateValue(end));
        set("EndTime", core::TimeValue(end));
        set("EndDateFlag", true);
        set("StartEndDiff", int64_t(0));
        set("Text", subject);
        set("Description", subject);
        set("PIMText", subject);
        set("Typ", typ);
        set("MemoStatus", typ.isEmpty());
        set("MeetingStatus", typ == u"1");
        t.update();
    }

    void makeWeekly(int mask) {
        tables::Recordset& t = cal();
        t.setValue(QStringLiteral("ISRecurring"), true);
        t.setValue(QStringLiteral("RecurrenceType"), QStringLiteral("W"));
        t.setValue(QStringLiteral("Weekdaymask"), int64_t(mask));
        t.setValue(QStringLiteral("RecurrenceIntervall"), int64_t(1));
        t.setValue(QStringLiteral("RecurrenceDuration"), int64_t(0)); // no end
        formats::vCalSetSerieFields(ctx, t);
    }

    // Both sides at once, as a save in the editor does it.
    void saveBoth(bool isNew) {
        ASSERT_TRUE(roads::SendSingleEntry(ctx, cal()));
        roads::WriteOutlookEntry(ctx, cal(), isNew);
    }

    QString khalList(const char* from, const char* to) {
        test::UserTools tools(ctx.options.pim);
        return tools.run(QStringLiteral("khal"),
                         {QStringLiteral("list"), QString::fromLatin1(from), QString::fromLatin1(to),
                          QStringLiteral("--format"), QStringLiteral("{start} {title}")});
    }
};

} // namespace

// A new single entry and a new weekly series reach both sides at once.
TEST_F(WriteRoads, NewEntriesReachBothSidesAtOnce) {
    test::EmulatedPhone& p = phoneWith();
    p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));

    newEntry(when(2026, 3, 16, 9, 30), when(2026, 3, 16, 10), QStringLiteral("Budget meeting"), QStringLiteral("1"));
    saveBoth(true);
    EXPECT_EQ(p.record(2), golden("meeting-new.vcs"));

    newEntry(when(2026, 3, 2, 18), when(2026, 3, 2, 19, 30), QStringLiteral("Choir"));
    makeWeekly(2 | 16); // Monday and Thursday
    saveBoth(true);
    EXPECT_EQ(p.record(3), golden("series-weekly-new.vcs"));

    EXPECT_EQ(icsFiles().size(), 2);
    EXPECT_TRUE(allIcs().contains("SUMMARY:Budget meeting"));
    EXPECT_EQ(ctx.tables.LogCalendar->recordCount(), 4);
    if (!test::UserTools::installed(QStringLiteral("khal")))
        GTEST_SKIP() << "khal is not installed: the khal checks did not run";
    const QStringList listed = test::UserTools::lines(khalList("2026-03-02", "2026-03-10"));
    const QStringList expected{QStringLiteral("2026-03-02 18:00 Choir"), QStringLiteral("2026-03-05 18:00 Choir"),
                               QStringLiteral("2026-03-09 18:00 Choir")};
    EXPECT_EQ(listed.filter(QStringLiteral("Choir")).size(), 3) << listed.join(u'\n').toStdString();
    for (const QString& line : expected)
        EXPECT_TRUE(listed.contains(line)) << line.toStdString() << "\n" << listed.join(u'\n').toStdString();
    const QStringList budget = test::UserTools::lines(khalList("2026-03-16", "2026-03-17"));
    EXPECT_TRUE(budget.contains(QStringLiteral("2026-03-16 09:30 Budget meeting"))) << budget.join(u'\n').toStdString();
}

// A change of a paired entry replaces the phone's record and the store's item;
// a delete takes both away.
TEST_F(WriteRoads, ChangeAndDeleteReachBothSidesAtOnce) {
    test::EmulatedPhone& p = phoneWith();
    p.seed(4, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
    appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    ASSERT_TRUE(rowWithText(QStringLiteral("Dentist")));
    ASSERT_EQ(field("EntryType"), QStringLiteral("3"));

    cal().setValue(QStringLiteral("Text"), QStringLiteral("Dentist, bring the card"));
    cal().setValue(QStringLiteral("Description"), QStringLiteral("Dentist, bring the card"));
    cal().setValue(QStringLiteral("PIMText"), QStringLiteral("Dentist, bring the card"));
    saveBoth(false);
    EXPECT_EQ(p.record(4), golden("memo-changed.vcs"));
    ASSERT_EQ(icsFiles().size(), 1);
    EXPECT_TRUE(allIcs().contains("SUMMARY:Dentist\\, bring the card")) << allIcs().toStdString();

    ASSERT_TRUE(roads::RemoveEntryFromMobile(ctx, cal()));
    ASSERT_TRUE(roads::RemoveEntryFromOutlook(ctx, cal()));
    EXPECT_FALSE(p.hasRecord(4));
    EXPECT_TRUE(icsFiles().isEmpty());
    // created/changed/deleted rows for each side
    EXPECT_EQ(ctx.tables.LogCalendar->recordCount(), 4);
}
