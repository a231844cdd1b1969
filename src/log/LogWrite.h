// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the three log tables: one per transfer of an entry, one per reported error.
#pragma once

#include "core/Context.h"
#include "core/Error.h"

namespace tsr::log {

// One row of LogErrors for a reported error; does nothing before the log tables exist.
void logWriteError(core::Context& ctx, const core::TsrError& error, const QString& hint, const QString& modul,
                   const QString& proc);

} // namespace tsr::log
