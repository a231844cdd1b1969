// SPDX-License-Identifier: GPL-3.0-or-later
// The phone's roads under load, against the emulated phone at 115200 baud with
// 2 ms of thinking time a command:
//  - the calendar read road: 500 records of 150-400 bytes read into a table
//    that already holds 5,000 rows from the store, every record paired or
//    appended and searched for in the store;
//  - a transfer run of 200 pending changes, 100 to the phone and 100 to the store.
// Each beside its lower bound: every byte of the dialogue at line rate plus the
// thinking time, and for the run the store's own time to write the same items.
#include "core/Context.h"
#include "core/SilentUserInterface.h"
#include "phone/ATC.h"
#include "phone/EmulatedPhone.h"
#include "pim/DOROutlookSession.h"
#include "pim/Pim.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/MobileWrite.h"
#include "roads/Transfer.h"
#include "tables/TSRADODB.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <cstdio>

using namespace tsr;

namespace {

constexpr int kBaud = 115200;
constexpr int kLatencyMs = 2;
constexpr int kRecords = 500;
constexpr int kStoreRows = 5000;
constexpr int kChanges = 100; // to each side
const double kBytesPerSecond = kBaud / 10.0;

QDate dayOf(int n) {
    return QDate(2026, 3, 1).addDays(n % 60);
}

// A phone record of 150-400 bytes; the even ones have a twin in the store.
QByteArray recordOf(QRandomGenerator& random, int index) {
    const int length = 150 + int(random.bounded(251));
    const QByteArray stamp = dayOf(index).toString(QStringLiteral("yyyyMMdd")).toLatin1() + 'T' +
                             QByteArray::number(7 + index % 12).rightJustified(2, '0') + "0000Z";
    QByteArray r = "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nCATEGORIES:MISCELLANEOUS\r\nDTSTART:" + stamp +
                   "\r\nDTEND:" + stamp + "\r\nDESCRIPTION:Entry " + QByteArray::number(index) +
                   (index % 2 ? " on the phone " : " in both places ");
    const QByteArray tail = "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
    while (r.size() + tail.size() < length)
        r += char(0x61 + random.bounded(26));
    return r + tail;
}

QByteArray descriptionOf(const QByteArray& record) {
    const int from = record.indexOf("DESCRIPTION:") + 12;
    return record.mid(from, record.indexOf("\r\n", from) - from);
}

// The bytes of one read and of one write as the dialogue carries them.
qint64 readBytes(int index, qsizetype length) {
    const QByteArray n = QByteArray::number(index);
    return ("AT$ORGR=4," + n + "\r").size() + ("\r\n$ORGR: " + n + "," + QByteArray::number(length) + "\r\n").size() +
           length + 2 + 6;
}
qint64 writeBytes(int index, qsizetype length) {
    return ("AT$ORGW=4," + QByteArray::number(index) + "," + QByteArray::number(length) + "\r").size() + 4 + length + 6;
}

double bound(qint64 bytes, int commands) {
    return double(bytes) / kBytesPerSecond + commands * kLatencyMs / 1000.0;
}

struct Road {
    QTemporaryDir dir;
    core::SilentUserInterface ui;
    core::Context ctx{ui};
    test::EmulatedPhone phone{{QStringLiteral("--baud"), QString::number(kBaud), QStringLiteral("--latency"),
                               QString::number(kLatencyMs), QStringLiteral("--first"), QStringLiteral("1"),
                               QStringLiteral("--last"), QString::number(kRecords + kChanges)}};
    QList<QByteArray> records;

    Road() {
        ctx.flags.GDX_Check = true;
        ctx.flags.GlobalTimeOut = 7500;
        ctx.options.port = phone.link();
        ctx.options.config = dir.path() + QStringLiteral("/config");
        ctx.options.pim = dir.path() + QStringLiteral("/pim");
        ctx.settings.HomeDir = dir.path();
        ctx.formats.DateFormat = QStringLiteral("dd.mm.yyyy");
        ctx.formats.TimeFormat = QStringLiteral("hh:mm:ss");
        ctx.formats.GridTimeStyle = QStringLiteral("hh:mm");
        ctx.flags.GlobalStartDate = core::DateSerial(2026, 3, 1);
        ctx.flags.GlobalEndDate = core::VbDate(core::DateSerial(2026, 4, 29).value + 86399.0 / 86400.0);
        tables::CreateInitAndSetAllRS(ctx);
        pim::Check4Outlook(ctx);
        phone::ATCTest(ctx);
        QRandomGenerator random(20261123);
        for (int i = 1; i <= kRecords; ++i) {
            records << recordOf(random, i);
            phone.seed(i, records.last());
        }
        auto items = calendarItems();
        for (int i = 0; i < kStoreRows; ++i) {
            const bool twin = i < kRecords && i % 2 == 0 && i > 0;
            const int n = twin ? i : 100000 + i;
            auto a = pim::asAppointment(items->Add());
            const QDate day = dayOf(n);
            const core::VbDate start(core::fromQDate(day).value + (twin ? 7 + n % 12 : 6) / 24.0 +
                                     (twin ? 0 : (i % 50) / 1440.0));
            a->setStart(start);
            a->setEnd(start);
            a->setSubject(twin ? QString::fromLatin1(descriptionOf(records[n - 1]))
                               : QStringLiteral("Store appointment %1").arg(i));
            a->Save();
        }
        roads::vCalReadOutlook(ctx, *ctx.tables.RSCalendar, true);
    }

