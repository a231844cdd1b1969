// SPDX-License-Identifier: GPL-3.0-or-later
// The log as text, as a file and as a print-out: the summary, the tables with
// their bold heads, logFile.rtf read back by a real RTF reader, and the rule
// for printing an empty log.
#include "log/LogFile.h"
#include "log/LogFixture.h"
#include "log/LogText.h"
#include "log/RtfWriter.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace tsr;
using core::TsrError;

namespace {

// The document as unrtf reads it: its text, or its HTML rendering. Tests compare the text
// simplified, every run of white space as one blank, so that tabs and breaks compare plainly.
QString unrtf(const QString& path, const QString& mode) {
    QProcess p;
    p.start(QStringLiteral("unrtf"), {mode, path});
    if (!p.waitForFinished(30000) || p.exitCode() != 0)
        return QStringLiteral("<unrtf failed: %1>").arg(QString::fromLocal8Bit(p.readAllStandardError()));
    return QString::fromUtf8(p.readAllStandardOutput());
}

QString plain(const core::RichText& text) {
    QString s;
    for (const auto& run : text)
        s += run.text;
    return s;
}

class LogFileTest : public test::LogFixture {
protected:
    LogFileTest() { ctx.settings.HomeDir = home.path() + QStringLiteral("/home"); }

    // Two calendar transfers (one failed), one contact and one program error.
    void fillLog() {
        addCalendarEntry(core::DateSerial(2026, 4, 2), QStringLiteral("14:30"), QStringLiteral("1"),
                         QStringLiteral("Team {weekly}"));
        logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"));
        addCalendarEntry(core::DateSerial(2026, 4, 3), QStringLiteral("08:00"), QStringLiteral("2"),
                         QStringLiteral("Jürgen"));
        ctx.flags.GlobalSilent = true;
        logEntry(calendar, QStringLiteral("PIM"), QStringLiteral("changed"),
                 TsrError(5, QStringLiteral("src"), QStringLiteral("Invalid")));
        addContact(QStringLiteral("Berger"), QString(), QStringLiteral("0301234"), QString());
        logEntry(contacts, QStringLiteral("Mobile"), QStringLiteral("deleted"));
        log::logWriteError(ctx, TsrError(91, QStringLiteral("x"), QStringLiteral("Object not set")), QString(),
                           QStringLiteral("DOROutlook"), QStringLiteral("Check4Outlook"));
    }

