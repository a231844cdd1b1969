// SPDX-License-Identifier: GPL-3.0-or-later
// The main window on the offscreen platform: clicks reach the one dispatcher and
// are dropped while a command runs, the tools show what the command layer
// decided, a layout switch keeps the current entry, find and sort work on the
// shown texts, and closing follows the close rules.
#include "ui/WindowFixture.h"
#include "ui/dialogs/frmFind.h"
#include "ui/dialogs/frmSort.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTableView>
#include <QTest>

using namespace tsr;
using tsr::test::WindowFixture;

namespace {

class MainWindow : public WindowFixture {};

// The grid the window shows now.
QString shownGrid(ui::Main_Form& w) {
    return w.activeGrid()->isVisible() ? w.activeGrid()->objectName() : QString();
}

} // namespace

// While a command runs a click is dropped; once it ended the same click works.
TEST_F(MainWindow, AClickWhileBusyIsDropped) {
    test::fillCalendar(ctx);
    test::fillContacts(ctx);
    ui::Main_Form& w = openWindow();
    ctx.flags.GlobalBusy = true;
    tool("vCardView")->trigger();
    EXPECT_EQ(ctx.settings.ActiveAPP, 0);
    EXPECT_EQ(shownGrid(w), QStringLiteral("GridEXCal"));

    ctx.flags.GlobalBusy = false;
    tool("vCardView")->trigger();
    EXPECT_EQ(ctx.settings.ActiveAPP, 1);
    EXPECT_EQ(shownGrid(w), QStringLiteral("GridEXCard"));
    EXPECT_FALSE(ctx.flags.GlobalBusy);
}

// The tools show the command layer's rules: the entry tools need rows in the
// active list, the calendar tool stands only in the calendar, TSRSave shows only
// while changes are kept back. Changes made behind the window's back are drawn
// on its own, by the model's revision.
TEST_F(MainWindow, ToolStatesFollowTheCommandLayer) {
    test::fillContacts(ctx); // contacts only: the calendar list is empty
    ctx.settings.SaveTyp = 2;
    openWindow();
    for (const char* name : {"TSROpenEntry", "TSRDeleteEntry", "TSRFindEntry", "TSRSort"})
        EXPECT_FALSE(tool(name)->isEnabled()) << name;
    EXPECT_TRUE(tool("TSRCalendar")->isVisible());
    EXPECT_TRUE(tool("TSRSave")->isVisible());

    tool("vCardView")->trigger(); // the contact list has rows
    main::OnOffActiveBarButton(ctx);
    QTRY_VERIFY_WITH_TIMEOUT(tool("TSROpenEntry")->isEnabled(), 2000);
    for (const char* name : {"TSRDeleteEntry", "TSRFindEntry", "TSRSort"})
        EXPECT_TRUE(tool(name)->isEnabled()) << name;
    EXPECT_FALSE(tool("TSRCalendar")->isVisible());

    ctx.settings.SaveTyp = 1;
    main::setStartTools(ctx);
    QTRY_VERIFY_WITH_TIMEOUT(!tool("TSRSave")->isVisible(), 2000);
}

// Captions come from the language table, in the menu with their mnemonics and
// shortcuts, in the tool band as plain tips.
TEST_F(MainWindow, CaptionsComeFromTheStringTable) {
    ctx.strings.set(851, QStringLiteral("Handy &lesen"));
    ctx.strings.set(827, QStringLiteral("Handy-Einträge lesen"));
    main::StringZuweisung(ctx);
    openWindow();
    EXPECT_EQ(tool("TSRReadMobile", "TSROrganizerMenu")->text(), QStringLiteral("Handy &lesen"));
    EXPECT_EQ(tool("TSRReadMobile", "TSROrganizerMenu")->shortcut(), QKeySequence(QStringLiteral("Ctrl+R")));
    EXPECT_EQ(tool("TSRReadMobile")->text(), QStringLiteral("Handy-Einträge lesen"));
    EXPECT_TRUE(tool("TSRReadMobile")->toolTip().startsWith(QStringLiteral("Handy-Einträge lesen")));
}

