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

} // namespace tsr::formats
