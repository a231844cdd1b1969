// SPDX-License-Identifier: GPL-3.0-or-later
// The arithmetic of the calendar's date range: the unit tables, the largest
// number of each unit, and the two end computations, which differ on purpose:
// the setting's end is today + DateRange at 23:59:59, the frame's end is start
// + n units - 1 day at 23:59:59.
#pragma once

#include "core/Context.h"

#include <array>

namespace tsr::spine {

// Day, week, month, year: their arithmetic codes and the largest number each takes.
inline const std::array<QString, 4> PeriodIntervals = {QStringLiteral("d"), QStringLiteral("ww"), QStringLiteral("m"),
                                                       QStringLiteral("yyyy")};
inline constexpr std::array<int, 4> PeriodLimits = {1095, 156, 36, 3};

// The four unit names for a number: singular for 1, plural otherwise.
std::array<QString, 4> PeriodUnits(const core::Context& ctx, int number);
// A number of units cut to the largest the unit takes.
int limitPeriod(int number, int unit);

// The setting's end of the range: today + DateRange days at 23:59:59.
core::VbDate settingEndDate(const core::Context& ctx);
// The frame's end: start + number intervals, one day earlier, at 23:59:59.
core::VbDate CalcDateAddNew(core::Context& ctx, const QString& interval, int number, core::VbDate start);
// start + number intervals, formatted as a time without seconds.
QString CalcTimeAdd(core::Context& ctx, const QString& interval, int number, core::VbDate start);
QString SetActTime(const core::Context& ctx);
// Now + 30 minutes.
QString SetActTimeEnd(const core::Context& ctx);
// DateRange becomes the whole days from start to end, when start lies before end.
void PeriodeAct(core::Context& ctx, core::VbDate start, core::VbDate end);
QString SetStartDate(const core::Context& ctx, core::VbDate value);

} // namespace tsr::spine