// Switching between "Tabelle" and "Karten" keeps the current row, in both lists,
// and the tool offers the other layout each time.
TEST_F(MainWindow, SwitchingTheLayoutKeepsTheCurrentRow) {
    test::fillCalendar(ctx);
    test::fillContacts(ctx);
    ui::Main_Form& w = openWindow();
    for (int list : {0, 1}) {
        if (list == 1)
            tool("vCardView")->trigger();
        ui::EntryGrid* g = grid(list);
        g->setCurrentRow(3);
        const QString before = tool("TSRSwitchView")->text();
        tool("TSRSwitchView")->trigger();
        EXPECT_EQ(g->layoutName(), QStringLiteral("Karten"));
        EXPECT_EQ(g->currentWidget(), g->cardView());
        EXPECT_EQ(g->cardView()->currentIndex().row(), 3);
        EXPECT_NE(tool("TSRSwitchView")->text(), before);
        g->cardView()->setCurrentIndex(g->model()->index(5, 0));
        tool("TSRSwitchView")->trigger();
        EXPECT_EQ(g->layoutName(), QStringLiteral("Tabelle"));
        EXPECT_EQ(g->tableView()->currentIndex().row(), 5);
        EXPECT_EQ(tool("TSRSwitchView")->text(), before);
        // The table's cursor is the grid's current row: commands see the same entry.
        EXPECT_EQ(g->model()->table()->absolutePosition(), 6);
    }
    (void)w;
}

// Find: the dialog's answer searches the shown texts from the current row; the
// search tool goes on from the next row and wraps; a miss is told.
TEST_F(MainWindow, FindSearchesTheShownColumns) {
    test::fillCalendar(ctx);
    openWindow();
    const QStringList titles = shownTitles(0);
    auto fill = [](const QString& text, bool forward, bool whole, int column) {
        return [=](QDialog& d) {
            d.findChild<QLineEdit*>(QStringLiteral("SearchText"))->setText(text);
            d.findChild<QRadioButton*>(forward ? QStringLiteral("SearchForward") : QStringLiteral("SearchBackward"))
                ->setChecked(true);
            d.findChild<QCheckBox*>(QStringLiteral("WholeField"))->setChecked(whole);
            d.findChild<QCheckBox*>(QStringLiteral("InColumn"))->setChecked(column >= 0);
            if (column >= 0)
                d.findChild<QComboBox*>(QStringLiteral("SearchColumn"))->setCurrentIndex(column);
            return true;
        };
    };
    grid(0)->setCurrentRow(0);
    ui.setDialogRunner(fill(QStringLiteral("DENTIST"), true, false, -1));
    tool("TSRFindEntry")->trigger();
    EXPECT_TRUE(titles.value(grid(0)->currentRow()).startsWith(QStringLiteral("Dentist")));

    // "meeting" stands in the type column of four rows, one of them also in the subject.
    ui.setDialogRunner(fill(QStringLiteral("meeting"), true, false, -1));
    grid(0)->setCurrentRow(0);
    tool("TSRFindEntry")->trigger();
    QList<int> hits{grid(0)->currentRow()};
    for (int i = 0; i < 6; ++i) {
        tool("TSRSearch", "TSREntryMenu")->trigger();
        hits << grid(0)->currentRow();
    }
    // Meetings by type or subject: rows 0, 4, 8 and 11; then the search wraps round.
    EXPECT_EQ(hits, (QList<int>{0, 4, 8, 11, 0, 4, 8}));

    // Whole field in the subject column: only the exact text matches.
    const int subject = grid(0)->model()->columnOf(QStringLiteral("Text"));
    int comboIndex = 0;
    for (int c = 0; c < subject; ++c)
        comboIndex += grid(0)->model()->column(c).caption.isEmpty() ? 0 : 1;
    ui.setDialogRunner(fill(QStringLiteral("car service"), true, true, comboIndex));
    tool("TSRFindEntry")->trigger();
    EXPECT_EQ(titles.value(grid(0)->currentRow()), QStringLiteral("Car service"));
    const int before = grid(0)->currentRow();
    ui.setDialogRunner(fill(QStringLiteral("car"), true, true, comboIndex));
    tool("TSRFindEntry")->trigger();
    EXPECT_EQ(grid(0)->currentRow(), before);
    ASSERT_FALSE(ui.boxes.isEmpty());
    EXPECT_EQ(ui.boxes.last().text, ctx.strings.text(735));
}

