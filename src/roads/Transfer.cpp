// SPDX-License-Identifier: GPL-3.0-or-later
#include "roads/Transfer.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/StatusBar.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/DOROutlookContacts.h"
#include "roads/MobileWrite.h"
#include "sync/MobFile.h"
#include "sync/Verwaltung.h"
#include "tables/TSRADODB.h"

namespace tsr::roads {

using tables::Recordset;

namespace {

const QString kModul = QStringLiteral("Mobile");

QString text(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toText();
}
bool flag(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toBool();
}
int32_t number(const Recordset& r, const char16_t* field) {
    const core::Value v = r.value(QString::fromUtf16(field));
    return v.isEmpty() ? -1 : v.toInt32();
}

void setSaveTool(core::Context& ctx, bool on) {
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), on);
}

// Puts the shown table on the row of `entryID`, so that the phone driver reads the
// row's own Mobile flag when it decides whether a record is replaced.
void positionOn(Recordset& shown, const QString& entryID) {
    if (shown.recordCount() > 0)
        tables::FindEntryByID(shown, entryID);
}

// A row new for the phone gets the first free entry number before it is sent.
void numberNewMobileRow(core::Context& ctx, Recordset& row, Recordset& shown) {
    const QString id = text(row, u"EntryID");
    if (!flag(row, u"Mobile") || flag(row, u"IsChanged") || number(row, u"TransferMode") == 2 ||
        !(id.isEmpty() || id == u"0"))
        return;
    int16_t free = -1;
    if (!sync::GetFreeMobileEntryID(ctx, shown, free))
        return;
    const QString newID = QString::number(free);
    tables::SeriesSetSubType(shown, id, free);
    tables::SeriesSetEntryID(shown, id, newID);
    tables::SeriesSetEntryID(row, id, newID);
    row.setValue(QStringLiteral("EntryID"), newID);
    row.setValue(QStringLiteral("SubType"), int32_t(free));
    row.update();
}

// One walk over a pending table. `send` puts the row on the phone, `writePim`
// writes it to the PIM and hands the new UID to the shown table, `clearAfter`
// takes the phone's rows off when a send failed.
template <class Send, class WritePim, class ClearAfter>
bool transferRun(core::Context& ctx, Recordset& table, Recordset& shown, const QString& kindText, Send&& send,
                 WritePim&& writePim, ClearAfter&& clearAfter) {
    ctx.flags.GlobalTransferRun = true;
    ctx.ui->setBusyCursor(true);
    ctx.status.Start(ctx.title(), false);
    bool cancelled = false;
    if (table.recordCount() > 0) {
        int round = 0;
        table.moveFirst();
        while (!table.eof()) {
            ++round;
            ctx.status.SetText(QString::number(table.recordCount()) + QStringLiteral(" / ") + QString::number(round) +
                               u' ' + ctx.strings.text(896) + QStringLiteral("\r\n") + kindText);
            numberNewMobileRow(ctx, table, shown);
            bool done = true;
            switch (pendingAction(table)) {
            case PendingAction::SendToMobile:
                positionOn(shown, text(table, u"EntryID"));
                if (!send(table)) {
                    clearAfter();
                    ctx.status.Quit();
                    ctx.ui->setBusyCursor(false);
                    return false;
                }
                break;
            case PendingAction::RemoveFromMobile:
                done = RemoveEntryFromMobile(ctx, table);
                break;
            case PendingAction::WriteToPim:
                writePim(table);
                break;
            case PendingAction::RemoveFromPim:
                done = roads::RemoveEntryFromOutlook(ctx, table);
                break;
            case PendingAction::None:
                break;
            }
            if (table.hasField(QStringLiteral("ISRecurring")) && flag(table, u"ISRecurring") &&
                !text(table, u"UID").isEmpty())
                tables::SeriesSetUID(shown, text(table, u"EntryID"), text(table, u"UID"));
            // A row carried out leaves the pending table, so a run that breaks off
            // later never does it twice.
            if (done)
                table.deleteCurrent();
            if (!ctx.status.GetState()) {
                cancelled = true;
                break;
            }
            table.moveNext();
        }
    }
    if (!cancelled) {
        tables::ClearRecordSet(table);
        setSaveTool(ctx, false);
    }
    ctx.ui->setBusyCursor(false);
    ctx.status.Quit();
    ctx.flags.GlobalTransferRun = false;
    return true;
}

} // namespace

