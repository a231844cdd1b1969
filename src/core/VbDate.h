// SPDX-License-Identifier: GPL-3.0-or-later
// The date-time value the whole program works with: a floating count of days,
// day 0 being 1899-12-30, the time of day as the fraction. Local time only:
// nothing here converts to or from universal time.
#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

namespace tsr::core {

struct VbDate {
    double value = 0.0;

    constexpr VbDate() = default;
    constexpr explicit VbDate(double days) : value(days) {}
    friend constexpr bool operator==(VbDate a, VbDate b) { return a.value == b.value; }
    friend constexpr auto operator<=>(VbDate a, VbDate b) { return a.value <=> b.value; }
};

VbDate fromQDateTime(const QDateTime& dt);
VbDate fromQDate(const QDate& d);
QDateTime toQDateTime(VbDate d);
QDate toQDate(VbDate d);
// The local wall clock at a moment given in universal time, by the system's zone.
VbDate utcToLocal(VbDate utc);

VbDate DateSerial(int year, int month, int day);
VbDate TimeSerial(int hour, int minute, int second);
// Date and time parts; the time part of a date before day 0 is still counted forward.
VbDate DateValue(VbDate d);
VbDate TimeValue(VbDate d);

int Year(VbDate d);
int Month(VbDate d);
int Day(VbDate d);
int Hour(VbDate d);
int Minute(VbDate d);
int Second(VbDate d);
// 1 = Sunday ... 7 = Saturday, as vbSunday-based Weekday does.
int Weekday(VbDate d, int firstDayOfWeek = 1);

// Intervals: "yyyy", "q", "m", "y", "d", "w", "ww", "h", "n", "s". An unknown
// interval raises error 5.
VbDate DateAdd(const QString& interval, double number, VbDate d);
qint64 DateDiff(const QString& interval, VbDate d1, VbDate d2, int firstDayOfWeek = 1);

// Format masks as the program uses them: d dd ddd dddd m mm mmm mmmm yy yyyy
// h hh n nn s ss (m/mm after h or before s means minutes), ww, w, q,
// AM/PM, am/pm, A/P, a/p, AMPM, "/" and ":" literally, quoted text, and the named
// formats "Short Date", "Long Date", "Short Time", "Medium Time", "Long Time",
// "General Date".
QString Format(VbDate d, const QString& mask);

// Reads a date or date-time text written with the given masks (date mask, then an
// optional time mask); falls back to ISO forms. Returns nothing when the text is no date.
std::optional<VbDate> parseDate(const QString& text, const QString& dateMask, const QString& timeMask);

} // namespace tsr::core
