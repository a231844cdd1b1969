// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/ATC.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "log/LogWrite.h"
#include "phone/ATCServer.h"
#include "phone/ComDrvCode.h"
#include "phone/MobileSave.h"
#include "tables/Recordset.h"

namespace tsr::phone {

namespace {

const QString kATC = QStringLiteral("ATC");

// Every driver step: the server in its slot, then its port.
ATCServer& guard(core::Context& ctx) {
    ATCServer& server = atcServer(ctx);
    SetATCPort(ctx);
    return server;
}

// The calendar table's current row is an entry the phone already holds.
bool currentRowOnMobile(core::Context& ctx) {
    const tables::Recordset* rs = ctx.tables.RSCalendar.get();
    return rs && rs->recordCount() > 0 && !rs->eof() && !rs->bof() && rs->value(QStringLiteral("Mobile")).toBool();
}

// The phone holds one entry less; the flag that it holds rows follows the count.
void lowerMobileCount(core::Context& ctx) {
    ctx.read.vCalMobileCount -= 1;
    ctx.read.vCalMobileRead = ctx.read.vCalMobileCount >= 0;
}

// Appends a copy of the source's current row to `target`, field by field where the names meet.
void appendCopy(tables::Recordset& target, const tables::Recordset& source) {
    target.addNew();
    for (int i = 0; i < source.fieldCount(); ++i) {
        const QString name = source.fieldName(i);
        if (target.hasField(name))
            target.setValue(name, source.value(i));
    }
}

// The part of a file name before its first "."; a name without "." has none.
QString indexPartOf(const QString& file) {
    const qsizetype dot = file.indexOf(u'.');
    return dot < 0 ? QString() : file.left(dot);
}

} // namespace

int16_t storeCapacity(int16_t first, int16_t last) {
    return first != 0 ? last : core::toInt16(qint64(last) + 1);
}

bool ATCTest(core::Context& ctx) {
    // The failure is reported here, under ATCTest's own name, and the start goes on without the phone.
    return core::guarded(ctx, kATC, QStringLiteral("ATCTest"), false, [&] {
        const QString advice = QStringLiteral("\r\nGDX server software could not be found.\r\nPlease make sure, that "
                                              "the GDX software is installed correctly on your system!");
        try {
            atcServer(ctx);
        } catch (const std::exception& e) {
            core::raise(-1990, QStringLiteral("ATCTEST"), QString::fromLocal8Bit(e.what()) + advice);
        }
        if (!ctx.servers.ATCServer)
            core::raise(-1990, QStringLiteral("ATCTEST"), advice);
        return true;
    });
}

bool ATCInfo(core::Context& ctx) {
    return core::guarded(ctx, kATC, QStringLiteral("ATCInfo"), false, [&] {
        ATCServer& server = guard(ctx);
        ctx.phone.MobileManufacturer = server.Manufacturer();
        ctx.phone.MobileModel = server.Model();
        int16_t first = 0;
        int16_t last = 0;
        server.GetStoreRange(atc::CalendarStore, first, last);
        const int16_t capacity = storeCapacity(first, last);
        ctx.phone.MobileCapacity = capacity;
        ctx.phone.MaxEntries = capacity;
        ctx.read.MobileCalendarCapacity = capacity;
        ctx.phone.FirstIndex = first;
        ctx.phone.LastIndex = last;
        ctx.phone.MobileCalCount = 0;
        // The numbers new entries get on the phone, and the room AutoSync may fill.
        ctx.read.FirstMobileEntryID = first;
        ctx.read.LastMobileEntryID = last;
        ctx.read.FreeCalendarSlots = core::toInt16(qint64(capacity) - ctx.settings.freeMobileEntries);
        return true;
    });
}

bool ATCGetSingleMobileEntry(core::Context& ctx, QByteArray& text, int index) {
    return core::guarded(ctx, kATC, QStringLiteral("ATCGetSingleMobileEntry"), false, [&] {
        ATCServer& server = guard(ctx);
        ctx.read.MobileConnected = true;
        server.ReadEntry(index, text);
        dumpItem(QString(), QString::number(index), text, QStringLiteral("Read:"));
        return true;
    });
}

bool ATCWriteAppointment(core::Context& ctx, const QByteArray& text, const QString& file) {
    return core::guarded(ctx, kATC, QStringLiteral("ATCWriteAppointment"), false, [&] {
        ATCServer& server = guard(ctx);
        ctx.read.MobileConnected = true;
        const int index = int(core::Val(indexPartOf(file)));
        // An entry the phone holds is replaced by delete then write; a new one is only written.
        bool deleteFirst = false;
        if (file.contains(QLatin1String("vcs")))
            deleteFirst = currentRowOnMobile(ctx);
        else
            deleteFirst = file.toUpper() != QLatin1String("NEW.VCF");
        if (deleteFirst) {
            try {
                server.DeleteEntry(index);
            } catch (const core::TsrError& e) {
                // A record that is already empty needs no delete before it is written.
                if (e.number() != atc::PhoneErrorBase + 22)
                    throw;
            }
        }
        server.WriteEntry(index, text);
        return true;
    });
}

bool ATCRemoveEntryFromMobile(core::Context& ctx, tables::Recordset& row) {
    return core::guarded(ctx, kATC, QStringLiteral("ATCRemoveEntryFromMobile"), false, [&] {
        ATCServer& server = guard(ctx);
        if (ctx.settings.SaveTyp != 1 && !ctx.flags.GlobalTransferRun) {
            // Changes are kept back: the delete waits in the pending table for the next transfer run.
            row.setValue(QStringLiteral("TransferMode"), int32_t(2));
            row.setValue(QStringLiteral("Transfernew"), int32_t(2));
            row.update();
            tables::Recordset& pending = *ctx.tables.RSCalendarPending;
            appendCopy(pending, row);
            pending.setValue(QStringLiteral("PIM"), false);
            pending.setValue(QStringLiteral("Mobile"), true);
            pending.update();
            vcalSaveKontrolle(ctx, pending, row.value(QStringLiteral("EntryID")).toText(), false);
            ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), pending.recordCount() > 0);
            lowerMobileCount(ctx);
            return true;
        }
        // A failed delete is reported, and still gets its log row with the error, after the cursor is back.
        bool result = false;
        core::TsrError failure;
        ctx.ui->setBusyCursor(true);
        try {
            if (row.value(QStringLiteral("Recordset")).toText() == QLatin1String("RSCalendar")) {
                const int index = row.value(QStringLiteral("SubType")).toInt32();
                dumpItem(QString(), QString::number(index), QByteArray(), QStringLiteral("Delete:"));
                server.DeleteEntry(index);
                result = true;
                if (!ctx.flags.GlobalTransferRun)
                    lowerMobileCount(ctx);
            }
        } catch (const core::TsrError& e) {
            failure = e;
        }
        ctx.ui->setBusyCursor(false);
        if (failure.number() != 0)
            core::ErrorReport(ctx, failure, kATC, QStringLiteral("ATCRemoveEntryFromMobile"));
        ctx.log.LogTransfer = QStringLiteral("Mobile");
        ctx.log.LogAction = log::logActionDeleted(ctx);
        log::logWriteEntry(ctx, row, failure, QStringLiteral("Mobile"), QStringLiteral("RemoveEntryFromMobile"));
        return result;
    });
}

} // namespace tsr::phone
