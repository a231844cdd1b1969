// SPDX-License-Identifier: GPL-3.0-or-later
// Admission of entries into the tables and the book of what has been read:
// PIM items turned into rows, free entry numbers on the phone, the read state
// of each side, and taking the phone's side out of a table again.
#pragma once

#include "core/Context.h"
#include "pim/Pim.h"
#include "tables/Recordset.h"

#include <memory>

namespace tsr::sync {

// Fills the current row of the scratch table `Record` from a PIM appointment.
void InsertEntry(core::Context& ctx, pim::AppointmentItem& Item, tables::Recordset& Record);
// Fills the current row of `Record` (a scratch row or an existing row) from a PIM contact.
void vCardInsertEntry(core::Context& ctx, pim::ContactItem& Item, tables::Recordset& Record);

// The lowest entry number from FirstMobileEntryID to LastMobileEntryID that no
// row uses; 1 on an empty table. False with EntryID -1 when the range is full.
bool GetFreeMobileEntryID(core::Context& ctx, tables::Recordset& table, int16_t& EntryID);

// After a read: when the phone holds more than the buffer allows, the buffer shrinks.
void MobileEntriesPruefung(core::Context& ctx);

// Take the phone's side out of the table after a broken transfer.
void vCalClearAfterMobileError(core::Context& ctx);
void vCardClearAfterMobileError(core::Context& ctx, bool Quiet, bool KeepStatus);

void vCalClearMobileStatusArray(core::Context& ctx);
void vCardClearMobileStatusArray(core::Context& ctx);
void vCalClearPIMStatusArray(core::Context& ctx);
void vCardClearPIMStatusArray(core::Context& ctx);

// Replace the table by a fresh, empty one and clear both read states.
void vCalReset(core::Context& ctx, std::unique_ptr<tables::Recordset>& table);
void vCardReset(core::Context& ctx, std::unique_ptr<tables::Recordset>& table);

// Rows that stand on the PIM side.
int32_t countPimRows(tables::Recordset& table);

} // namespace tsr::sync