// Sort on up to three columns from the dialog, and by a click on a column head;
// the current entry stays current wherever it moves.
TEST_F(MainWindow, SortKeepsTheCurrentEntry) {
    test::fillContacts(ctx);
    openWindow();
    tool("vCardView")->trigger();
    ui::EntryGrid* g = grid(1);
    g->setCurrentRow(0);
    const QString current = shownTitles(1).value(0);

    // By city descending, then by first name.
    ui.setDialogRunner([](QDialog& d) {
        auto* f1 = d.findChild<QComboBox*>(QStringLiteral("SortField1"));
        auto* f2 = d.findChild<QComboBox*>(QStringLiteral("SortField2"));
        f1->setCurrentIndex(f1->findText(QStringLiteral("Location")));
        d.findChild<QComboBox*>(QStringLiteral("SortOrder1"))->setCurrentIndex(1);
        f2->setCurrentIndex(f2->findText(QStringLiteral("First name")));
        return true;
    });
    tool("TSRSort")->trigger();
    EXPECT_EQ(shownTitles(1),
              (QStringList{QStringLiteral("Nakamura"), QStringLiteral("Lindqvist"), QStringLiteral("Rossi"),
                           QStringLiteral("Schmidt"), QStringLiteral("Okafor"), QStringLiteral("Fischer"),
                           QStringLiteral("Weber"), QStringLiteral("Müller")}));
    EXPECT_EQ(shownTitles(1).value(g->currentRow()), current);

    // A click on the name's head sorts ascending, a second click descending.
    QHeaderView* head = g->tableView()->horizontalHeader();
    const int name = g->model()->columnOf(QStringLiteral("LastName"));
    QTest::mouseClick(head->viewport(), Qt::LeftButton, {}, QPoint(head->sectionViewportPosition(name) + 5, 5));
    QStringList expected{QStringLiteral("Fischer"),  QStringLiteral("Lindqvist"), QStringLiteral("Müller"),
                         QStringLiteral("Nakamura"), QStringLiteral("Okafor"),    QStringLiteral("Rossi"),
                         QStringLiteral("Schmidt"),  QStringLiteral("Weber")};
    EXPECT_EQ(shownTitles(1), expected);
    QTest::qWait(QApplication::doubleClickInterval() + 50); // two clicks, not a double click
    QTest::mouseClick(head->viewport(), Qt::LeftButton, {}, QPoint(head->sectionViewportPosition(name) + 5, 5));
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(shownTitles(1), expected);
    EXPECT_EQ(shownTitles(1).value(g->currentRow()), current);
}

// Closing: refused during the start; with changes waiting, Cancel keeps the
// window; otherwise the window goes and the settings keep its frame in twips.
TEST_F(MainWindow, CloseFollowsTheCloseRules) {
    test::fillCalendar(ctx);
    ui::Main_Form& w = openWindow();
    ctx.flags.GlobalStartDone = false;
    EXPECT_FALSE(w.close());
    EXPECT_TRUE(w.isVisible());

    ctx.flags.GlobalStartDone = true;
    tables::vCalCreateNewRecord(*ctx.tables.RSCalendarPending);
    ui.answers.enqueue(core::MsgResult::Cancel);
    EXPECT_FALSE(w.close());
    EXPECT_TRUE(w.isVisible());
    EXPECT_FALSE(ctx.flags.GlobalClosing);

    w.resize(640, 480);
    QApplication::processEvents();
    ui.answers.enqueue(core::MsgResult::No);
    EXPECT_TRUE(w.close());
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(ctx.settings.WindowState, 0);
    EXPECT_EQ(ctx.settings.Width, w.frameGeometry().width() * 15);
    EXPECT_EQ(ctx.settings.Height, w.frameGeometry().height() * 15);
}
