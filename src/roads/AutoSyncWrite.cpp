// SPDX-License-Identifier: GPL-3.0-or-later
// AutoSync's writes of one row each, for the calendar and the contacts.
#include "roads/AutoSyncRun.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/DOROutlookContacts.h"
#include "roads/MobileWrite.h"
#include "sync/AutoSync.h"
#include "sync/SeriesMove.h"
#include "sync/Verwaltung.h"
#include "tables/TSRADODB.h"

namespace tsr::roads {

using tables::Recordset;

namespace {

const QString kModul = QStringLiteral("AutoSync");

QString text(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toText();
}
bool flag(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toBool();
}
int32_t entryType(const Recordset& r) {
    return r.value(QStringLiteral("EntryType")).toInt32();
}

void statusRow(core::Context& ctx, const Recordset& row, int number) {
    ctx.status.SetText(QString::number(number) + QStringLiteral(": ") +
                       (text(row, u"Recordset") == u"RSContacts"
                            ? text(row, u"LastName") + u' ' + text(row, u"FirstName")
                            : text(row, u"Text")));
}

// A row the phone does not hold yet gets a free number and is sent. Counter goes
// down when there is no number or the row does not qualify.
bool sendToMobile(core::Context& ctx, Recordset& Table, int16_t& Counter) {
    if (!sync::EntryTypeCheck(ctx.settings.SyncTermine, Table) || entryType(Table) != 1) {
        --Counter;
        return false;
    }
    const QString oldID = text(Table, u"EntryID");
    Table.setValue(QStringLiteral("EntryType"), int32_t(3));
    Table.setValue(QStringLiteral("Mobile"), true);
    int16_t id = -1;
    if (!sync::GetFreeMobileEntryID(ctx, Table, id)) {
        Table.setValue(QStringLiteral("EntryType"), int32_t(1));
        Table.setValue(QStringLiteral("Mobile"), false);
        --Counter;
        return false;
    }
    Table.setValue(QStringLiteral("EntryID"), QString::number(id));
    Table.setValue(QStringLiteral("SubType"), int32_t(id));
    Table.update();
    if (!roads::SendSingleEntry(ctx, Table)) {
        sync::vCalClearAfterMobileError(ctx);
        return false;
    }
    ctx.read.vCalMobileCount += 1;
    ctx.read.vCalMobileRead = true;
    if (flag(Table, u"ISRecurring")) {
        sync::vCalCreateMobileSerieRecords(ctx, Table);
        // Every row of the series follows the number the phone gave it.
        tables::SeriesSetEntryID(Table, oldID, QString::number(id));
    }
    return true;
}

// A row only on the phone is written to the PIM; a series is read back from it.
bool writeToPim(core::Context& ctx, Recordset& Table) {
    Table.setValue(QStringLiteral("EntryType"), int32_t(3));
    Table.setValue(QStringLiteral("PIM"), true);
    Table.update();
    bool isNew = true;
    roads::WriteOutlookEntry(ctx, Table, isNew);
    const QString uid = text(Table, u"UID");
    if (uid.isEmpty()) {
        roads::ClearOutlookFromGrid(ctx, Table);
        roads::vCalReadOutlook(ctx, Table, true);
        return false;
    }
    if (flag(Table, u"ISRecurring"))
        roads::vCalReadSingleOutlookEntry(ctx, uid, Table);
    return true;
}

// A contact only in the PIM goes to the phone and then stands on both sides;
// false when the phone refused it, with the row as it was.
bool sendContactToMobile(core::Context& ctx, Recordset& Table) {
    Table.setValue(QStringLiteral("Mobile"), true);
    if (!roads::SendSinglevCardEntry(ctx, Table, true)) {
        Table.setValue(QStringLiteral("Mobile"), false);
        return false;
    }
    Table.setValue(QStringLiteral("EntryType"), int32_t(3));
    Table.update();
    ctx.read.vCardMobileCount += 1;
    return true;
}

// A contact only on the phone goes to the PIM; false when no item was made, and
// the PIM's side then leaves the table.
bool writeContactToPim(core::Context& ctx, Recordset& Table) {
    Table.setValue(QStringLiteral("PIM"), true);
    bool isNew = true;
    roads::vCardWriteOutookEntry(ctx, Table, isNew, ctx.pim.GlobalContactFolder);
    if (text(Table, u"UID").isEmpty()) {
        roads::ClearOutlookFromGrid(ctx, Table);
        return false;
    }
    Table.setValue(QStringLiteral("EntryType"), int32_t(3));
    Table.update();
    return true;
}

} // namespace

bool SyncType(core::Context& ctx, int16_t Mode, Recordset& Table, int16_t& Counter) {
    return core::guarded(ctx, kModul, QStringLiteral("SyncType"), false, [&] {
        if (text(Table, u"Recordset") != u"RSCalendar" || Table.recordCount() == 0)
            return true;
        switch (ctx.settings.SyncTyp) {
        case 4:
            CompleteSync(ctx, Table, Counter);
            break;
        case 2:
            PIMfillsMobile(ctx, Table, Mode, Counter);
            break;
        case 1:
            if (!ctx.read.MobileCleared) {
                const QString entryID = text(Table, u"EntryID");
                SyncRemove(ctx, Table, ctx.read.vCalMobileCount);
                // The walk goes on from the row it stood on.
                if (!tables::FindEntryByID(Table, entryID))
                    return false;
            }
            ctx.read.SyncStop = false;
            PIMOverMobile(ctx, Table, Counter);
            break;
        default:
            break;
        }
        // A failed send took the phone's rows off: the run cannot go on.
        return ctx.read.MobileConnected || ctx.read.vCalMobileRead;
    });
}

void SyncRemove(core::Context& ctx, Recordset& Table, int32_t Count) {
    core::guarded(ctx, kModul, QStringLiteral("SyncRemove"), [&] {
        int32_t removed = 0;
        if (Table.recordCount() > 0)
            Table.moveFirst();
        while (!Table.eof() && removed < Count) {
            const int32_t type = entryType(Table);
            if (type == 1) {
                Table.moveNext();
                continue;
            }
            ++removed;
            if (!roads::RemoveEntryFromMobile(ctx, Table)) {
                sync::vCalClearAfterMobileError(ctx);
                break;
            }
            if (type == 2) {
                Table.deleteCurrent();
                Table.update();
            } else {
                Table.setValue(QStringLiteral("EntryType"), int32_t(1));
                Table.setValue(QStringLiteral("EntryID"), text(Table, u"UID"));
                Table.setValue(QStringLiteral("Mobile"), false);
                Table.update();
            }
            Table.moveNext();
        }
        ctx.read.MobileCleared = true;
        if (Table.recordCount() > 0)
            Table.moveFirst();
    });
}

void PIMOverMobile(core::Context& ctx, Recordset& Table, int16_t& Counter) {
    core::guarded(ctx, kModul, QStringLiteral("PIMOverMobile"), [&] { sendToMobile(ctx, Table, Counter); });
}

void PIMfillsMobile(core::Context& ctx, Recordset& Table, int16_t Mode, int16_t& Counter) {
    core::guarded(ctx, kModul, QStringLiteral("PIMfillsMobile"), [&] {
        const int shortBy = Mode < 0 ? -Mode : 0;
        // Existing entries stay; only the free room is filled.
        if (Counter > ctx.read.FreeCalendarSlots - shortBy) {
            --Counter;
            return;
        }
        sendToMobile(ctx, Table, Counter);
    });
}

void CompleteSync(core::Context& ctx, Recordset& Table, int16_t& Counter) {
    core::guarded(ctx, kModul, QStringLiteral("CompleteSync"), [&] {
        if (!sync::EntryTypeCheck(ctx.settings.SyncTermine, Table)) {
            --Counter;
            return;
        }
        switch (entryType(Table)) {
        case 1:
            if (Counter <= ctx.read.FreeCalendarSlots)
                sendToMobile(ctx, Table, Counter);
            else
                --Counter;
            break;
        case 2:
            writeToPim(ctx, Table);
            break;
        default:
            break; // on both sides: no comparison of contents here
        }
    });
}

void MobileWritePIM(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("MobileWritePIM"), [&] {
        if (Table.recordCount() == 0)
            return;
        const int32_t limit = ctx.read.vCalMobileCount;
        int32_t walked = 0;
        Table.moveFirst();
        while (!Table.eof() && walked < limit) {
            if (!ctx.status.GetState()) {
                sync::vCalClearAfterMobileError(ctx);
                return;
            }
            if (entryType(Table) == 2) {
                ++walked;
                statusRow(ctx, Table, walked);
                if (!writeToPim(ctx, Table))
                    return;
            } else if (flag(Table, u"Mobile")) {
                ++walked;
            }
            Table.moveNext();
        }
    });
}

