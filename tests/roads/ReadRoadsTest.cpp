// SPDX-License-Identifier: GPL-3.0-or-later
// The read roads end to end: the emulated phone's calendar and the local store's
// appointments read into one table, pairing by contents in either order, a read
// cancelled half-way, and records the parser refuses.
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/MobileWrite.h"
#include "roads/RoadsFixture.h"

using namespace tsr;
using tsr::test::RoadsFixture;
using tsr::test::vcs;
using tsr::test::when;

namespace {

class ReadRoads : public RoadsFixture {
protected:
    // Seven phone entries, five of them with a partner in the store, and two
    // appointments only in the store.
    void seedBothSides() {
        test::EmulatedPhone& p = phoneWith();
        p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
        p.seed(2, vcs("20260302T180000Z", "20260302T193000Z", "MISCELLANEOUS", "Choir", "W1 MO TH #0"));
        p.seed(4, vcs("20260311T090000Z", "20260311T091500Z", "PHONE CALL", "0301234567"));
        p.seed(5, vcs("20260312T140000Z", "20260312T150000Z", "MEETING", "Project review"));
        // The phone keeps 32 characters of a subject.
        p.seed(7, vcs("20260313T080000Z", "20260313T090000Z", "MISCELLANEOUS", "Quarterly planning with the whol"));
        p.seed(9, vcs("20260320T120000Z", "20260320T130000Z", "MISCELLANEOUS", "Only on the phone"));
        p.seed(12, vcs("20260317T000000Z", "20260317T000000Z", "ANNIVERSARY", "Anna", "YD1 #0"));

        appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
        auto choir = appointment(when(2026, 3, 2, 18), when(2026, 3, 2, 19, 30), QStringLiteral("Choir"));
        auto pattern = choir->GetRecurrencePattern();
        pattern->setRecurrenceType(pim::olRecursWeekly);
        pattern->setDayOfWeekMask(2 | 16);
        choir->Save();
        appointment(when(2026, 3, 12, 14), when(2026, 3, 12, 15), QStringLiteral("Project review"), pim::olMeeting);
        appointment(when(2026, 3, 13, 8), when(2026, 3, 13, 9),
                    QStringLiteral("Quarterly planning with the whole team"));
        appointment(when(2026, 3, 18, 9), when(2026, 3, 18, 10), QStringLiteral("Only in the store"));
        appointment(when(2026, 4, 2, 9), when(2026, 4, 2, 10), QStringLiteral("Also only in the store"));
    }
};

} // namespace

// After both reads, in either order: K paired rows, N-K phone rows, M-K store rows.
TEST_F(ReadRoads, BothSidesPairByContentsInEitherOrder) {
    seedBothSides();
    const std::map<int, int> expected{{1, 2}, {2, 3}, {3, 4}};

    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    EXPECT_EQ(ctx.read.vCalMobileCount, 7);
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    EXPECT_EQ(rowsByType(), expected);

    // Anew, the store first: the same pairs.
    tables::ClearRecordSet(cal());
    ctx.read = {};
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    EXPECT_EQ(ctx.read.vCalPIMCount, 6);
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    EXPECT_EQ(rowsByType(), expected);
    ASSERT_TRUE(rowWithText(QStringLiteral("Quarterly")));
    EXPECT_EQ(field("EntryType"), QStringLiteral("3"));
    EXPECT_EQ(field("EntryID"), QStringLiteral("7"));
    EXPECT_EQ(ctx.phone.MobileManufacturer, QStringLiteral("Tessarine"));
}

// A second read of either side takes the first read's rows off before it reads.
TEST_F(ReadRoads, ReadingASideTwiceGivesTheSameRows) {
    seedBothSides();
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    const auto once = rowsByType();
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    EXPECT_EQ(rowsByType(), once);
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    EXPECT_EQ(rowsByType(), once);
}

// Cancelling at the third record, answered Yes: the phone's rows go again, the
// phone stays connected and unread; the next read is whole.
TEST_F(ReadRoads, ACancelledReadLeavesNoPhoneRows) {
    seedBothSides();
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    int polls = 0;
    ui.onProcessEvents = [&] {
        if (++polls == 3)
            ctx.status.cancelRequested();
    };
    ui.answer(core::MsgResult::Yes); // "Do you really want to cancel?"
    EXPECT_FALSE(roads::vCalReadMobile(ctx));
    EXPECT_TRUE(ctx.read.MobileConnected);
    EXPECT_FALSE(ctx.read.vCalMobileRead);
    EXPECT_EQ(rowsByType(), (std::map<int, int>{{1, 6}}));

    ui.onProcessEvents = nullptr;
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    EXPECT_EQ(rowsByType(), (std::map<int, int>{{1, 2}, {2, 3}, {3, 4}}));
}

