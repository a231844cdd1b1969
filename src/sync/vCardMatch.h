// SPDX-License-Identifier: GPL-3.0-or-later
// Pairing a fresh contact with a row of the contact table: a key by LastName,
// thirteen field tests on the lengths the phone keeps, and the identity test.
// While an AutoSync run compares, the gaps of both rows are filled as it goes.
#pragma once

#include "core/Context.h"
#include "sync/Roads.h"
#include "tables/Recordset.h"

namespace tsr::sync {

// True: the table stands on the partner of the entry's current row. False: the
// table stands where it stood. Also compares a row with its snapshot (MobFile).
bool vCardFindCompare(core::Context& ctx, tables::Recordset& table, tables::Recordset& entry, Roads& roads);
// From the current row forward to the row whose LastName is `name` (case told
// apart); stops at a row that sorts after it. True when it stands on such a row.
bool vCardFindLastName(core::Context& ctx, tables::Recordset& table, const QString& name);
// Each row takes the other's values where its own are empty, and the row that
// took values is written to its side.
void vCardFillGaps(core::Context& ctx, tables::Recordset& row, tables::Recordset& entry, Roads& roads);

// The phone test: equal texts, or the same digits (the same count of digits when
// one side is empty).
bool phoneNumbersMatch(const QString& a, const QString& b);

} // namespace tsr::sync
