// SPDX-License-Identifier: GPL-3.0-or-later
// The date frame against the emulated phone and a real store: a new range
// taken over with PIM rows in the list reads the store anew for that range and
// pairs the phone's rows again; pending changes are offered for transfer first.
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/MobileWrite.h"
#include "roads/RoadsFixture.h"
#include "ui/dialogs/StartCalendarFrame.h"

#include <QDateEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>

using namespace tsr;
using test::RoadsFixture;
using test::vcs;
using test::when;

namespace {

class DateFrameReread : public RoadsFixture {
protected:
    QStringList texts() {
        QStringList out;
        tables::Recordset& t = cal();
        if (t.recordCount() == 0)
            return out;
        for (t.moveFirst(); !t.eof(); t.moveNext())
            out << t.value(QStringLiteral("Text")).toText() + u':' + t.value(QStringLiteral("EntryType")).toText();
        out.sort();
        return out;
    }
};

} // namespace

// March holds the dentist on both sides; the range moved to May brings the May
// appointment of the store, and the phone's dentist is read again, once.
TEST_F(DateFrameReread, NewRangeReadsTheStoreAgain) {
    test::EmulatedPhone& p = phoneWith();
    p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
    appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
    appointment(when(2026, 5, 20, 14), when(2026, 5, 20, 15), QStringLiteral("Tax advisor"));
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    ASSERT_EQ(texts(), QStringList{QStringLiteral("Dentist:3")});

    QMainWindow window;
    window.show();
    ui::StartCalendarFrame* frame = ui::showDateFrame(ctx, &window);
    frame->findChild<QDateEdit*>(QStringLiteral("EndDatePicker"))->setDate(QDate(2026, 5, 31));
    frame->findChild<QDateEdit*>(QStringLiteral("StartDatePicker"))->setDate(QDate(2026, 5, 1));
    ui.answer(core::MsgResult::OK);
    QTest::mouseClick(frame->findChild<QPushButton*>(QStringLiteral("CalCommandOK")), Qt::LeftButton);

    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Synchronise with the new date range?"));
    EXPECT_EQ(ctx.flags.GlobalStartDate, core::DateSerial(2026, 5, 1));
    EXPECT_EQ(core::Format(ctx.flags.GlobalEndDate, QStringLiteral("yyyy-mm-dd hh:mm:ss")),
              QStringLiteral("2026-05-31 23:59:59"));
    const QStringList after = texts();
    EXPECT_TRUE(after.contains(QStringLiteral("Tax advisor:1"))) << after.join(u' ').toStdString();
    EXPECT_EQ(after.filter(QStringLiteral("Dentist")).size(), 1) << after.join(u' ').toStdString();
    EXPECT_TRUE(ui.refreshed.contains(0));
    EXPECT_FALSE(ctx.flags.GlobalBusy);
}

// Changes kept back are offered first, in the German question; Yes carries them out.
TEST_F(DateFrameReread, PendingChangesAreOfferedFirst) {
    test::EmulatedPhone& p = phoneWith();
    appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    ctx.settings.SaveTyp = 2;
    ASSERT_TRUE(rowWithText(QStringLiteral("Dentist")));
    cal().setValue(QStringLiteral("Mobile"), true);
    cal().setValue(QStringLiteral("SubType"), int32_t(5));
    ASSERT_TRUE(roads::SendSingleEntry(ctx, cal()));
    ASSERT_EQ(ctx.tables.RSCalendarPending->recordCount(), 1);
    ASSERT_FALSE(p.hasRecord(5));

    QMainWindow window;
    window.show();
    ui::StartCalendarFrame* frame = ui::showDateFrame(ctx, &window);
    frame->findChild<QDateEdit*>(QStringLiteral("StartDatePicker"))->setDate(QDate(2026, 3, 3));
    ui.answer(core::MsgResult::OK);
    ui.answer(core::MsgResult::Yes);
    QTest::mouseClick(frame->findChild<QPushButton*>(QStringLiteral("CalCommandOK")), Qt::LeftButton);
    ASSERT_GE(ui.boxes.size(), 2);
    EXPECT_EQ(ui.boxes[1].text,
              QStringLiteral("Ihre Änderungen, wurden noch nicht übertragen . Soll jetzt übertragen werden?"));
    EXPECT_EQ(ui.boxes[1].icon, core::MsgIcon::Exclamation);
    EXPECT_TRUE(p.hasRecord(5));
    EXPECT_EQ(ctx.tables.RSCalendarPending->recordCount(), 0);
}
