// SPDX-License-Identifier: GPL-3.0-or-later
// The command line: the options of this build (--home=, --config=, --pim=,
// --port=, --headless, --help, --version), taken out first with their case, and
// then the classic tokens, read into the start-up flags.
#pragma once

#include "core/Context.h"

#include <QStringList>

namespace tsr::spine {

// What is left after the "--" options are taken out: the classic line, its
// tokens joined by blanks, and whether help or the version was asked for.
struct SplitCommandLine {
    QString classic;
    bool help = false;
    bool version = false;
    QStringList unknown; // "--" options this build does not know
};

// Takes the "--" options out of the arguments (the program's name excluded) into options.
SplitCommandLine takePlatformOptions(core::PlatformOptions& options, const QStringList& arguments);
// The text of --help.
QString usageText();

// Reads the classic tokens into ctx.flags. programFolder is the program's own
// folder, for the first debug record.
void TSRCommandLine(core::Context& ctx, const QString& commandLine, const QString& programFolder = {});

} // namespace tsr::spine
