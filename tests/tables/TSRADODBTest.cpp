// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/TSRADODB.h"
#include "core/Context.h"
#include "support/ScriptedUi.h"
#include "tables/Layouts.h"

#include <gtest/gtest.h>

using namespace tsr;
using namespace tsr::tables;
using core::VbDate;

namespace {

QString text(Recordset& t, const char* field) {
    return t.value(QString::fromLatin1(field)).toText();
}

// A calendar table with a three-row series "S" between two single rows.
struct SeriesTable {
    Recordset t{QStringLiteral("RSCalendar")};
    SeriesTable() {
        InitCalendarRS(t);
        const char* ids[] = {"A", "S", "S", "S", "B"};
        int day = 1;
        for (const char* id : ids) {
            vCalCreateNewRecord(t);
            t.setValue(QStringLiteral("EntryID"), QString::fromLatin1(id));
            t.setValue(QStringLiteral("Start"), core::DateSerial(2025, 5, day++).value + 0.5);
            t.update();
        }
    }
};

} // namespace

TEST(TSRADODB, LayoutsHaveTheirFieldCountsAndOrder) {
    Recordset cal, con;
    InitCalendarRS(cal);
    vCardInitRS(con);
    ASSERT_EQ(cal.fieldCount(), 60);
    ASSERT_EQ(con.fieldCount(), 45);
    EXPECT_EQ(cal.fieldName(0), QStringLiteral("PIM"));
    EXPECT_EQ(cal.fieldName(2), QStringLiteral("Alarm"));
    EXPECT_EQ(cal.fieldName(2 + 1), QStringLiteral("StartDate")); // the log tells calendar rows by this
    EXPECT_EQ(cal.fieldName(47), QStringLiteral("StartAsText"));
    EXPECT_EQ(cal.fieldName(59), QStringLiteral("creafromMob"));
    EXPECT_EQ(con.fieldName(2), QStringLiteral("LastName"));
    EXPECT_EQ(con.fieldName(44), QStringLiteral("MobileCategoriesText"));
    // Other spellings reach the same fields.
    for (const char* alias : {"ISRecurring", "Weekdaymask", "PIMnew", "Transfernew", "StartasText"})
        EXPECT_GE(cal.fieldIndex(QString::fromLatin1(alias)), 0) << alias;
    EXPECT_EQ(con.fieldIndex(QStringLiteral("PIMFirstname")), con.fieldIndex(QStringLiteral("PIMFirstName")));
}

TEST(TSRADODB, NewCalendarRowHasItsStartValues) {
    Recordset t;
    InitCalendarRS(t);
    vCalCreateNewRecord(t);
    EXPECT_EQ(text(t, "EntryID"), QStringLiteral("-1"));
    EXPECT_EQ(t.value(QStringLiteral("SubType")).toInt32(), -1);
    EXPECT_EQ(t.value(QStringLiteral("TransferMode")).toInt32(), 1);
    EXPECT_EQ(text(t, "Recordset"), QStringLiteral("RSCalendar"));
    EXPECT_EQ(text(t, "StartTime"), QStringLiteral("0"));
    EXPECT_EQ(t.value(QStringLiteral("EntryType")).toInt32(), 0);
    EXPECT_FALSE(t.value(QStringLiteral("IsRecurring")).toBool());
    EXPECT_TRUE(t.value(QStringLiteral("Alarm")).isEmpty());
    EXPECT_TRUE(t.value(QStringLiteral("StartAsText")).isEmpty());
    EXPECT_TRUE(t.value(QStringLiteral("RecurrenceType")).isEmpty());
    EXPECT_EQ(t.value(QStringLiteral("WeekDayMask")).isEmpty(), true); // cleared by vCalClearRecurrance
}

TEST(TSRADODB, NewContactRowHasItsStartValues) {
    Recordset t;
    vCardInitRS(t);
    vCardCreateNewRecord(t);
    EXPECT_EQ(text(t, "Recordset"), QStringLiteral("RSContacts"));
    EXPECT_EQ(t.value(QStringLiteral("TransferMode")).toInt32(), 1);
    EXPECT_EQ(t.value(QStringLiteral("EntryType")).toInt32(), 0);
    EXPECT_TRUE(t.value(QStringLiteral("EntryID")).isEmpty());
}

