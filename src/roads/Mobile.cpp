// SPDX-License-Identifier: GPL-3.0-or-later
#include "roads/Mobile.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "core/StatusBar.h"
#include "formats/Globals.h"
#include "formats/vCal.h"
#include "formats/vCard.h"
#include "phone/ComDrvCode.h"
#include "phone/GDX.h"
#include "roads/ATCRead.h"
#include "roads/Autodelete.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/DOROutlookContacts.h"
#include "roads/LiveRoads.h"
#include "sync/SeriesMove.h"
#include "sync/Verwaltung.h"
#include "sync/vCalMatch.h"
#include "sync/vCardMatch.h"
#include "tables/TSRADODB.h"

namespace tsr::roads {

using tables::Recordset;

namespace {

const QString kModul = QStringLiteral("Mobile");

// The end of a read with the status dialog: closed, normal pointer.
void closeStatus(core::Context& ctx) {
    ctx.status.Quit();
    ctx.ui->setBusyCursor(false);
}

void setAutoSyncTools(core::Context& ctx) {
    const bool on = ctx.settings.SaveTyp != 2;
    ctx.tools.setEnabled(QStringLiteral("TSROrganizerMenu"), QStringLiteral("TSRAutoSync"), on);
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRAutoSync"), on);
}

// Parses one file of the phone into a fresh scratch row; false after reporting
// what the parser refused, with the file's name.
template <class Parse>
bool parseFile(core::Context& ctx, const QString& proc, const QByteArray& bytes, const QString& file, Parse&& parse) {
    return core::guarded(ctx, kModul, proc, false, [&] {
        QString text = formats::textFromCodePage(bytes);
        try {
            return parse(text);
        } catch (const core::TsrError& e) {
            core::raise(e.number(), e.source(), e.description() + QStringLiteral(" (") + file + u')');
        }
    });
}

void initScratch(core::Context& ctx, Recordset& scratch, void (*init)(Recordset&)) {
    init(scratch);
    tables::applyDateTextForm(ctx, scratch);
}

} // namespace

bool vCalReadMobile(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("vCalReadMobile"), false, [&] {
        ctx.status.Start(ctx.title(), false);
        ctx.status.SetText(ctx.strings.text(471)); // "Please wait reading mobile status!"
        ctx.ui->setBusyCursor(true);
        bool result = false;
        if (phone::InitComm(ctx)) {
            if (!ctx.read.MobileConnected && ctx.flags.GDX_Check) {
                const bool ok = ctx.phone.MobileCardCapacity != 0
                                    ? phone::GDXInfovCard(ctx, ctx.servers.GDXServer, ctx.phone.PbPath)
                                    : phone::GDXInfoAll(ctx, ctx.servers.GDXServer, ctx.phone.TelecomPath);
                if (!ok) {
                    closeStatus(ctx);
                    return false;
                }
                core::SetStatusBarMobile(ctx, false);
            }
            if (ctx.read.vCalMobileCount > 0) {
                sync::vCalClearAfterMobileError(ctx);
                ctx.read.MobileConnected = true;
                core::SetStatusBarMobile(ctx, false);
            }
            ctx.status.SetText(ctx.strings.text(458)); // "Please wait reading entries from mobile!"
            if (GetMobileEntries(ctx)) {
                phone::DeinitComm(ctx);
                ctx.status.SetText(ctx.strings.text(893)); // "Please wait. Writing entries to grid!"
                ctx.read.vCalMobileRead = true;
                core::SetStatusBarMobile(ctx, false);
                result = true;
            }
        }
        closeStatus(ctx);
        return result;
    });
}

bool GetMobileEntries(core::Context& ctx) {
    const bool result = ATCGetMobileEntries(ctx);
    core::SetStatusBarMobile(ctx, false);
    return result;
}

