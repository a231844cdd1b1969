// SPDX-License-Identifier: GPL-3.0-or-later
// The date frame: the end a number of units gives, the unit limits and names,
// the OK button against start and end, the question before a reread, and the
// two ways back (Cancel and Escape), driven through the real frame's controls.
#include "core/Context.h"
#include "support/ScriptedUi.h"
#include "tables/TSRADODB.h"
#include "ui/dialogs/StartCalendarFrame.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace tsr;
using core::VbDate;

namespace {

VbDate day(int y, int m, int d) {
    return core::DateSerial(y, m, d);
}

class DateFrame : public ::testing::Test {
protected:
    DateFrame() {
        ctx.clock.setFixed(QDateTime(QDate(2026, 3, 2), QTime(9, 15)));
        ctx.formats.DateFormat = QStringLiteral("dd.mm.yyyy");
        ctx.formats.TimeFormatNoSec = QStringLiteral("hh:mm");
        ctx.settings.DateRange = 6;
        ctx.flags.GlobalStartDate = day(2026, 3, 2);
        ctx.flags.GlobalEndDate = VbDate(day(2026, 3, 8).value + 86399.0 / 86400.0);
        EXPECT_TRUE(tables::CreateInitAndSetAllRS(ctx));
        window.resize(800, 600);
        window.show();
        frame = ui::showDateFrame(ctx, &window);
    }

