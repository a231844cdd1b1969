// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/Forms.h"

#include "ui/dialogs/CallHelp.h"
#include "ui/dialogs/Einstellungen.h"
#include "ui/dialogs/frmAbout.h"

namespace tsr::ui {

bool showForm(core::Context& ctx, core::UserInterface::Form form, QWidget* parent) {
    using Form = core::UserInterface::Form;
    switch (form) {
    case Form::Options:
        showOptions(ctx, parent);
        return true;
    case Form::About:
        showAbout(ctx, parent);
        return true;
    case Form::Help:
        CallHelp(ctx);
        return true;
    default:
        return false;
    }
}

} // namespace tsr::ui
