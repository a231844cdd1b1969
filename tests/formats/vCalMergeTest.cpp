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
    setFields({{u"Text", u"mobile text"}, {u"EntryType", int32_t(2)}});
    const test::FieldValues values = {
        {u"UID", u"uid-1"}, {u"PIMText", u"pim text"}, {u"PIM", true}, {u"PIMNew", true}, {u"Text", u"not copied"}};
    test::setFields(*source, values);
    formats::vCalSyncOutlookEntry(ctx, *table, *source);
    expectFields({{u"UID", u"uid-1"}, {u"PIMText", u"pim text"}, {u"Text", u"mobile text"}, {u"EntryType", u"3"}});
    expectFlags({u"PIM", u"PIMnew"});
}

// The mobile side brings its number (also as SubType), dates, alarms and type;
// MemoStatus stays as the PIM row had it.
TEST_F(vCalMerge, MobileEntryIntoPimRow) {
    setFields({{u"MemoStatus", true}, {u"UID", u"keep"}});
    const test::FieldValues values = {{u"EntryID", u"12"},
                                      {u"Text", u"from phone"},
                                      {u"Mobile", true},
                                      {u"Typ", u"1"},
                                      {u"MeetingStatus", true},
                                      {u"MemoStatus", false},
                                      {u"DTEnd", at(2026, 11, 22, 11, 0)},
                                      {u"EndDate", at(2026, 11, 22)},
                                      {u"EndTime", clock(11, 0)},
                                      {u"EntryFile", u"12.vcs"},
                                      {u"AAlarmFlag", true},
                                      {u"AAlarm", at(2026, 11, 22, 9, 50)},
                                      {u"Alarm", true}};
    test::setFields(*source, values);
    formats::vCalSyncMobileEntry(ctx, *table, *source);
    const test::FieldTexts want = {{u"EntryID", u"12"}, {u"SubType", u"12"},       {u"Text", u"from phone"},
                                   {u"Typ", u"1"},      {u"EntryFile", u"12.vcs"}, {u"UID", u"keep"},
                                   {u"EntryType", u"3"}};
    expectFields(want);
    // MemoStatus is not copied, on purpose.
    expectFlags({u"Mobile", u"MeetingStatus", u"MemoStatus", u"AAlarmFlag", u"Alarm"});
    expectFlags({u"DAlarmFlag"}, false);
    EXPECT_EQ(when(QStringLiteral("DTEnd")), QDateTime(QDate(2026, 11, 22), QTime(11, 0)));
    EXPECT_EQ(when(QStringLiteral("AAlarm")), QDateTime(QDate(2026, 11, 22), QTime(9, 50)));
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