    template <class W> W* child(const char* name) {
        W* w = frame->findChild<W*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    void typePeriod(const QString& text) {
        auto* t = child<QLineEdit>("PeriodeText");
        t->selectAll();
        QTest::keyClicks(t, text);
    }
    void chooseUnit(int unit) { emit child<QComboBox>("PeriodeCombo")->activated(unit); }
    QString endText() { return child<QLineEdit>("EndDateText")->text(); }
    bool okEnabled() { return child<QPushButton>("CalCommandOK")->isEnabled(); }

    test::ScriptedUi ui;
    core::Context ctx{ui};
    QMainWindow window;
    ui::StartCalendarFrame* frame = nullptr;
};

} // namespace

// The frame opens on the range: days, the setting's number, both dates.
TEST_F(DateFrame, OpensOnTheCurrentRange) {
    EXPECT_FALSE(frame->isHidden());
    EXPECT_EQ(child<QLineEdit>("PeriodeText")->text(), QStringLiteral("6"));
    EXPECT_EQ(child<QComboBox>("PeriodeCombo")->currentText(), QStringLiteral("Days"));
    EXPECT_EQ(child<QLineEdit>("StartDateText")->text(), QStringLiteral("02.03.2026"));
    EXPECT_EQ(endText(), QStringLiteral("08.03.2026"));
    EXPECT_EQ(child<QDateEdit>("EndDatePicker")->date(), QDate(2026, 3, 8));
    EXPECT_TRUE(okEnabled());
    // The setting's range ends today + 6; the frame's own count of 6 days ends a day earlier.
    typePeriod(QStringLiteral("6"));
    EXPECT_EQ(endText(), QStringLiteral("07.03.2026"));
    // A second click on the tool hides it.
    ui::showDateFrame(ctx, &window);
    EXPECT_TRUE(frame->isHidden());
}

// The end is start plus the units, one day earlier; the unit names follow the
// number; a number over the unit's limit shows the limit.
TEST_F(DateFrame, EndAndNamesFollowNumberAndUnit) {
    struct Case {
        const char* number;
        int unit;
        const char* shownNumber;
        const char* end;
        const char* unitName;
    };
    const Case cases[] = {
        {"1", 0, "1", "02.03.2026", "Day"},        {"2", 0, "2", "03.03.2026", "Days"},
        {"1", 1, "1", "08.03.2026", "Week"},       {"3", 1, "3", "22.03.2026", "Weeks"},
        {"1", 2, "1", "01.04.2026", "Month"},      {"1", 3, "1", "01.03.2027", "Year"},
        {"2000", 0, "1095", "28.02.2029", "Days"}, {"200", 2, "36", "01.03.2029", "Months"},
    };
    for (const Case& c : cases) {
        chooseUnit(c.unit);
        typePeriod(QString::fromLatin1(c.number));
        EXPECT_EQ(child<QLineEdit>("PeriodeText")->text(), QString::fromLatin1(c.shownNumber)) << c.number;
        EXPECT_EQ(endText(), QString::fromLatin1(c.end)) << c.number << " unit " << c.unit;
        EXPECT_EQ(child<QComboBox>("PeriodeCombo")->currentText(), QString::fromLatin1(c.unitName)) << c.number;
    }
}

// 2000 days, then the year: the number becomes the year's limit, 3, and the end moves.
TEST_F(DateFrame, ChoosingYearCutsTheNumberToThree) {
    chooseUnit(0);
    ctx.settings.DateRange = 0;
    frame->logic().PeriodeText_Change(QStringLiteral("2000"));
    chooseUnit(3);
    EXPECT_EQ(child<QLineEdit>("PeriodeText")->text(), QStringLiteral("3"));
    EXPECT_EQ(child<QComboBox>("PeriodeCombo")->currentText(), QStringLiteral("Years"));
    EXPECT_EQ(endText(), QStringLiteral("01.03.2029"));
    EXPECT_EQ(ctx.settings.DateRange, 1095); // whole days from start to the new end
}

// A start after the end, or no date, disables OK; a later end enables it again.
TEST_F(DateFrame, StartAfterEndDisablesOk) {
    child<QDateEdit>("StartDatePicker")->setDate(QDate(2026, 3, 20));
    EXPECT_FALSE(okEnabled());
    EXPECT_EQ(child<QLineEdit>("StartDateText")->text(), QStringLiteral("20.03.2026"));
    child<QDateEdit>("EndDatePicker")->setDate(QDate(2026, 3, 25));
    EXPECT_TRUE(okEnabled());
    child<QDateEdit>("EndDatePicker")->setDate(QDate(2026, 3, 19));
    EXPECT_FALSE(okEnabled());
    frame->logic().EndDatePicker_Change(std::nullopt);
    EXPECT_FALSE(frame->logic().values().okEnabled);
    // OK while disabled takes nothing over.
    frame->logic().CalCommandOK_Click();
    EXPECT_EQ(ctx.flags.GlobalStartDate, day(2026, 3, 2));
}

// With no rows from the PIM the new range is taken over without a question; the
// end stands at 23:59:59.
TEST_F(DateFrame, OkWithoutPimRowsAsksNothing) {
    typePeriod(QStringLiteral("10"));
    QTest::mouseClick(child<QPushButton>("CalCommandOK"), Qt::LeftButton);
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_TRUE(frame->isHidden());
    EXPECT_EQ(ctx.flags.GlobalStartDate, day(2026, 3, 2));
    EXPECT_EQ(core::Format(ctx.flags.GlobalEndDate, QStringLiteral("dd.mm.yyyy hh:mm:ss")),
              QStringLiteral("11.03.2026 23:59:59"));
    EXPECT_EQ(ctx.settings.DateRange, 9);
    EXPECT_FALSE(ctx.flags.GlobalBusy);
}

// With PIM rows the question comes; Cancel in it restores the frame, the start and
// DateRange as they were on opening.
TEST_F(DateFrame, CancelInTheQuestionRestoresEverything) {
    ctx.read.vCalPIMRead = true;
    ctx.read.vCalPIMCount = 4;
    chooseUnit(1);
    typePeriod(QStringLiteral("2"));
    child<QDateEdit>("StartDatePicker")->setDate(QDate(2026, 3, 1));
    ASSERT_NE(ctx.settings.DateRange, 6);
    ui.answer(core::MsgResult::Cancel);
    QTest::mouseClick(child<QPushButton>("CalCommandOK"), Qt::LeftButton);
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Synchronise with the new date range?"));
    EXPECT_EQ(ui.boxes[0].buttons, core::MsgButtons::OKCancel);
    EXPECT_EQ(ctx.flags.GlobalStartDate, day(2026, 3, 2));
    EXPECT_EQ(ctx.settings.DateRange, 6);
    const main::CalendarFrameValues& v = frame->logic().values();
    EXPECT_EQ(v.periodText, QStringLiteral("6"));
    EXPECT_EQ(v.unit, 0);
    EXPECT_EQ(v.startText, QStringLiteral("02.03.2026"));
    EXPECT_EQ(v.endText, QStringLiteral("08.03.2026"));
}

// The Cancel button puts back what a number, a unit and a typed start changed.
TEST_F(DateFrame, CancelButtonRestoresEverything) {
    chooseUnit(2);
    typePeriod(QStringLiteral("5"));
    auto* start = child<QLineEdit>("StartDateText");
    start->setText(QStringLiteral("05.03.2026"));
    QTest::keyClick(start, Qt::Key_Return);
    EXPECT_EQ(child<QDateEdit>("StartDatePicker")->date(), QDate(2026, 3, 5));
    QTest::mouseClick(child<QPushButton>("CalCommandCancel"), Qt::LeftButton);
    EXPECT_TRUE(frame->isHidden());
    EXPECT_EQ(ctx.settings.DateRange, 6);
    EXPECT_EQ(ctx.flags.GlobalStartDate, day(2026, 3, 2));
    EXPECT_EQ(child<QLineEdit>("PeriodeText")->text(), QStringLiteral("6"));
    EXPECT_EQ(child<QComboBox>("PeriodeCombo")->currentIndex(), 0);
    EXPECT_EQ(child<QDateEdit>("StartDatePicker")->date(), QDate(2026, 3, 2));
    EXPECT_EQ(endText(), QStringLiteral("08.03.2026"));
}

// Escape brings back the noted texts; a typed text that is no date is refused.
TEST_F(DateFrame, EscapeAndBadTextsBringTheNotedTextBack) {
    auto* start = child<QLineEdit>("StartDateText");
    start->setText(QStringLiteral("no date"));
    QTest::keyClick(start, Qt::Key_Return);
    EXPECT_EQ(start->text(), QStringLiteral("02.03.2026"));
    start->setText(QStringLiteral("07.03.2026 and more"));
    QTest::keyClick(start, Qt::Key_Return);
    EXPECT_EQ(child<QDateEdit>("StartDatePicker")->date(), QDate(2026, 3, 7));
    start->setText(QStringLiteral("09.03.2026"));
    QTest::keyClick(start, Qt::Key_Escape);
    EXPECT_EQ(start->text(), QStringLiteral("07.03.2026"));

    typePeriod(QStringLiteral("12"));
    QTest::keyClick(child<QLineEdit>("PeriodeText"), Qt::Key_Escape);
    EXPECT_EQ(child<QLineEdit>("PeriodeText")->text(), QStringLiteral("6"));
    EXPECT_EQ(endText(), QStringLiteral("12.03.2026")); // six days from the new start
    typePeriod(QStringLiteral("0"));
    EXPECT_EQ(endText(), QStringLiteral("12.03.2026")); // 0 is no number of units: the dates stay
}
