// SPDX-License-Identifier: GPL-3.0-or-later
// Module Mobile, the autodelete pass.
#include "roads/Autodelete.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "roads/MobileWrite.h"
#include "tables/TSRADODB.h"

#include <algorithm>

namespace tsr::roads {

using tables::Recordset;

namespace {

const QString kModul = QStringLiteral("Mobile");

bool flag(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toBool();
}
QString text(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toText();
}

// The type boxes allow the current row's type.
bool typeAllowed(const core::OptionsModel& o, const Recordset& row) {
    return o.delete_all_option || (o.delete_geburtstage_option && flag(row, u"AnniversaryStatus")) ||
           (o.delete_notiz_option && flag(row, u"MemoStatus")) ||
           (o.delete_nummer_option && flag(row, u"PhoneCallStatus")) ||
           (o.delete_treffen_option && flag(row, u"MeetingStatus"));
}

bool seriesAllowed(const core::OptionsModel& o, const Recordset& row) {
    return !flag(row, u"ISRecurring") || o.delete_serie_check;
}

int32_t countMobileRows(Recordset& table) {
    int32_t count = 0;
    if (table.recordCount() == 0)
        return 0;
    const int position = table.absolutePosition();
    for (table.moveFirst(); !table.eof(); table.moveNext())
        if (flag(table, u"Mobile"))
            ++count;
    table.setAbsolutePosition(position);
    return count;
}

// Mode 2: the DelAnzahl oldest entries that may go, earliest first.
void removeOldest(core::Context& ctx, Recordset& table) {
    const core::OptionsModel& o = ctx.optionBoxes;
    struct Slot {
        double start;
        QString entryID;
    };
    QList<Slot> candidates;
    for (table.moveFirst(); !table.eof(); table.moveNext())
        if (flag(table, u"Mobile") && flag(table, u"DTStartFlag") && typeAllowed(o, table) && seriesAllowed(o, table))
            candidates.append({table.value(QStringLiteral("Start")).toDate().value, text(table, u"EntryID")});
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Slot& a, const Slot& b) { return a.start < b.start; });
    int removed = 0;
    for (const Slot& slot : candidates) {
        if (removed >= ctx.settings.DelAnzahl)
            break;
        if (table.recordCount() == 0)
            break;
        table.moveFirst();
        if (!tables::FindEntryByID(table, slot.entryID) || !flag(table, u"Mobile"))
            continue;
        ctx.status.SetText(ctx.strings.text(894) + QStringLiteral("\r\n") + text(table, u"Text"));
        const int position = table.absolutePosition();
        const bool goOn = ctx.status.GetState();
        table.setAbsolutePosition(position);
        if (!goOn)
            break;
        autodelete_remove(ctx, table);
        ++removed;
    }
}

// Modes 1 and 3: every entry that starts before the limit.
void removeBefore(core::Context& ctx, Recordset& table, double limit) {
    if (table.recordCount() == 0)
        return;
    table.moveFirst();
    while (!table.eof()) {
        const int position = table.absolutePosition();
        const bool goOn = ctx.status.GetState();
        table.setAbsolutePosition(position);
        if (!goOn)
            break;
        if (flag(table, u"Mobile") && table.value(QStringLiteral("DTStart")).toDate().value < limit) {
            const int count = table.recordCount();
            autodelete_remove(ctx, table);
            // A removed row leaves the cursor on the gap; the walk goes on from there.
            if (table.recordCount() < count) {
                table.moveNext();
                continue;
            }
        }
        table.moveNext();
    }
}

} // namespace

bool EntryDelete(core::Context& ctx, Recordset& Table) {
    return RemoveEntryFromMobile(ctx, Table);
}

bool Delete_Bearbeitung(core::Context& ctx, Recordset& Table) {
    const bool result = core::guarded(ctx, kModul, QStringLiteral("Delete_Bearbeitung"), false, [&] {
        ctx.status.SetText(ctx.strings.text(894)); // "Please wait. Autodelete is carry out!"
        const core::OptionsModel& o = ctx.optionBoxes;
        if (o.loeschen_letzten_option)
            removeOldest(ctx, Table);
        else if (o.loeschen_vor_option)
            removeBefore(ctx, Table, ctx.settings.DelDate.value);
        else if (o.vergangene_option)
            removeBefore(ctx, Table, ctx.clock.Date().value);
        return true;
    });
    ctx.read.vCalMobileCount = countMobileRows(Table);
    ctx.read.vCalMobileRead = ctx.read.vCalMobileCount > 0;
    return result;
}

void autodelete_remove(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("autodelete_remove"), [&] {
        const core::OptionsModel& o = ctx.optionBoxes;
        if (ctx.settings.SyncTyp != 3 && !typeAllowed(o, Table))
            return;
        if (!seriesAllowed(o, Table))
            return;
        const QString entryID = text(Table, u"EntryID");
        const bool series = flag(Table, u"ISRecurring");
        const int32_t type = Table.value(QStringLiteral("EntryType")).toInt32();
        // A failed removal leaves the row as it stood.
        if (!EntryDelete(ctx, Table))
            return;
        if (series) {
            tables::SeriesClearMobile(Table, entryID);
            if (ctx.settings.SyncTyp != 3)
                tables::vCalClearSerieRecords(Table, entryID);
        } else {
            Table.setValue(QStringLiteral("Mobile"), false);
        }
        if (type == 3 && !flag(Table, u"creafromMob")) {
            Table.setValue(QStringLiteral("EntryType"), int32_t(1));
            Table.update();
        } else {
            Table.deleteCurrent();
        }
    });
}

} // namespace tsr::roads
