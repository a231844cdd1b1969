// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's new and open commands: the calendar entry editor or the
// contact editor, whichever list the window shows.
#pragma once

class QWidget;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

// A new entry, or the current row of the active list; false when nothing was
// saved or there is no current row to open.
bool showEntryForm(core::Context& ctx, QWidget* parent, bool newEntry);

} // namespace tsr::ui
