// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/vCalMatch.h"
#include "SyncTestSupport.h"

using namespace tsr;
using namespace tsr::sync;
using core::DateSerial;
using core::VbDate;
using test::setFields;
using test::SyncTest;
using test::textOf;

namespace {
const VbDate kStart(DateSerial(2026, 11, 24).value + 0.375); // 09:00

class vCalMatch : public SyncTest {
protected:
    vCalMatch() : entryTable(makeCalendar(QStringLiteral("scratch"))) {}

    // A row read from the PIM.
    void addPimRow(const QString& text, test::Fields extra = {}) {
        addCalendarRow(cal(), {{u"PIM", true},
                               {u"EntryType", int32_t(1)},
                               {u"Typ", u""},
                               {u"StartDate", core::DateValue(kStart)},
                               {u"StartasText", kStart},
                               {u"StartTime", u"09:00:00"},
                               {u"Text", text},
                               {u"UID", u"pim-1"}});
        setFields(cal(), extra);
    }
    // The fresh entry as the phone's parser leaves it.
    tables::Recordset& mobileEntry(const QString& text, test::Fields extra = {}) {
        tables::ClearRecordSet(*entryTable);
        addCalendarRow(*entryTable, {{u"Mobile", true},
                                     {u"EntryType", int32_t(2)},
                                     {u"Typ", u""},
                                     {u"StartDate", core::DateValue(kStart)},
                                     {u"StartasText", kStart},
                                     {u"StartTime", u"09:00:00"},
                                     {u"Text", text},
                                     {u"EntryID", u"7"}});
        setFields(*entryTable, extra);
        return *entryTable;
    }
    // The fresh entry as the PIM's read leaves it.
    tables::Recordset& pimEntry(const QString& text, const QString& uid) {
        tables::ClearRecordSet(*entryTable);
        addCalendarRow(*entryTable, {{u"PIM", true},
                                     {u"EntryType", int32_t(1)},
                                     {u"StartasText", kStart},
                                     {u"StartTime", u"09:00:00"},
                                     {u"Text", text},
                                     {u"UID", uid}});
        return *entryTable;
    }
    bool find(tables::Recordset& entry) {
        VbDate none;
        return vCalFindCompare(ctx, cal(), entry, none);
    }

    std::unique_ptr<tables::Recordset> entryTable;
};
} // namespace

// A phone birthday pairs with a PIM memo whose subject differs only in case, and
// the merged row stands on both sides with the phone's text.
TEST_F(vCalMatch, CategoryAndCaseOfSubject) {
    ctx.read.vCalPIMRead = true;
    ctx.read.vCalPIMCount = 1;
    addPimRow(QStringLiteral("Anna's Birthday"));
    auto& e = mobileEntry(QStringLiteral("ANNA'S BIRTHDAY"), {{u"Typ", u"2"}, {u"AnniversaryStatus", true}});
    EXPECT_TRUE(admitCalendarEntry(ctx, cal(), e, ReadSide::Mobile));
    EXPECT_EQ(cal().recordCount(), 1);
    EXPECT_EQ(cal().value(QStringLiteral("EntryType")).toInt32(), 3);
    EXPECT_EQ(textOf(cal(), u"Text"), QStringLiteral("ANNA'S BIRTHDAY"));
    EXPECT_EQ(textOf(cal(), u"EntryID"), QStringLiteral("7"));
}

// A meeting pairs only with a meeting; a PIM memo does not pair with a phone meeting
// and a PIM meeting not with a phone memo.
TEST_F(vCalMatch, MeetingPairsOnlyWithMeeting) {
    addPimRow(QStringLiteral("Review"), {{u"Typ", u"1"}});
    EXPECT_FALSE(find(mobileEntry(QStringLiteral("Review"))));
    EXPECT_TRUE(find(mobileEntry(QStringLiteral("Review"), {{u"Typ", u"1"}})));
    tables::ClearRecordSet(cal());
    addPimRow(QStringLiteral("Review"));
    EXPECT_FALSE(find(mobileEntry(QStringLiteral("Review"), {{u"Typ", u"1"}})));
}

// Plain subjects count for 32 characters once both have at least 32.
TEST_F(vCalMatch, PlainSubjectsCutAt32) {
    const QString base = QStringLiteral("Quarterly planning with the team");
    ASSERT_EQ(base.size(), 32);
    addPimRow(base + QStringLiteral(" in room 4")); // 42 characters
    EXPECT_TRUE(find(mobileEntry(base + u'!')));    // 33 against 42, first 32 agree
    tables::ClearRecordSet(cal());
    addPimRow(base.left(31));                              // 31 characters
    EXPECT_FALSE(find(mobileEntry(base.left(31) + u'X'))); // 32: no cut, whole texts differ
}

