// SPDX-License-Identifier: GPL-3.0-or-later
#include "roads/Rereads.h"
#include "log/LogWrite.h"
#include "sync/SyncTestSupport.h"

using namespace tsr;
using namespace tsr::sync;
using namespace tsr::roads;
using core::DateSerial;

namespace {
class Rereads : public test::SyncTest {
protected:
    // The program's own tables, pending and log tables included.
    Rereads() { EXPECT_TRUE(tables::CreateInitAndSetAllRS(ctx)); }
    void addPending(tables::Recordset& pending, int32_t mark) {
        if (pending.name() == u"RSContactsPending")
            addContactRow(pending, {{u"Transfernew", mark}});
        else
            addCalendarRow(pending, {{u"Transfernew", mark}});
    }
    test::RecordingRoads roads;
};
} // namespace

// Declined changes leave the pending table they stand in, whatever side they were
// bound for; the side of a change that was bound for it is read again, by the kind
// the table holds. The log tables keep their rows.
TEST_F(Rereads, ClearThePendingTableAndReadTheSideItNames) {
    struct Case {
        const char* what;
        bool mobile;
        bool contacts;
        QList<int32_t> marks;
        QStringList reads;
    };
    const QList<Case> cases = {
        {"empty calendar table, phone", true, false, {}, {}},
        {"calendar change for the PIM only, phone", true, false, {1}, {}},
        {"calendar changes for both, phone", true, false, {1, 2}, {QStringLiteral("vCalReadMobile")}},
        {"calendar change for the PIM, PIM", false, false, {1}, {QStringLiteral("vCalReadOutlook")}},
        {"calendar change for the phone, PIM", false, false, {2}, {}},
        {"contact change for the phone, phone", true, true, {0, 2}, {QStringLiteral("vCardReadMobile")}},
        {"contact change for the PIM, PIM", false, true, {1}, {QStringLiteral("vCardReadOutlook")}},
        {"contact change for the phone, PIM", false, true, {2}, {}},
    };
    addCalendarRow(cal(), {{u"Text", u"logged"}});
    log::logWriteEntry(ctx, cal(), core::TsrError(), QStringLiteral("Test"), QStringLiteral("Rereads"));
    ASSERT_EQ(ctx.tables.LogCalendar->recordCount(), 1);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        tables::Recordset& pending = c.contacts ? *ctx.tables.RSContactsPending : *ctx.tables.RSCalendarPending;
        tables::Recordset& other = c.contacts ? *ctx.tables.RSCalendarPending : *ctx.tables.RSContactsPending;
        addPending(other, 2);
        for (int32_t mark : c.marks)
            addPending(pending, mark);
        const qsizetype logRows = ctx.tables.LogCalendar->recordCount() + ctx.tables.LogContacts->recordCount();
        roads.calls.clear();
        if (c.mobile)
            reReadMobile(ctx, pending, roads);
        else
            reReadPIM(ctx, pending, roads);
        EXPECT_EQ(roads.calls, c.reads);
        EXPECT_EQ(pending.recordCount(), 0);
        EXPECT_EQ(other.recordCount(), 1) << "only the table handed is cleared";
        EXPECT_EQ(ctx.tables.LogCalendar->recordCount() + ctx.tables.LogContacts->recordCount(), logRows);
        tables::ClearRecordSet(other);
    }
}

// The question names the entry and the sides it leaves; only OK confirms.
TEST_F(Rereads, ConfirmEntryDelete) {
    addCalendarRow(cal(), {{u"StartDate", DateSerial(2026, 11, 24)},
                           {u"StartTime", u"10:00:00"},
                           {u"Text", u"   Dentist"},
                           {u"EntryType", int32_t(2)}});
    ui.answer(core::MsgResult::Cancel);
    EXPECT_FALSE(ConfirmEntryDelete(ctx, cal(), EntryKind::Calendar, {}));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text,
              ctx.strings.text(461) + QStringLiteral(": 24.11.26 10:00:00  Dentist\n\n") + ctx.strings.text(457));
    EXPECT_EQ(ui.boxes[0].buttons, core::MsgButtons::OKCancel);
    EXPECT_EQ(ui.boxes[0].icon, core::MsgIcon::Exclamation);

    test::setFields(cal(), {{u"EntryType", int32_t(3)}, {u"ISRecurring", true}});
    EXPECT_TRUE(ConfirmEntryDelete(ctx, cal(), EntryKind::Calendar, {false, false, true}));
    EXPECT_TRUE(ui.boxes[1].text.endsWith(ctx.strings.text(543)));

    addContactRow(contacts(), {{u"LastName", u"Roth"}, {u"FirstName", u"Ida"}, {u"Phone", u"089"}});
    EXPECT_TRUE(ConfirmEntryDelete(ctx, contacts(), EntryKind::Contact, {}));
    EXPECT_EQ(ui.boxes[2].text, ctx.strings.text(564) + QStringLiteral(": Roth Ida  089"));
}
