// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the log: error rows keep one line, transfer rows carry the entry's
// fields in the current language, and LogHasError follows the last transfer
// except while an AutoSync or an editor's transfer runs.
#include "log/LogWrite.h"

#include "core/ErrorReport.h"
#include "log/LogFixture.h"
#include <cmath>

using namespace tsr;
using core::TsrError;

namespace {

using LogWriteTest = test::LogFixture;

QString field(tables::Recordset& t, const char16_t* name) {
    return t.value(QString::fromUtf16(name)).toText();
}

// The start-up makes the log tables with their fields in column order, the three dates as date fields.
TEST_F(LogWriteTest, TablesHaveTheirColumnsInOrder) {
    ASSERT_TRUE(created);
    EXPECT_TRUE(ctx.flags.GlobalLogReady);
    auto names = [](const tables::Recordset& t) {
        QStringList n;
        for (int i = 0; i < t.fieldCount(); ++i)
            n << t.fieldName(i);
        return n.join(u',');
    };
    EXPECT_EQ(names(*ctx.tables.LogCalendar),
              QStringLiteral("Transfer,Action,SynchDate,Date,Time,Text,Typ,Error,ErrorDesc"));
    EXPECT_EQ(names(*ctx.tables.LogContacts),
              QStringLiteral("Transfer,Action,SynchDate,Date,Name,Phone,Error,ErrorDesc"));
    EXPECT_EQ(names(*ctx.tables.LogErrors), QStringLiteral("Date,ErrorNum,ErrorDesc,Modul,Proc"));
    EXPECT_EQ(ctx.tables.LogCalendar->fieldType(4), core::FieldType::Date);
    EXPECT_EQ(ctx.tables.LogErrors->fieldType(0), core::FieldType::Text);
}

// A text of three lines leaves only its last line, followed by a blank.
TEST_F(LogWriteTest, ErrorRowKeepsOnlyTheLastLine) {
    log::logWriteError(ctx, TsrError(-1991, QStringLiteral("utf8_2_unicode"), QStringLiteral("bad byte")),
                       QStringLiteral("first\r\nsecond\r\nthird"), QStringLiteral("vCard"), QStringLiteral("Pars"));
    log::logWriteError(ctx, TsrError(5, QString(), QStringLiteral("one\ntwo")), QString(), QStringLiteral("A"),
                       QStringLiteral("B"));
    log::logWriteError(ctx, TsrError(5, QString(), QString()), QStringLiteral("hint only"), QStringLiteral("A"),
                       QStringLiteral("B"));
    auto& t = *ctx.tables.LogErrors;
    ASSERT_EQ(t.recordCount(), 3);
    t.moveFirst();
    expectRow(t, {{u"ErrorDesc", u"third : bad byte "}, {u"ErrorNum", u"-1991"}, {u"Date", u"14.03.26 09:26:53"}});
    t.moveNext();
    EXPECT_EQ(field(t, u"ErrorDesc"), QStringLiteral("two "));
    t.moveNext();
    EXPECT_EQ(field(t, u"ErrorDesc"), QStringLiteral("hint only "));
    EXPECT_EQ(ctx.log.LogProgramErrors, 3);
    EXPECT_TRUE(ui.refreshed.contains(2));
}

// An error before the log tables exist is shown but not logged.
TEST_F(LogWriteTest, ErrorBeforeLogTablesIsShownNotLogged) {
    ctx.flags.GlobalLogReady = false;
    core::ErrorReport(ctx, TsrError(-1989, QStringLiteral("Test4ADO"), QStringLiteral("no tables")),
                      QStringLiteral("TSRADODB"), QStringLiteral("CreateInitAndSetAllRS"));
    EXPECT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ctx.tables.LogErrors->recordCount(), 0);
    EXPECT_EQ(ctx.log.LogProgramErrors, 0);
}

