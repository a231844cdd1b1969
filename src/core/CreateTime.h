// SPDX-License-Identifier: GPL-3.0-or-later
// The reading of a time the user typed, in the user's time format (Allgemein).
#pragma once

#include "core/Context.h"

namespace tsr::core {

// Reads a time the user typed into `time` (a pure time, day 0). The text is first
// read as the user's time format; when that fails, gives a day or more, or the
// formatted value does not start with what was typed, CreateTime reads it.
void CreateTimeFromString(Context& ctx, const QString& text, VbDate& time);

// Reads hours, minutes and seconds in the order of the user's time format; what
// is not given keeps the current time's value. A text of fewer than 4 characters,
// or a time format without separator, gives the current time. Numbers past their
// unit carry over, so the result may hold a day ("25:10" gives 1 day 01:10).
VbDate CreateTime(Context& ctx, const QString& text);

} // namespace tsr::core
