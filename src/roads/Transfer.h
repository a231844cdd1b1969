// SPDX-License-Identifier: GPL-3.0-or-later
// Transfer runs: carrying out, on both sides, the changes the pending tables
// collected while changes were kept back. A failed send to the phone ends the
// run; what was done stays done and leaves the pending table, the rest waits.
#pragma once

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::roads {

// The run of the list the main window shows: contacts when ActiveAPP is 1.
bool TransfertoMobile(core::Context& ctx, tables::Recordset& contacts, tables::Recordset& calendar);
bool TransfervCal(core::Context& ctx, tables::Recordset& table);
bool TransfervCard(core::Context& ctx, tables::Recordset& table);

// What a pending row asks for, by its side flags, EntryType, TransferMode and Transfernew.
enum class PendingAction { None, SendToMobile, RemoveFromMobile, WriteToPim, RemoveFromPim };
PendingAction pendingAction(const tables::Recordset& row);

} // namespace tsr::roads
