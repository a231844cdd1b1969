// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/GridColumns.h"
#include "support/ScriptedUi.h"

#include <gtest/gtest.h>

using namespace tsr;
using namespace tsr::tables;

// The eight calendar columns are the first eight fields, with the value lists' images.
TEST(GridColumns, CalendarColumnsFollowTheFieldsAndTheLanguage) {
    test::ScriptedUi ui;
    core::Context ctx(ui);
    auto cols = SetvCalColCaption(ctx);
    ASSERT_EQ(cols.size(), 8u);
    const QStringList fields{QStringLiteral("PIM"),       QStringLiteral("Mobile"),    QStringLiteral("Alarm"),
                             QStringLiteral("StartDate"), QStringLiteral("StartTime"), QStringLiteral("Typ"),
                             QStringLiteral("Text"),      QStringLiteral("Serie")};
    for (size_t i = 0; i < cols.size(); ++i)
        EXPECT_EQ(cols[i].field, fields[int(i)]);
    EXPECT_EQ(cols[3].caption, QStringLiteral("Date"));
    EXPECT_EQ(cols[3].widthSample, QStringLiteral("12.12.00")); // "12/12/00" in the user's date format
    EXPECT_EQ(cols[0].tooltip, QStringLiteral("Set/delete as PIM calendar entry"));
    EXPECT_TRUE(cols[0].onlyWithPim);
    ASSERT_EQ(cols[7].values.size(), 5u);
    EXPECT_EQ(cols[7].values[2].value, QStringLiteral("W"));
    EXPECT_EQ(cols[7].values[2].text, QStringLiteral("Weekly"));
    EXPECT_EQ(cols[7].values[2].image, 9);
    EXPECT_EQ(cols[5].values[3].text, QStringLiteral("Call"));

    ctx.strings.set(484, QStringLiteral("Datum"));
    EXPECT_EQ(SetvCalColCaption(ctx)[3].caption, QStringLiteral("Datum"));
}

TEST(GridColumns, ContactColumnsAndTheTextColumnWidth) {
    test::ScriptedUi ui;
    core::Context ctx(ui);
    auto cols = vCardSetColCaption(ctx);
    ASSERT_EQ(cols.size(), 10u);
    EXPECT_EQ(cols[8].field, QStringLiteral("City"));
    EXPECT_EQ(cols[8].caption, QStringLiteral("Location"));
    EXPECT_EQ(cols[9].tooltip, QStringLiteral("Set as VIP"));
    EXPECT_EQ(textColumnWidth(10000, {320, 320, 320, 900, 600, 1500, 1200}), 10000 - 5160 - 150);
}
