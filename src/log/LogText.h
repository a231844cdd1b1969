// SPDX-License-Identifier: GPL-3.0-or-later
// The log as text: the summary of the last transfers, and the three log tables
// one after the other with bold column heads, as the log file and the
// print-out show them.
#pragma once

#include "core/Context.h"

#include <QList>
#include <QPair>

namespace tsr::log {

// The rows of the summary window, label and value: "Summary", the number of rows
// transferred, the date, start and end of the transfers, the transfer and program errors.
QList<QPair<QString, QString>> logSummaryRows(const core::Context& ctx);

// Builds ctx.log.LogSummaryText from the summary rows: the title, a line break, then
// each further row as label, two tabs, value, rows separated by line breaks.
void LogInitlogSummaryText(core::Context& ctx);

// The printable log. With `Details` the summary comes first.
core::RichText logGridZusammensetzung(core::Context& ctx, bool Details);

// Prints the log: mode "all" with the summary (built afresh), any other mode without it. With no
// row in any log table and a mode other than "all" the user is told there is no data.
void logPrint(core::Context& ctx, const QString& Mode);

// Prints the summary text alone, in the log's print font (the summary window's
// "Print summary"), built afresh as the window does when it opens.
void logPrintSummary(core::Context& ctx);

} // namespace tsr::log
