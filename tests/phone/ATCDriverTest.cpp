// SPDX-License-Identifier: GPL-3.0-or-later
// The AT-command driver routines through the real serial code against the
// emulated phone: status read, reads, writes, replacing and deleting entries.
#include "phone/ATC.h"
#include "phone/ATCServer.h"
#include "phone/LinkFixture.h"
#include "tables/TSRADODB.h"

#include <QCoreApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QRandomGenerator>

using namespace tsr;
using tsr::test::LinkFixture;

namespace {

// A calendar record of the given length with a recognisable body and 8-bit bytes in it.
QByteArray recordOf(int index, int length) {
    QByteArray head = "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nSUMMARY:Entry " + QByteArray::number(index) +
                      " \xe4\xf6\xfc\x80\r\n";
    const QByteArray tail = "END:VEVENT\r\nEND:VCALENDAR\r\n";
    while (head.size() + tail.size() < length)
        head += char('a' + (head.size() % 26));
    return head + tail;
}

class ATCDriver : public LinkFixture {
protected:
    // Calendar tables with one row that the phone holds (Mobile) or not.
    void calendarWithRow(bool onMobile, int subType) {
        ASSERT_TRUE(tables::CreateInitAndSetAllRS(ctx));
        tables::Recordset& cal = *ctx.tables.RSCalendar;
        tables::vCalCreateNewRecord(cal);
        cal.setValue(QStringLiteral("Mobile"), onMobile);
        cal.setValue(QStringLiteral("SubType"), int32_t(subType));
        cal.setValue(QStringLiteral("EntryID"), QString::number(subType));
        cal.update();
    }
};

} // namespace