// A good calendar transfer: destination, action and type in the current language, the entry's date and time.
TEST_F(LogWriteTest, CalendarRowCarriesEntryFieldsLocalised) {
    ctx.strings.set(529, QStringLiteral("erstellt"));
    ctx.strings.set(812, QStringLiteral("Besprechung"));
    ctx.strings.set(801, QStringLiteral("Nein"));
    addCalendarEntry(core::DateSerial(2026, 4, 2), QStringLiteral("14:30"), QStringLiteral("1"),
                     QStringLiteral("Team"));
    logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"));

    auto& t = *ctx.tables.LogCalendar;
    ASSERT_EQ(t.recordCount(), 1);
    EXPECT_EQ(ctx.tables.LogContacts->recordCount(), 0);
    t.moveFirst();
    expectRow(t, {{u"Transfer", u"Mobile"}, {u"Action", u"erstellt"}});
    EXPECT_EQ(t.value(QStringLiteral("SynchDate")).toDate(), ctx.clock.Now());
    EXPECT_EQ(t.value(QStringLiteral("Date")).toDate(), core::DateSerial(2026, 4, 2));
    EXPECT_EQ(t.value(QStringLiteral("Time")).toDate(), core::TimeSerial(14, 30, 0));
    expectRow(t, {{u"Text", u"Team"}, {u"Typ", u"Besprechung"}, {u"Error", u"Nein"}, {u"ErrorDesc", u""}});
    EXPECT_EQ(ctx.log.LogStart, QStringLiteral("09:26:53"));
    EXPECT_EQ(ctx.log.LogEnd, QStringLiteral("09:26:53"));
    EXPECT_EQ(ctx.log.LogDate, QStringLiteral("14.03.26"));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// The four types read as Memo, Meeting, Birthday, Call; any other value leaves the type empty.
TEST_F(LogWriteTest, CalendarTypesAndUnknownType) {
    const std::pair<const char16_t*, const char16_t*> types[] = {
        {u"", u"Memo"}, {u"1", u"Meeting"}, {u"2", u"Birthday"}, {u"3", u"Call"}, {u"4", u""}, {u"x", u""}};
    for (auto [typ, shown] : types) {
        addCalendarEntry(core::DateSerial(2026, 1, 1), QString(), QString::fromUtf16(typ), QStringLiteral("t"));
        logEntry(calendar, QStringLiteral("PIM"), QStringLiteral("changed"));
        auto& t = *ctx.tables.LogCalendar;
        t.moveLast();
        EXPECT_EQ(field(t, u"Typ"), QString::fromUtf16(shown)) << "type " << QString::fromUtf16(typ).toStdString();
        EXPECT_EQ(field(t, u"Action"), QStringLiteral("changed"));
    }
}

// Contact rows: the last name, and the work number for a company, the home number otherwise.
TEST_F(LogWriteTest, ContactRowNameAndPhoneRules) {
    addContact(QStringLiteral("Berger"), QStringLiteral("ACME"), QStringLiteral("111"), QStringLiteral("222"));
    logEntry(contacts, QStringLiteral("Mobile"), QStringLiteral("deleted"));
    addContact(QStringLiteral("Stein"), QString(), QStringLiteral("333"), QStringLiteral("444"));
    logEntry(contacts, QStringLiteral("PIM"), QStringLiteral("created"));

    auto& t = *ctx.tables.LogContacts;
    ASSERT_EQ(t.recordCount(), 2);
    EXPECT_EQ(ctx.tables.LogCalendar->recordCount(), 0);
    t.moveFirst();
    expectRow(t, {{u"Name", u"Berger"}, {u"Phone", u"222"}, {u"Action", u"deleted"}});
    t.moveNext();
    expectRow(t, {{u"Name", u"Stein"}, {u"Phone", u"333"}, {u"Transfer", u"PIM"}});
}

// A failed transfer counts, sets LogHasError and asks with OK and Cancel; a good one clears the flag again.
TEST_F(LogWriteTest, FailedRowThenGoodRowClearsLogHasError) {
    addCalendarEntry(core::DateSerial(2026, 4, 2), QStringLiteral("08:00"), QString(), QStringLiteral("Dentist"));
    logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"),
             TsrError(-2147212778, QStringLiteral("ATCServer"), QStringLiteral("Memory full")));
    auto& t = *ctx.tables.LogCalendar;
    t.moveLast();
    expectRow(t, {{u"Error", u"Yes"}, {u"ErrorDesc", u"-2147212778Memory full"}});
    EXPECT_TRUE(ctx.log.LogHasError);
    EXPECT_EQ(ctx.log.LogErrorCount, 1);
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].buttons, core::MsgButtons::OKCancel);
    EXPECT_EQ(ui.boxes[0].icon, core::MsgIcon::Exclamation);
    EXPECT_EQ(ui.boxes[0].title, QStringLiteral("An error in:Tessarine:Mobile"));
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Number:-2147212778\r\nDescription:Memory full\r\n"
                                               "Location:ATCServer:Mobile:SendSingleEntry"));

    // The answer Cancel changes nothing.
    ui.answer(core::MsgResult::Cancel);
    logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("changed"),
             TsrError(-2147212778, QStringLiteral("ATCServer"), QStringLiteral("Memory full")));
    EXPECT_EQ(ctx.log.LogErrorCount, 2);
    EXPECT_EQ(ctx.tables.LogCalendar->recordCount(), 2);

    ctx.clock.setFixed(QDateTime(QDate(2026, 3, 14), QTime(9, 40, 0)));
    logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("changed"));
    EXPECT_FALSE(ctx.log.LogHasError);
    EXPECT_EQ(ctx.log.LogErrorCount, 2);
    EXPECT_EQ(ctx.log.LogStart, QStringLiteral("09:26:53"));
    EXPECT_EQ(ctx.log.LogEnd, QStringLiteral("09:40:00"));
    EXPECT_EQ(ui.boxes.size(), 2);
}

