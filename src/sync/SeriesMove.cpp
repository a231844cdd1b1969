// SPDX-License-Identifier: GPL-3.0-or-later
// Series rows moved into the period (module Allgemein).
#include "sync/SeriesMove.h"

#include "core/ErrorReport.h"
#include "core/SeriesStep.h"
#include "sync/SeriesMask.h"

namespace tsr::sync {

using core::VbDate;

namespace {
const QString kModul = QStringLiteral("Allgemein");

VbDate dateField(const tables::Recordset& t, const QString& name) {
    const core::Value v = t.value(name);
    return v.isEmpty() ? VbDate() : v.toDate();
}

bool flagField(const tables::Recordset& t, const QString& name) {
    const core::Value v = t.value(name);
    return !v.isEmpty() && v.toBool();
}

// StartTime is the time as text in the user's format.
VbDate startTimeOf(core::Context& ctx, const tables::Recordset& t) {
    const QString text = t.value(QStringLiteral("StartTime")).toText();
    if (auto d = core::parseDate(text, ctx.formats.DateFormat, ctx.formats.TimeFormat))
        return core::TimeValue(*d);
    return VbDate();
}

// Writes the occurrence `day` into the row: start, end, and the alarms moved by the
// same number of days, so each keeps its time and its distance to the start.
void writeOccurrence(core::Context& ctx, tables::Recordset& t, VbDate day, bool withStartText) {
    const VbDate oldStart = core::DateValue(dateField(t, QStringLiteral("StartDate")));
    const double shift = day.value - oldStart.value;
    const VbDate start(day.value + startTimeOf(ctx, t).value);
    t.setValue(QStringLiteral("StartDate"), day);
    t.setValue(QStringLiteral("Start"), start);
    t.setValue(QStringLiteral("DTStart"), start);
    if (withStartText)
        t.setValue(QStringLiteral("StartasText"), start);
    const core::Value diff = t.value(QStringLiteral("StartEndDiff"));
    const VbDate endDate(day.value + double(diff.isEmpty() ? 0 : diff.toInt64()));
    t.setValue(QStringLiteral("EndDate"), endDate);
    t.setValue(QStringLiteral("DTEnd"),
               VbDate(endDate.value + core::TimeValue(dateField(t, QStringLiteral("EndTime"))).value));
    if (flagField(t, QStringLiteral("DAlarmFlag")))
        t.setValue(QStringLiteral("DAlarm"), VbDate(dateField(t, QStringLiteral("DAlarm")).value + shift));
    if (flagField(t, QStringLiteral("AAlarmFlag")))
        t.setValue(QStringLiteral("AAlarm"), VbDate(dateField(t, QStringLiteral("AAlarm")).value + shift));
    t.update();
}

// The date a series counts from: its pattern start when the PIM gave one.
VbDate seriesOrigin(const tables::Recordset& t, const QString& fallbackField) {
    const VbDate patt = dateField(t, QStringLiteral("PIMRecPatt"));
    return patt.value != 0 ? patt : core::DateValue(dateField(t, fallbackField));
}

} // namespace

namespace {
// One row of calcnewStartDateSerie: a series that starts before the period moves
// to its occurrence in it.
void moveSeriesRow(core::Context& ctx, tables::Recordset& table) {
    if (!flagField(table, QStringLiteral("ISRecurring")))
        return;
    const VbDate periodStart = ctx.flags.GlobalStartDate;
    const VbDate patt = dateField(table, QStringLiteral("PIMRecPatt"));
    const VbDate startDate = dateField(table, QStringLiteral("StartDate"));
    const bool before = patt.value != 0 ? patt < periodStart : startDate < periodStart;
    if (!before)
        return;
    const QString kind = table.value(QStringLiteral("RecurrenceType")).toText();
    if (kind == u"W") {
        calcnewStartDateWeekSerie(ctx, table);
        return;
    }
    if (auto date = core::stepIntoPeriod(seriesOrigin(table, QStringLiteral("StartDate")),
                                         core::seriesStepInterval(kind), periodStart, ctx.flags.GlobalEndDate))
        writeOccurrence(ctx, table, *date, false);
}
} // namespace

void calcnewStartDateSerie(core::Context& ctx, tables::Recordset& table) {
    core::guarded(ctx, kModul, QStringLiteral("calcnewStartDateSerie"), [&] {
        if (table.recordCount() == 0)
            return;
        const int position = table.absolutePosition();
        for (table.moveFirst(); !table.eof(); table.moveNext())
            moveSeriesRow(ctx, table);
        table.setAbsolutePosition(position);
    });
}

bool vCalCreateMobileSerieRecords(core::Context& ctx, tables::Recordset& table) {
    return core::guarded(ctx, kModul, QStringLiteral("vCalCreateMobileSerieRecords"), false, [&] {
        moveSeriesRow(ctx, table);
        return true;
    });
}

bool vCalCreatePIMSerieRecords(core::Context& ctx, tables::Recordset& table) {
    return core::guarded(ctx, kModul, QStringLiteral("vCalCreatePIMSerieRecords"), false, [&] {
        moveSeriesRow(ctx, table);
        return true;
    });
}

void calcnewStartDateWeekSerie(core::Context& ctx, tables::Recordset& table) {
    core::guarded(ctx, kModul, QStringLiteral("calcnewStartDateWeekSerie"), [&] {
        const VbDate periodStart = ctx.flags.GlobalStartDate;
        const VbDate periodEnd = ctx.flags.GlobalEndDate;
        auto mask = int32_t(table.value(QStringLiteral("Weekdaymask")).isEmpty()
                                ? 0
                                : table.value(QStringLiteral("Weekdaymask")).toInt64());
        if (mask == 0) {
            const VbDate start = dateField(table, QStringLiteral("StartDate"));
            mask = MoveWeekdayInMask(ctx, 0, start, start);
            table.setValue(QStringLiteral("Weekdaymask"), int64_t(mask));
        }
        if (core::isSingleDayMask(mask)) {
            // StartasText is left alone on this road.
            if (auto date = core::stepIntoPeriod(seriesOrigin(table, QStringLiteral("StartDate")), QStringLiteral("ww"),
                                                 periodStart, periodEnd))
                writeOccurrence(ctx, table, *date, false);
            return;
        }
        // Several days: the walk goes from mask day to mask day; a row without an
        // occurrence in the period keeps the date it had.
        if (auto date =
                core::stepMaskIntoPeriod(seriesOrigin(table, QStringLiteral("Start")), mask, periodStart, periodEnd))
            writeOccurrence(ctx, table, *date, true);
    });
}

void CopyonFirstRec(core::Context& ctx, tables::Recordset& table) {
    core::guarded(ctx, kModul, QStringLiteral("CopyonFirstRec"),
                  [&] { table.setValue(QStringLiteral("altesStartDate"), table.value(3)); });
}

namespace {
int32_t countByEntryType(core::Context& ctx, tables::Recordset& table, int32_t type, const QString& proc) {
    return core::guarded(ctx, kModul, proc, int32_t(0), [&] {
        if (table.recordCount() == 0)
            return int32_t(0);
        const int position = table.absolutePosition();
        int32_t count = 0;
        for (table.moveFirst(); !table.eof(); table.moveNext())
            if (table.value(QStringLiteral("EntryType")).toInt32() == type)
                ++count;
        table.setAbsolutePosition(position);
        return count;
    });
}
} // namespace

int32_t CountMobileOnlyRows(core::Context& ctx, tables::Recordset& table) {
    return countByEntryType(ctx, table, 2, QStringLiteral("CountMobileOnlyRows"));
}

int32_t CountPairedRows(core::Context& ctx, tables::Recordset& table) {
    return countByEntryType(ctx, table, 3, QStringLiteral("CountPairedRows"));
}

} // namespace tsr::sync
