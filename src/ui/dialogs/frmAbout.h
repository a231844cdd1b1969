// SPDX-License-Identifier: GPL-3.0-or-later
// The about box: the program's name, its version, what it does, and where to
// read more.
#pragma once

#include <QDialog>

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(core::Context& ctx, QWidget* parent = nullptr);
};

// Shows the about box modally.
void showAbout(core::Context& ctx, QWidget* parent);

} // namespace tsr::ui