PendingAction pendingAction(const Recordset& row) {
    const bool mobile = flag(row, u"Mobile");
    const bool pimSide = flag(row, u"PIM");
    const int32_t type = number(row, u"EntryType");
    const int32_t mode = number(row, u"TransferMode");
    const int32_t target = number(row, u"Transfernew");
    using A = PendingAction;
    auto byMode = [&](A write, A remove) { return mode == 1 ? write : mode == 2 ? remove : A::None; };
    if (mobile && !pimSide)
        return byMode(A::SendToMobile, A::RemoveFromMobile);
    if (!mobile && pimSide)
        return byMode(A::WriteToPim, A::RemoveFromPim);
    if (mobile && pimSide) {
        if (type == 3) {
            if (target == 2)
                return byMode(A::SendToMobile, A::RemoveFromMobile);
            if (target == 1)
                return byMode(A::WriteToPim, A::RemoveFromPim);
            return A::None;
        }
        if (type == 1)
            return byMode(A::SendToMobile, A::RemoveFromMobile);
        if (type == 2)
            return byMode(A::WriteToPim, A::RemoveFromPim);
        return A::None;
    }
    if (mode != 2)
        return A::None;
    if (type == 3)
        return target == 1 ? A::RemoveFromPim : target == 2 ? A::RemoveFromMobile : A::None;
    if (type == 1)
        return A::RemoveFromMobile;
    if (type == 2)
        return A::RemoveFromPim;
    return A::None;
}

bool TransfervCal(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, kModul, QStringLiteral("TransfervCal"), false, [&] {
        Recordset& shown = *ctx.tables.RSCalendar;
        auto writePim = [&](Recordset& row) {
            const QString entryID = text(row, u"EntryID");
            bool isNew = flag(row, u"PIMnew");
            roads::WriteOutlookEntry(ctx, row, isNew);
            const QString uid = text(row, u"UID");
            tables::SeriesSetUID(row, entryID, uid);
            tables::SeriesSetUID(shown, entryID, uid);
        };
        return transferRun(
            ctx, table, shown, ctx.strings.text(897), [&](Recordset& row) { return SendSingleEntry(ctx, row); },
            writePim, [&] { sync::vCalClearAfterMobileError(ctx); });
    });
}

bool TransfervCard(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, kModul, QStringLiteral("TransfervCard"), false, [&] {
        Recordset& shown = *ctx.tables.RSContacts;
        auto send = [&](Recordset& row) {
            const bool asNew = text(row, u"MobileID").isEmpty();
            if (!SendSinglevCardEntry(ctx, row, asNew))
                return false;
            tables::SeriesSetMobileID(shown, text(row, u"EntryID"), text(row, u"MobileID"));
            return true;
        };
        auto writePim = [&](Recordset& row) {
            const QString entryID = text(row, u"EntryID");
            bool isNew = flag(row, u"PIMnew");
            roads::vCardWriteOutookEntry(ctx, row, isNew, ctx.pim.GlobalContactFolder);
            tables::SeriesSetUID(shown, entryID, text(row, u"UID"));
        };
        const bool ok = transferRun(ctx, table, shown, ctx.strings.text(898), send, writePim,
                                    [&] { sync::vCardClearAfterMobileError(ctx, false, true); });
        if (ok) {
            if (shown.recordCount() > 0)
                sync::WriteMobFileforall(ctx, shown);
            else
                sync::DeleteMobFile(ctx);
        }
        return ok;
    });
}

bool TransfertoMobile(core::Context& ctx, Recordset& contacts, Recordset& calendar) {
    return core::guarded(ctx, kModul, QStringLiteral("TransfertoMobile"), false, [&] {
        ctx.flags.GlobalTransferRun = true;
        ctx.ui->setBusyCursor(true);
        const bool result = ctx.settings.ActiveAPP == 1 ? TransfervCard(ctx, contacts) : TransfervCal(ctx, calendar);
        if (!result) {
            ctx.flags.GlobalTransferRun = result;
            ctx.ui->setBusyCursor(false);
            return false;
        }
        ctx.ui->setBusyCursor(false);
        ctx.flags.GlobalTransferRun = false;
        const bool logged = ctx.tables.LogCalendar->recordCount() > 0 || ctx.tables.LogContacts->recordCount() > 0;
        if (!ctx.flags.GlobalSilent && logged) {
            sync::vCalClearAfterMobileError(ctx);
            ctx.ui->showLogSummary();
        }
        return true;
    });
}

} // namespace tsr::roads