    std::shared_ptr<pim::Items> calendarItems() {
        return ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder(pim::olFolderCalendar)->Items();
    }
};

void calendarReadRoad(Road& r) {
    QElapsedTimer clock;
    clock.start();
    const bool ok = roads::vCalReadMobile(r.ctx);
    const double seconds = clock.nsecsElapsed() / 1e9;
    qint64 bytes = 0;
    for (int i = 1; i <= kRecords + kChanges; ++i)
        bytes += readBytes(i, i <= kRecords ? r.records[i - 1].size() : 0);
    const double b = bound(bytes, kRecords + kChanges);
    int paired = 0;
    tables::Recordset& t = *r.ctx.tables.RSCalendar;
    for (t.moveFirst(); !t.eof(); t.moveNext())
        paired += t.value(QStringLiteral("EntryType")).toInt32() == 3;
    std::printf("calendar read road: %s, %d records, %d rows, %d paired: %.2f s, bound %.2f s, %+.1f %% (goal: "
                "within 5 %%)\n",
                ok ? "read" : "FAILED", int(r.ctx.read.vCalMobileCount), t.recordCount(), paired, seconds, b,
                (seconds / b - 1) * 100);
}

void transferRun(Road& r) {
    r.ctx.settings.SaveTyp = 2;
    tables::Recordset& t = *r.ctx.tables.RSCalendar;
    // 100 phone rows changed for the phone, 100 store rows changed for the store.
    int toPhone = 0, toStore = 0;
    for (t.moveFirst(); !t.eof() && (toPhone < kChanges || toStore < kChanges); t.moveNext()) {
        const int32_t type = t.value(QStringLiteral("EntryType")).toInt32();
        if (type == 2 && toPhone < kChanges) {
            t.setValue(QStringLiteral("Text"), t.value(QStringLiteral("Text")).toText() + QStringLiteral(" *"));
            roads::SendSingleEntry(r.ctx, t);
            ++toPhone;
        } else if (type == 1 && toStore < kChanges) {
            t.setValue(QStringLiteral("PIMText"), t.value(QStringLiteral("PIMText")).toText() + QStringLiteral(" *"));
            bool isNew = false;
            roads::WriteOutlookEntry(r.ctx, t, isNew);
            ++toStore;
        }
    }
    // The store's own time for 100 changed items, as the floor of the PIM half.
    QElapsedTimer clock;
    clock.start();
    auto items = r.calendarItems();
    int n = 0;
    for (auto item = items->Find(QStringLiteral("[Start]>=\"01.03.2026\" and [Start] <=\"29.04.2026 23:59\""));
         item && n < kChanges; item = items->FindNext(), ++n) {
        auto a = pim::asAppointment(item);
        a->setSubject(a->Subject());
        a->Save();
    }
    const double storeSeconds = clock.nsecsElapsed() / 1e9;

    qint64 bytes = 0;
    t.moveFirst();
    for (int i = 0; i < toPhone; ++i)
        bytes += writeBytes(i + 1, 300);
    clock.restart();
    const bool ok = roads::TransfervCal(r.ctx, *r.ctx.tables.RSCalendarPending);
    const double seconds = clock.nsecsElapsed() / 1e9;
    // Each phone write is a delete and a write of the record the phone holds.
    const double b = bound(bytes + toPhone * 16, 2 * toPhone) + storeSeconds;
    std::printf("transfer run: %s, %d to the phone, %d to the store: %.2f s, bound %.2f s (store alone %.2f s), "
                "%+.1f %% (goal: within 10 %%)\n",
                ok ? "done" : "FAILED", toPhone, toStore, seconds, b, storeSeconds, (seconds / b - 1) * 100);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    Road road;
    calendarReadRoad(road);
    transferRun(road);
    return 0;
}
