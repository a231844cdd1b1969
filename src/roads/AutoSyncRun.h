// SPDX-License-Identifier: GPL-3.0-or-later
// AutoSync: both sides made to agree without the user choosing entries. A run
// reads the phone and the PIM for a period, chooses rows by the settings
// (SyncTyp, SyncTermine, SyncZeitraum) and writes them where they belong.
// SyncMain runs for the table the main window shows; the silent runs serve the
// command line and clear both tables at their end.
#pragma once

#include <cstdint>

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::roads {

// Which run sets the period: the ends differ on purpose.
enum class SyncRun { Main, Both, Calendar };

// Repairs the period settings and sets GlobalStartDate and GlobalEndDate by SyncZeitraum.
void InitSyncValues(core::Context& ctx, SyncRun run);

void SyncMain(core::Context& ctx);
void SilendAutoSyncBoth(core::Context& ctx);
void SilentAutoSyncvCal(core::Context& ctx);
void SilentAutoSyncvCard(core::Context& ctx);

// One row written by SyncTyp; Counter is the number of rows written so far and
// goes down by one when the row was not written.
bool SyncType(core::Context& ctx, int16_t Mode, tables::Recordset& Table, int16_t& Counter);
void SyncRemove(core::Context& ctx, tables::Recordset& Table, int32_t Count);
void PIMOverMobile(core::Context& ctx, tables::Recordset& Table, int16_t& Counter);
void PIMfillsMobile(core::Context& ctx, tables::Recordset& Table, int16_t Mode, int16_t& Counter);
void CompleteSync(core::Context& ctx, tables::Recordset& Table, int16_t& Counter);
void MobileWritePIM(core::Context& ctx, tables::Recordset& Table);

// The four row selections of a calendar run.
void SyncAlarmAnzahl(core::Context& ctx, tables::Recordset& Table);
void SyncEntriesFrom(core::Context& ctx, tables::Recordset& Table);
void SyncEntriesFromTo(core::Context& ctx, tables::Recordset& Table);
void SyncnextEntries(core::Context& ctx, tables::Recordset& Table);

// The contact runs.
void CompleteSyncvCard(core::Context& ctx, tables::Recordset& Table);
void vcardMobileWritePIM(core::Context& ctx, tables::Recordset& Table);
void PIMwriteMobile(core::Context& ctx, tables::Recordset& Table);

} // namespace tsr::roads
