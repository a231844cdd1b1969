// SPDX-License-Identifier: GPL-3.0-or-later
// Day masks of weekly series in their three forms (number, "SU MO ..." text,
// seven check boxes) and the length limits an entry must keep within its series.
// Sunday is the lowest bit: Sunday 1, Monday 2 ... Saturday 64.
#pragma once

#include "core/Context.h"
#include "core/SeriesStep.h"
#include "core/VbDate.h"

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

namespace tsr::sync {

using WeekdayBoxes = std::array<bool, 7>; // Sunday first

// The module's procedures over the shared mask arithmetic of core/SeriesStep.h,
// with its error path: a failure is reported and the default comes back.
QString DayOfWeekMaskToString(core::Context& ctx, int64_t mask);
// A sum of the tokens' bits, not a bit-or: "MO MO" gives 4.
int16_t StringToDayOfWeekMask(core::Context& ctx, const QString& text);
WeekdayBoxes BinärtoCheckbox(int32_t mask);
int32_t CheckBoxToBinär(const WeekdayBoxes& boxes);
QString setString(int n);
int32_t MoveWeekdayInMask(core::Context& ctx, int32_t mask, core::VbDate oldDate, core::VbDate newDate);
// The smallest step between the mask's days, in hours.
int32_t WeekSeriesmaxDiff(core::Context& ctx, int32_t mask);

// The series kinds the editor's period choice offers.
enum class SerieKind { Single = 0, Daily = 1, Weekly = 2, Monthly = 3, Yearly = 4 };

// Tests the entry's length against the series kind chosen in the editor; a length
// above the kind's limit sets Refuse false. Each test runs only while Refuse is
// still true. The weekly limit comes from the current row's Weekdaymask.
void SerieControl(core::Context& ctx, tables::Recordset& table, SerieKind kind, core::VbDate start, core::VbDate end,
                  int16_t& Refuse);

// The editor's start date moved to the next checked weekday (weekly series only);
// an empty date means today.
core::VbDate startDate_act(core::Context& ctx, std::optional<core::VbDate> date, const WeekdayBoxes& boxes,
                           bool weekly);

// The short weekday names, Sunday first, each behind a comma, for the date controls.
QString SetShortDate(core::Context& ctx, int languageId);

} // namespace tsr::sync