void PIMwriteMobile(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("PIMwriteMobile"), [&] {
        const int32_t limit = std::min<int32_t>(ctx.read.FreeContactSlots, ctx.read.vCardPIMCount);
        int32_t written = 0;
        if (Table.recordCount() > 0)
            Table.moveFirst();
        while (!Table.eof() && written < limit) {
            if (entryType(Table) == 1) {
                ++written;
                statusRow(ctx, Table, written);
                if (!sendContactToMobile(ctx, Table)) {
                    sync::vCardClearAfterMobileError(ctx, true, true);
                    return;
                }
            }
            Table.moveNext();
        }
    });
}

void vcardMobileWritePIM(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("vcardMobileWritePIM"), [&] {
        const int32_t limit = ctx.read.vCardMobileCount;
        int32_t walked = 0;
        if (Table.recordCount() > 0)
            Table.moveFirst();
        while (!Table.eof() && walked < limit) {
            if (entryType(Table) == 2) {
                ++walked;
                statusRow(ctx, Table, walked);
                if (!writeContactToPim(ctx, Table))
                    return;
            }
            Table.moveNext();
        }
    });
}

void CompleteSyncvCard(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("CompleteSyncvCard"), [&] {
        int32_t limit = ctx.read.FreeContactSlots;
        if (ctx.settings.SyncTyp == 4)
            limit += ctx.read.vCardMobileCount;
        int32_t handled = 0;
        if (Table.recordCount() > 0)
            Table.moveFirst();
        while (!Table.eof() && handled < limit) {
            const int32_t type = entryType(Table);
            if (type == 1) {
                ++handled;
                statusRow(ctx, Table, handled);
                if (!sendContactToMobile(ctx, Table)) {
                    if (!ctx.flags.GlobalClosing)
                        sync::vCardClearAfterMobileError(ctx, true, true);
                    return;
                }
            } else if (type == 2) {
                ++handled;
                statusRow(ctx, Table, handled);
                if (!writeContactToPim(ctx, Table))
                    return;
            }
            Table.moveNext();
        }
    });
}

} // namespace tsr::roads
