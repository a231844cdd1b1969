// SPDX-License-Identifier: GPL-3.0-or-later
// The PIM's calendar and the calendar table: reading the appointments of the
// date range into rows paired with the phone's, writing a row into the PIM (a
// single entry or a series), taking one out, and finding the PIM partner of a
// row that came from the phone. In the mode that keeps changes back, a write or
// delete is only noted in the row and the pending table.
#pragma once

#include <QString>

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::roads {

// The restriction of a read: [Start]>="D1" and [Start] <="D2".
QString calendarReadFilter(const QString& from, const QString& to);

// True on a finished read; false when the PIM is off or the user cancelled an AutoSync run.
bool vCalReadOutlook(core::Context& ctx, tables::Recordset& table, bool keepGrid);
bool SilentvCalReadOutlook(core::Context& ctx, tables::Recordset& table);
// Reads the item again into the table's current row.
bool vCalReadSingleOutlookEntry(core::Context& ctx, const QString& itemID, tables::Recordset& table);

// Writes the table's current row into the PIM; `IsNew` makes a new item.
void WriteOutlookEntry(core::Context& ctx, tables::Recordset& table, bool& IsNew);
bool RemoveEntryFromOutlook(core::Context& ctx, tables::Recordset& table);
// Looks in the PIM for the partner of a row read from the phone and merges it.
void SearchingforaOutlookEntry(core::Context& ctx, tables::Recordset& table);

} // namespace tsr::roads
