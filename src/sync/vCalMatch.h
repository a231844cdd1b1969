// SPDX-License-Identifier: GPL-3.0-or-later
// Pairing a freshly read calendar entry with the row of the other side that
// stands for the same appointment (the merges of a found pair are the format's). The
// pairing is never stored: it is found anew from the contents at each read.
#pragma once

#include "core/Context.h"
#include "tables/Recordset.h"

namespace tsr::sync {

// Looks in `table` for the partner of the fresh entry (the current row of `entry`).
// A SearchDate other than 0 replaces the entry's own start as the key. True: the
// table stands on the partner. False: the table stands where it stood. A series
// whose PimRecPattString is empty gets it from its StartDate, hit or miss.
bool vCalFindCompare(core::Context& ctx, tables::Recordset& table, tables::Recordset& entry, core::VbDate& SearchDate);
// The identity test: keeps two identical appointments apart as two rows.
bool vcalCheckbeforecompare(core::Context& ctx, const tables::Recordset& tableRow, const tables::Recordset& entry);
// Cuts the row's Text to what the phone keeps, and Description with it.
void vcalTextCheck(core::Context& ctx, tables::Recordset& row);

// The phone keeps this many characters of an entry's text (a call keeps Phonecall_Len).
inline constexpr int kPlainTextLen = 32;

// Which side a read road reads.
enum class ReadSide { Mobile, PIM };

// What every read road does with one fresh calendar entry: when the other side
// has been read and holds rows, look for the partner and merge into it; otherwise
// (and on a miss) append the entry as a row of its own. True when it merged.
bool admitCalendarEntry(core::Context& ctx, tables::Recordset& table, tables::Recordset& entry, ReadSide side);

} // namespace tsr::sync
