// SPDX-License-Identifier: GPL-3.0-or-later
// The three log tables: one row per calendar entry transferred, one per contact
// transferred, one per reported error. They live from start-up to the end of
// the process and are never stored except as the text of logFile.rtf.
#pragma once

#include "core/Context.h"

namespace tsr::log {

// Creates LogCalendar, LogContacts and LogErrors with their fields in column order
// and opens them. Tables that exist already are replaced by empty ones.
void LogInit(core::Context& ctx);

} // namespace tsr::log