bool vCardReadMobile(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("vCardReadMobile"), false, [&] {
        ctx.status.Start(ctx.title(), false);
        ctx.status.SetText(ctx.strings.text(471));
        ctx.ui->setBusyCursor(true);
        bool result = false;
        if (phone::InitComm(ctx)) {
            if (!ctx.read.MobileConnected && ctx.flags.GDX_Check) {
                const bool ok = ctx.phone.MaxEntries != 0
                                    ? phone::GDXInfovCard(ctx, ctx.servers.GDXServer, ctx.phone.PbPath)
                                    : phone::GDXInfoAll(ctx, ctx.servers.GDXServer, ctx.phone.TelecomPath);
                if (!ok) {
                    closeStatus(ctx);
                    return false;
                }
                core::SetStatusBarMobile(ctx, true);
            } else if (ctx.read.MobileConnected && !phone::GDXInfovCard(ctx, ctx.servers.GDXServer, ctx.phone.PbPath)) {
                ctx.read.MobileConnected = false;
                closeStatus(ctx);
                return false;
            }
            if (ctx.read.vCardMobileCount > 0) {
                sync::vCardClearAfterMobileError(ctx, true, true);
                ctx.read.MobileConnected = true;
                core::SetStatusBarMobile(ctx, true);
            }
            ctx.status.SetText(ctx.strings.text(458));
            if (GetMobileVCardEntries(ctx, false)) {
                phone::DeinitComm(ctx);
                ctx.status.SetText(ctx.strings.text(893));
                ctx.read.vCardMobileRead = true;
                core::SetStatusBarMobile(ctx, true);
                result = true;
            }
        }
        closeStatus(ctx);
        return result;
    });
}

bool GetMobileVCardEntries(core::Context& ctx, bool quiet) {
    return core::guarded(ctx, kModul, QStringLiteral("GetMobileVCardEntries"), false, [&] {
        Recordset& table = *ctx.tables.RSContacts;
        auto& read = ctx.read;
        read.vCardMobileCount = 0;
        bool goOn = true;
        phone::readCardCapacity(ctx, ctx.servers.GDXServer, ctx.phone.PbPath);
        QStringList names;
        const int n =
            phone::DirMobileEntryFiles(ctx, ctx.servers.GDXServer, ctx.phone.PbPath, QStringLiteral("*.vcf"), names);
        Recordset scratch(QStringLiteral("RSContacts"));
        initScratch(ctx, scratch, tables::vCardInitRS);
        LiveRoads roads;
        for (int i = 0; i < n; ++i) {
            if (!ctx.status.GetState()) {
                goOn = false;
                break;
            }
            ctx.status.SetText(QString::number(n) + u'/' + QString::number(i + 1) + u' ' + ctx.strings.text(889));
            QByteArray bytes;
            if (!phone::GetSingleMobileEntry(ctx, ctx.servers.GDXServer, ctx.phone.PbPath, bytes, names.at(i)))
                break;
            if (bytes.isEmpty())
                continue;
            tables::vCardCreateNewRecord(scratch);
            if (!parseFile(ctx, QStringLiteral("GetMobileVCardEntries"), bytes, names.at(i),
                           [&](QString& text) { return formats::vCardParsEntryFromMobile(ctx, scratch, text); }))
                break;
            scratch.setValue(QStringLiteral("EntryPath"), ctx.phone.PbPath);
            scratch.setValue(QStringLiteral("EntryFile"), names.at(i));
            scratch.setValue(QStringLiteral("MobileID"), names.at(i));

            const bool pimRows = read.vCardPIMRead && read.vCardPIMCount > 0;
            if (pimRows && sync::vCardFindCompare(ctx, table, scratch, roads)) {
                formats::vCardSyncMobileEntry(ctx, table, scratch);
            } else {
                tables::vCardCreateNewRecord(table);
                tables::CopyFromRecordset(table, scratch);
            }
            if (!table.eof() && !table.value(QStringLiteral("PIM")).toBool())
                roads::vCardSearchingforOutlookEntry(ctx, table, ctx.pim.GlobalContactFolder);
            read.vCardMobileCount += 1;
            scratch.deleteCurrent();
        }
        if (read.vCardMobileCount == n && goOn && n >= 0) {
            read.vCardMobileRead = true;
            setAutoSyncTools(ctx);
            if (!quiet) {
                ctx.ui->refreshGrid(1);
                if (table.recordCount() > 0)
                    table.moveFirst();
            }
            core::SetStatusBarMobile(ctx, true);
            return true;
        }
        sync::vCardClearAfterMobileError(ctx, quiet, true);
        read.vCardMobileRead = false;
        read.MobileConnected = !goOn;
        core::SetStatusBarMobile(ctx, true);
        return false;
    });
}

