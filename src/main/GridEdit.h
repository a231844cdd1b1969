// SPDX-License-Identifier: GPL-3.0-or-later
// In-grid editing of the calendar and contact lists without the grid: a typed
// cell value is checked against what the phone keeps, written into the row and
// saved to the sides the row stands on; a delete asks first and takes the entry
// off both sides. Also the look of a row (EntryBackround). The grids call these.
#pragma once

#include "sync/vCalMatch.h"

#include <QString>

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::main {

// The grid's and its dialogs' own texts, which the numbered table does not
// hold: German for the German table, English otherwise.
enum class GridText { PhoneLimit, NotDiallable, SortBy, ThenBy, Ascending, Descending, NoColumn };
QString gridText(const core::Context& ctx, GridText text);

// The phone keeps this many characters of a calendar entry's text.
inline constexpr int kCalendarTextLimit = sync::kPlainTextLen;

// The most characters the phone keeps of `field` holding `text` in the list (0
// calendar, 1 contacts); 0 where it sets no limit.
int phoneFieldLimit(int list, const QString& field, const QString& text);

// The fields a user may change in the grid; the rest belong to the editors.
bool gridEditable(int list, const QString& field);

// Writes `text` into `field` of the current row of the list's table and saves
// the row to its sides. A text the phone cannot keep whole is cut, and the user
// is told the limit. False when nothing was saved (a field not to be edited, no
// current row, or a side refused the row).
bool GridEditCell(core::Context& ctx, int list, const QString& field, const QString& text);
// Sets or clears a flag column (the VIP mark, the alarm) the same way.
bool GridEditFlag(core::Context& ctx, int list, const QString& field, bool on);

// Deletes the current row of the active list after asking: from the phone, from
// the PIM, and from the table. False when the user declined or a side refused.
bool DeleteEntry(core::Context& ctx);

// How a row is drawn: entries outside the date range are dimmed, entries that
// stand on one side only are tinted by that side.
enum class RowLook { Normal, OutsideRange, MobileOnly, PimOnly };
RowLook EntryBackround(const core::Context& ctx, int list, const tables::Recordset& table, int viewIndex);

} // namespace tsr::main
