// SPDX-License-Identifier: GPL-3.0-or-later
// Changes kept back (SaveTyp 2): nothing reaches either side until the transfer
// run, which carries out every pending row once; the case table that picks what
// a pending row asks for; a send that fails half-way and a second run after it.
#include "roads/Transfer.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/MobileWrite.h"
#include "roads/RoadsFixture.h"
#include "sync/Verwaltung.h"

#include "roads/Mobile.h"

using namespace tsr;
using roads::PendingAction;
using tsr::test::RoadsFixture;
using tsr::test::vcs;
using tsr::test::when;

namespace {

struct CaseRow {
    bool mobile;
    bool pim;
    int entryType; // -1: any
    int transferMode;
    int transferNew; // -1: any
    PendingAction action;
};

// Every row of the case table, and rows that fit no case.
const CaseRow kCases[] = {
    {true, false, -1, 1, -1, PendingAction::SendToMobile},
    {true, false, -1, 2, -1, PendingAction::RemoveFromMobile},
    {false, true, -1, 1, -1, PendingAction::WriteToPim},
    {false, true, -1, 2, -1, PendingAction::RemoveFromPim},
    {true, true, 3, 1, 2, PendingAction::SendToMobile},
    {true, true, 3, 1, 1, PendingAction::WriteToPim},
    {true, true, 3, 2, 1, PendingAction::RemoveFromPim},
    {true, true, 3, 2, 2, PendingAction::RemoveFromMobile},
    {true, true, 1, 1, -1, PendingAction::SendToMobile},
    {true, true, 1, 2, -1, PendingAction::RemoveFromMobile},
    {true, true, 2, 1, -1, PendingAction::WriteToPim},
    {true, true, 2, 2, -1, PendingAction::RemoveFromPim},
    {false, false, 3, 2, 1, PendingAction::RemoveFromPim},
    {false, false, 3, 2, 2, PendingAction::RemoveFromMobile},
    {false, false, 1, 2, -1, PendingAction::RemoveFromMobile},
    {false, false, 2, 2, -1, PendingAction::RemoveFromPim},
    // No fitting case: passed over.
    {false, false, 3, 1, 1, PendingAction::None},
    {false, false, 1, 1, 2, PendingAction::None},
    {true, true, 3, 1, 0, PendingAction::None},
    {true, false, 2, 0, 2, PendingAction::None},
};

class Transfer : public RoadsFixture {
protected:
    // A phone of four entries and a store of two appointments, one pair between them.
    test::EmulatedPhone& readBothSides() {
        test::EmulatedPhone& p = phoneWith();
        p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
        p.seed(2, vcs("20260311T090000Z", "20260311T100000Z", "MISCELLANEOUS", "Old phone note"));
        p.seed(5, vcs("20260312T090000Z", "20260312T100000Z", "MISCELLANEOUS", "Gym"));
        p.seed(6, vcs("20260313T090000Z", "20260313T100000Z", "MISCELLANEOUS", "Library"));
        appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
        appointment(when(2026, 3, 18, 9), when(2026, 3, 18, 10), QStringLiteral("Store only"));
        EXPECT_TRUE(roads::vCalReadMobile(ctx));
        EXPECT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
        return p;
    }

    // Changes the row's subject on both sides, as an edit in the grid does.
    void editSubject(const QString& subject) {
        for (const char* f : {"Text", "Description", "PIMText"})
            cal().setValue(QString::fromLatin1(f), subject);
        cal().update();
        ASSERT_TRUE(roads::SendSingleEntry(ctx, cal()));
        bool isNew = false;
        roads::WriteOutlookEntry(ctx, cal(), isNew);
    }

