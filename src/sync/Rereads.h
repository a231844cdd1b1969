// SPDX-License-Identifier: GPL-3.0-or-later
// After a transfer: reading a side again when the log says something went there,
// and the question before a row is deleted from a grid (module Allgemein).
#pragma once

#include "core/Context.h"
#include "sync/Roads.h"
#include "tables/Recordset.h"

namespace tsr::sync {

// When a row of the log table says an entry went to the phone (Transfernew 2),
// the log table is cleared and the phone side of its kind is read again.
void reReadMobile(core::Context& ctx, tables::Recordset& LogTable, Roads& roads);
// The same for the PIM (Transfernew 1).
void reReadPIM(core::Context& ctx, tables::Recordset& LogTable, Roads& roads);

enum class EntryKind { Calendar, Contact };
// The sides a caller deletes from when the row stands on both.
struct DeleteSides {
    bool pim = false;
    bool mobile = false;
    bool both = false;
};

// Asks before the current row is deleted; true when the user answered OK.
bool ConfirmEntryDelete(core::Context& ctx, const tables::Recordset& Row, EntryKind kind, DeleteSides sides);

} // namespace tsr::sync
