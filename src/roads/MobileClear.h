// SPDX-License-Identifier: GPL-3.0-or-later
// Clearing the phone: every calendar entry or every contact off the phone after
// the user said yes, and the phone's side off the table's rows.
#pragma once

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::roads {

// Asks, then deletes; true when the phone was cleared.
bool vCalClearMobile(core::Context& ctx);
bool vCardClearMobile(core::Context& ctx);

// Walk the table and take each row's entry off the phone; false when a delete failed
// or the user cancelled.
bool vCalDeleteAllMobileEntries(core::Context& ctx, tables::Recordset& table);
bool vCardDeleteAllMobileEntries(core::Context& ctx, tables::Recordset& table);
// Takes the current contact row's entry off the phone and the phone side off the row.
bool vCardEntryDelete(core::Context& ctx, tables::Recordset& table);

} // namespace tsr::roads
