// SPDX-License-Identifier: GPL-3.0-or-later
// The token helpers and field checks shared by the entry formats.
#include "formats/Allgemein.h"

#include <gtest/gtest.h>

using namespace tsr::formats;

// Escaped separators stay inside a piece, unescaped ones split; chains of escapes join, and
// an escape before the last, empty piece still joins.
TEST(SplitESCStrings, SplitsOnlyAtUnescapedSemicolons) {
    EXPECT_EQ(SplitESCStrings(QStringLiteral("a\\;b;c")), (QStringList{QStringLiteral("a;b"), QStringLiteral("c")}));
    EXPECT_EQ(SplitESCStrings(QStringLiteral("a\\;b\\;c;d\\;")),
              (QStringList{QStringLiteral("a;b;c"), QStringLiteral("d;")}));
    EXPECT_EQ(SplitESCStrings(QStringLiteral(";;Main St;Town")),
              (QStringList{QString(), QString(), QStringLiteral("Main St"), QStringLiteral("Town")}));
    EXPECT_EQ(SplitESCStrings(QStringLiteral("a\\b;c")), (QStringList{QStringLiteral("a\\b"), QStringLiteral("c")}));
    EXPECT_TRUE(SplitESCStrings(QString()).isEmpty());
    EXPECT_EQ(SplitESCStrings(QStringLiteral("abc")).size(), 1);
    // The first piece alone is the first of the split.
    for (const char* text : {"a\\;b;c", "a\\;b\\;c;d\\;", ";;Main St", "a\\b;c", "abc", "", "x\\\\;;y", "\\;"}) {
        const QString t = QString::fromUtf8(text);
        EXPECT_EQ(FirstESCPiece(t), SplitESCStrings(t).value(0)) << text;
    }
}

// Escaping then splitting gives back the pieces, whatever their count.
TEST(SplitESCStrings, InvertsCheckSemicolonInToken) {
    for (const QString& original :
         {QStringLiteral("a;b;c"), QStringLiteral(";"), QStringLiteral("x;;y;"), QStringLiteral("no separator")}) {
        QString escaped = original;
        CheckSemicolonInToken(escaped);
        EXPECT_EQ(escaped.count(QLatin1String("\\;")), original.count(u';'));
        EXPECT_EQ(SplitESCStrings(escaped), QStringList{original}) << original.toStdString();
    }
    QString empty;
    CheckSemicolonInToken(empty);
    EXPECT_TRUE(empty.isEmpty());
}

// CR LF pairs and tabs become blanks, blanks at the ends go, lone CR or LF stay.
TEST(RemoveCTRLCharactersFromString, JoinsLinesAndTrims) {
    EXPECT_EQ(RemoveCTRLCharactersFromString(QStringLiteral(" a\r\nb")), QStringLiteral("a b"));
    EXPECT_EQ(RemoveCTRLCharactersFromString(QStringLiteral("a\tb\r\n\r\nc  ")), QStringLiteral("a b  c"));
    EXPECT_EQ(RemoveCTRLCharactersFromString(QStringLiteral("a\nb\rc")), QStringLiteral("a\nb\rc"));
    EXPECT_EQ(RemoveCTRLCharactersFromString(QStringLiteral("\r\n")), QString());
}

// A trailing blank the phone dropped or added does not count, and the blank is cut for the caller.
TEST(CheckvCardString, IgnoresOneTrailingBlankAndCase) {
    QString a = QStringLiteral("Main St ");
    QString b = QStringLiteral("main st");
    EXPECT_TRUE(CheckvCardString(a, b));
    EXPECT_EQ(a, QStringLiteral("Main St"));
    QString c = QStringLiteral("Town");
    QString d = QStringLiteral("Town ");
    EXPECT_TRUE(CheckvCardString(c, d));
    EXPECT_EQ(d, QStringLiteral("Town"));
    // Both ending in a blank: nothing is cut.
    QString e = QStringLiteral("x ");
    QString f = QStringLiteral("x ");
    EXPECT_TRUE(CheckvCardString(e, f));
    EXPECT_EQ(e, QStringLiteral("x "));
}

// The kept looseness: a first text that sorts after the second counts as equal, the other way not.
TEST(CheckvCardString, FirstSortingAfterSecondCountsAsEqual) {
    QString later = QStringLiteral("Zeta");
    QString earlier = QStringLiteral("Alpha");
    EXPECT_TRUE(CheckvCardString(later, earlier));
    EXPECT_FALSE(CheckvCardString(earlier, later));
}

// URLs compare with or without "http://" on one side, but not when both differ otherwise.
TEST(CheckURL, PrefixOnOneSideOnly) {
    EXPECT_TRUE(CheckURL(QStringLiteral("http://www.example.org"), QStringLiteral("WWW.example.org")));
    EXPECT_TRUE(CheckURL(QStringLiteral("a.org"), QStringLiteral("http://a.org")));
    EXPECT_FALSE(CheckURL(QStringLiteral("a.org"), QStringLiteral("http://b.org")));
    EXPECT_FALSE(CheckURL(QStringLiteral("a.org"), QStringLiteral("b.org")));
    EXPECT_FALSE(CheckURL(QStringLiteral("http://a.org"), QStringLiteral("http://b.org")));
    // Looseness as in CheckvCardString.
    EXPECT_TRUE(CheckURL(QStringLiteral("b.org"), QStringLiteral("a.org")));
}

// The prefix is removed by length, wherever it stood; text without it is returned as is.
TEST(URLwithouthttp, CutsSevenCharactersFromTheLeft) {
    EXPECT_EQ(URLwithouthttp(QStringLiteral("http://x.org")), QStringLiteral("x.org"));
    EXPECT_EQ(URLwithouthttp(QStringLiteral("www")), QStringLiteral("www"));
    // Not at the front: still seven characters go from the left.
    EXPECT_EQ(URLwithouthttp(QStringLiteral("see http://x")), QStringLiteral("p://x"));
}

// A leading "+" earns one more character.
TEST(PhoneLimits, PlusCountsExtra) {
    EXPECT_EQ(Phonecall_Len(QStringLiteral("+49")), 41);
    EXPECT_EQ(Phonecall_Len(QStringLiteral("049")), 40);
    EXPECT_EQ(Phonecall_Len(QString()), 40);
    EXPECT_EQ(vCardPhoneNumber_Len(QStringLiteral("+1"), 40, 41), 41);
    EXPECT_EQ(vCardPhoneNumber_Len(QStringLiteral("1+"), 40, 41), 40);
}
