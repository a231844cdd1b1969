// SPDX-License-Identifier: GPL-3.0-or-later
// Editing in the grid against the emulated phone on a pseudo-terminal and a real
// vdir store: a subject longer than the phone keeps is cut, the user is told the
// limit, and the cut text reaches the phone's record and the store's item; a
// call's number must be diallable; a delete asks and takes the entry off both
// sides; with changes kept back an edit is only noted.
#include "main/GridEdit.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/RoadsFixture.h"
#include "ui/grids/EntryTableModel.h"

using namespace tsr;
using tsr::test::RoadsFixture;
using tsr::test::vcs;
using tsr::test::when;

namespace {

class GridEdit : public RoadsFixture {
protected:
    // The dentist's appointment on both sides, read into the table.
    test::EmulatedPhone& pairedDentist() {
        test::EmulatedPhone& p = phoneWith();
        p.seed(4, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
        appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
        EXPECT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
        EXPECT_TRUE(roads::vCalReadMobile(ctx));
        EXPECT_TRUE(rowWithText(QStringLiteral("Dentist")));
        EXPECT_EQ(field("EntryType"), QStringLiteral("3"));
        return p;
    }

    // The store's items with their folded lines joined again.
    QByteArray unfoldedIcs() const { return allIcs().replace("\r\n ", "").replace("\n ", ""); }

    int rowOf(ui::EntryTableModel& model, const QString& text) {
        for (int r = 0; r < model.rowCount(); ++r)
            if (model.cellText(r, model.columnOf(QStringLiteral("Text"))).startsWith(text))
                return r;
        return -1;
    }
};

} // namespace

// A subject of 130 characters keeps the first characters the phone keeps on both sides, and the user is
// told the limit.
TEST_F(GridEdit, ALongSubjectIsCutToThePhonesLimitOnBothSides) {
    test::EmulatedPhone& p = pairedDentist();
    ui::EntryTableModel model(ctx, 0);
    const int row = rowOf(model, QStringLiteral("Dentist"));
    ASSERT_GE(row, 0);
    QString typed = QStringLiteral("Dentist: ");
    while (typed.size() < 130)
        typed += QStringLiteral("bring the card ");
    typed.truncate(130);
    const QString kept = typed.left(main::kCalendarTextLimit);

    ASSERT_TRUE(model.setData(model.index(row, model.columnOf(QStringLiteral("Text"))), typed));

    ASSERT_EQ(ui.boxes.size(), 1) << boxTexts().toStdString();
    EXPECT_TRUE(ui.boxes[0].text.contains(QString::number(main::kCalendarTextLimit)));
    EXPECT_TRUE(ui.boxes[0].text.endsWith(kept));
    EXPECT_EQ(model.cellText(row, model.columnOf(QStringLiteral("Text"))), kept);
    const QByteArray record = p.record(4);
    EXPECT_TRUE(record.contains("DESCRIPTION:" + kept.toLatin1() + "\r\n")) << record.toStdString();
    const QByteArray ics = unfoldedIcs();
    EXPECT_TRUE(ics.contains("SUMMARY:" + kept.toLatin1() + "\r\n")) << ics.toStdString();
    EXPECT_FALSE(ics.contains(typed.toLatin1()));
}

// A text that fits goes over unchanged and without a question.
TEST_F(GridEdit, AShortSubjectGoesOverAsTyped) {
    test::EmulatedPhone& p = pairedDentist();
    ASSERT_TRUE(main::GridEditCell(ctx, 0, QStringLiteral("Text"), QStringLiteral("Dentist at 10")));
    EXPECT_TRUE(ui.boxes.isEmpty()) << boxTexts().toStdString();
    EXPECT_TRUE(p.record(4).contains("DESCRIPTION:Dentist at 10\r\n"));
    EXPECT_TRUE(unfoldedIcs().contains("SUMMARY:Dentist at 10\r\n"));
}

// A call's text is the number the phone dials: letters are refused and nothing
// is sent; a number with "+" goes over.
TEST_F(GridEdit, ACallsNumberMustBeDiallable) {
    test::EmulatedPhone& p = pairedDentist();
    cal().setValue(QStringLiteral("Typ"), QStringLiteral("3"));
    const QByteArray before = p.record(4);
    EXPECT_FALSE(main::GridEditCell(ctx, 0, QStringLiteral("Text"), QStringLiteral("call Anna")));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, main::gridText(ctx, main::GridText::NotDiallable));
    EXPECT_EQ(p.record(4), before);
    EXPECT_EQ(field("Text"), QStringLiteral("Dentist"));

    EXPECT_TRUE(main::GridEditCell(ctx, 0, QStringLiteral("Text"), QStringLiteral("+4930123456")));
    EXPECT_TRUE(p.record(4).contains("+4930123456"));
}

// Delete asks first: Cancel leaves everything, OK takes the entry off the phone,
// out of the store and out of the table.
TEST_F(GridEdit, DeleteAsksAndTakesTheEntryOffBothSides) {
    test::EmulatedPhone& p = pairedDentist();
    const int rows = cal().recordCount();
    ui.answer(core::MsgResult::Cancel);
    EXPECT_FALSE(main::DeleteEntry(ctx));
    EXPECT_TRUE(p.hasRecord(4));
    EXPECT_EQ(icsFiles().size(), 1);
    EXPECT_EQ(cal().recordCount(), rows);

    ASSERT_TRUE(rowWithText(QStringLiteral("Dentist")));
    ui.answer(core::MsgResult::OK);
    EXPECT_TRUE(main::DeleteEntry(ctx));
    EXPECT_FALSE(p.hasRecord(4));
    EXPECT_TRUE(icsFiles().isEmpty());
    EXPECT_EQ(cal().recordCount(), rows - 1);
    ASSERT_EQ(ui.boxes.size(), 2);
    EXPECT_TRUE(ui.boxes[1].text.contains(QStringLiteral("Dentist")));
    EXPECT_TRUE(ui.refreshed.contains(0));
}

// With changes kept back an edit is noted for the next transfer: the phone keeps
// its record and TSRSave lights up.
TEST_F(GridEdit, WithChangesKeptBackTheEditIsNoted) {
    test::EmulatedPhone& p = pairedDentist();
    ctx.settings.SaveTyp = 2;
    const QByteArray before = p.record(4);
    EXPECT_TRUE(main::GridEditCell(ctx, 0, QStringLiteral("Text"), QStringLiteral("Dentist moved")));
    EXPECT_EQ(p.record(4), before);
    EXPECT_GE(ctx.tables.RSCalendarPending->recordCount(), 1);
    EXPECT_TRUE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave")));
}