// A record the parser refuses ends the read with an error row that names it; no
// phone row stays, the store's rows are untouched, and nothing was written.
TEST_F(ReadRoads, ARefusedRecordEndsTheReadWithANamedError) {
    test::EmulatedPhone& p = phoneWith();
    p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
    p.seed(3, "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VTODO\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
    appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
    const QByteArray storeBefore = allIcs();
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    EXPECT_FALSE(roads::vCalReadMobile(ctx));
    EXPECT_EQ(rowsByType(), (std::map<int, int>{{1, 1}}));
    ASSERT_GE(ctx.tables.LogErrors->recordCount(), 1);
    ctx.tables.LogErrors->moveLast();
    EXPECT_TRUE(ctx.tables.LogErrors->value(QStringLiteral("ErrorDesc")).toText().contains(u"3.vcs"))
        << ctx.tables.LogErrors->value(QStringLiteral("ErrorDesc")).toText().toStdString();
    EXPECT_EQ(allIcs(), storeBefore);
    EXPECT_EQ(p.record(3).left(15), QByteArray("BEGIN:VCALENDAR"));
}

// The silent calendar road goes through the file-transfer driver: with a phone
// that answers, its status test stands the other way round and ends the read.
TEST_F(ReadRoads, SilentReadOfAWorkingPhoneEndsAtTheStatusTest) {
    ctx.settings.FileTransfer = 0; // the empty file-transfer slot
    seedBothSides();
    ctx.flags.GlobalSilent = true;
    EXPECT_FALSE(roads::SilentvCalReadMobile(ctx));
    EXPECT_EQ(rowsByType()[2], 0);
    // With the status known, the empty file-transfer slot lists nothing: no read either.
    ctx.read.MobileConnected = true;
    EXPECT_FALSE(roads::SilentvCalReadMobile(ctx));
    EXPECT_FALSE(ctx.read.MobileConnected);
    EXPECT_FALSE(roads::SilentvCardReadMobile(ctx));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// An entry whose subject holds every byte from 1 to 255 is read; written back
// and read again, it gives the same row: nothing is lost on the second trip.
TEST_F(ReadRoads, EveryByteOfASubjectReadsAndWritesBackStable) {
    QByteArray subject;
    for (int b = 1; b < 256; ++b) {
        if (b == '\r' || b == '\n')
            continue;
        if (b == ';' || b == '\\')
            subject += '\\';
        subject += char(b);
    }
    test::EmulatedPhone& p = phoneWith();
    p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", subject));
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    ASSERT_EQ(cal().recordCount(), 1);
    cal().moveFirst();
    const QString once = field("Text");
    // The printable characters all arrive, the umlauts and the euro sign among them.
    for (QChar c : {QChar(u'A'), QChar(u';'), QChar(u'\u00e4'), QChar(u'\u20ac'), QChar(u'\u00ff')})
        EXPECT_TRUE(once.contains(c)) << once.toStdString();
    ASSERT_TRUE(roads::SendSingleEntry(ctx, cal()));
    const QByteArray written = p.record(1);
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    cal().moveFirst();
    EXPECT_EQ(field("Text"), once);
    ASSERT_TRUE(roads::SendSingleEntry(ctx, cal()));
    EXPECT_EQ(p.record(1), written);
}

// A damaged file in the store is named in the error log; every other appointment is read.
TEST_F(ReadRoads, ADamagedStoreFileIsNamedAndPassedOver) {
    appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
    QFile damaged(ctx.options.pim + QStringLiteral("/calendar/broken.ics"));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nSUMMARY:cut off");
    damaged.close();
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    EXPECT_EQ(rowsByType(), (std::map<int, int>{{1, 1}}));
    QStringList errors;
    for (int i = 1; i <= ctx.tables.LogErrors->recordCount(); ++i) {
        ctx.tables.LogErrors->setAbsolutePosition(i);
        errors << ctx.tables.LogErrors->value(QStringLiteral("ErrorDesc")).toText();
    }
    EXPECT_TRUE(errors.join(u'\n').contains(u"broken.ics")) << errors.join(u'\n').toStdString();
}

// The status line names each item's start day, a series' repeats included, as the items come.
TEST_F(ReadRoads, TheStatusLineShowsEachItemsDay) {
    appointment(when(2026, 3, 10, 9), when(2026, 3, 10, 10), QStringLiteral("Morning"));
    appointment(when(2026, 3, 10, 15), when(2026, 3, 10, 16), QStringLiteral("Afternoon"));
    auto weekly = appointment(when(2026, 4, 20, 8), when(2026, 4, 20, 9), QStringLiteral("Weekly"));
    weekly->GetRecurrencePattern()->setRecurrenceType(pim::olRecursWeekly);
    weekly->Save();
    appointment(when(2026, 3, 11, 9), when(2026, 3, 11, 10), QStringLiteral("Next day"));
    ui.statusTexts.clear();
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    QStringList days;
    for (const QString& text : ui.statusTexts)
        if (text.contains(QStringLiteral("\r\n")))
            days << text.section(QStringLiteral("\r\n"), -1);
    EXPECT_EQ(days,
              (QStringList{QStringLiteral("10.03.2026"), QStringLiteral("10.03.2026"), QStringLiteral("11.03.2026"),
                           QStringLiteral("20.04.2026"), QStringLiteral("27.04.2026")}));
}
