// SPDX-License-Identifier: GPL-3.0-or-later
// The user's date and time formats, taken from the locale and turned into the
// program's own mask letters (dd, mm, yy/yyyy, hh, mm for minutes behind hh, ss,
// AM/PM) that core::Format reads.
#pragma once

#include "core/Context.h"

#include <QLocale>

namespace tsr::spine {

// A locale's date or time format in the program's mask letters; the time zone and
// fractions of a second are left out.
QString maskFromLocaleFormat(const QString& localeFormat);
// The first separator character of a format (the "." of "dd.MM.yy").
QString separatorOf(const QString& localeFormat);

// A short date format that formats today into something that is no date is
// rebuilt from its parts, and failing that replaced by yy<sep>mm<sep>dd.
QString repairDateFormat(const QString& format, const QString& dateChar, core::VbDate today);
// The time format without its seconds; the 12-hour form gets the day-part mark behind it.
QString BuildTimeNosSecFormat(const core::DateFormats& formats);

// A day-half mark as the program keeps it: what fits the locale query's buffer of
// 40 characters before its terminator. A longer mark is no error.
QString dayHalfMark(const QString& text);

// Fills ctx.formats from the locale; a failure shows the settings error box.
void RegDateTimeFormatGet(core::Context& ctx, const QLocale& locale = QLocale::system());

} // namespace tsr::spine