// A call (Typ "3" in the fresh entry) is cut at 41 characters with a leading "+",
// never at 32; with Typ "3" only in the row a short text is compared whole.
TEST_F(vCalMatch, CallTextsCutAtPhonecallLength) {
    const QString number = QStringLiteral("+4989123456");
    addPimRow(number);
    EXPECT_TRUE(find(mobileEntry(number, {{u"Typ", u"3"}})));

    const QString longCall = QStringLiteral("+49891234567890123456789012345678901234"); // 39
    tables::ClearRecordSet(cal());
    addPimRow(longCall + QStringLiteral("AB-pim"));
    // Agree in 41, not only in 32: pair.
    EXPECT_TRUE(find(mobileEntry(longCall + QStringLiteral("AB-phone"), {{u"Typ", u"3"}})));
    // Agree in 34 but not in 41: no pair, although plain subjects would pair.
    EXPECT_FALSE(find(mobileEntry(longCall.left(34) + QStringLiteral("xxxxxxxxxxx"), {{u"Typ", u"3"}})));

    // Typ "3" only in the phone row of the table, the PIM entry is fresh.
    tables::ClearRecordSet(cal());
    addCalendarRow(cal(), {{u"Mobile", true},
                           {u"EntryType", int32_t(2)},
                           {u"Typ", u"3"},
                           {u"StartasText", kStart},
                           {u"StartTime", u"09:00:00"},
                           {u"Text", u"0891234"},
                           {u"EntryID", u"3"}});
    pimEntry(QStringLiteral("0891234 Anna"), QStringLiteral("u1"));
    EXPECT_FALSE(find(*entryTable));
    setFields(*entryTable, {{u"Text", u"0891234"}});
    EXPECT_TRUE(find(*entryTable));
}

// A call is significant for 40 characters, so call texts of 32 to 39 characters
// that agree only in the first 32 never pair, whichever side holds the call; at 40
// characters on both sides the cut applies and the first 40 decide.
TEST_F(vCalMatch, CallTextsOf32To39CharactersDoNotPairOnTheirFirst32) {
    const QString base = QStringLiteral("Call Anna back about the invoice");
    ASSERT_EQ(base.size(), 32);
    for (int n = 32; n <= 39; ++n) {
        SCOPED_TRACE(n);
        const QString rowText = base + QString(n - 32, u'r');
        const QString entryText = base + QString(n - 31, u'e');
        // The call in the phone's row of the table, a fresh PIM entry.
        tables::ClearRecordSet(cal());
        addCalendarRow(cal(), {{u"Mobile", true},
                               {u"EntryType", int32_t(2)},
                               {u"Typ", u"3"},
                               {u"StartasText", kStart},
                               {u"StartTime", u"09:00:00"},
                               {u"Text", rowText},
                               {u"EntryID", u"3"}});
        EXPECT_FALSE(find(pimEntry(entryText, QStringLiteral("u1"))));
        // The call in the fresh phone entry, a PIM row in the table.
        tables::ClearRecordSet(cal());
        addPimRow(rowText);
        EXPECT_FALSE(find(mobileEntry(entryText, {{u"Typ", u"3"}})));
    }
    const QString forty = base + QStringLiteral("12345678");
    tables::ClearRecordSet(cal());
    addPimRow(forty + QStringLiteral("-pim"));
    EXPECT_TRUE(find(mobileEntry(forty + QStringLiteral("-phone"), {{u"Typ", u"3"}})));
}

// A paired row pairs again only with the PIM item or phone entry it holds.
TEST_F(vCalMatch, IdentityKeepsTwinsApart) {
    addPimRow(QStringLiteral("Dentist"), {{u"EntryType", int32_t(3)}, {u"UID", u"A"}, {u"EntryID", u"5"}});
    pimEntry(QStringLiteral("Dentist"), QStringLiteral("B"));
    EXPECT_FALSE(find(*entryTable));
    ctx.read.vCalMobileRead = true;
    ctx.read.vCalMobileCount = 1;
    EXPECT_FALSE(admitCalendarEntry(ctx, cal(), *entryTable, ReadSide::PIM));
    EXPECT_EQ(cal().recordCount(), 2);
    setFields(*entryTable, {{u"UID", u"A"}});
    cal().moveFirst();
    EXPECT_TRUE(find(*entryTable));
    EXPECT_EQ(cal().absolutePosition(), 1);

    // Empty identifiers never count as the same.
    tables::ClearRecordSet(cal());
    addPimRow(QStringLiteral("Dentist"), {{u"EntryType", int32_t(3)}, {u"UID", u""}, {u"EntryID", u""}});
    EXPECT_FALSE(find(mobileEntry(QStringLiteral("Dentist"), {{u"EntryID", u""}})));
    EXPECT_FALSE(vcalCheckbeforecompare(
        ctx, cal(), mobileEntry(QStringLiteral("x"), {{u"EntryType", int32_t(1)}, {u"EntryID", u""}})));
}

// Two rows of the same one side never pair, and the start time must agree exactly.
TEST_F(vCalMatch, SideAndTimeTests) {
    addPimRow(QStringLiteral("Gym"));
    pimEntry(QStringLiteral("Gym"), QStringLiteral("other"));
    EXPECT_FALSE(find(*entryTable));
    EXPECT_FALSE(find(mobileEntry(QStringLiteral("Gym"), {{u"StartTime", u"09:00"}})));
    EXPECT_TRUE(find(mobileEntry(QStringLiteral("Gym"))));
    // Both texts empty pass the text test.
    tables::ClearRecordSet(cal());
    addPimRow(QString());
    EXPECT_TRUE(find(mobileEntry(QString())));
}

