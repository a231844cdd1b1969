// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/QtUserInterface.h"

#include "core/Context.h"
#include "main/GridEdit.h"
#include "ui/dialogs/EntryShow.h"
#include "ui/dialogs/Forms.h"
#include "ui/dialogs/StartCalendarFrame.h"
#include "ui/dialogs/Status_Anzeige.h"
#include "ui/dialogs/frmFind.h"
#include "ui/dialogs/frmSort.h"
#include "ui/dialogs/frmSplash.h"
#include "ui/editors/EntryForms.h"
#include "ui/grids/EntryGrid.h"
#include "ui/grids/EntryTableModel.h"
#include "ui/log/logSummaryForm.h"
#include "ui/mainwindow/Main_Form.h"

#include <QApplication>
#include <QMessageBox>
#include <QScreen>

namespace tsr::ui {

using core::MsgButtons;
using core::MsgIcon;
using core::MsgResult;

QtUserInterface::QtUserInterface(QWidget* mainWindow) : m_main(mainWindow) {}

QtUserInterface::~QtUserInterface() {
    delete m_splash;
}

core::MsgResult QtUserInterface::msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) {
    QMessageBox box(m_main);
    box.setWindowTitle(title);
    box.setText(text);
    switch (icon) {
    case MsgIcon::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case MsgIcon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case MsgIcon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case MsgIcon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    case MsgIcon::None:
        break;
    }
    QMessageBox::StandardButtons sb;
    switch (buttons) {
    case MsgButtons::OK:
        sb = QMessageBox::Ok;
        break;
    case MsgButtons::OKCancel:
        sb = QMessageBox::Ok | QMessageBox::Cancel;
        break;
    case MsgButtons::AbortRetryIgnore:
        sb = QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
        break;
    case MsgButtons::YesNoCancel:
        sb = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        break;
    case MsgButtons::YesNo:
        sb = QMessageBox::Yes | QMessageBox::No;
        break;
    case MsgButtons::RetryCancel:
        sb = QMessageBox::Retry | QMessageBox::Cancel;
        break;
    }
    box.setStandardButtons(sb);
    switch (box.exec()) {
    case QMessageBox::Ok:
        return MsgResult::OK;
    case QMessageBox::Abort:
        return MsgResult::Abort;
    case QMessageBox::Retry:
        return MsgResult::Retry;
    case QMessageBox::Ignore:
        return MsgResult::Ignore;
    case QMessageBox::Yes:
        return MsgResult::Yes;
    case QMessageBox::No:
        return MsgResult::No;
    default:
        return MsgResult::Cancel;
    }
}

void QtUserInterface::statusShow(const QString& title) {
    if (!m_status && m_ctx)
        m_status = std::make_unique<StatusWindow>(*m_ctx, m_main);
    if (m_status)
        m_status->statusShow(title);
}

void QtUserInterface::statusSetText(const QString& text) {
    if (m_status)
        m_status->statusSetText(text);
}

void QtUserInterface::statusHide() {
    if (m_status)
        m_status->statusHide();
}

void QtUserInterface::processEvents() {
    if (m_status)
        m_status->processEvents();
    else
        QApplication::processEvents();
}

void QtUserInterface::setMainForm(Main_Form* form, core::Context* ctx) {
    m_form = form;
    m_main = form;
    m_ctx = ctx;
}

void QtUserInterface::refreshGrid(int list) {
    if (m_form)
        m_form->refreshGrid(list);
}

std::optional<core::WindowGeometry> QtUserInterface::mainWindowGeometry() const {
    if (!m_form)
        return std::nullopt;
    return m_form->geometryInTwips();
}

QSize QtUserInterface::screenTwips() const {
    const QScreen* screen = m_form ? m_form->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return core::UserInterface::screenTwips();
    return screen->size() * 15;
}

void QtUserInterface::activateMainWindow() {
    if (!m_form)
        return;
    if (m_form->isMinimized())
        m_form->showNormal();
    m_form->raise();
    m_form->activateWindow();
}

void QtUserInterface::unloadMainForm() {
    if (m_form)
        m_form->unload();
}

void QtUserInterface::showMainWindow() {
    delete m_splash;
    if (!m_form)
        return;
    if (!m_form->isVisible()) {
        m_form->applySavedGeometry();
        m_form->show();
    }
    m_form->refreshTools();
    m_form->refreshGrid(0);
    m_form->refreshGrid(1);
}

void QtUserInterface::showSplash() {
    if (m_ctx && !m_splash)
        m_splash = ui::showSplash(*m_ctx);
}

void QtUserInterface::showLogSummary() {
    if (m_ctx)
        ui::showLogSummary(*m_ctx, m_main, &m_printer);
}

int QtUserInterface::compareContacts(const tables::Recordset& pimRow, const tables::Recordset& mobileRow) {
    return m_ctx ? ui::compareContacts(*m_ctx, m_main, pimRow, mobileRow) : 0;
}

void QtUserInterface::SetStatusBarMobile() {
    if (m_form)
        m_form->refreshStatusBar();
}

bool QtUserInterface::runDialog(QDialog& dialog) {
    if (m_runDialog)
        return m_runDialog(dialog);
    return dialog.exec() == QDialog::Accepted;
}

void QtUserInterface::showForm(Form form) {
    if (!m_form || !m_ctx)
        return;
    EntryGrid* grid = m_form->activeGrid();
    switch (form) {
    case Form::Find: {
        frmFind dialog(*m_ctx, *grid->model(), m_form->lastFind(), m_form);
        if (runDialog(dialog) && !m_form->findEntry(dialog.request()))
            msgBox(m_ctx->strings.text(735), core::MsgButtons::OK, core::MsgIcon::Information,
                   m_ctx->strings.text(738));
        break;
    }
    case Form::Search:
        m_form->GridExFindStart();
        break;
    case Form::Sort: {
        frmSort dialog(*m_ctx, *grid->model(), m_form);
        if (runDialog(dialog))
            grid->model()->sortBy(dialog.keys());
        break;
    }
    case Form::SwitchView:
        m_form->SwitchGridView();
        break;
    case Form::DeleteEntry:
        main::DeleteEntry(*m_ctx);
        break;
    case Form::DateFrame:
        showDateFrame(*m_ctx, m_form);
        break;
    case Form::NewEntry:
    case Form::OpenEntry:
        showEntryForm(*m_ctx, m_form, form == Form::NewEntry);
        break;
    case Form::Options:
    case Form::About:
    case Form::Help:
        ui::showForm(*m_ctx, form, m_form);
        break;
    }
}

bool QtUserInterface::mainFormVisibleAndEnabled() const {
    return m_main && m_main->isVisible() && m_main->isEnabled();
}

void QtUserInterface::focusMainForm() {
    if (m_main)
        m_main->activateWindow();
}

bool QtUserInterface::printText(const core::RichText& text, const QString& fontName, int pointSize) {
    return m_printer.print(text, fontName, pointSize, m_main);
}

void QtUserInterface::setBusyCursor(bool busy) {
    // The commands put the normal pointer back more often than they took it away.
    if (busy) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        ++m_busyDepth;
    } else if (m_busyDepth > 0) {
        QApplication::restoreOverrideCursor();
        --m_busyDepth;
    }
}

} // namespace tsr::ui
