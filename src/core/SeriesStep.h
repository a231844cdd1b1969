// SPDX-License-Identifier: GPL-3.0-or-later
// The date arithmetic of a series: the weekday mask in its number and text
// forms, and the stepping of a series' dates from its start until one falls
// into a period. The entry format, the keep-or-drop test of a series row and
// the sync engine's moving of series rows all step with these functions, so
// they agree on where an occurrence lies. Nothing here touches a table.
#pragma once

#include "core/VbDate.h"

#include <QString>
#include <cstdint>
#include <optional>

namespace tsr::core {

// Day mask: one bit per weekday, Sunday lowest (Sunday 1, Monday 2 ... Saturday 64).

// "SU MO TU WE TH FR SA" order, single blanks between; mask 0 gives "".
QString DayOfWeekMaskToString(int64_t mask);
// Splits at blanks, upper-cases each token and adds its bit. A sum, not a bit-or:
// "MO MO" gives 4. Unknown tokens are passed over. A sum beyond 16 bits raises error 6.
int16_t StringToDayOfWeekMask(QStringView text);
// 2 to the power n by repeated doubling; n below 1 gives 1.
int32_t BitToDec(int n);
// True when exactly one of the seven weekday bits is set and no other bit.
bool isSingleDayMask(int64_t mask);

// The DateAdd unit a series of this kind steps by: "W" "ww", "M" "m", "Y" "yyyy",
// anything else (daily included) "d".
QString seriesStepInterval(const QString& recurrenceType);

// Steps `from` by one `interval` at a time (DateAdd of 1, repeated, so a month
// series started on the 31st drifts to the 28th after February) until the date
// lies in [periodStart, periodEnd]. `from` itself counts. Nothing comes back when
// the date passes periodEnd first.
std::optional<VbDate> stepIntoPeriod(VbDate from, const QString& interval, VbDate periodStart, VbDate periodEnd);

// Days from a day of the week (1 Sunday ... 7 Saturday) to the next day of the
// mask, 1 to 7 (7: the same weekday one week on). 0 when the mask holds no day.
int daysToNextMaskDay(int weekday, int64_t mask);

// For a weekly series over several days: the first day at or after `from` whose
// weekday is in the mask and that lies in [periodStart, periodEnd]. `from` counts
// when its own weekday is in the mask; from there the walk goes from mask day to
// mask day. Nothing comes back for an empty mask or when the walk passes periodEnd.
std::optional<VbDate> stepMaskIntoPeriod(VbDate from, int64_t mask, VbDate periodStart, VbDate periodEnd);

} // namespace tsr::core
