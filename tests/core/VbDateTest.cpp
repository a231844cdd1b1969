// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/VbDate.h"
#include "core/Error.h"
#include "core/Numbers.h"

#include <gtest/gtest.h>

using namespace tsr::core;

TEST(VbDate, DayZeroAndKnownDays) {
    EXPECT_EQ(DateSerial(1899, 12, 30).value, 0.0);
    EXPECT_EQ(DateSerial(2000, 1, 1).value, 36526.0);
    EXPECT_EQ(toQDate(VbDate(-1)), QDate(1899, 12, 29));
    // Before day 0 the fraction still counts forward from midnight.
    EXPECT_EQ(Hour(VbDate(-1.25)), 6);
    EXPECT_EQ(toQDate(VbDate(-1.25)), QDate(1899, 12, 29));
}

TEST(VbDate, DateSerialRollsOver) {
    EXPECT_EQ(toQDate(DateSerial(2024, 13, 1)), QDate(2025, 1, 1));
    EXPECT_EQ(toQDate(DateSerial(2024, 3, 0)), QDate(2024, 2, 29));
    EXPECT_EQ(toQDate(DateSerial(2024, 0, 15)), QDate(2023, 12, 15));
}

TEST(VbDate, DateAddKeepsTimeAndClampsMonthEnd) {
    const VbDate d = fromQDateTime(QDateTime(QDate(2024, 1, 31), QTime(10, 30)));
    EXPECT_EQ(toQDateTime(DateAdd(QStringLiteral("m"), 1, d)), QDateTime(QDate(2024, 2, 29), QTime(10, 30)));
    EXPECT_EQ(toQDateTime(DateAdd(QStringLiteral("yyyy"), 1, d)), QDateTime(QDate(2025, 1, 31), QTime(10, 30)));
    EXPECT_EQ(toQDateTime(DateAdd(QStringLiteral("ww"), -1, d)), QDateTime(QDate(2024, 1, 24), QTime(10, 30)));
    EXPECT_EQ(toQDateTime(DateAdd(QStringLiteral("n"), 45, d)), QDateTime(QDate(2024, 1, 31), QTime(11, 15)));
    EXPECT_EQ(toQDateTime(DateAdd(QStringLiteral("h"), 14, d)), QDateTime(QDate(2024, 2, 1), QTime(0, 30)));
    EXPECT_THROW(DateAdd(QStringLiteral("x"), 1, d), TsrError);
}

TEST(VbDate, DateDiffCountsBoundaries) {
    const VbDate a = fromQDateTime(QDateTime(QDate(2024, 12, 31), QTime(23, 59)));
    const VbDate b = fromQDateTime(QDateTime(QDate(2025, 1, 1), QTime(0, 1)));
    EXPECT_EQ(DateDiff(QStringLiteral("d"), a, b), 1);
    EXPECT_EQ(DateDiff(QStringLiteral("yyyy"), a, b), 1);
    EXPECT_EQ(DateDiff(QStringLiteral("m"), a, b), 1);
    EXPECT_EQ(DateDiff(QStringLiteral("h"), a, b), 1);
    EXPECT_EQ(DateDiff(QStringLiteral("n"), a, b), 2);
    EXPECT_EQ(DateDiff(QStringLiteral("d"), b, a), -1);
    // Saturday to the next Sunday crosses one week start.
    EXPECT_EQ(DateDiff(QStringLiteral("ww"), DateSerial(2024, 6, 1), DateSerial(2024, 6, 2)), 1);
    EXPECT_EQ(DateDiff(QStringLiteral("w"), DateSerial(2024, 6, 1), DateSerial(2024, 6, 2)), 0);
}

TEST(VbDate, FormatMasks) {
    const VbDate d = fromQDateTime(QDateTime(QDate(2025, 3, 7), QTime(14, 5, 9)));
    EXPECT_EQ(Format(d, QStringLiteral("dd.mm.yy")), QStringLiteral("07.03.25"));
    EXPECT_EQ(Format(d, QStringLiteral("hh:mm:ss")), QStringLiteral("14:05:09"));
    EXPECT_EQ(Format(d, QStringLiteral("yyyymmdd")), QStringLiteral("20250307"));
    EXPECT_EQ(Format(d, QStringLiteral("hh:mm dd.mm.yy")), QStringLiteral("14:05 07.03.25"));
    EXPECT_EQ(Format(d, QStringLiteral("h:nn AM/PM")), QStringLiteral("2:05 PM"));
    EXPECT_EQ(Format(d, QStringLiteral("ww")), QStringLiteral("10"));
    EXPECT_EQ(Format(d, QStringLiteral("d/m/yyyy")), QStringLiteral("7/3/2025"));
}