// A store counted from 1 to 100 holds 100 entries, and so does one counted from 0 to 99.
TEST_F(ATCDriver, StatusReadGivesIdentificationBoundsAndCapacity) {
    startPhone("--manufacturer Orvane --model QX71 --first 1 --last 100");
    ASSERT_TRUE(phone::ATCTest(ctx));
    ASSERT_TRUE(phone::ATCInfo(ctx));
    EXPECT_EQ(ctx.phone.MobileManufacturer, QStringLiteral("Orvane"));
    EXPECT_EQ(ctx.phone.MobileModel, QStringLiteral("QX71"));
    EXPECT_EQ(ctx.phone.FirstIndex, 1);
    EXPECT_EQ(ctx.phone.LastIndex, 100);
    EXPECT_EQ(ctx.phone.MobileCapacity, 100);
    EXPECT_EQ(ctx.phone.MaxEntries, 100);

    startPhone("--first 0 --last 99");
    ASSERT_TRUE(phone::ATCInfo(ctx));
    EXPECT_EQ(ctx.phone.FirstIndex, 0);
    EXPECT_EQ(ctx.phone.LastIndex, 99);
    EXPECT_EQ(ctx.phone.MobileCapacity, 100);
    EXPECT_EQ(ctx.phone.MaxEntries, 100);
    // An empty record reads as an empty text and is no failure.
    QByteArray text = "left over";
    EXPECT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 7));
    EXPECT_TRUE(text.isEmpty());
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// Every record of a full store reads back byte for byte, and the phone counts as connected.
TEST_F(ATCDriver, ReadsAFullStore) {
    auto& emu = startPhone("--first 1 --last 60");
    QList<QByteArray> seeded;
    for (int i = 1; i <= 60; ++i) {
        seeded << recordOf(i, 150 + QRandomGenerator::global()->bounded(250));
        emu.seed(i, seeded.last());
    }
    ASSERT_TRUE(phone::ATCInfo(ctx));
    for (int i = ctx.phone.FirstIndex; i <= ctx.phone.LastIndex; ++i) {
        QByteArray text;
        ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, i)) << "index " << i;
        EXPECT_EQ(text, seeded[i - 1]) << "index " << i;
    }
    EXPECT_TRUE(ctx.read.MobileConnected);
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A new calendar entry is only written; an entry the phone holds is deleted first, then written.
TEST_F(ATCDriver, WriteNewAndReplaceKnownEntries) {
    auto& emu = startPhone();
    calendarWithRow(false, 12);
    ASSERT_TRUE(phone::ATCWriteAppointment(ctx, recordOf(12, 200), QStringLiteral("12.vcs")));
    EXPECT_EQ(emu.record(12), recordOf(12, 200));
    EXPECT_FALSE(emu.journal().contains(QStringLiteral("AT$ORGD=4,12")));

    ctx.tables.RSCalendar->setValue(QStringLiteral("Mobile"), true);
    emu.clearJournal();
    ASSERT_TRUE(phone::ATCWriteAppointment(ctx, recordOf(12, 300), QStringLiteral("12.vcs")));
    EXPECT_EQ(emu.record(12), recordOf(12, 300));
    EXPECT_EQ(emu.journal(), (QStringList{QStringLiteral("AT$ORGD=4,12"), QStringLiteral("AT$ORGW=4,12,300")}));
    EXPECT_TRUE(ctx.read.MobileConnected);
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A file name other than a calendar file is deleted first unless it is NEW.VCF; a name without "." is index 0.
TEST_F(ATCDriver, FileNamesDecideIndexAndDelete) {
    auto& emu = startPhone("--first 0");
    ASSERT_TRUE(phone::ATCWriteAppointment(ctx, "x", QStringLiteral("new.vcf")));
    EXPECT_EQ(emu.journal().last(), QStringLiteral("AT$ORGW=4,0,1")) << "\"new\" reads as index 0";
    EXPECT_FALSE(emu.journal().contains(QStringLiteral("AT$ORGD=4,0")));
    emu.seed(5, "old");
    ASSERT_TRUE(phone::ATCWriteAppointment(ctx, "fresh", QStringLiteral("5.vcf")));
    EXPECT_EQ(emu.record(5), QByteArray("fresh"));
    EXPECT_TRUE(emu.journal().contains(QStringLiteral("AT$ORGD=4,5")));
    ASSERT_TRUE(phone::ATCWriteAppointment(ctx, "zero", QStringLiteral("NEW")));
    EXPECT_EQ(emu.journal().last(), QStringLiteral("AT$ORGW=4,0,4"));
    // A number without "." is no index either: "12" writes record 0 and leaves 12 alone.
    emu.seed(12, "twelve");
    emu.clearJournal();
    ASSERT_TRUE(phone::ATCWriteAppointment(ctx, "nought", QStringLiteral("12")));
    EXPECT_EQ(emu.journal(), (QStringList{QStringLiteral("AT$ORGD=4,0"), QStringLiteral("AT$ORGW=4,0,6")}));
    EXPECT_EQ(emu.record(12), QByteArray("twelve"));
    EXPECT_EQ(emu.record(0), QByteArray("nought"));
}

// With changes sent at once, a delete takes the entry off the phone, lowers the count and logs the row.
TEST_F(ATCDriver, RemoveDeletesAtOnceAndLogs) {
    auto& emu = startPhone();
    emu.seed(9, recordOf(9, 180));
    calendarWithRow(true, 9);
    ctx.settings.SaveTyp = 1;
    ctx.read.vCalMobileCount = 1;
    ASSERT_TRUE(phone::ATCRemoveEntryFromMobile(ctx, *ctx.tables.RSCalendar));
    EXPECT_FALSE(emu.hasRecord(9));
    EXPECT_EQ(ctx.read.vCalMobileCount, 0);
    EXPECT_TRUE(ctx.read.vCalMobileRead) << "a count of 0 still counts as read";
    ASSERT_EQ(ctx.tables.LogCalendar->recordCount(), 1);
    ctx.tables.LogCalendar->moveFirst();
    EXPECT_EQ(ctx.tables.LogCalendar->value(QStringLiteral("Transfer")).toText(), QStringLiteral("Mobile"));
    EXPECT_TRUE(ctx.tables.LogCalendar->value(QStringLiteral("ErrorDesc")).toText().isEmpty());
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_EQ(ui.busyCursor, (QList<bool>{true, false})) << "the phone's step runs under the busy cursor";
}

// A delete the phone refuses is reported, logged as a failed row, and the cursor comes back.
TEST_F(ATCDriver, AFailedDeleteIsReportedLoggedAndResetsTheCursor) {
    auto& emu = startPhone("--cme 515:$ORGD");
    emu.seed(9, recordOf(9, 180));
    calendarWithRow(true, 9);
    ctx.settings.SaveTyp = 1;
    ctx.read.vCalMobileCount = 1;
    EXPECT_FALSE(phone::ATCRemoveEntryFromMobile(ctx, *ctx.tables.RSCalendar));
    EXPECT_TRUE(emu.hasRecord(9));
    EXPECT_EQ(ctx.read.vCalMobileCount, 1) << "nothing left the phone";
    EXPECT_EQ(ui.busyCursor, (QList<bool>{true, false}));
    ASSERT_FALSE(ui.boxes.isEmpty());
    EXPECT_TRUE(ui.boxes.first().text.contains(QStringLiteral("ATC_E_PHONEBUSY"))) << boxTexts().toStdString();
    ASSERT_EQ(ctx.tables.LogCalendar->recordCount(), 1);
    ctx.tables.LogCalendar->moveFirst();
    EXPECT_EQ(ctx.tables.LogCalendar->value(QStringLiteral("Transfer")).toText(), QStringLiteral("Mobile"));
    EXPECT_TRUE(ctx.tables.LogCalendar->value(QStringLiteral("ErrorDesc"))
                    .toText()
                    .startsWith(QString::number(int32_t(0x80042203))))
        << ctx.tables.LogCalendar->value(QStringLiteral("ErrorDesc")).toText().toStdString();
    ASSERT_EQ(ctx.tables.LogErrors->recordCount(), 1);
    ctx.tables.LogErrors->moveFirst();
    EXPECT_EQ(ctx.tables.LogErrors->value(QStringLiteral("Proc")).toText(), QStringLiteral("ATCRemoveEntryFromMobile"));
}

// With changes kept back, nothing reaches the phone: the row and the pending table note the delete.
TEST_F(ATCDriver, RemoveIsDeferredWhenChangesAreKeptBack) {
    auto& emu = startPhone();
    emu.seed(9, recordOf(9, 180));
    calendarWithRow(true, 9);
    ctx.settings.SaveTyp = 2;
    ctx.read.vCalMobileCount = 3;
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), false);
    ASSERT_TRUE(phone::ATCRemoveEntryFromMobile(ctx, *ctx.tables.RSCalendar));
    EXPECT_TRUE(emu.hasRecord(9));
    EXPECT_FALSE(emu.journal().contains(QStringLiteral("AT$ORGD=4,9")));
    tables::Recordset& cal = *ctx.tables.RSCalendar;
    EXPECT_EQ(cal.value(QStringLiteral("TransferMode")).toInt32(), 2);
    EXPECT_EQ(cal.value(QStringLiteral("Transfernew")).toInt32(), 2);
    tables::Recordset& pending = *ctx.tables.RSCalendarPending;
    ASSERT_EQ(pending.recordCount(), 1);
    pending.moveFirst();
    EXPECT_EQ(pending.value(QStringLiteral("EntryID")).toText(), QStringLiteral("9"));
    EXPECT_FALSE(pending.value(QStringLiteral("PIM")).toBool());
    EXPECT_TRUE(pending.value(QStringLiteral("Mobile")).toBool());
    EXPECT_TRUE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave")));
    EXPECT_EQ(ctx.read.vCalMobileCount, 2);

    // During a transfer run the same wish acts at once and leaves the count to the run.
    ctx.flags.GlobalTransferRun = true;
    ASSERT_TRUE(phone::ATCRemoveEntryFromMobile(ctx, cal));
    EXPECT_FALSE(emu.hasRecord(9));
    EXPECT_EQ(ctx.read.vCalMobileCount, 2);
}

