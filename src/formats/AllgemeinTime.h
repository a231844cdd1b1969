// SPDX-License-Identifier: GPL-3.0-or-later
// The series check of Allgemein: whether a series row read from the phone
// still has an occurrence in the date range.
#pragma once

#include "core/Context.h"
#include "core/CreateTime.h"
#include "tables/Recordset.h"

namespace tsr::formats {

// True when the current row is a series from the phone (Mobile and ISRecurring)
// that must stay: a weekly series on one weekday, a daily, monthly or yearly
// series has an occurrence from StartDate on inside GlobalStartDate ..
// GlobalEndDate; a weekly series over several days has further rows of its
// EntryID in the table. Any other row gives false. The cursor stays where it was.
bool MustbeStand(core::Context& ctx, tables::Recordset& table);

// The reading of a typed time lives with the dates, so that the log can use it too.
using core::CreateTime;
using core::CreateTimeFromString;

} // namespace tsr::formats
