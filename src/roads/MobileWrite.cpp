// SPDX-License-Identifier: GPL-3.0-or-later
// Module Mobile, the writing half.
#include "roads/MobileWrite.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "formats/Globals.h"
#include "formats/vCal.h"
#include "formats/vCard.h"
#include "log/LogWrite.h"
#include "phone/ATC.h"
#include "phone/ComDrvCode.h"
#include "phone/GDX.h"
#include "phone/MobileSave.h"
#include "tables/TSRADODB.h"

namespace tsr::roads {

using tables::Recordset;

namespace {

const QString kModul = QStringLiteral("Mobile");

QString text(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toText();
}

void enableSave(core::Context& ctx, bool on) {
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), on);
}

void logMobile(core::Context& ctx, const Recordset& row, bool wasOnMobile, const QString& proc) {
    ctx.log.LogTransfer = QStringLiteral("Mobile");
    ctx.log.LogAction = wasOnMobile ? log::logActionChanged(ctx) : log::logActionCreated(ctx);
    log::logWriteEntry(ctx, row, core::TsrError(), kModul, proc);
}

// The busy cursor for one step, back to normal however the step ends.
struct BusyCursor {
    explicit BusyCursor(core::Context& ctx) : m_ctx(ctx) { m_ctx.ui->setBusyCursor(true); }
    ~BusyCursor() { m_ctx.ui->setBusyCursor(false); }
    core::Context& m_ctx;
};

} // namespace

bool SendSingleEntry(core::Context& ctx, Recordset& row) {
    return core::guarded(ctx, kModul, QStringLiteral("SendSingleEntry"), false, [&] {
        if (ctx.settings.SaveTyp != 1 && !ctx.flags.GlobalTransferRun) {
            row.setValue(QStringLiteral("TransferMode"), int32_t(1));
            row.setValue(QStringLiteral("Transfernew"), int32_t(2));
            row.setValue(QStringLiteral("EntryPath"), ctx.phone.CalPath);
            row.setValue(QStringLiteral("EntryFile"), text(row, u"SubType") + QStringLiteral(".vcs"));
            row.update();
            Recordset& pending = *ctx.tables.RSCalendarPending;
            tables::vCalCreateNewRecord(pending);
            tables::CopyFromRecordset(pending, row);
            enableSave(ctx, true);
            return true;
        }
        const QString entryText = formats::calendarEntryText(row);
        const QString file = formats::calendarEntryFileName(row);
        const QByteArray bytes = formats::calendarEntryBytes(entryText);
        phone::dumpItem(QString(), file.section(u'.', 0, 0), bytes, QStringLiteral("Send vCal:"));
        ctx.phone.CalFile = file;
        const bool wasOnMobile = row.value(QStringLiteral("Mobile")).toBool();
        BusyCursor busy(ctx);
        if (!phone::ATCWriteAppointment(ctx, bytes, file))
            return false;
        row.setValue(QStringLiteral("EntryPath"), ctx.phone.CalPath);
        row.setValue(QStringLiteral("EntryFile"), file);
        row.update();
        logMobile(ctx, row, wasOnMobile, QStringLiteral("SendSingleEntry"));
        return true;
    });
}

bool SendSinglevCardEntry(core::Context& ctx, Recordset& row, bool asNew) {
    return core::guarded(ctx, kModul, QStringLiteral("SendSinglevCardEntry"), false, [&] {
        if (ctx.settings.SaveTyp != 1 && !ctx.flags.GlobalTransferRun) {
            row.setValue(QStringLiteral("TransferMode"), int32_t(1));
            row.setValue(QStringLiteral("Transfernew"), int32_t(2));
            row.update();
            Recordset& pending = *ctx.tables.RSContactsPending;
            (void)row.value(QStringLiteral("IsChanged")).toBool();
            const QString entryID = text(row, u"EntryID");
            if (entryID.isEmpty())
                phone::vcardSaveKontrolle(ctx, pending, text(row, u"MobileID"), true);
            else
                phone::vcardSaveKontrolle(ctx, pending, entryID, false);
            tables::vCardCreateNewRecord(pending);
            tables::CopyFromRecordset(pending, row);
            enableSave(ctx, true);
            return true;
        }
        const QString entryText = formats::vCardEntryText(ctx, row);
        QString file = text(row, u"EntryFile");
        if (file.isEmpty())
            file = formats::kNewContactFile;
        ctx.phone.CardFile = file;
        const bool wasOnMobile = row.value(QStringLiteral("Mobile")).toBool();
        BusyCursor busy(ctx);
        if (!phone::GDXWriteStream(ctx, ctx.servers.GDXServer, formats::textToCodePage(entryText), ctx.phone.PbPath,
                                   file))
            return false;
        logMobile(ctx, row, wasOnMobile, QStringLiteral("SendSinglevCardEntry"));
        if (asNew && text(row, u"MobileID").isEmpty()) {
            QString name;
            if (!phone::getvCardMobileEntryName(ctx, ctx.servers.GDXServer, name, ctx.phone.PbPath) || name.isEmpty())
                core::raise(-1988, QStringLiteral("SendSinglevCardEntry"), ctx.strings.text(889));
            row.setValue(QStringLiteral("MobileID"), name);
            row.setValue(QStringLiteral("EntryFile"), name);
            row.update();
        }
        return true;
    });
}

bool RemoveEntryFromMobile(core::Context& ctx, Recordset& row) {
    return core::guarded(ctx, kModul, QStringLiteral("RemoveEntryFromMobile"), false, [&] {
        const QString path = text(row, u"EntryPath");
        const QString file = text(row, u"EntryFile");
        if (text(row, u"Recordset") != u"RSContacts")
            return phone::ATCRemoveEntryFromMobile(ctx, row);
        // Contacts live in the file-transfer server's folders.
        if (ctx.settings.SaveTyp != 1 && !ctx.flags.GlobalTransferRun) {
            row.setValue(QStringLiteral("TransferMode"), int32_t(2));
            row.setValue(QStringLiteral("Transfernew"), int32_t(2));
            row.update();
            Recordset& pending = *ctx.tables.RSContactsPending;
            tables::vCardCreateNewRecord(pending);
            tables::CopyFromRecordset(pending, row);
            pending.setValue(QStringLiteral("PIM"), false);
            pending.setValue(QStringLiteral("Mobile"), true);
            phone::vcardSaveKontrolle(ctx, pending, text(row, u"MobileID"), true);
            enableSave(ctx, pending.recordCount() > 0);
            return true;
        }
        if (!ctx.servers.GDXServer || file.isEmpty())
            return false;
        BusyCursor busy(ctx);
        phone::dumpItem(path, file, QByteArray(), QStringLiteral("Delete:"));
        ctx.servers.GDXServer->DeleteFile(phone::gdxJoin(path.isEmpty() ? ctx.phone.PbPath : path, file));
        ctx.read.vCardMobileCount -= 1;
        ctx.read.vCardMobileRead = ctx.read.vCardMobileCount >= 0;
        ctx.log.LogTransfer = QStringLiteral("Mobile");
        ctx.log.LogAction = log::logActionDeleted(ctx);
        log::logWriteEntry(ctx, row, core::TsrError(), kModul, QStringLiteral("RemoveEntryFromMobile"));
        return true;
    });
}

} // namespace tsr::roads
