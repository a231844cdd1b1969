// SPDX-License-Identifier: GPL-3.0-or-later
// The grids' model over the real tables: it passes Qt's model checks empty, full,
// after a reset of the table and after sorting; it shows what the table holds in
// the user's formats; it colours rows by side and date range; the phone's
// limits are the ones the phone keeps.
#include "main/GridEdit.h"
#include "sync/Verwaltung.h"
#include "ui/WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QBrush>

using namespace tsr;
using tsr::test::WindowFixture;

namespace {

class GridModel : public WindowFixture {};

} // namespace

// Both models pass the checks through their whole life: empty, filled, sorted,
// the table replaced by a reset, and filled again.
TEST_F(GridModel, BothModelsPassTheModelTester) {
    for (int list : {0, 1}) {
        ui::EntryTableModel model(ctx, list);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        EXPECT_EQ(model.rowCount(), 0);
        list == 0 ? test::fillCalendar(ctx) : test::fillContacts(ctx);
        model.reload();
        EXPECT_EQ(model.rowCount(), list == 0 ? 14 : 8);
        EXPECT_EQ(model.columnCount(), list == 0 ? 8 : 10);
        for (int c = 0; c < model.columnCount(); ++c)
            model.sort(c, c % 2 ? Qt::DescendingOrder : Qt::AscendingOrder);
        model.sortBy({{3, Qt::AscendingOrder}, {4, Qt::DescendingOrder}, {6, Qt::AscendingOrder}});
        list == 0 ? sync::vCalReset(ctx, ctx.tables.RSCalendar) : sync::vCardReset(ctx, ctx.tables.RSContacts);
        model.reload();
        EXPECT_EQ(model.rowCount(), 0);
        list == 0 ? test::fillCalendar(ctx) : test::fillContacts(ctx);
        model.reload();
        EXPECT_GT(model.rowCount(), 0);
    }
}

// Cells show the table's values: dates in the user's format, value lists by
// their text and picture, flags as check boxes; only the grid's own fields edit.
TEST_F(GridModel, CellsShowTheTableInTheUsersFormats) {
    test::fillCalendar(ctx);
    ui::EntryTableModel model(ctx, 0);
    const auto cell = [&](int row, const char* field, int role = Qt::DisplayRole) {
        return model.data(model.index(row, model.columnOf(QString::fromLatin1(field))), role);
    };
    // Row 3 after the date sort: the yearly birthday on 4 March with an alarm.
    EXPECT_EQ(cell(3, "StartDate").toString(), QStringLiteral("04.03.2026"));
    EXPECT_EQ(cell(3, "StartTime").toString(), QStringLiteral("00:00"));
    EXPECT_EQ(cell(3, "Typ").toString(), ctx.strings.text(525));
    EXPECT_EQ(cell(3, "Serie").toString(), ctx.strings.text(842));
    EXPECT_FALSE(cell(3, "Serie", Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_EQ(cell(3, "Alarm", Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_EQ(cell(1, "Alarm", Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_FALSE(cell(3, "Alarm").isValid()) << "a check box shows no text";

    const struct {
        const char* field;
        Qt::ItemFlag flag;
        bool has;
    } rules[] = {{"Text", Qt::ItemIsEditable, true},       {"Alarm", Qt::ItemIsUserCheckable, true},
                 {"StartDate", Qt::ItemIsEditable, false}, {"Typ", Qt::ItemIsEditable, false},
                 {"PIM", Qt::ItemIsUserCheckable, false},  {"Mobile", Qt::ItemIsUserCheckable, false}};
    for (const auto& r : rules)
        EXPECT_EQ(model.flags(model.index(0, model.columnOf(QString::fromLatin1(r.field)))).testFlag(r.flag), r.has)
            << r.field;
    EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).toString(), ctx.strings.text(540));
}

// Rows outside the date range are dimmed; rows on one side only are tinted, one
// colour for each side.
TEST_F(GridModel, RowLooksFollowSideAndDateRange) {
    test::fillCalendar(ctx);
    ui::EntryTableModel model(ctx, 0);
    const QStringList titles = [&] {
        QStringList t;
        for (int r = 0; r < model.rowCount(); ++r)
            t << model.cellText(r, model.columnOf(QStringLiteral("Text")));
        return t;
    }();
    const struct {
        const char* text;
        main::RowLook look;
    } cases[] = {{"Team meeting", main::RowLook::Normal},
                 {"Budget review", main::RowLook::PimOnly},
                 {"Take the pills", main::RowLook::MobileOnly},
                 {"Old reminder outside the range", main::RowLook::OutsideRange}};
    QSet<QRgb> tints;
    for (const auto& c : cases) {
        const int row = int(titles.indexOf(QString::fromLatin1(c.text)));
        ASSERT_GE(row, 0) << c.text;
        EXPECT_EQ(main::EntryBackround(ctx, 0, *model.table(), row), c.look) << c.text;
        const QVariant bg = model.data(model.index(row, 0), Qt::BackgroundRole);
        const QVariant fg = model.data(model.index(row, 0), Qt::ForegroundRole);
        EXPECT_EQ(bg.isValid(), c.look == main::RowLook::PimOnly || c.look == main::RowLook::MobileOnly) << c.text;
        EXPECT_EQ(fg.isValid(), c.look == main::RowLook::OutsideRange) << c.text;
        if (bg.isValid())
            tints.insert(bg.value<QBrush>().color().rgb());
    }
    EXPECT_EQ(tints.size(), 2) << "the two sides have colours of their own";
}

// What the phone keeps of each field, the call numbers with their "+" allowance.
TEST(PhoneFieldLimit, MatchesWhatThePhoneKeeps) {
    const struct {
        int list;
        const char* field;
        const char* text;
        int limit;
    } cases[] = {{0, "Text", "x", main::kCalendarTextLimit},
                 {0, "StartTime", "x", 0},
                 {1, "LastName", "x", 24},
                 {1, "firstname", "x", 16},
                 {1, "ZipCode", "x", 8},
                 {1, "City", "x", 16},
                 {1, "Street", "x", 40},
                 {1, "Phone", "0301234", 40},
                 {1, "Phone", "+49301234", 41},
                 {1, "Categories", "x", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(main::phoneFieldLimit(c.list, QString::fromLatin1(c.field), QString::fromLatin1(c.text)), c.limit)
            << c.list << ' ' << c.field << ' ' << c.text;
}