TEST(VbDate, ParseFollowsTheMaskOrder) {
    EXPECT_EQ(parseDate(QStringLiteral("07.03.25"), QStringLiteral("dd.mm.yy"), {}), DateSerial(2025, 3, 7));
    EXPECT_EQ(parseDate(QStringLiteral("03/07/2025"), QStringLiteral("mm/dd/yyyy"), {}), DateSerial(2025, 3, 7));
    EXPECT_EQ(parseDate(QStringLiteral("2025/03/07 14:05:09"), QStringLiteral("dd.mm.yy"), {})->value,
              fromQDateTime(QDateTime(QDate(2025, 3, 7), QTime(14, 5, 9))).value);
    EXPECT_EQ(parseDate(QStringLiteral("14:05 07.03.25"), QStringLiteral("dd.mm.yy"), {})->value,
              fromQDateTime(QDateTime(QDate(2025, 3, 7), QTime(14, 5))).value);
    EXPECT_EQ(parseDate(QStringLiteral("2:05 PM"), QStringLiteral("dd.mm.yy"), {})->value, TimeSerial(14, 5, 0).value);
    EXPECT_FALSE(parseDate(QStringLiteral("31.02.25"), QStringLiteral("dd.mm.yy"), {}));
    EXPECT_FALSE(parseDate(QStringLiteral("abc"), QStringLiteral("dd.mm.yy"), {}));
    EXPECT_FALSE(parseDate(QStringLiteral("25:00"), QStringLiteral("dd.mm.yy"), {}));
}

TEST(Numbers, LeadingNumberAndOverflow) {
    EXPECT_EQ(Val(QStringLiteral("12abc")), 12);
    EXPECT_EQ(Val(QStringLiteral("abc")), 0);
    EXPECT_EQ(Val(QStringLiteral("  -3.5x")), -3.5);
    // The number ends where its form ends: a point without digits behind it, an
    // exponent with digits only, tabs but no other blanks before it.
    const std::pair<const char*, double> leading[] = {
        {".5", 0.5}, {"+.5e3x", 500}, {"1.e2", 100},  {"7e", 7},  {"7e+", 7}, {"7E-1", 0.7}, {"\t 9", 9}, {"-", 0},
        {".", 0},    {"+-1", 0},      {"1.2.3", 1.2}, {"\n5", 0}, {"٣", 0},   {"5٣", 5},     {"", 0}};
    for (const auto& [text, value] : leading)
        EXPECT_DOUBLE_EQ(Val(QString::fromUtf8(text)), value) << text;
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(3.5), 4);
    EXPECT_EQ(CInt(32767), 32767);
    try {
        CInt(40000);
        FAIL() << "no overflow raised";
    } catch (const TsrError& e) {
        EXPECT_EQ(e.number(), 6);
        EXPECT_EQ(e.description(), QStringLiteral("Overflow"));
    }
    EXPECT_THROW(toInt16(-32769), TsrError);
}

// Universal time to the local wall clock; the tests run in Berlin, so both clock changes of 2026 show.
TEST(VbDate, UtcToLocalAcrossTheClockChanges) {
    struct Case {
        QDateTime utc;
        QDateTime local;
    };
    const Case cases[] = {
        {{QDate(2026, 1, 15), QTime(12, 0)}, {QDate(2026, 1, 15), QTime(13, 0)}},
        {{QDate(2026, 3, 29), QTime(0, 59, 59)}, {QDate(2026, 3, 29), QTime(1, 59, 59)}},
        {{QDate(2026, 3, 29), QTime(1, 0)}, {QDate(2026, 3, 29), QTime(3, 0)}},
        {{QDate(2026, 10, 25), QTime(0, 59, 59)}, {QDate(2026, 10, 25), QTime(2, 59, 59)}},
        {{QDate(2026, 10, 25), QTime(1, 0)}, {QDate(2026, 10, 25), QTime(2, 0)}},
        {{QDate(2026, 12, 31), QTime(23, 30)}, {QDate(2027, 1, 1), QTime(0, 30)}},
        {{QDate(1965, 7, 1), QTime(8, 15, 30)}, {QDate(1965, 7, 1), QTime(9, 15, 30)}},
    };
    for (const Case& c : cases) {
        const VbDate local = utcToLocal(fromQDateTime(c.utc));
        EXPECT_EQ(toQDateTime(local), c.local) << c.utc.toString(Qt::ISODate).toStdString();
        // The same as Qt's own conversion, which goes through the zone file every time.
        EXPECT_EQ(local, fromQDateTime(QDateTime(c.utc.date(), c.utc.time(), Qt::UTC).toLocalTime()));
    }
}

// The masks of the settings and the forms Format knows beside them.
TEST(VbDate, FormatNamedFormsDayPartsAndLiterals) {
    const VbDate morning = fromQDateTime(QDateTime(QDate(2026, 11, 23), QTime(0, 7, 3)));
    const VbDate evening = fromQDateTime(QDateTime(QDate(987, 2, 5), QTime(21, 40)));
    const struct {
        VbDate d;
        const char16_t* mask;
        const char16_t* text;
    } cases[] = {
        {morning, u"Short Date", u"23.11.2026"},
        {morning, u"LONG TIME", u"00:07:03"},
        {morning, u"short time", u"00:07"},
        {morning, u"General Date", u"23.11.2026 00:07:03"},
        {morning, u"h:nn A/P", u"12:07 A"},
        {evening, u"h:nn a/p", u"9:40 p"},
        {evening, u"hh:mm am/pm", u"09:40 pm"},
        {evening, u"dd.mm.yyyy", u"05.02.0987"},
        {evening, u"yy q y", u"87 1 36"},
        {morning, u"\"mm\" mm \\d d", u"mm 11 d 23"},
        {morning, u"m:ss", u"7:03"},
        {morning, u"\"open", u"open"},
        {morning, u"", u""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Format(c.d, QString::fromUtf16(c.mask)), QString::fromUtf16(c.text))
            << QString::fromUtf16(c.mask).toStdString();
}