bool SilentvCalReadMobile(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("SilentvCalReadMobile"), false, [&] {
        if (!phone::InitComm(ctx))
            return false;
        if (!ctx.read.MobileConnected && ctx.flags.GDX_Check &&
            !phone::GDXInfovCal(ctx, ctx.servers.GDXServer, ctx.phone.CalPath)) {
            closeStatus(ctx);
            return false;
        }
        if (!SilentGetMobileEntries(ctx))
            return false;
        phone::DeinitComm(ctx);
        ctx.read.vCalMobileRead = true;
        return true;
    });
}

bool SilentGetMobileEntries(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("SilentGetMobileEntries"), false, [&] {
        Recordset& table = *ctx.tables.RSCalendar;
        auto& read = ctx.read;
        read.vCalMobileCount = 0;
        bool goOn = true;
        QStringList names;
        const int n =
            phone::DirMobileEntryFiles(ctx, ctx.servers.GDXServer, ctx.phone.CalPath, QStringLiteral("*.vcs"), names);
        Recordset scratch(QStringLiteral("RSCalendar"));
        initScratch(ctx, scratch, tables::InitCalendarRS);
        for (int i = 0; i < n; ++i) {
            const QString& file = names.at(i);
            if (!file.contains(QLatin1String(".vcs")))
                continue;
            if (!ctx.status.GetState()) {
                goOn = false;
                break;
            }
            ctx.status.SetText(QString::number(n) + u'/' + QString::number(i + 1) + u' ' + ctx.strings.text(889));
            QByteArray bytes;
            if (!phone::GetSingleMobileEntry(ctx, ctx.servers.GDXServer, ctx.phone.CalPath, bytes, file))
                break;
            if (bytes.isEmpty())
                continue;
            tables::vCalCreateNewRecord(scratch);
            if (!parseFile(ctx, QStringLiteral("SilentGetMobileEntries"), bytes, file,
                           [&](QString& text) { return formats::ParsEntryFromMobile(ctx, scratch, text); }))
                break;
            const QString number = file.section(u'.', 0, 0);
            scratch.setValue(QStringLiteral("EntryPath"), ctx.phone.CalPath);
            scratch.setValue(QStringLiteral("EntryFile"), ctx.phone.CalFile);
            scratch.setValue(QStringLiteral("EntryID"), number);
            scratch.setValue(QStringLiteral("SubType"), int32_t(core::Val(number)));

            sync::admitCalendarEntry(ctx, table, scratch, sync::ReadSide::Mobile);
            if (table.value(QStringLiteral("ISRecurring")).toBool())
                sync::vCalCreateMobileSerieRecords(ctx, table);
            if (!table.value(QStringLiteral("PIM")).toBool())
                roads::SearchingforaOutlookEntry(ctx, table);
            read.vCalMobileCount += 1;
            scratch.deleteCurrent();
        }
        if (read.vCalMobileCount == n && goOn && n >= 0) {
            read.vCalMobileRead = true;
            setAutoSyncTools(ctx);
            return true;
        }
        sync::vCalClearAfterMobileError(ctx);
        read.vCalMobileRead = false;
        read.MobileConnected = !goOn;
        return false;
    });
}

bool SilentvCardReadMobile(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("SilentvCardReadMobile"), false, [&] {
        if (!phone::InitComm(ctx))
            return false;
        if (!ctx.read.MobileConnected && !phone::GDXInfovCard(ctx, ctx.servers.GDXServer, ctx.phone.PbPath))
            return false;
        if (!SilentGetMobileVCardEntries(ctx))
            return false;
        phone::DeinitComm(ctx);
        ctx.read.vCardMobileRead = true;
        return true;
    });
}

bool SilentGetMobileVCardEntries(core::Context& ctx) {
    return GetMobileVCardEntries(ctx, true);
}

} // namespace tsr::roads