// During an AutoSync or an editor's transfer a good row leaves LogHasError set, and a failed row shows no box.
TEST_F(LogWriteTest, AutoSyncAndEditorKeepLogHasError) {
    addCalendarEntry(core::DateSerial(2026, 4, 2), QStringLiteral("08:00"), QString(), QStringLiteral("x"));
    for (bool* flag : {&ctx.log.AutoSyncRunning, &ctx.log.EditorTransferRunning}) {
        *flag = true;
        ctx.log.LogHasError = false;
        logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"),
                 TsrError(6, QStringLiteral("src"), QStringLiteral("Overflow")));
        EXPECT_TRUE(ctx.log.LogHasError);
        logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"));
        EXPECT_TRUE(ctx.log.LogHasError);
        *flag = false;
    }
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_EQ(ctx.log.LogErrorCount, 2);
    logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"));
    EXPECT_FALSE(ctx.log.LogHasError);
}

// A failed row in a silent run raises no box, yet counts; a description without a number still counts as failed.
TEST_F(LogWriteTest, SilentFailedRowCountsWithoutBox) {
    ctx.flags.GlobalSilent = true;
    addContact(QStringLiteral("Berger"), QString(), QStringLiteral("1"), QString());
    logEntry(contacts, QStringLiteral("Mobile"), QStringLiteral("created"),
             TsrError(13, QStringLiteral("src"), QStringLiteral("Type mismatch")));
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_TRUE(ctx.log.LogHasError);

    ctx.flags.GlobalSilent = false;
    logEntry(contacts, QStringLiteral("Mobile"), QStringLiteral("created"),
             TsrError(0, QStringLiteral("src"), QStringLiteral("refused")));
    EXPECT_EQ(ctx.log.LogErrorCount, 2);
    EXPECT_TRUE(ui.boxes.isEmpty()); // number 0: no box
    auto& t = *ctx.tables.LogContacts;
    t.moveLast();
    EXPECT_EQ(field(t, u"ErrorDesc"), QStringLiteral("0refused"));
}

// An entry table without a current row is reported, and no half row is left in the log.
TEST_F(LogWriteTest, EntryWithoutCurrentRowLeavesNoRow) {
    addCalendarEntry(core::DateSerial(2026, 4, 2), QStringLiteral("08:00"), QString(), QStringLiteral("x"));
    calendar.moveNext();
    ASSERT_TRUE(calendar.eof());
    logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"));
    EXPECT_EQ(ctx.tables.LogCalendar->recordCount(), 0);
    ASSERT_EQ(ctx.tables.LogErrors->recordCount(), 1);
    ctx.tables.LogErrors->moveFirst();
    EXPECT_EQ(ctx.tables.LogErrors->value(QStringLiteral("Proc")).toText(), QStringLiteral("logWriteEntry"));
    EXPECT_TRUE(ctx.log.LogStart.isEmpty());
}

// The entry's time is read as a typed time in the user's format; what is not typed comes from the time now.
TEST_F(LogWriteTest, EntryTimeReadsInTheUsersFormat) {
    auto loggedTime = [&](const QString& typed) {
        addCalendarEntry(core::DateSerial(2026, 1, 1), typed, QString(), QStringLiteral("t"));
        logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"));
        ctx.tables.LogCalendar->moveLast();
        // In whole seconds of the day: the reading works on the floating day count.
        return std::lround(ctx.tables.LogCalendar->value(QStringLiteral("Time")).toDate().value * 86400);
    };
    auto seconds = [](int h, int m, int s) { return long(h * 3600 + m * 60 + s); };
    EXPECT_EQ(loggedTime(QStringLiteral("07:05:09")), seconds(7, 5, 9));
    EXPECT_EQ(loggedTime(QString()), seconds(9, 26, 53));
    ctx.formats.TimeFormat = QStringLiteral("hh.mm");
    ctx.formats.TimeChar = QStringLiteral(".");
    // The seconds the format leaves out come from the time now.
    EXPECT_EQ(loggedTime(QStringLiteral("18.45")), seconds(18, 45, 53));
}

} // namespace
