// SPDX-License-Identifier: GPL-3.0-or-later
// The parser of the phone's calendar files: the keys, folding, the numbered
// errors and their texts, the rule table, and the completion of the row.
#include "formats/vCal.h"
#include "tables/TSRADODB.h"
#include "vCalFixture.h"

using namespace tsr;
using test::vCalFixture;

namespace {
class vCalParse : public vCalFixture {
protected:
    bool parse(const QString& textIn) {
        QString t = textIn;
        return formats::ParsEntryFromMobile(ctx, *table, t);
    }
    // Parses an event holding only this RRULE value on a fresh row.
    void parseRule(const char* rule) {
        newRow();
        const QString line = QStringLiteral("RRULE:") + QString::fromUtf8(rule);
        QString t = event({"DTSTART:20261122T100000Z", line.toUtf8().constData()});
        ASSERT_TRUE(formats::ParsEntryFromMobile(ctx, *table, t));
    }
};
} // namespace

// A plain entry from the phone fills the fields the round trip does not look at.
TEST_F(vCalParse, PlainMeetingFillsTheRow) {
    ASSERT_TRUE(parse(event({"CATEGORIES:MEETING", "DTSTART:20261122T103000Z", "DTEND:20261122T114500Z",
                             "DESCRIPTION:Project review", "SUMMARY:Review"})));
    const test::FieldTexts want = {{u"StartTime", u"10:30:00"},  {u"StartEndDiff", u"0"},
                                   {u"Text", u"Project review"}, {u"PIMText", u"Project review"},
                                   {u"Summary", u"Review"},      {u"EntryType", u"2"}};
    expectFields(want);
    expectFlags({u"EndDateFlag", u"Mobile", u"noPhonecall"});
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// An unknown category is -1994 with the text built on string 753.
TEST_F(vCalParse, UnknownCategoryIsError1994) {
    const core::TsrError e = errorOf([&] { parse(event({"CATEGORIES:MEMO"})); });
    EXPECT_EQ(e.number(), -1994);
    EXPECT_EQ(e.source(), QStringLiteral("ParsEntryFromMobile"));
    EXPECT_EQ(e.description(), QStringLiteral("Unexpected TAG after CATEGORIES\r\nCATEGORIES:MEMO"));
}

// BEGIN, END and an unknown key inside the calendar each have their number and word.
TEST_F(vCalParse, UnexpectedKeysInsideTheCalendar) {
    core::TsrError e = errorOf([&] { parse(crlf({"BEGIN:VTODO"})); });
    EXPECT_EQ(e.number(), -1996);
    EXPECT_EQ(e.description(), QStringLiteral("Unexpected TAG after BEGIN\r\nBEGIN:VTODO"));

    newRow();
    e = errorOf([&] { parse(crlf({"BEGIN:VCALENDAR", "END:VTODO"})); });
    EXPECT_EQ(e.number(), -1995);
    EXPECT_EQ(e.description(), QStringLiteral("Unexpected TAG after END\r\nEND:VTODO"));

    newRow();
    e = errorOf([&] { parse(event({"LOCATION;CHARSET=UTF-8:Room 1"})); });
    EXPECT_EQ(e.number(), -1993);
    EXPECT_EQ(e.description(), QStringLiteral("Unexpected TAG after vcs key\r\nLOCATION:Room 1"));
}

// The words of the error follow the language table's string 753.
TEST_F(vCalParse, ErrorTextFollowsTheLanguage) {
    ctx.strings.set(753, QStringLiteral("Unerwartetes TAG nach"));
    const core::TsrError e = errorOf([&] { parse(event({"CATEGORIES:X"})); });
    EXPECT_EQ(e.description(), QStringLiteral("Unerwartetes TAG nach CATEGORIES\r\nCATEGORIES:X"));
}

// A parse error leaves nothing behind: the next entry parses normally, and the
// text keeps what was not read so a caller could go on behind the bad line.
TEST_F(vCalParse, NextEntryParsesNormallyAfterAnError) {
    QString bad = event({"CATEGORIES:MEMO", "DESCRIPTION:after"});
    EXPECT_THROW(formats::ParsEntryFromMobile(ctx, *table, bad), core::TsrError);
    EXPECT_TRUE(bad.startsWith(QStringLiteral("DESCRIPTION:after\r\n")));

    newRow();
    ASSERT_TRUE(parse(event({"CATEGORIES:MEETING", "DTSTART:20261122T100000Z", "DESCRIPTION:fine"})));
    expectFields({{u"Text", u"fine"}, {u"Typ", u"1"}});
}

// An entry that breaks off keeps what was read before the bad line, the texts
// of its start included.
TEST_F(vCalParse, BrokenEntryKeepsWhatWasRead) {
    EXPECT_THROW(parse(event({"DTSTART:20261122T103000Z", "DESCRIPTION:before", "CATEGORIES:MEMO"})), core::TsrError);
    const QString startText = table->dateAsText(core::VbDate(core::DateSerial(2026, 11, 22).value + 10.5 / 24));
    EXPECT_EQ(text(QStringLiteral("StartAsText")), startText);
    EXPECT_EQ(text(QStringLiteral("PimRecPattString")), startText);
    EXPECT_EQ(text(QStringLiteral("Description")), QStringLiteral("before"));
    expectFlags({u"DTStartFlag"});
    EXPECT_TRUE(text(QStringLiteral("Text")).isEmpty()); // the row was never completed
}

// Rows are written in place; while a Find index is kept on a field the reader
// writes, the index still finds the rows by what was read.
TEST_F(vCalParse, FindIndexSeesTheReadRows) {
    EXPECT_FALSE(table->find(QStringLiteral("Text = 'second'"))); // builds the index, leaves EOF
    table->moveFirst();
    ASSERT_TRUE(parse(event({"DTSTART:20261122T100000Z", "DESCRIPTION:first"})));
    tables::vCalCreateNewRecord(*table);
    ASSERT_TRUE(parse(event({"DTSTART:20261123T100000Z", "DESCRIPTION:second"})));

    table->moveFirst();
    ASSERT_TRUE(table->find(QStringLiteral("Text = 'second'")));
    EXPECT_EQ(table->absolutePosition(), 2);
    table->moveFirst();
    ASSERT_TRUE(table->find(QStringLiteral("Text = 'first'")));
    EXPECT_EQ(table->absolutePosition(), 1);
}

// Text after the calendar's end that begins with an unknown key is dropped.
TEST_F(vCalParse, TrailingTextAfterTheCalendarIsDropped) {
    ASSERT_TRUE(parse(event({"DTSTART:20261122T100000Z", "DESCRIPTION:x"}) + QStringLiteral("X-GARBAGE:1\r\nmore")));
    EXPECT_EQ(text(QStringLiteral("Text")), QStringLiteral("x"));
}

// A continuation line keeps its leading blank in the value.
TEST_F(vCalParse, FoldedLinesKeepTheirBlank) {
    ASSERT_TRUE(parse(event({"DTSTART:20261122T100000Z", "DESCRIPTION:first", " second", "  third"})));
    EXPECT_EQ(text(QStringLiteral("Description")), QStringLiteral("first second  third"));
}

// A last line without CR LF yields an empty value: END then fails as the phone's
// old parser did, and the fold loop does not hang on a last blank line.
TEST_F(vCalParse, LastLineWithoutLineEnd) {
    const core::TsrError e = errorOf([&] {
        parse(crlf({"BEGIN:VCALENDAR", "BEGIN:VEVENT"}) + QStringLiteral("END:VEVENT"));
    });
    EXPECT_EQ(e.number(), -1995);

    newRow();
    EXPECT_THROW(parse(crlf({"BEGIN:VCALENDAR", "DESCRIPTION:x"}) + QStringLiteral(" tail")), core::TsrError);
}

// Quoted-printable UTF-8 values are decoded and mark the row; escaped semicolons
// stay in the text, only the first piece is taken, and line breaks become blanks.
TEST_F(vCalParse, DescriptionDecodingAndPieces) {
    ASSERT_TRUE(
        parse(event({"DTSTART:20261122T100000Z",
                     "DESCRIPTION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller=0D=0A=E2=82=AC a\\;b;rest",
                     "SUMMARY:s\\;t;u"})));
    expectFields({{u"Description", u"Müller € a;b"}, {u"Summary", u"s;t"}});
    EXPECT_TRUE(flag(QStringLiteral("UTF8Flag")));
}

// Without Description the shown text is the Summary.
TEST_F(vCalParse, TextFallsBackToSummary) {
    ASSERT_TRUE(parse(event({"DTSTART:20261122T100000Z", "DESCRIPTION:", "SUMMARY:only summary"})));
    expectFields({{u"Text", u"only summary"}, {u"PIMText", u"only summary"}});
}

// An alarm before the start moves Start to it; DTStart keeps its value.
TEST_F(vCalParse, EarlierAlarmMovesTheStart) {
    ASSERT_TRUE(parse(event({"DTSTART:20261122T100000Z", "DTEND:20261122T110000Z", "AALARM:20261122T094500Z"})));
    EXPECT_EQ(when(QStringLiteral("Start")), QDateTime(QDate(2026, 11, 22), QTime(9, 45)));
    EXPECT_EQ(when(QStringLiteral("DTStart")), QDateTime(QDate(2026, 11, 22), QTime(10, 0)));
    EXPECT_TRUE(flag(QStringLiteral("Alarm")));

    // A later audible alarm leaves the start; the display alarm is not looked at then.
    newRow();
    ASSERT_TRUE(parse(event({"DTSTART:20261122T100000Z", "AALARM:20261122T103000Z", "DALARM:20261122T090000Z"})));
    EXPECT_EQ(when(QStringLiteral("Start")), QDateTime(QDate(2026, 11, 22), QTime(10, 0)));

    newRow();
    ASSERT_TRUE(parse(event({"DTSTART:20261122T100000Z", "DALARM:20261122T090000Z"})));
    EXPECT_EQ(when(QStringLiteral("Start")), QDateTime(QDate(2026, 11, 22), QTime(9, 0)));
}

// Without DTSTART the alarms give the start: the earlier of both, or the one there is.
TEST_F(vCalParse, StartFromAlarmsWithoutDtstart) {
    ASSERT_TRUE(parse(event({"AALARM:20261122T083000Z", "DALARM:20261122T080000Z"})));
    EXPECT_EQ(when(QStringLiteral("Start")), QDateTime(QDate(2026, 11, 22), QTime(8, 0)));
    newRow();
    ASSERT_TRUE(parse(event({"DALARM:20261122T080000Z"})));
    EXPECT_EQ(when(QStringLiteral("Start")), QDateTime(QDate(2026, 11, 22), QTime(8, 0)));
    EXPECT_FALSE(flag(QStringLiteral("DTStartFlag")));
}

// An end before the start is moved to the start; a multi-day end counts its days.
TEST_F(vCalParse, EndIsNeverBeforeStart) {
    ASSERT_TRUE(parse(event({"DTSTART:20261122T100000Z", "DTEND:20261121T090000Z"})));
    EXPECT_EQ(when(QStringLiteral("DTEnd")), QDateTime(QDate(2026, 11, 22), QTime(10, 0)));
    EXPECT_EQ(get(QStringLiteral("StartEndDiff")).toInt64(), 0);
    newRow();
    ASSERT_TRUE(parse(event({"DTSTART:20261122T230000Z", "DTEND:20261125T010000Z"})));
    EXPECT_EQ(get(QStringLiteral("StartEndDiff")).toInt64(), 3);
    EXPECT_EQ(when(QStringLiteral("EndDate")), QDateTime(QDate(2026, 11, 25), QTime(0, 0)));
}

// A date that is not the 14 digits (8 for a date alone) is the conversion error.
TEST_F(vCalParse, BadDatesAreTypeMismatch) {
    for (const char* line : {"DTSTART:2026112", "DTSTART:20261322T100000Z", "DTSTART:20261122T250000Z",
                             "DTEND:2026-11-22", "AALARM:", "DALARM:20261122T10000xZ"}) {
        newRow();
        const core::TsrError e = errorOf([&] { parse(event({line})); });
        EXPECT_EQ(e.number(), core::err::TypeMismatch) << line;
    }
    newRow();
    ASSERT_TRUE(parse(event({"DTSTART:20261122"})));
    EXPECT_EQ(when(QStringLiteral("Start")), QDateTime(QDate(2026, 11, 22), QTime(0, 0)));
}

// The rule table, line by line, on a current model; numbers compare as their text.
TEST_F(vCalParse, RuleTable) {
    ctx.phone.MobileModel = QStringLiteral("QX71");
    struct RuleCase {
        const char* rule;
        test::FieldTexts texts;
        int recurring; // -1: not looked at
    };
    const RuleCase cases[] = {
        {"D7 #0",
         {{u"RecurrenceType", u"W"}, {u"RecurrenceIntervall", u"7"}, {u"Weekdaymask", u""}, {u"Serie", u"W"}},
         -1},
        // One digit only.
        {"D12 #0", {{u"RecurrenceIntervall", u"1"}, {u"RecurrenceType", u"D"}, {u"RecurrenceDuration", u"0"}}, -1},
        // The count is not read.
        {"W1 MO TH #5", {{u"Weekdaymask", u"18"}, {u"RecurrenceDuration", u"0"}}, 1},
        {"MD1 15 #0",
         {{u"ModKey", u"D"}, {u"RecurrenceIntervall", u"1"}, {u"DayOfMonth", u"15"}, {u"RecurrenceType", u"M"}},
         -1},
        {"MD3", {{u"RecurrenceIntervall", u"3"}, {u"DayOfMonth", u"0"}}, -1},
        {"M1 20 #0", {{u"ModKey", u""}, {u"DayOfMonth", u"20"}, {u"RecurrenceType", u"M"}}, -1},
        // A monthly rule by position is not kept as a series.
        {"MP1 1+ MO #0", {{u"RecurrenceType", u"D"}}, 0},
        {"YD2 #0", {{u"ModKey", u"D"}, {u"RecurrenceIntervall", u"2"}, {u"RecurrenceType", u"Y"}}, -1},
        {"YM1 #0", {{u"ModKey", u"M"}}, -1},
        {"Y1 #0", {{u"ModKey", u""}}, 1},
        {"Y #0", {{u"ModKey", u"D"}, {u"RecurrenceIntervall", u"1"}}, -1},
        {"X9", {{u"RecurrenceFrequenz", u"X"}, {u"RecurrenceType", u"D"}}, 0},
    };
    for (const RuleCase& c : cases) {
        SCOPED_TRACE(c.rule);
        parseRule(c.rule);
        expectFields(c.texts);
        if (c.recurring >= 0) {
            EXPECT_EQ(flag(QStringLiteral("ISRecurring")), c.recurring == 1);
        }
    }
}

// On the older models a yearly rule with a modifier loses it; a monthly one keeps it.
TEST_F(vCalParse, OlderModelsDropTheYearlyModifier) {
    for (const char* model : {"Q52", "Q33", "R52", "P52"}) {
        ctx.phone.MobileModel = QString::fromUtf8(model);
        parseRule("YD1 #0");
        EXPECT_EQ(text(QStringLiteral("ModKey")), QString()) << model;
        parseRule("YM1 #0");
        EXPECT_EQ(text(QStringLiteral("ModKey")), QString()) << model;
        parseRule("MD1 15 #0");
        EXPECT_EQ(text(QStringLiteral("ModKey")), QStringLiteral("D")) << model;
    }
}

// The series' reference dates: PIMRecPatt is the start's day, MobileRecPattern the start.
TEST_F(vCalParse, SeriesReferenceDates) {
    ASSERT_TRUE(parse(event({"DTSTART:20260105T180000Z", "DTEND:20260105T193000Z", "RRULE:W1 MO TH #0"})));
    EXPECT_EQ(when(QStringLiteral("PIMRecPatt")), QDateTime(QDate(2026, 1, 5), QTime(0, 0)));
    EXPECT_EQ(when(QStringLiteral("MobileRecPattern")), QDateTime(QDate(2026, 1, 5), QTime(18, 0)));
    EXPECT_FALSE(text(QStringLiteral("PimRecPattString")).isEmpty());
    EXPECT_EQ(text(QStringLiteral("StartasText")), table->dateAsText(at(2026, 1, 5, 18, 0)));
}

// With the debug switch the text is shown before it is parsed.
TEST_F(vCalParse, DebugSwitchShowsTheText) {
    ctx.flags.GlobalCommandDebug = true;
    const QString t = event({"DTSTART:20261122T100000Z"});
    ASSERT_TRUE(parse(t));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, t);
}

// A rule number too large for its field is the overflow error, not a wrapped value.
TEST_F(vCalParse, HugeRuleNumberOverflows) {
    const core::TsrError e = errorOf([&] { parse(event({"RRULE:MD99999999999999999999999 5 #0"})); });
    EXPECT_EQ(e.number(), core::err::Overflow);
    newRow();
    ASSERT_TRUE(parse(event({"RRULE:YD12 #0"})));
    EXPECT_EQ(get(QStringLiteral("RecurrenceIntervall")).toInt64(), 12);
}
