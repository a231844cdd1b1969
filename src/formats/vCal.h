// SPDX-License-Identifier: GPL-3.0-or-later
// The calendar entry as the phone keeps it: one vCalendar 1.0 event per file.
// This module writes the text sent to the phone from a calendar row, parses a
// file read from the phone into a row, fills a new series' rule fields, and
// merges the two sides of a matched pair. The transfer itself and the choice of
// which rows go belong to the phone layer.
#pragma once

#include "core/Context.h"
#include "tables/Recordset.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace tsr::formats {

// The property heads the text is built from; PreSetActEntryFields gives them
// before every build. The DESCRIPTION head is chosen per entry.
struct vCalHeads {
    QString Version = QStringLiteral("VERSION:1.0");
    QString BeginCalendar = QStringLiteral("BEGIN:VCALENDAR");
    QString EndCalendar = QStringLiteral("END:VCALENDAR");
    QString BeginEvent = QStringLiteral("BEGIN:VEVENT");
    QString EndEvent = QStringLiteral("END:VEVENT");
    QString DTStart = QStringLiteral("DTSTART:");
    QString DTEnd = QStringLiteral("DTEND:");
    QString Summary = QStringLiteral("SUMMARY:");
    QString Categories = QStringLiteral("CATEGORIES:");
    QString RRule = QStringLiteral("RRULE:");
    QString AAlarm = QStringLiteral("AALARM:");
    QString DAlarm = QStringLiteral("DALARM:");
};
vCalHeads PreSetActEntryFields();

// The older phone models some series rules treat apart.
bool modelIsOneOf(const QString& model, std::initializer_list<const char16_t*> names);

// The text sent to the phone for the current calendar row, CR LF after every
// line. Dates are written as local time with a trailing "Z": no conversion to
// universal time. A field value that cannot be read raises its error.
QString calendarEntryText(tables::Recordset& row);
// The bytes of that text as the phone gets them: the low byte of each unit.
QByteArray calendarEntryBytes(const QString& text);
// The file name on the phone: SubType and ".vcs", or EntryID when SubType is -1.
QString calendarEntryFileName(tables::Recordset& row);
// The RRULE line's value after "RRULE:", from the row's rule fields.
QString ruleText(tables::Recordset& row);

// Fills the rule fields of the current row from its RecurrenceType, with the
// rules of the phone model in ctx.phone.MobileModel. `editorWeekdays` is the mask
// of the weekday boxes when the editor's weekday option is on.
void vCalSetSerieFields(core::Context& ctx, tables::Recordset& table, std::optional<int16_t> editorWeekdays = {});

// Parses one file's text into the table's current row (made by
// vCalCreateNewRecord) and returns true at the end. `text` is consumed line by
// line: after an error it holds what was not yet read. Errors are raised, not
// reported: -1996 to -1993 for an unexpected key, 13 for a date that is no date,
// -1991 and 9 from the UTF-8 decoding; the caller logs them and goes on with the
// next file. The row is then in no defined state.
bool ParsEntryFromMobile(core::Context& ctx, tables::Recordset& table, QString& text);

// Reads the value of an RRULE line into the current row's rule fields.
void parseRule(core::Context& ctx, tables::Recordset& table, const QString& rule);

// Merges the PIM side of `source` into the mobile row `target`.
void vCalSyncOutlookEntry(core::Context& ctx, tables::Recordset& target, tables::Recordset& source);
// Merges the mobile side of `source` into the PIM row `target`. MemoStatus is
// not copied, on purpose.
void vCalSyncMobileEntry(core::Context& ctx, tables::Recordset& target, tables::Recordset& source);

// True when the text holds a character a phone cannot dial: anything but digits
// and "*", "#", "?", "+". An empty text gives false.
bool check4PhoneCallChar(const QString& text);

} // namespace tsr::formats
