// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/QtUserInterface.h"

#include <QApplication>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
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

void QtUserInterface::refreshGrid(int) {}

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
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

} // namespace tsr::ui
