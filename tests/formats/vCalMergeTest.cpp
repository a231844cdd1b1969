// SPDX-License-Identifier: GPL-3.0-or-later
// Joining the two sides of a matched calendar pair, and the call-number check.
#include "formats/vCal.h"
#include "vCalFixture.h"

using namespace tsr;

namespace {
class vCalMerge : public test::vCalFixture {
protected:
    vCalMerge() {
        source = std::make_unique<tables::Recordset>(QStringLiteral("RSCalendarWork"));
        tables::InitCalendarRS(*source);
        tables::vCalCreateNewRecord(*source);
    }
    void setSource(const QString& name, const core::Value& v) { source->setValue(name, v); }
    std::unique_ptr<tables::Recordset> source;
};
} // namespace

// The PIM side brings its identifier, text and flags; the row stands on both sides.
TEST_F(vCalMerge, OutlookEntryIntoMobileRow) {
    set(QStringLiteral("Text"), QStringLiteral("mobile text"));
    set(QStringLiteral("EntryType"), int32_t(2));
    setSource(QStringLiteral("UID"), QStringLiteral("uid-1"));
    setSource(QStringLiteral("PIMText"), QStringLiteral("pim text"));
    setSource(QStringLiteral("PIM"), true);
    setSource(QStringLiteral("PIMNew"), true);
    setSource(QStringLiteral("Text"), QStringLiteral("not copied"));
    formats::vCalSyncOutlookEntry(ctx, *table, *source);
    EXPECT_EQ(text(QStringLiteral("UID")), QStringLiteral("uid-1"));
    EXPECT_EQ(text(QStringLiteral("PIMText")), QStringLiteral("pim text"));
    EXPECT_TRUE(flag(QStringLiteral("PIM")));
    EXPECT_TRUE(flag(QStringLiteral("PIMnew")));
    EXPECT_EQ(text(QStringLiteral("Text")), QStringLiteral("mobile text"));
    EXPECT_EQ(get(QStringLiteral("EntryType")).toInt32(), 3);
}

// The mobile side brings its number (also as SubType), dates, alarms and type;
// MemoStatus stays as the PIM row had it.
TEST_F(vCalMerge, MobileEntryIntoPimRow) {
    set(QStringLiteral("MemoStatus"), true);
    set(QStringLiteral("UID"), QStringLiteral("keep"));
    setSource(QStringLiteral("EntryID"), QStringLiteral("12"));
    setSource(QStringLiteral("Text"), QStringLiteral("from phone"));
    setSource(QStringLiteral("Mobile"), true);
    setSource(QStringLiteral("Typ"), QStringLiteral("1"));
    setSource(QStringLiteral("MeetingStatus"), true);
    setSource(QStringLiteral("MemoStatus"), false);
    setSource(QStringLiteral("DTEnd"), at(2026, 11, 22, 11, 0));
    setSource(QStringLiteral("EndDate"), at(2026, 11, 22));
    setSource(QStringLiteral("EndTime"), clock(11, 0));
    setSource(QStringLiteral("EntryFile"), QStringLiteral("12.vcs"));
    setSource(QStringLiteral("AAlarmFlag"), true);
    setSource(QStringLiteral("AAlarm"), at(2026, 11, 22, 9, 50));
    setSource(QStringLiteral("Alarm"), true);
    formats::vCalSyncMobileEntry(ctx, *table, *source);
    EXPECT_EQ(text(QStringLiteral("EntryID")), QStringLiteral("12"));
    EXPECT_EQ(get(QStringLiteral("SubType")).toInt32(), 12);
    EXPECT_EQ(text(QStringLiteral("Text")), QStringLiteral("from phone"));
    EXPECT_TRUE(flag(QStringLiteral("Mobile")));
    EXPECT_EQ(get(QStringLiteral("EntryType")).toInt32(), 3);
    EXPECT_EQ(text(QStringLiteral("Typ")), QStringLiteral("1"));
    EXPECT_TRUE(flag(QStringLiteral("MeetingStatus")));
    EXPECT_TRUE(flag(QStringLiteral("MemoStatus"))); // not copied, on purpose
    EXPECT_EQ(when(QStringLiteral("DTEnd")), QDateTime(QDate(2026, 11, 22), QTime(11, 0)));
    EXPECT_EQ(text(QStringLiteral("EntryFile")), QStringLiteral("12.vcs"));
    EXPECT_TRUE(flag(QStringLiteral("AAlarmFlag")));
    EXPECT_EQ(when(QStringLiteral("AAlarm")), QDateTime(QDate(2026, 11, 22), QTime(9, 50)));
    EXPECT_FALSE(flag(QStringLiteral("DAlarmFlag")));
    EXPECT_TRUE(flag(QStringLiteral("Alarm")));
    EXPECT_EQ(text(QStringLiteral("UID")), QStringLiteral("keep"));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A source number that is no number cannot become SubType: the error is shown
// and logged, and nothing travels to the caller.
TEST_F(vCalMerge, BadEntryIdIsReportedNotThrown) {
    setSource(QStringLiteral("EntryID"), QStringLiteral("uid-abc"));
    EXPECT_NO_THROW(formats::vCalSyncMobileEntry(ctx, *table, *source));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(core::standardDescription(core::err::TypeMismatch)))
        << ui.boxes[0].text.toStdString();
}

// Digits and "*", "#", "?", "+" can be dialled; anything else is found at once.
TEST(check4PhoneCallChar, FindsWhatCannotBeDialled) {
    EXPECT_FALSE(formats::check4PhoneCallChar(QString()));
    EXPECT_FALSE(formats::check4PhoneCallChar(QStringLiteral("+49*30#123?")));
    EXPECT_FALSE(formats::check4PhoneCallChar(QStringLiteral("0123456789")));
    EXPECT_TRUE(formats::check4PhoneCallChar(QStringLiteral("030 1234")));
    EXPECT_TRUE(formats::check4PhoneCallChar(QStringLiteral("030-1234")));
    EXPECT_TRUE(formats::check4PhoneCallChar(QStringLiteral("Mum")));
    EXPECT_TRUE(formats::check4PhoneCallChar(QStringLiteral("12.5")));
}
