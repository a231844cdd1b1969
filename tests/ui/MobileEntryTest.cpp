// SPDX-License-Identifier: GPL-3.0-or-later
// The calendar entry editor as a real dialog: the checks that keep it open (a
// subject longer than the phone keeps, an end before the start, a weekly series
// without a weekday or longer than its step, an alarm in the past), and saves
// that reach the emulated phone's record files and the store's .ics files.
#include "ui/editors/MobileEntry.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/RoadsFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace tsr;
using test::RoadsFixture;
using test::vcs;

namespace {

QByteArray golden(const char* name) {
    QFile f(QStringLiteral(TESSARINE_TEST_DATA "/vcal/sent/") + QString::fromLatin1(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("missing golden file");
}

// Fills the editor's controls as a user does and presses its buttons.
class EditorDriver {
public:
    explicit EditorDriver(ui::MobileEntry& dialog) : m_dialog(dialog) { dialog.show(); }

    template <class W> W* child(const char* name) {
        W* w = m_dialog.findChild<W*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    EditorDriver& subject(const QString& text) {
        auto* edit = child<QLineEdit>("EntryDescriptionText");
        edit->clear();
        QTest::keyClicks(edit, text);
        return *this;
    }
    EditorDriver& start(QDate date, const char* time) {
        child<QDateEdit>("DTPickerDatum")->setDate(date);
        child<QLineEdit>("StartTime")->setText(QString::fromLatin1(time));
        return *this;
    }
    EditorDriver& end(QDate date, const char* time) {
        child<QDateEdit>("EndDatePicker")->setDate(date);
        child<QLineEdit>("EndTime")->setText(QString::fromLatin1(time));
        return *this;
    }
    EditorDriver& type(const char* option) {
        child<QRadioButton>(option)->setChecked(true);
        return *this;
    }
    EditorDriver& series(int index) {
        child<QComboBox>("EntryPeriode")->setCurrentIndex(index);
        return *this;
    }
    EditorDriver& check(const char* box, bool on = true) {
        child<QCheckBox>(box)->setChecked(on);
        return *this;
    }
    void save() { QTest::mouseClick(child<QPushButton>("EntrySaveButton"), Qt::LeftButton); }
    void close() { QTest::mouseClick(child<QPushButton>("EntryCloseButton"), Qt::LeftButton); }
    bool open() const { return m_dialog.isVisible(); }

private:
    ui::MobileEntry& m_dialog;
};

class Editor : public RoadsFixture {
protected:
    void SetUp() override {
        RoadsFixture::SetUp();
        ctx.formats.TimeFormatNoSec = QStringLiteral("hh:mm");
    }
    // The phone with one entry, both sides read, as the main window has them before an edit.
    test::EmulatedPhone& readBothSides() {
        test::EmulatedPhone& p = phoneWith();
        p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
        EXPECT_TRUE(roads::vCalReadMobile(ctx));
        EXPECT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
        return p;
    }
    QStringList boxTextList() const {
        QStringList texts;
        for (const test::ShownBox& b : ui.boxes)
            texts << b.text;
        return texts;
    }
};

} // namespace

// Every refused check shows its reason, keeps the dialog open with the user's
// values, and sends nothing.
TEST_F(Editor, RefusedChecksKeepTheDialogOpen) {
    struct Case {
        const char* what;
        std::function<void(EditorDriver&)> fill;
        const char* reason;
    };
    const QDate day(2026, 3, 16);
    const Case cases[] = {
        {"no text", [&](EditorDriver& e) { e.start(day, "09:30").end(day, "10:00"); }, "Enter a subject"},
        {"end before start",
         [&](EditorDriver& e) { e.subject(QStringLiteral("Review")).start(day, "11:00").end(day, "10:59"); },
         "ends before it starts"},
        {"end a day early",
         [&](EditorDriver& e) {
             e.subject(QStringLiteral("Review")).start(day, "09:00").end(day.addDays(-1), "10:00");
         },
         "ends before it starts"},
        {"weekly without a weekday",
         [&](EditorDriver& e) { e.subject(QStringLiteral("Choir")).start(day, "18:00").end(day, "19:30").series(2); },
         "at least one weekday"},
        {"weekly longer than its step",
         [&](EditorDriver& e) {
             e.subject(QStringLiteral("Course")).start(day, "18:00").end(day.addDays(3), "18:01").series(2);
             e.check("CheckMo").check("CheckDo"); // Monday to Thursday: 72 hours
         },
         "must be shorter than how frequently"},
        {"daily over a day",
         [&](EditorDriver& e) {
             e.subject(QStringLiteral("Shift")).start(day, "08:00").end(day.addDays(1), "08:01").series(1);
         },
         "must be shorter than how frequently"},
    };
    for (const Case& c : cases) {
        ui.boxes.clear();
        ui::MobileEntry dialog(ctx, nullptr);
        EditorDriver e(dialog);
        c.fill(e);
        e.save();
        EXPECT_TRUE(e.open()) << c.what;
        ASSERT_EQ(ui.boxes.size(), 1) << c.what;
        EXPECT_TRUE(ui.boxes[0].text.contains(QString::fromLatin1(c.reason)))
            << c.what << ": " << ui.boxes[0].text.toStdString();
        EXPECT_EQ(cal().recordCount(), 0) << c.what;
        EXPECT_FALSE(e.child<QLineEdit>("StartTime")->text().isEmpty()) << c.what;
    }
}

// A subject over the phone's 32 characters: the counter shows it, the save asks;
// No keeps the dialog and the text, Yes saves the cut text to the phone.
TEST_F(Editor, LongSubjectIsCutOnlyWhenTheUserAgrees) {
    test::EmulatedPhone& p = readBothSides();
    const QString longText = QStringLiteral("Quarterly budget meeting with the board");
    ui::MobileEntry dialog(ctx, nullptr);
    EditorDriver e(dialog);
    e.subject(longText).start(QDate(2026, 3, 16), "09:30").end(QDate(2026, 3, 16), "10:00").type("OptMeeting");
    EXPECT_EQ(e.child<QLabel>("TextCounter")->text(), QStringLiteral("39/32"));

    ui.answer(core::MsgResult::No);
    e.save();
    EXPECT_TRUE(e.open());
    EXPECT_EQ(e.child<QLineEdit>("EntryDescriptionText")->text(), longText);
    EXPECT_FALSE(p.hasRecord(2));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("32 characters")));

    ui.answer(core::MsgResult::Yes);
    e.save();
    EXPECT_FALSE(e.open());
    EXPECT_TRUE(p.record(2).contains("DESCRIPTION:" + longText.left(32).toLatin1() + "\r\n")) << p.record(2).data();
    // A call's number is counted against the phone's 40 digits.
    ui::MobileEntry call(ctx, nullptr);
    EditorDriver c(call);
    c.type("OptCall").subject(QStringLiteral("+4930123456"));
    EXPECT_EQ(c.child<QLabel>("TextCounter")->text(), QStringLiteral("11/41"));
    EXPECT_FALSE(c.child<QComboBox>("EntryPeriode")->isEnabled());
}

// A new meeting and a new weekly series reach the phone as the phone's text and
// the store as new items, and stand in the table on both sides.
TEST_F(Editor, NewEntriesReachPhoneAndStore) {
    test::EmulatedPhone& p = readBothSides();
    {
        ui::MobileEntry dialog(ctx, nullptr);
        EditorDriver e(dialog);
        e.subject(QStringLiteral("Budget meeting")).type("OptMeeting");
        e.start(QDate(2026, 3, 16), "09:30").end(QDate(2026, 3, 16), "10:00");
        e.save();
        EXPECT_FALSE(e.open());
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
    }
    EXPECT_EQ(p.record(2), golden("meeting-new.vcs"));
    {
        ui::MobileEntry dialog(ctx, nullptr);
        EditorDriver e(dialog);
        e.subject(QStringLiteral("Choir")).start(QDate(2026, 3, 2), "18:00").end(QDate(2026, 3, 2), "19:30");
        e.series(2).check("CheckMo").check("CheckDo");
        e.save();
        EXPECT_FALSE(e.open());
    }
    EXPECT_EQ(p.record(3), golden("series-weekly-new.vcs"));
    EXPECT_TRUE(ui.boxes.isEmpty()) << boxTextList().join(u'\n').toStdString();
    EXPECT_EQ(icsFiles().size(), 2);
    EXPECT_TRUE(allIcs().contains("SUMMARY:Budget meeting"));
    EXPECT_TRUE(allIcs().contains("RRULE:FREQ=WEEKLY")) << allIcs().toStdString();
    ASSERT_TRUE(rowWithText(QStringLiteral("Choir")));
    EXPECT_EQ(field("EntryType"), QStringLiteral("3"));
    EXPECT_EQ(field("Weekdaymask"), QStringLiteral("18"));
    EXPECT_FALSE(ctx.flags.GlobalEditorOpen);
}

// An alarm in the past: No keeps the dialog and sends nothing; Yes saves without the alarm.
TEST_F(Editor, AlarmInThePastAsksFirst) {
    test::EmulatedPhone& p = readBothSides();
    ui::MobileEntry dialog(ctx, nullptr);
    EditorDriver e(dialog);
    // The clock stands at 02.03.2026 09:15.
    e.subject(QStringLiteral("Standup")).start(QDate(2026, 3, 2), "09:00").end(QDate(2026, 3, 2), "09:10");
    e.check("EntryAlarm");
    ui.answer(core::MsgResult::No);
    e.save();
    EXPECT_TRUE(e.open());
    EXPECT_FALSE(p.hasRecord(2));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.startsWith(QStringLiteral("Alarm cannot be activated")));
    EXPECT_TRUE(e.child<QCheckBox>("EntryAlarm")->isChecked());

