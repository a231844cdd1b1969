// SPDX-License-Identifier: GPL-3.0-or-later
// All settings between the store and the process: the first-run keys
// (RegValCreate), every setting into memory at start with its missing value and
// read rule (RegValGet), and every setting back (RegValSet).
#pragma once

#include "core/Context.h"
#include "core/Error.h"

namespace tsr::spine {

// The fixed text the value TSR holds.
inline const QString MakerText = QStringLiteral("Orvane Tessarine 5.0");

// The data folder a first start writes as HomeDir: $XDG_DATA_HOME/Tessarine.
QString defaultHomeDir();

// Makes the keys of a first run and writes HomeDir when it is absent; false after
// the first failure, which the user has been shown.
bool RegValCreate(core::Context& ctx);
// Reads every setting into ctx.settings; a value that does not convert keeps its
// missing value and the reading goes on.
void RegValGet(core::Context& ctx);
// Writes every setting back; with skipPort the file-transfer port stays unwritten.
bool RegValSet(core::Context& ctx, bool skipPort);
// What the main window's unloading saves: nothing in a second instance or a silent run.
bool saveSettingsOnUnload(core::Context& ctx);

// The box of a failed settings procedure: title "An error in:<title>:<proc>", the
// number, description and location, and the value or key that failed when known.
void showSettingsError(core::Context& ctx, const core::TsrError& error, const QString& proc, const QString& name = {});

} // namespace tsr::spine
