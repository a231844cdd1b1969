// SPDX-License-Identifier: GPL-3.0-or-later
// The windows the commands open, reached by their form: the options, the about
// box and the help. The main window's user interface sends its showForm here.
#pragma once

#include "core/UserInterface.h"

class QWidget;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

// True when this file knows the form and showed it.
bool showForm(core::Context& ctx, core::UserInterface::Form form, QWidget* parent);

} // namespace tsr::ui
