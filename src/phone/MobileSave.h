// SPDX-License-Identifier: GPL-3.0-or-later
// Keeping the store of deferred phone work free of rows that lost their reason.
#pragma once

#include "core/Context.h"

namespace tsr::tables {
class Recordset;
}

namespace tsr::phone {

// Looks for the row of `key` (by UID when isUID, else by EntryID) from the store's
// start; a noted write that a delete has now overtaken is taken out. True.
bool vcalSaveKontrolle(core::Context& ctx, tables::Recordset& store, const QString& key, bool isUID);

// The same for contacts, by MobileID when isMobileID, else by EntryID.
bool vcardSaveKontrolle(core::Context& ctx, tables::Recordset& store, const QString& key, bool isMobileID);

} // namespace tsr::phone