// A new row is copied from one made once; where a Find index is kept it is made
// field by field instead. Both ways give the same row, row after row.
TEST(TSRADODB, NewRowsAreTheSameWithAndWithoutAFindIndex) {
    using Make = void (*)(Recordset&);
    const std::pair<Make, Make> layouts[] = {{InitCalendarRS, vCalCreateNewRecord},
                                             {vCardInitRS, vCardCreateNewRecord}};
    for (const auto& [init, create] : layouts) {
        Recordset copied, indexed;
        init(copied);
        init(indexed);
        EXPECT_FALSE(indexed.find(QStringLiteral("EntryID = 'x'"))); // from here on the index sees every write
        for (int i = 0; i < 3; ++i) {
            create(copied);
            create(indexed);
            copied.setValue(0, true); // a change to one row must not reach the next
            indexed.setValue(0, true);
        }
        copied.moveFirst();
        indexed.moveFirst();
        while (!copied.eof()) {
            ASSERT_FALSE(indexed.eof());
            EXPECT_EQ(copied.getRows(), indexed.getRows());
        }
        EXPECT_TRUE(indexed.eof());
    }
}

TEST(TSRADODB, ClearRecordSetEmptiesTheTable) {
    SeriesTable s;
    ClearRecordSet(s.t);
    EXPECT_EQ(s.t.recordCount(), 0);
    ClearRecordSet(s.t); // an empty table stays empty without error
    EXPECT_EQ(s.t.recordCount(), 0);
}

// Every row of the series changes, the others stay, and the cursor comes back.
TEST(TSRADODB, RowWiseSettersChangeTheWholeSeriesAndRestoreTheCursor) {
    SeriesTable s;
    auto& t = s.t;
    t.setAbsolutePosition(5);
    SeriesSetEntryType(t, QStringLiteral("S"), 3);
    SeriesSetTyp(t, QStringLiteral("S"), QStringLiteral("2"));
    SeriesSetAlarm(t, QStringLiteral("S"), true);
    SeriesSetPIM(t, QStringLiteral("S"));
    EXPECT_EQ(t.absolutePosition(), 5);
    t.moveFirst();
    int changed = 0;
    while (!t.eof()) {
        const bool inSeries = text(t, "EntryID") == u"S";
        EXPECT_EQ(t.value(QStringLiteral("EntryType")).toInt32(), inSeries ? 3 : 0);
        EXPECT_EQ(t.value(QStringLiteral("AnniversaryStatus")).toBool(), inSeries);
        EXPECT_EQ(t.value(QStringLiteral("PIM")).toBool(), inSeries);
        if (inSeries) {
            EXPECT_FALSE(t.value(QStringLiteral("MemoStatus")).toBool());
            EXPECT_EQ(t.value(QStringLiteral("DAlarm")).toDate(), t.value(QStringLiteral("Start")).toDate());
            EXPECT_TRUE(t.value(QStringLiteral("AAlarmFlag")).toBool());
            ++changed;
        }
        t.moveNext();
    }
    EXPECT_EQ(changed, 3);

    t.setAbsolutePosition(2);
    SeriesSetAlarm(t, QStringLiteral("S"), false);
    SeriesClearBoth(t, QStringLiteral("S"));
    EXPECT_EQ(t.absolutePosition(), 2);
    EXPECT_EQ(t.value(QStringLiteral("DAlarm")).toDate(), VbDate(0));
    EXPECT_FALSE(t.value(QStringLiteral("Alarm")).toBool());
    EXPECT_FALSE(t.value(QStringLiteral("PIM")).toBool());
}

TEST(TSRADODB, SeriesSetTypFallsBackToMemo) {
    SeriesTable s;
    SeriesSetTyp(s.t, QStringLiteral("A"), QStringLiteral("7"));
    s.t.moveFirst();
    EXPECT_TRUE(s.t.value(QStringLiteral("MemoStatus")).toBool());
    EXPECT_EQ(text(s.t, "Typ"), QStringLiteral("7"));
}

TEST(TSRADODB, SettersOnAnEmptyTableOrAMissingIdChangeNothing) {
    Recordset empty;
    InitCalendarRS(empty);
    SeriesSetUID(empty, QStringLiteral("X"), QStringLiteral("U"));
    EXPECT_EQ(empty.recordCount(), 0);
    EXPECT_FALSE(FindEntryByID(empty, QStringLiteral("X")));

    SeriesTable s;
    s.t.setAbsolutePosition(4);
    SeriesSetUID(s.t, QStringLiteral("nope"), QStringLiteral("U"));
    EXPECT_EQ(s.t.absolutePosition(), 4);
    EXPECT_FALSE(FindEntryByID(s.t, QStringLiteral("nope")));
    EXPECT_EQ(s.t.absolutePosition(), 4);
    EXPECT_TRUE(FindEntryByID(s.t, QStringLiteral("S")));
    EXPECT_EQ(s.t.absolutePosition(), 2);
}

