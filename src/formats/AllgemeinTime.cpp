// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/AllgemeinTime.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "core/SeriesStep.h"
#include "formats/vCalFields.h"

#include <QStringList>

namespace tsr::formats {

using namespace detail;
using core::VbDate;

bool MustbeStand(core::Context& ctx, tables::Recordset& table) {
    return core::guarded(ctx, QStringLiteral("Allgemein"), QStringLiteral("MustbeStand"), false, [&] {
        if (!boolField(table, QStringLiteral("Mobile")) || !boolField(table, QStringLiteral("ISRecurring")))
            return false;
        const QString type = textField(table, QStringLiteral("RecurrenceType"));
        const int64_t mask = intField(table, QStringLiteral("Weekdaymask"));
        const VbDate from = dateField(table, QStringLiteral("StartDate"));
        const VbDate periodStart = ctx.flags.GlobalStartDate;
        const VbDate periodEnd = ctx.flags.GlobalEndDate;

        if (type == u"W" && !core::isSingleDayMask(mask)) {
            // Several days a week: the series stands as rows of its own, one per
            // occurrence in the range; it must stay while others of it are there.
            const QString entryId = textField(table, QStringLiteral("EntryID"));
            const int position = table.absolutePosition();
            int count = 0;
            for (int i = 0; i < table.recordCount(); ++i)
                if (table.valueAt(i, table.fieldIndex(QStringLiteral("EntryID"))).toText() == entryId)
                    ++count;
            table.setAbsolutePosition(position);
            return count > 1;
        }
        return core::stepIntoPeriod(from, core::seriesStepInterval(type), periodStart, periodEnd).has_value();
    });
}

VbDate CreateTime(core::Context& ctx, const QString& text) {
    return core::guarded(ctx, QStringLiteral("Allgemein"), QStringLiteral("CreateTime"),
                         core::TimeValue(ctx.clock.Now()), [&] {
                             const VbDate now = ctx.clock.Now();
                             const QString& separator = ctx.formats.TimeChar;
                             const QString& format = ctx.formats.TimeFormat;
                             if (text.size() < 4 || separator.isEmpty() || !format.contains(separator))
                                 return core::TimeValue(now);

                             // The day-half mark stands in front of the time or behind it.
                             const QStringList pieces = text.split(u' ', Qt::SkipEmptyParts);
                             const qsizetype timeIndex = (ctx.formats.TimeMarkPos == 1 && pieces.size() > 1) ? 1 : 0;
                             const QStringList values = pieces.value(timeIndex).split(separator);
                             const QStringList parts = format.split(separator);

                             int hms[3] = {core::Hour(now), core::Minute(now), core::Second(now)};
                             for (qsizetype i = 0; i < std::min(values.size(), parts.size()); ++i) {
                                 const QString part = parts[i].trimmed();
                                 const QChar kind = part.isEmpty() ? QChar() : part.front().toLower();
                                 const int slot = kind == u'h' ? 0 : kind == u'm' ? 1 : kind == u's' ? 2 : -1;
                                 if (slot < 0)
                                     continue;
                                 // A piece that is no number, or out of its range, ends the reading.
                                 if (!core::IsNumeric(values[i]))
                                     break;
                                 const double number = core::Val(values[i]);
                                 if (number < 0 || number >= (slot == 0 ? 24 : 60))
                                     break;
                                 hms[slot] = int(number);
                             }
                             const VbDate today = core::DateValue(now);
                             const VbDate at(today.value + core::TimeSerial(hms[0], hms[1], hms[2]).value);
                             return VbDate(at.value - today.value);
                         });
}

void CreateTimeFromString(core::Context& ctx, const QString& text, VbDate& time) {
    core::guarded(ctx, QStringLiteral("Allgemein"), QStringLiteral("CreateTimeFromString"), [&] {
        // A bare number would read as a count of days; the piece comparison below
        // catches that and hands such a text to CreateTime.
        std::optional<VbDate> read;
        if (core::IsNumeric(text))
            read = VbDate(core::Val(text));
        else
            read = core::parseDate(text, ctx.formats.DateFormat, ctx.formats.TimeFormat);
        if (!read || read->value >= 1 || read->value < 0) {
            time = CreateTime(ctx, text);
            return;
        }
        const VbDate value = core::TimeValue(*read);
        const QStringList typed = text.split(u' ', Qt::SkipEmptyParts);
        const QStringList shown = core::Format(value, ctx.formats.TimeFormat).split(u' ', Qt::SkipEmptyParts);
        for (qsizetype i = 0; i < typed.size(); ++i) {
            if (!shown.value(i).startsWith(typed[i], Qt::CaseInsensitive)) {
                time = CreateTime(ctx, text);
                return;
            }
        }
        time = value;
    });
}

} // namespace tsr::formats