// A delete overtakes a write that was noted for the same entry: the write leaves the pending table.
TEST_F(ATCDriver, DeferredDeleteDropsANotedWrite) {
    startPhone();
    calendarWithRow(true, 4);
    ctx.settings.SaveTyp = 2;
    tables::Recordset& pending = *ctx.tables.RSCalendarPending;
    tables::vCalCreateNewRecord(pending);
    pending.setValue(QStringLiteral("EntryID"), QStringLiteral("4"));
    pending.setValue(QStringLiteral("TransferMode"), int32_t(1));
    pending.update();
    ASSERT_TRUE(phone::ATCRemoveEntryFromMobile(ctx, *ctx.tables.RSCalendar));
    ASSERT_EQ(pending.recordCount(), 1);
    pending.moveFirst();
    EXPECT_EQ(pending.value(QStringLiteral("TransferMode")).toInt32(), 2) << "only the delete is left";
}

// With TESSARINE_DUMP naming a listening socket, a read sends its item as one line; without it, nothing.
TEST_F(ATCDriver, DumpHookSendsReadItems) {
    auto& emu = startPhone();
    emu.seed(3, "A\tB\r\nC");
    QLocalServer monitor;
    const QString name = QStringLiteral("tessarine-dump-test-%1").arg(QCoreApplication::applicationPid());
    QLocalServer::removeServer(name);
    ASSERT_TRUE(monitor.listen(name));
    qputenv("TESSARINE_DUMP", name.toLocal8Bit());
    QByteArray text;
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 3));
    qunsetenv("TESSARINE_DUMP");
    ASSERT_TRUE(monitor.waitForNewConnection(2000));
    QLocalSocket* client = monitor.nextPendingConnection();
    QByteArray line;
    while (!line.endsWith('\n') && (client->bytesAvailable() > 0 || client->waitForReadyRead(2000)))
        line += client->readAll();
    EXPECT_EQ(line, QByteArray("Read:\t\t3\tA\\tB\\r\\nC\n"));

    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 3));
    EXPECT_FALSE(monitor.waitForNewConnection(300)) << "no monitor named, no dump";
}