// Renaming the key of a series by UID keeps the EntryID of rows that stand on the phone.
TEST(TSRADODB, SeriesSetUIDAndEntryIDSparesMobileRows) {
    SeriesTable s;
    auto& t = s.t;
    t.setAbsolutePosition(3);
    t.setValue(QStringLiteral("Mobile"), true);
    SeriesSetUID(t, QStringLiteral("S"), QStringLiteral("old-uid"));
    SeriesSetUIDAndEntryID(t, QStringLiteral("old-uid"), QStringLiteral("new-uid"), true);
    t.moveFirst();
    QStringList ids, uids;
    while (!t.eof()) {
        ids << text(t, "EntryID");
        uids << text(t, "UID");
        t.moveNext();
    }
    EXPECT_EQ(ids, (QStringList{QStringLiteral("A"), QStringLiteral("new-uid"), QStringLiteral("S"),
                                QStringLiteral("new-uid"), QStringLiteral("B")}));
    EXPECT_EQ(uids, (QStringList{QString(), QStringLiteral("new-uid"), QStringLiteral("new-uid"),
                                 QStringLiteral("new-uid"), QString()}));
}

TEST(TSRADODB, CopyFromRecordsetLeavesTheSourceOnItsRow) {
    SeriesTable s;
    Recordset work;
    InitCalendarRS(work);
    vCalCreateNewRecord(work);
    s.t.setAbsolutePosition(5);
    ASSERT_TRUE(CopyFromRecordset(work, s.t));
    EXPECT_EQ(s.t.absolutePosition(), 5);
    EXPECT_EQ(text(work, "EntryID"), QStringLiteral("B"));
    EXPECT_EQ(work.value(QStringLiteral("Start")).toDate(), s.t.value(QStringLiteral("Start")).toDate());
}

TEST(TSRADODB, FillRecordFromTokensSkipsEmptyTokensAndReadsCategoriesAsAFlag) {
    Recordset t;
    vCardInitRS(t);
    vCardCreateNewRecord(t);
    t.setValue(QStringLiteral("City"), QStringLiteral("kept"));
    t.setValue(QStringLiteral("Categories"), true);
    QStringList line(18);
    line[0] = QStringLiteral("7");
    line[1] = QStringLiteral("uid-1");
    line[2] = QStringLiteral("0"); // the Mobile and PIM marks are not read
    line[4] = QStringLiteral("Müller");
    line[11] = QStringLiteral("0");
    line[17] = QStringLiteral("www.example.org");
    const QList<QStringList> tokens{QStringList(), line};
    vCardFillRecordFromTokens(t, tokens, 1);
    EXPECT_TRUE(t.value(QStringLiteral("Mobile")).toBool());
    EXPECT_EQ(t.value(QStringLiteral("EntryType")).toInt32(), 3);
    EXPECT_EQ(text(t, "MobileID"), QStringLiteral("7"));
    EXPECT_EQ(text(t, "LastName"), QStringLiteral("Müller"));
    EXPECT_EQ(text(t, "City"), QStringLiteral("kept"));
    EXPECT_FALSE(t.value(QStringLiteral("Categories")).toBool());
    EXPECT_EQ(text(t, "URL"), QStringLiteral("www.example.org"));

    line[11] = QStringLiteral("x");
    vCardFillRecordFromTokens(t, {line}, 0);
    EXPECT_TRUE(t.value(QStringLiteral("Categories")).toBool());
}

TEST(TSRADODB, CreateInitAndSetAllRSMakesNineTables) {
    test::ScriptedUi ui;
    core::Context ctx(ui);
    ASSERT_TRUE(CreateInitAndSetAllRS(ctx));
    auto& t = ctx.tables;
    for (Recordset* r : {t.RSCalendar.get(), t.RSCalendarWork.get(), t.RSCalendarPending.get()})
        EXPECT_EQ(r->fieldCount(), 60);
    for (Recordset* r : {t.RSContacts.get(), t.RSContactsWork.get(), t.RSContactsPending.get()})
        EXPECT_EQ(r->fieldCount(), 45);
    EXPECT_TRUE(t.LogCalendar && t.LogContacts && t.LogErrors);
    EXPECT_TRUE(ctx.flags.GlobalLogReady);
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_TRUE(vCalClearSerieRecords(*t.RSCalendar, QStringLiteral("x")));
}