    ui.answer(core::MsgResult::Yes);
    e.save();
    EXPECT_FALSE(e.open());
    EXPECT_TRUE(p.hasRecord(2));
    EXPECT_FALSE(p.record(2).contains("ALARM"));
    ASSERT_TRUE(rowWithText(QStringLiteral("Standup")));
    EXPECT_EQ(field("Alarm"), cal().value(QStringLiteral("Alarm")).toText());
    EXPECT_FALSE(cal().value(QStringLiteral("Alarm")).toBool());
}

// Opening an entry of the table shows its values; a change goes to its record and
// item; clearing both sides takes it off both and out of the table.
TEST_F(Editor, ChangeAndDeleteAnEntryOfTheTable) {
    test::EmulatedPhone& p = phoneWith();
    p.seed(4, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
    appointment(test::when(2026, 3, 10, 10, 30), test::when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
    ASSERT_TRUE(roads::vCalReadOutlook(ctx, cal(), false));
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    ASSERT_TRUE(rowWithText(QStringLiteral("Dentist")));
    ASSERT_EQ(field("EntryType"), QStringLiteral("3"));
    const int row = cal().absolutePosition();
    {
        ui::MobileEntry dialog(ctx, nullptr, row);
        EditorDriver e(dialog);
        EXPECT_EQ(e.child<QLineEdit>("EntryDescriptionText")->text(), QStringLiteral("Dentist"));
        EXPECT_EQ(e.child<QLineEdit>("StartTime")->text(), QStringLiteral("10:30"));
        EXPECT_EQ(e.child<QDateEdit>("EndDatePicker")->date(), QDate(2026, 3, 10));
        EXPECT_TRUE(e.child<QCheckBox>("CheckMobile")->isChecked());
        EXPECT_TRUE(e.child<QCheckBox>("CheckPIM")->isChecked());
        e.subject(QStringLiteral("Dentist, bring the card")).start(QDate(2026, 3, 10), "11:00");
        e.end(QDate(2026, 3, 10), "12:00");
        e.save();
        EXPECT_FALSE(e.open());
    }
    EXPECT_TRUE(p.record(4).contains("DTSTART:20260310T110000Z")) << p.record(4).data();
    EXPECT_TRUE(p.record(4).contains("DESCRIPTION:Dentist, bring the card"));
    ASSERT_EQ(icsFiles().size(), 1);
    EXPECT_TRUE(allIcs().contains("SUMMARY:Dentist\\, bring the card")) << allIcs().toStdString();
    {
        ASSERT_TRUE(rowWithText(QStringLiteral("Dentist")));
        ui::MobileEntry dialog(ctx, nullptr, cal().absolutePosition());
        EditorDriver e(dialog);
        e.check("CheckMobile", false).check("CheckPIM", false);
        e.save(); // asks "Warning! This entry will be deleted from mobile and PIM!", answered OK
        EXPECT_FALSE(e.open());
    }
    EXPECT_FALSE(p.hasRecord(4));
    EXPECT_TRUE(icsFiles().isEmpty());
    EXPECT_EQ(cal().recordCount(), 0);
}

// Closing with changes asks "Save changes?": Cancel keeps the dialog, No drops the changes.
TEST_F(Editor, ClosingWithChangesAsks) {
    ui::MobileEntry dialog(ctx, nullptr);
    EditorDriver e(dialog);
    e.close();
    EXPECT_FALSE(e.open()); // nothing changed: no question
    EXPECT_TRUE(ui.boxes.isEmpty());

    ui::MobileEntry second(ctx, nullptr);
    EditorDriver f(second);
    f.subject(QStringLiteral("Lunch"));
    ui.answer(core::MsgResult::Cancel);
    f.close();
    EXPECT_TRUE(f.open());
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Save changes?"));
    ui.answer(core::MsgResult::No);
    f.close();
    EXPECT_FALSE(f.open());
    EXPECT_EQ(cal().recordCount(), 0);
}

// A weekly series starting on a day that is not one of its weekdays begins on the
// next checked day, with the entry's length kept.
TEST_F(Editor, WeeklySeriesStartsOnItsNextWeekday) {
    test::EmulatedPhone& p = readBothSides();
    ui::MobileEntry dialog(ctx, nullptr);
    EditorDriver e(dialog);
    // Tuesday 03.03.2026, Monday and Thursday checked.
    e.subject(QStringLiteral("Choir")).start(QDate(2026, 3, 3), "18:00").end(QDate(2026, 3, 3), "19:30");
    e.series(2).check("CheckMo").check("CheckDo");
    e.save();
    EXPECT_FALSE(e.open());
    const QByteArray sent = p.record(2);
    EXPECT_TRUE(sent.contains("DTSTART:20260305T180000Z\r\nDTEND:20260305T193000Z\r\n")) << sent.data();
    EXPECT_TRUE(sent.contains("RRULE:W1 MO TH #0")) << sent.data();
}

// With the phone not read yet, a new entry first learns which numbers the phone
// uses, so it does not land on one of them.
TEST_F(Editor, NewEntryOnAnUnreadPhoneTakesAFreeNumber) {
    test::EmulatedPhone& p = phoneWith();
    const QByteArray dentist = vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist");
    p.seed(1, dentist);
    ASSERT_FALSE(ctx.read.vCalMobileRead);
    ui::MobileEntry dialog(ctx, nullptr);
    EditorDriver e(dialog);
    e.subject(QStringLiteral("Budget meeting")).type("OptMeeting");
    e.start(QDate(2026, 3, 16), "09:30").end(QDate(2026, 3, 16), "10:00");
    e.save();
    EXPECT_FALSE(e.open());
    EXPECT_EQ(p.record(1), dentist);
    EXPECT_EQ(p.record(2), golden("meeting-new.vcs"));
    EXPECT_TRUE(rowWithText(QStringLiteral("Dentist")));
}