    bool saveEnabled() const { return ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave")); }
    tables::Recordset& pending() { return *ctx.tables.RSCalendarPending; }
};

} // namespace

TEST(TransferCases, EachPendingRowAsksForOneAction) {
    tables::Recordset row;
    tables::InitCalendarRS(row);
    for (const CaseRow& c : kCases) {
        for (int type : c.entryType < 0 ? std::vector<int>{1, 2, 3} : std::vector<int>{c.entryType}) {
            for (int target : c.transferNew < 0 ? std::vector<int>{1, 2} : std::vector<int>{c.transferNew}) {
                tables::vCalCreateNewRecord(row);
                row.setValue(QStringLiteral("Mobile"), c.mobile);
                row.setValue(QStringLiteral("PIM"), c.pim);
                row.setValue(QStringLiteral("EntryType"), int32_t(type));
                row.setValue(QStringLiteral("TransferMode"), int32_t(c.transferMode));
                row.setValue(QStringLiteral("Transfernew"), int32_t(target));
                EXPECT_EQ(roads::pendingAction(row), c.action)
                    << "Mobile " << c.mobile << " PIM " << c.pim << " EntryType " << type << " TransferMode "
                    << c.transferMode << " Transfernew " << target;
            }
        }
    }
}

// Kept-back changes reach neither side until the run; then each reaches its side once.
TEST_F(Transfer, KeptBackChangesWaitForTheRunAndHappenOnce) {
    test::EmulatedPhone& p = readBothSides();
    ctx.settings.SaveTyp = 2;
    const auto phoneBefore = p.records();
    const QByteArray storeBefore = allIcs();

    ASSERT_TRUE(rowWithText(QStringLiteral("Dentist")));
    editSubject(QStringLiteral("Dentist at nine"));
    ASSERT_TRUE(rowWithText(QStringLiteral("Old phone note")));
    ASSERT_TRUE(roads::RemoveEntryFromMobile(ctx, cal()));
    ASSERT_TRUE(rowWithText(QStringLiteral("Store only")));
    ASSERT_TRUE(roads::RemoveEntryFromOutlook(ctx, cal()));
    ASSERT_TRUE(rowWithText(QStringLiteral("Gym")));
    cal().setValue(QStringLiteral("PIM"), true);
    bool isNew = true;
    roads::WriteOutlookEntry(ctx, cal(), isNew);

    EXPECT_EQ(p.records(), phoneBefore);
    EXPECT_EQ(allIcs(), storeBefore);
    EXPECT_TRUE(saveEnabled());
    EXPECT_EQ(pending().recordCount(), 5);

    ASSERT_TRUE(roads::TransfervCal(ctx, pending()));
    EXPECT_EQ(pending().recordCount(), 0);
    EXPECT_FALSE(saveEnabled());
    EXPECT_FALSE(ctx.flags.GlobalTransferRun);
    EXPECT_TRUE(p.record(1).contains("DESCRIPTION:Dentist at nine\r\n"));
    EXPECT_FALSE(p.hasRecord(2));
    EXPECT_TRUE(p.hasRecord(5));
    const QByteArray store = allIcs();
    EXPECT_TRUE(store.contains("SUMMARY:Dentist at nine")) << store.toStdString();
    EXPECT_FALSE(store.contains("Store only"));
    EXPECT_EQ(store.count("SUMMARY:Gym"), 1);
    EXPECT_EQ(icsFiles().size(), 2);

    // A second run has nothing left to do.
    const auto phoneAfter = p.records();
    ASSERT_TRUE(roads::TransfervCal(ctx, pending()));
    EXPECT_EQ(p.records(), phoneAfter);
    EXPECT_EQ(allIcs(), store);
}

// A send that fails half-way ends the run: the phone keeps what was done, the
// pending table what was not, the phone's rows leave the table; a second run
// after the fault finishes the work without doing anything twice.
TEST_F(Transfer, ARunBrokenByTheLinkFinishesLaterWithoutDuplicates) {
    test::EmulatedPhone& first = readBothSides();
    ctx.settings.SaveTyp = 2;
    const char* subjects[] = {"Dentist moved", "Gym moved", "Library moved"};
    const char* rows[] = {"Dentist", "Gym", "Library"};
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(rowWithText(QString::fromLatin1(rows[i])));
        editSubject(QString::fromLatin1(subjects[i]));
    }
    const auto seeded = first.records();

    // The phone refuses the write of record 5.
    test::EmulatedPhone& broken = phoneWith("--first 1 --last 20 --cme 20:$ORGW=4,5");
    for (auto it = seeded.cbegin(); it != seeded.cend(); ++it)
        broken.seed(it.key(), it.value());
    EXPECT_FALSE(roads::TransfervCal(ctx, pending()));
    EXPECT_TRUE(broken.record(1).contains("Dentist moved"));
    // The phone replaces a record by delete then write: the refused write leaves it empty.
    EXPECT_FALSE(broken.record(5).contains("Gym moved"));
    EXPECT_TRUE(broken.record(6).contains("DESCRIPTION:Library\r\n"));
    EXPECT_GT(pending().recordCount(), 0);
    EXPECT_EQ(rowsByType()[2], 0) << "the phone's rows leave the table";
    EXPECT_FALSE(ctx.read.vCalMobileRead);

    const auto halfDone = broken.records();
    test::EmulatedPhone& healed = phoneWith();
    for (auto it = halfDone.cbegin(); it != halfDone.cend(); ++it)
        healed.seed(it.key(), it.value());
    ASSERT_TRUE(roads::TransfervCal(ctx, pending()));
    EXPECT_EQ(pending().recordCount(), 0);
    const auto done = healed.records();
    EXPECT_EQ(done.size(), 4);
    EXPECT_TRUE(done.value(5).contains("Gym moved"));
    EXPECT_TRUE(done.value(6).contains("Library moved"));
    const QByteArray store = allIcs();
    // Only the Dentist stands in the store; Gym and Library are the phone's alone.
    EXPECT_EQ(store.count("SUMMARY:Dentist moved"), 1);
    EXPECT_FALSE(store.contains("Gym"));
    EXPECT_EQ(icsFiles().size(), 2);
}
