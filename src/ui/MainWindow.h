// SPDX-License-Identifier: GPL-3.0-or-later
// The main window: the calendar and contact grids under the tool bar.
#pragma once

#include <QMainWindow>

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(core::Context& ctx, QWidget* parent = nullptr);

private:
    core::Context& m_ctx;
};

} // namespace tsr::ui
