// SPDX-License-Identifier: GPL-3.0-or-later
// AutoSync's rules that the read roads share: which entry types a run takes.
#pragma once

#include <cstdint>

namespace tsr::tables {
class Recordset;
}

namespace tsr::sync {

// Whether the current row's Typ is among the mask's types: 1 memos, 2 meetings,
// 4 birthdays, 8 calls; 32 takes every type. 16 means nothing.
bool EntryTypeCheck(int32_t Mask, const tables::Recordset& Table);

} // namespace tsr::sync
