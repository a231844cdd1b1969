// SPDX-License-Identifier: GPL-3.0-or-later
// A silent run without any window, for cron and timers: one AutoSync (BOTH,
// VCAL or VCARD) through the start-up sequence, the log summary on standard
// output (with --verbose the log's rows too), and an exit status a scheduler
// can act on: 0 without error rows, 1 with, 2 for a usage error.
#pragma once

#include <QString>
#include <QTextStream>

namespace tsr::core {
struct Context;
}

namespace tsr::main {

int runHeadless(core::Context& ctx, const QString& classicLine, QTextStream& out, QTextStream& err);

// The log's three tables as text, one row a line, fields separated by tabs.
QString logRowsText(core::Context& ctx);

} // namespace tsr::main
