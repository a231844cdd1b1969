// SPDX-License-Identifier: GPL-3.0-or-later
// The program's help: the user guide travels inside the program and is put into
// HomeDir/Help when it is missing or out of date, then opened in the user's
// browser.
#pragma once

#include <QString>

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

// Writes the user guide to ctx.flags.HelpFile (SetHelp's path) unless it is there
// with the same text already; false when it could not be written.
bool installHelpFile(core::Context& ctx);
// Opens the help at its contents; a help file that cannot be opened is reported.
bool CallHelp(core::Context& ctx);

} // namespace tsr::ui
