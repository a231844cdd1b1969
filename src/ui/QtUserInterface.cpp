// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/QtUserInterface.h"

#include "core/Context.h"
#include "main/GridEdit.h"
#include "ui/dialogs/frmFind.h"
#include "ui/dialogs/frmSort.h"
#include "ui/grids/EntryGrid.h"
#include "ui/grids/EntryTableModel.h"
#include "ui/mainwindow/Main_Form.h"

#include <QApplication>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QScreen>
#include <QTextCursor>
#include <QTextDocument>

namespace tsr::ui {

using core::MsgButtons;
using core::MsgIcon;
using core::MsgResult;

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
    if (!m_status) {
        m_status = new QProgressDialog(m_main);
        m_status->setObjectName(QStringLiteral("Status_Anzeige"));
        m_status->setRange(0, 0);
        m_status->setWindowModality(Qt::NonModal);
    }
    m_status->setWindowTitle(title);
    m_status->show();
}

void QtUserInterface::statusSetText(const QString& text) {
    if (m_status)
        m_status->setLabelText(text);
}

void QtUserInterface::statusHide() {
    if (m_status) {
        m_status->hide();
        m_status->deleteLater();
    }
}

void QtUserInterface::processEvents() {
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
    // The forms below are built elsewhere and wired in with them.
    case Form::Options:
    case Form::About:
    case Form::DateFrame:
    case Form::Help:
    case Form::NewEntry:
    case Form::OpenEntry:
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
    QPrinter printer(QPrinter::HighResolution);
    QString pdfPath = m_printToFile;
    if (pdfPath.isEmpty())
        pdfPath = qEnvironmentVariable("TESSARINE_PRINT_TO_PDF");
    if (!pdfPath.isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdfPath);
    } else {
        QPrintDialog dialog(&printer, m_main);
        if (dialog.exec() != QDialog::Accepted)
            return false;
    }
    QTextDocument doc;
    const QFont font(fontName, pointSize);
    doc.setDefaultFont(font);
    QTextCursor cursor(&doc);
    for (const auto& run : text) {
        QTextCharFormat f;
        f.setFont(font);
        f.setFontWeight(run.bold ? QFont::Bold : QFont::Normal);
        // The log breaks its lines with CR LF; the document knows only paragraphs.
        QString plain = run.text;
        plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
        cursor.insertText(plain, f);
    }
    doc.print(&printer);
    return printer.printerState() != QPrinter::Error;
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
