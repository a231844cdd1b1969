// SPDX-License-Identifier: GPL-3.0-or-later
#include "roads/MobileClear.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/StatusBar.h"
#include "roads/MobileWrite.h"
#include "sync/MobFile.h"
#include "sync/Verwaltung.h"
#include "tables/TSRADODB.h"

namespace tsr::roads {

using tables::Recordset;

namespace {

bool flag(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toBool();
}

bool askClear(core::Context& ctx, int warning) {
    const QString question = ctx.strings.text(warning) + u'\n' + ctx.strings.text(478); // "Are you sure?"
    return ctx.ui->msgBox(question, core::MsgButtons::OKCancel, core::MsgIcon::Exclamation, ctx.title()) ==
           core::MsgResult::OK;
}

// Takes the phone's side off the current row: a row only on the phone leaves the table.
void dropMobileSide(Recordset& table) {
    if (flag(table, u"PIM")) {
        table.setValue(QStringLiteral("Mobile"), false);
        table.setValue(QStringLiteral("EntryType"), int32_t(1));
        table.update();
    } else {
        table.deleteCurrent();
    }
}

// The walk both kinds share: every row with a phone side, one delete each (a
// series once), with progress and cancel in the status dialog.
template <class Remove> bool deleteAll(core::Context& ctx, Recordset& table, Remove&& remove) {
    ctx.status.Start(ctx.title(), false);
    bool ok = true;
    if (table.recordCount() > 0) {
        const int total = table.recordCount();
        int done = 0;
        table.moveFirst();
        while (!table.eof()) {
            if (!ctx.status.GetState()) {
                ok = false;
                break;
            }
            if (!flag(table, u"Mobile")) {
                table.moveNext();
                continue;
            }
            ctx.status.SetText(QString::number(++done) + QStringLiteral(" / ") + QString::number(total));
            if (!remove()) {
                ok = false;
                break;
            }
            table.moveNext();
        }
    }
    ctx.status.Quit();
    return ok;
}

} // namespace

bool vCalDeleteAllMobileEntries(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, QStringLiteral("vCal"), QStringLiteral("vCalDeleteAllMobileEntries"), false, [&] {
        const bool ok = deleteAll(ctx, table, [&] {
            const QString entryID = table.value(QStringLiteral("EntryID")).toText();
            if (!RemoveEntryFromMobile(ctx, table))
                return false;
            if (flag(table, u"ISRecurring"))
                tables::SeriesClearMobile(table, entryID);
            dropMobileSide(table);
            return true;
        });
        if (ok) {
            ctx.read.vCalMobileCount = 0;
            ctx.read.vCalMobileRead = true;
        }
        ctx.ui->refreshGrid(0);
        core::SetStatusBarMobile(ctx, false);
        return ok;
    });
}

bool vCardEntryDelete(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, QStringLiteral("vCard"), QStringLiteral("vCardEntryDelete"), false, [&] {
        if (!RemoveEntryFromMobile(ctx, table))
            return false;
        dropMobileSide(table);
        return true;
    });
}

bool vCardDeleteAllMobileEntries(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, QStringLiteral("vCard"), QStringLiteral("vCardDeleteAllMobileEntries"), false, [&] {
        const bool ok = deleteAll(ctx, table, [&] { return vCardEntryDelete(ctx, table); });
        if (ok) {
            ctx.read.vCardMobileCount = 0;
            ctx.read.vCardMobileRead = true;
        }
        ctx.ui->refreshGrid(1);
        core::SetStatusBarMobile(ctx, true);
        return ok;
    });
}

bool vCalClearMobile(core::Context& ctx) {
    return core::guarded(ctx, QStringLiteral("Mobile"), QStringLiteral("vCalClearMobile"), false, [&] {
        if (!askClear(ctx, 824))
            return false;
        if (vCalDeleteAllMobileEntries(ctx, *ctx.tables.RSCalendar))
            return true;
        sync::vCalClearAfterMobileError(ctx);
        return false;
    });
}

bool vCardClearMobile(core::Context& ctx) {
    return core::guarded(ctx, QStringLiteral("Mobile"), QStringLiteral("vCardClearMobile"), false, [&] {
        if (!askClear(ctx, 836))
            return false;
        if (vCardDeleteAllMobileEntries(ctx, *ctx.tables.RSContacts)) {
            if (ctx.settings.SaveTyp == 1)
                sync::DeleteMobFile(ctx);
            return true;
        }
        sync::vCardClearAfterMobileError(ctx, false, true);
        return false;
    });
}

} // namespace tsr::roads
