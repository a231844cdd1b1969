// SPDX-License-Identifier: GPL-3.0-or-later
// Declined transfers: reading a side again when a dropped pending change was bound there,
// and the question before a row is deleted from a grid (module Allgemein).
#pragma once

#include "core/Context.h"
#include "sync/Roads.h"
#include "tables/Recordset.h"

namespace tsr::roads {

// After the user declined to transfer the pending changes: the pending table
// handed (RSCalendarPending or RSContactsPending) is cleared, and when one of its
// rows was bound for the phone (Transfernew 2) the phone side of the kind its
// first row names is read again.
void reReadMobile(core::Context& ctx, tables::Recordset& LogTable, sync::Roads& roads);
// The same for changes bound for the PIM (Transfernew 1).
void reReadPIM(core::Context& ctx, tables::Recordset& LogTable, sync::Roads& roads);

enum class EntryKind { Calendar, Contact };
// The sides a caller deletes from when the row stands on both.
struct DeleteSides {
    bool pim = false;
    bool mobile = false;
    bool both = false;
};

// Asks before the current row is deleted; true when the user answered OK.
bool ConfirmEntryDelete(core::Context& ctx, const tables::Recordset& Row, EntryKind kind, DeleteSides sides);

} // namespace tsr::roads