// A series is found by its pattern start, and an empty key is filled from
// StartDate during the call, also on a miss.
TEST_F(vCalMatch, SeriesFoundByPatternStart) {
    addPimRow(QStringLiteral("Yoga"), {{u"ISRecurring", true},
                                       {u"RecurrenceType", u"W"},
                                       {u"PimRecPattString", cal().dateAsText(DateSerial(2026, 11, 3))}});
    // Same occurrence start, other pattern start: no pair.
    auto& other =
        mobileEntry(QStringLiteral("Yoga"),
                    {{u"ISRecurring", true}, {u"RecurrenceType", u"W"}, {u"StartDate", DateSerial(2026, 11, 10)}});
    EXPECT_FALSE(find(other));
    EXPECT_EQ(textOf(other, u"PimRecPattString"), entryTable->dateAsText(DateSerial(2026, 11, 10)));
    // Another occurrence start, the same pattern start: pair.
    auto& same = mobileEntry(QStringLiteral("Yoga"), {{u"ISRecurring", true},
                                                      {u"RecurrenceType", u"W"},
                                                      {u"StartasText", u"01.12.26 09:00:00"},
                                                      {u"StartDate", DateSerial(2026, 11, 3)}});
    EXPECT_TRUE(find(same));
    // A series and a single entry never pair, nor two kinds of series.
    EXPECT_FALSE(find(mobileEntry(QStringLiteral("Yoga"))));
    EXPECT_FALSE(find(
        mobileEntry(QStringLiteral("Yoga"),
                    {{u"ISRecurring", true}, {u"RecurrenceType", u"D"}, {u"StartDate", DateSerial(2026, 11, 3)}})));
}

// On a miss the table stands where it stood; on a hit on the first row that passes.
TEST_F(vCalMatch, PositionAfterTheSearch) {
    addPimRow(QStringLiteral("Other"));
    addPimRow(QStringLiteral("Lunch"), {{u"UID", u"p2"}});
    addPimRow(QStringLiteral("Lunch"), {{u"UID", u"p3"}});
    addPimRow(QStringLiteral("Far"), {{u"StartasText", VbDate(kStart.value + 1)}});
    cal().setAbsolutePosition(1);
    EXPECT_FALSE(find(mobileEntry(QStringLiteral("Dinner"))));
    EXPECT_EQ(cal().absolutePosition(), 1);
    EXPECT_TRUE(find(mobileEntry(QStringLiteral("lunch"))));
    EXPECT_EQ(cal().absolutePosition(), 2);
    EXPECT_EQ(textOf(cal(), u"UID"), QStringLiteral("p2"));
}

// A search date other than 0 replaces the entry's own start as the key.
TEST_F(vCalMatch, SearchDateReplacesTheKey) {
    const VbDate later(kStart.value + 7);
    addPimRow(QStringLiteral("Call Bob"), {{u"StartasText", later}});
    auto& e = mobileEntry(QStringLiteral("Call Bob"));
    EXPECT_FALSE(find(e));
    VbDate search = later;
    EXPECT_TRUE(vCalFindCompare(ctx, cal(), e, search));
}

// A table without the fields is a failed search: reported, no match, no crash.
TEST_F(vCalMatch, FailedSearchCountsAsNoMatch) {
    addPimRow(QStringLiteral("x"));
    auto contactsAsEntry = makeContacts(QStringLiteral("wrong"));
    tables::vCardCreateNewRecord(*contactsAsEntry);
    VbDate none;
    EXPECT_FALSE(vCalFindCompare(ctx, cal(), *contactsAsEntry, none));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes.first().text.contains(QStringLiteral("StartasText"))) << ui.boxes.first().text.toStdString();
}

// The text is cut to what the phone keeps; a text at the limit changes nothing.
TEST_F(vCalMatch, TextCheckCutsToThePhonesLength) {
    auto row = [&](const QString& typ, const QString& text) -> tables::Recordset& {
        tables::ClearRecordSet(*entryTable);
        addCalendarRow(*entryTable, {{u"Typ", typ}, {u"Text", text}, {u"Description", u"keep"}});
        vcalTextCheck(ctx, *entryTable);
        return *entryTable;
    };
    const QString x32(32, u'x');
    EXPECT_EQ(textOf(row(QString(), x32), u"Description"), QStringLiteral("keep"));
    auto& cut = row(QString(), x32 + QStringLiteral("yz"));
    EXPECT_EQ(textOf(cut, u"Text"), x32);
    EXPECT_EQ(textOf(cut, u"Description"), x32);
    const QString call41 = u'+' + QString(40, u'1');
    EXPECT_EQ(textOf(row(QStringLiteral("3"), call41), u"Description"), QStringLiteral("keep"));
    EXPECT_EQ(textOf(row(QStringLiteral("3"), call41 + u'2'), u"Text"), call41);
    EXPECT_EQ(textOf(row(QStringLiteral("3"), QString(41, u'1')), u"Text"), QString(40, u'1'));
}
