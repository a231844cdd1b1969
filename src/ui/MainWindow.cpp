// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/MainWindow.h"

#include "core/Context.h"

#include <QStatusBar>
#include <QTabWidget>

namespace tsr::ui {

MainWindow::MainWindow(core::Context& ctx, QWidget* parent) : QMainWindow(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("Main_Form"));
    setWindowTitle(m_ctx.title());
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("TabStrip"));
    setCentralWidget(tabs);
    statusBar()->setObjectName(QStringLiteral("StatusBar"));
}

} // namespace tsr::ui
