// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the three log tables: one per transfer of an entry, one per reported
// error, and the log state that goes with them (LogHasError, the counters, the
// date and times of the first and last row).
#pragma once

#include "core/Context.h"
#include "core/Error.h"
#include "tables/Recordset.h"

namespace tsr::log {

// One row of LogErrors for a reported error; does nothing before the log tables
// exist. Only the last line of the text stays, followed by a blank.
void logWriteError(core::Context& ctx, const core::TsrError& error, const QString& hint, const QString& modul,
                   const QString& proc);

// One transfer row for the current row of `entry` (a calendar or a contact table),
// with ctx.log.LogTransfer and ctx.log.LogAction as destination and action, and
// `error` as the transfer's outcome (number 0 and no description: it went well).
void logWriteEntry(core::Context& ctx, const tables::Recordset& entry, const core::TsrError& error,
                   const QString& modul, const QString& proc);

// The action texts the writers put into ctx.log.LogAction, in the current language.
QString logActionCreated(const core::Context& ctx);
QString logActionChanged(const core::Context& ctx);
QString logActionDeleted(const core::Context& ctx);

} // namespace tsr::log
