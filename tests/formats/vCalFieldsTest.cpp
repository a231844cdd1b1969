// SPDX-License-Identifier: GPL-3.0-or-later
// The quick date texts of the calendar reader must read exactly as the general
// formatter writes them, for every mask they take on, and step aside for the rest.
#include "formats/vCalFields.h"
#include "tables/TSRADODB.h"

#include <gtest/gtest.h>

using namespace tsr;

namespace {
std::vector<core::VbDate> sampleDates() {
    std::vector<core::VbDate> dates = {core::VbDate(), core::VbDate(0.5), core::VbDate(-1.25),
                                       core::VbDate(0.99999999)};
    for (int i = 0; i < 400; ++i)
        dates.push_back(core::VbDate(core::DateSerial(1990 + i % 60, 1 + i % 12, 1 + i % 28).value +
                                     core::TimeSerial(i % 24, (i * 7) % 60, (i * 13) % 60).value * (i % 5 != 0)));
    return dates;
}
} // namespace

// Numeric masks give the general formatter's text, minutes after hours included.
TEST(QuickFormat, MatchesTheGeneralFormatter) {
    const char* masks[] = {"dd.mm.yyyy", "d.m.yy",         "hh:mm:ss", "h:m:s", "hh:nn", "yyyy-mm-dd",
                           "mm/dd/yyyy", "dd.mm.yy hh:mm", "y",        "yyy",   "m:ss",  "hhh"};
    for (const char* m : masks) {
        const QString mask = QString::fromUtf8(m);
        for (core::VbDate d : sampleDates()) {
            const std::optional<QString> quick = formats::detail::quickFormat(d, mask);
            ASSERT_TRUE(quick) << m;
            EXPECT_EQ(*quick, core::Format(d, mask)) << m << " " << d.value;
        }
    }
}

// Masks with names, day-half marks or quoted text are left to the general formatter.
TEST(QuickFormat, StepsAsideForOtherMasks) {
    for (const char* m : {"dddd", "mmm yyyy", "hh:mm AM/PM", "\"at\" hh", "Short Date", "ww", "h:mm A/P"})
        EXPECT_FALSE(formats::detail::quickFormat(core::VbDate(45000.5), QString::fromUtf8(m))) << m;
}

// The table's text form of a date, with its default and with other masks.
TEST(QuickFormat, DateTextMatchesTheTable) {
    tables::Recordset table(QStringLiteral("RSCalendar"));
    tables::InitCalendarRS(table);
    const std::pair<const char*, const char*> forms[] = {
        {"dd.mm.yyyy", "hh:mm:ss"}, {"mm/dd/yy", "h:mm AM/PM"}, {"dd. mmmm yyyy", "hh:mm"}};
    for (const auto& [dateMask, timeMask] : forms) {
        table.setDateTextForm(QString::fromUtf8(dateMask), QString::fromUtf8(timeMask));
        for (core::VbDate d : sampleDates())
            EXPECT_EQ(formats::detail::quickDateText(table, d), table.dateAsText(d)) << dateMask << " " << d.value;
    }
    EXPECT_EQ(formats::detail::quickTimeText(core::VbDate(0.75), QStringLiteral("hh:mm AM/PM")),
              core::Format(core::VbDate(0.75), QStringLiteral("hh:mm AM/PM")));
}

// The three texts of a start match the general formatter for every pairing of
// masks: quick and not, masks that mix date and time parts, and a time format
// that differs from the table's.
TEST(QuickFormat, StartTextsMatchTheGeneralFormatter) {
    tables::Recordset table(QStringLiteral("RSCalendar"));
    tables::InitCalendarRS(table);
    const std::tuple<const char*, const char*, const char*> forms[] = {{"dd.mm.yyyy", "hh:mm:ss", "hh:mm:ss"},
                                                                       {"dd.mm.yy", "hh:mm", "hh:mm:ss"},
                                                                       {"dd.mm.yyyy hh", "nn", "hh:mm"},
                                                                       {"yyyy-mm-dd", "hh:mm dd", "hh:mm dd"},
                                                                       {"mm/dd/yy", "h:mm AM/PM", "h:mm AM/PM"},
                                                                       {"dd. mmmm yyyy", "hh:mm", "hh:mm"},
                                                                       {"d.m.yyyy", "h:m:s", "hh:nn"}};
    for (const auto& [dateMask, tableTime, timeMask] : forms) {
        table.setDateTextForm(QString::fromUtf8(dateMask), QString::fromUtf8(tableTime));
        const QString time = QString::fromUtf8(timeMask);
        for (core::VbDate d : sampleDates()) {
            const formats::detail::StartTexts texts = formats::detail::startTexts(table, d, time);
            const std::string where = std::string(dateMask) + " " + tableTime + " " + timeMask;
            EXPECT_EQ(texts.full, table.dateAsText(d)) << where << " " << d.value;
            EXPECT_EQ(texts.date, table.dateAsText(core::DateValue(d))) << where << " " << d.value;
            EXPECT_EQ(texts.time, core::Format(core::TimeValue(d), time)) << where << " " << d.value;
        }
    }
}
