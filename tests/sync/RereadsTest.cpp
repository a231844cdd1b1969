// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/Rereads.h"
#include "SyncTestSupport.h"

using namespace tsr;
using namespace tsr::sync;
using core::DateSerial;

namespace {
class Rereads : public test::SyncTest {
protected:
    Rereads() {
        ctx.tables.LogCalendar = std::make_unique<tables::Recordset>(QStringLiteral("LogCalendar"));
        auto& log = *ctx.tables.LogCalendar;
        log.appendField(QStringLiteral("Recordset"), core::FieldType::Text);
        log.appendField(QStringLiteral("TransferNew"), core::FieldType::Int32);
        log.open();
        ctx.tables.LogContacts = makeContacts(QStringLiteral("LogContacts"));
    }
    void addLog(const QString& recordset, int32_t mark) {
        auto& log = *ctx.tables.LogCalendar;
        log.addNew();
        log.setValue(QStringLiteral("Recordset"), recordset);
        log.setValue(QStringLiteral("Transfernew"), mark);
    }
    test::RecordingRoads roads;
};
} // namespace

// A row that went to the phone reads the phone again; the log table is cleared
// whether or not such a row exists, and the PIM is read for a PIM row only.
TEST_F(Rereads, ReadTheSideTheLogNames) {
    reReadMobile(ctx, *ctx.tables.LogCalendar, roads);
    EXPECT_TRUE(roads.calls.isEmpty());

    addLog(QStringLiteral("RSCalendar"), 1);
    reReadMobile(ctx, *ctx.tables.LogCalendar, roads);
    EXPECT_TRUE(roads.calls.isEmpty());
    EXPECT_EQ(ctx.tables.LogCalendar->recordCount(), 0);

    addLog(QStringLiteral("RSCalendar"), 1);
    addLog(QStringLiteral("RSCalendar"), 2);
    reReadMobile(ctx, *ctx.tables.LogCalendar, roads);
    EXPECT_EQ(roads.calls, QStringList{QStringLiteral("vCalReadMobile")});

    addLog(QStringLiteral("RSCalendar"), 1);
    reReadPIM(ctx, *ctx.tables.LogCalendar, roads);
    EXPECT_EQ(roads.calls, (QStringList{QStringLiteral("vCalReadMobile"), QStringLiteral("vCalReadOutlook")}));
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
