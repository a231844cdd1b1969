// SPDX-License-Identifier: GPL-3.0-or-later
// Moves series rows to their occurrence inside the chosen period, and the small
// row counts and keepers of the series module (Allgemein). The phone knows a
// series by its first occurrence; the grid shows it inside the period.
#pragma once

#include "core/Context.h"
#include "tables/Recordset.h"

namespace tsr::sync {

// Every series row that starts before the period moves to its occurrence in it.
// The row's PIMRecPatt stays, so the series' true start stays known.
void calcnewStartDateSerie(core::Context& ctx, tables::Recordset& table);
// The same for the current row of a weekly series.
void calcnewStartDateWeekSerie(core::Context& ctx, tables::Recordset& table);

// The series rows of a freshly admitted series: its current row moves to its
// occurrence in the period, as calcnewStartDateSerie moves every row.
bool vCalCreateMobileSerieRecords(core::Context& ctx, tables::Recordset& table);
bool vCalCreatePIMSerieRecords(core::Context& ctx, tables::Recordset& table);

// The current start (the table's fourth field) kept in altesStartDate.
void CopyonFirstRec(core::Context& ctx, tables::Recordset& table);

int32_t CountMobileOnlyRows(core::Context& ctx, tables::Recordset& table);
int32_t CountPairedRows(core::Context& ctx, tables::Recordset& table);

} // namespace tsr::sync
