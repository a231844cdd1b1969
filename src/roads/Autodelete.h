// SPDX-License-Identifier: GPL-3.0-or-later
// The pass that removes old entries from the phone after a read of its
// calendar: entries before a date, the oldest n, or all passed ones, of the
// types the option boxes allow, series only when their box is set.
#pragma once

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::roads {

bool Delete_Bearbeitung(core::Context& ctx, tables::Recordset& Table);
// Takes the current row's entry off the phone, and the row out of the table when
// nothing else holds it.
void autodelete_remove(core::Context& ctx, tables::Recordset& Table);
// Removes the current row's entry from the phone: what the main window's delete does for the phone side.
bool EntryDelete(core::Context& ctx, tables::Recordset& Table);

} // namespace tsr::roads
