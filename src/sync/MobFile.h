// SPDX-License-Identifier: GPL-3.0-or-later
// MobFile.txt, the snapshot of the phone's contacts as last written. Contacts
// on the phone carry no change mark: a contact that differs from its snapshot
// has changed on that side. The file serves contacts only.
#pragma once

#include "core/Context.h"
#include "sync/Roads.h"
#include "tables/Recordset.h"

namespace tsr::sync {

// The file's place: HomeDir joined with "MobFile.txt".
QString mobFilePath(const core::Context& ctx);

// The whole file text: a quote, one line per phone contact, a line of one quote.
QString setMobFileString(core::Context& ctx, tables::Recordset& table);
// Rewrites the file from the table's phone contacts; keeps the table's position.
bool WriteMobFileforall(core::Context& ctx, tables::Recordset& table);
// Loads the file into the read state; false when it is missing or holds no contact.
bool ReadMobFile(core::Context& ctx);
// Compares a pair with its snapshot and lets the changed side overwrite the other;
// asks the user when both changed.
void MobFileAuswertung(core::Context& ctx, tables::Recordset& PIMRow, tables::Recordset& MobileRow, Roads& roads);
// Writes the file empty (one empty line).
bool DeleteMobFile(core::Context& ctx);

// The phone's data overwrite the PIM row, which is then written to the PIM.
void MobileOverPIM(core::Context& ctx, tables::Recordset& PIMRow, tables::Recordset& MobileRow, Roads& roads);
// The PIM's data overwrite the phone row, which is then sent to the phone.
void vCardPIMoverMobile(core::Context& ctx, tables::Recordset& MobileRow, tables::Recordset& PIMRow, Roads& roads);

} // namespace tsr::sync
