// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/DateRange.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"

#include <algorithm>

namespace tsr::spine {

using core::VbDate;

namespace {

const QString Modul = QStringLiteral("Calendar");

VbDate endOfDay(VbDate d) {
    return VbDate(core::DateValue(d).value + core::TimeSerial(23, 59, 59).value);
}

} // namespace

std::array<QString, 4> PeriodUnits(const core::Context& ctx, int number) {
    const int first = number == 1 ? 532 : 533;
    return {ctx.strings.text(first), ctx.strings.text(first + 2), ctx.strings.text(first + 4),
            ctx.strings.text(first + 6)};
}

int limitPeriod(int number, int unit) {
    return std::min(number, PeriodLimits.at(unit));
}

VbDate settingEndDate(const core::Context& ctx) {
    return endOfDay(VbDate(ctx.clock.Date().value + ctx.settings.DateRange));
}

VbDate CalcDateAddNew(core::Context& ctx, const QString& interval, int number, VbDate start) {
    return core::guarded(ctx, Modul, QStringLiteral("CalcDateAddNew"), VbDate(),
                         [&] { return endOfDay(VbDate(core::DateAdd(interval, number, start).value - 1)); });
}

QString CalcTimeAdd(core::Context& ctx, const QString& interval, int number, VbDate start) {
    return core::guarded(ctx, Modul, QStringLiteral("CalcTimeAdd"), QString(), [&] {
        return core::Format(core::DateAdd(interval, number, start), ctx.formats.TimeFormatNoSec);
    });
}

QString SetActTime(const core::Context& ctx) {
    return core::Format(ctx.clock.Now(), ctx.formats.TimeFormatNoSec);
}

QString SetActTimeEnd(const core::Context& ctx) {
    return core::Format(core::DateAdd(QStringLiteral("n"), 30, ctx.clock.Now()), ctx.formats.TimeFormatNoSec);
}

void PeriodeAct(core::Context& ctx, VbDate start, VbDate end) {
    core::guarded(ctx, Modul, QStringLiteral("PeriodeAct"), [&] {
        if (start < end)
            ctx.settings.DateRange = core::toInt16(core::DateDiff(QStringLiteral("d"), start, end));
    });
}

QString SetStartDate(const core::Context& ctx, VbDate value) {
    return core::Format(value, ctx.formats.DateFormat);
}

} // namespace tsr::spine