    QTemporaryDir home;
};

// The summary text: the title, then each row as label, two tabs, value.
TEST_F(LogFileTest, SummaryTextHasLabelsAndValues) {
    fillLog();
    log::LogInitlogSummaryText(ctx);
    EXPECT_EQ(ctx.log.LogSummaryText, QStringLiteral("Summary\r\n"
                                                     "Transfered data:\t\t3\r\n"
                                                     "Date of transfers:\t\t14.03.26\r\n"
                                                     "Start of transfer:\t\t09:26:53\r\n"
                                                     "End of transfer:\t\t09:26:53\r\n"
                                                     "Transfer errors:\t\t1\r\n"
                                                     "Program errors:\t\t1"));
}

// The printable log: summary first with details, bold heads per table with rows, tables without rows left out.
TEST_F(LogFileTest, ComposedTextHasBoldHeadsAndRowsAndKeepsCursor) {
    addCalendarEntry(core::DateSerial(2026, 4, 2), QStringLiteral("14:30"), QString(), QStringLiteral("Memo A"));
    logEntry(calendar, QStringLiteral("Mobile"), QStringLiteral("created"));
    logEntry(calendar, QStringLiteral("PIM"), QStringLiteral("created"));
    ctx.tables.LogCalendar->moveFirst();

    const core::RichText text = log::logGridZusammensetzung(ctx, false);
    ASSERT_EQ(text.size(), 3);
    EXPECT_TRUE(text[0].bold);
    EXPECT_EQ(text[0].text, QStringLiteral("Destination\tAction\tTime of transfer\tEntry date\tEntry time\t"
                                           "Description\tEntry type\tError\tError description"));
    EXPECT_FALSE(text[2].bold);
    EXPECT_EQ(text[2].text,
              QStringLiteral("Mobile\tcreated\t14.03.26 09:26:53\t02.04.26\t14:30:00\tMemo A\tMemo\tNo\t\r\n"
                             "PIM\tcreated\t14.03.26 09:26:53\t02.04.26\t14:30:00\tMemo A\tMemo\tNo\t\r\n"));
    EXPECT_EQ(ctx.tables.LogCalendar->absolutePosition(), 1);

    log::LogInitlogSummaryText(ctx);
    const core::RichText details = log::logGridZusammensetzung(ctx, true);
    ASSERT_GE(details.size(), 2);
    EXPECT_EQ(details[0].text, QStringLiteral("Summary"));
    EXPECT_TRUE(details[0].bold);
    EXPECT_FALSE(details[1].bold);
    EXPECT_TRUE(details[1].text.startsWith(QStringLiteral("\r\nTransfered data:\t\t2\r\n")));
    EXPECT_TRUE(details[1].text.endsWith(QStringLiteral("Program errors:\t\t0\r\n\r\n")));
    EXPECT_EQ(plain(details).count(QStringLiteral("Contact name")), 0);
    EXPECT_EQ(plain(details).count(QStringLiteral("Time of error")), 0);
}

// The RTF writer escapes the RTF specials and writes characters beyond ASCII as Unicode escapes.
TEST_F(LogFileTest, RtfEscapesSpecialsAndUnicode) {
    const QByteArray rtf =
        log::richTextToRtf({{QStringLiteral("a\\b{c}"), false}, {QStringLiteral("Jürgen €\tx\r\ny 日z"), true}},
                           QStringLiteral("Arial"), 12);
    EXPECT_TRUE(rtf.startsWith("{\\rtf1"));
    EXPECT_TRUE(rtf.contains("\\fs24 "));
    EXPECT_TRUE(rtf.contains("a\\\\b\\{c\\}"));
    EXPECT_TRUE(rtf.contains("\\b J\\u252\\'fcrgen \\u8364\\'80\\tab x\\par\r\ny \\u26085\\'3fz\\b0 "));
    EXPECT_EQ(rtf.count('{') - rtf.count("\\{"), rtf.count('}') - rtf.count("\\}"));

    const QString path = home.filePath(QStringLiteral("escape.rtf"));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(rtf);
    f.close();
    const QString html = unrtf(path, QStringLiteral("--html"));
    EXPECT_TRUE(html.contains(QStringLiteral("a\\b{c}"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("<b>J&uuml;rgen &euro;"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("y &#26085;z</b>"))) << html.toStdString();
}

// logFile.rtf read back by unrtf shows the summary, the heads of the three tables and their rows.
TEST_F(LogFileTest, LogFileReadsBackWithTitlesAndRows) {
    fillLog();
    ASSERT_TRUE(log::logWriteFile(ctx));
    const QString path = log::logFilePath(ctx);
    EXPECT_EQ(path, home.path() + QStringLiteral("/home/logFile.rtf"));
    const QString text = unrtf(path, QStringLiteral("--text")).simplified();

    EXPECT_TRUE(
        text.contains(QStringLiteral("Summary Transfered data: 3 Date of transfers: 14.03.26 Start of transfer: "
                                     "09:26:53 End of transfer: 09:26:53 Transfer errors: 1 Program errors: 1")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Destination Action Time of transfer Entry date Entry time Description "
                                             "Entry type Error Error description")));
    EXPECT_TRUE(
        text.contains(QStringLiteral("Mobile created 14.03.26 09:26:53 02.04.26 14:30:00 Team {weekly} Meeting No")));
    EXPECT_TRUE(text.contains(QStringLiteral("PIM changed 14.03.26 09:26:53 03.04.26 08:00:00")));
    EXPECT_TRUE(text.contains(QStringLiteral("Birthday Yes 5Invalid")));
    EXPECT_TRUE(text.contains(QStringLiteral("Destination Action Time of transfer Entry date Contact name "
                                             "Contact phone number Error Error description")));
    EXPECT_TRUE(text.contains(QStringLiteral("Mobile deleted 14.03.26 09:26:53 Berger 0301234 No")));
    EXPECT_TRUE(text.contains(QStringLiteral("Time of error Error number Error description Module name Function name "
                                             "14.03.26 09:26:53 91 Object not set DOROutlook Check4Outlook")));

    const QString html = unrtf(path, QStringLiteral("--html"));
    EXPECT_TRUE(html.contains(QStringLiteral("J&uuml;rgen")));
    EXPECT_TRUE(html.contains(QStringLiteral("<b>Summary</b>")));
    EXPECT_TRUE(html.contains(QStringLiteral("<b>Time of error")));
}

// An empty log is written with its titles only, and a new write replaces the former file.
TEST_F(LogFileTest, EmptyLogHasTitlesOnlyAndReplacesFormerFile) {
    QDir().mkpath(ctx.settings.HomeDir);
    QFile old(log::logFilePath(ctx));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(20000, 'x'));
    old.close();

    ASSERT_TRUE(log::logWriteFile(ctx));
    const QString text = unrtf(log::logFilePath(ctx), QStringLiteral("--text")).simplified();
    EXPECT_TRUE(text.endsWith(QStringLiteral("Summary Transfered data: 0 Date of transfers: Start of transfer: End of "
                                             "transfer: Transfer errors: 0 Program errors: 0")))
        << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("Destination")));
    EXPECT_FALSE(text.contains(QStringLiteral("xxxx")));
    EXPECT_LT(QFileInfo(log::logFilePath(ctx)).size(), 2000);
}

