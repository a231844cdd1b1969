// SPDX-License-Identifier: GPL-3.0-or-later
// The series and time checks of Allgemein: whether a series row read from the
// phone still has an occurrence in the date range, and the reading of a time
// the user typed in the user's time format.
#pragma once

#include "core/Context.h"
#include "tables/Recordset.h"

namespace tsr::formats {

// True when the current row is a series from the phone (Mobile and ISRecurring)
// that must stay: a weekly series on one weekday, a daily, monthly or yearly
// series has an occurrence from StartDate on inside GlobalStartDate ..
// GlobalEndDate; a weekly series over several days has further rows of its
// EntryID in the table. Any other row gives false. The cursor stays where it was.
bool MustbeStand(core::Context& ctx, tables::Recordset& table);

// Reads a time the user typed into `time` (a pure time, day 0). The text is first
// read as the user's time format; when that fails, gives a day or more, or the
// formatted value does not start with what was typed, CreateTime reads it.
void CreateTimeFromString(core::Context& ctx, const QString& text, core::VbDate& time);

// Reads hours, minutes and seconds in the order of the user's time format; what
// is not given keeps the current time's value. A text of fewer than 4 characters,
// or a time format without separator, gives the current time.
core::VbDate CreateTime(core::Context& ctx, const QString& text);

} // namespace tsr::formats
