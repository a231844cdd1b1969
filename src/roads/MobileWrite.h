// SPDX-License-Identifier: GPL-3.0-or-later
// Putting one row on the phone or taking it off: at once, or, while changes are
// kept back and no transfer run is on, noted in the row and the pending table.
#pragma once

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::roads {

// True when the entry was written or the wish noted.
bool SendSingleEntry(core::Context& ctx, tables::Recordset& row);
bool SendSinglevCardEntry(core::Context& ctx, tables::Recordset& row, bool asNew);
// Takes the row's entry off the phone (or notes the wish).
bool RemoveEntryFromMobile(core::Context& ctx, tables::Recordset& row);

} // namespace tsr::roads