// A home folder that cannot be written reports the error and gives false; nothing crashes.
TEST_F(LogFileTest, UnwritableHomeIsReported) {
    QFile blocker(home.filePath(QStringLiteral("file")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    ctx.settings.HomeDir = blocker.fileName();
    EXPECT_FALSE(log::logWriteFile(ctx));
    ASSERT_EQ(ctx.tables.LogErrors->recordCount(), 1);
    ctx.tables.LogErrors->moveFirst();
    EXPECT_EQ(ctx.tables.LogErrors->value(QStringLiteral("Proc")).toText(), QStringLiteral("logWriteFile"));
    EXPECT_EQ(ui.boxes.size(), 1);
}

// Printing: Arial 12; an empty log prints with "all" but tells "No data for printing" otherwise.
TEST_F(LogFileTest, PrintModesAndEmptyLog) {
    log::logPrint(ctx, QStringLiteral("details"));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("No data for printing"));
    EXPECT_TRUE(ui.printed.isEmpty());

    log::logPrint(ctx, QStringLiteral("all"));
    EXPECT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.printedFont, QStringLiteral("Arial"));
    EXPECT_EQ(ui.printedSize, 12);
    ASSERT_FALSE(ui.printed.isEmpty());
    EXPECT_EQ(ui.printed[0].text, QStringLiteral("Summary"));

    fillLog();
    log::logPrint(ctx, QStringLiteral("details"));
    EXPECT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.printed[0].bold);
    EXPECT_TRUE(ui.printed[0].text.startsWith(QStringLiteral("Destination\t")));
    EXPECT_FALSE(plain(ui.printed).contains(QStringLiteral("Transfered data:")));

    // The summary alone, as the summary window prints it.
    log::logPrintSummary(ctx);
    ASSERT_EQ(ui.printed.size(), 1);
    EXPECT_TRUE(ui.printed[0].text.startsWith(QStringLiteral("Summary\r\nTransfered data:\t\t3\r\n")));
    EXPECT_EQ(ui.printedSize, 12);
}

} // namespace
