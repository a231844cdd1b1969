// SPDX-License-Identifier: GPL-3.0-or-later
// The user boundary as real windows: message boxes, the progress dialog, printing.
#pragma once

#include "core/UserInterface.h"

#include <QPointer>
#include <QWidget>

class QProgressDialog;

namespace tsr::ui {

class QtUserInterface : public core::UserInterface {
public:
    explicit QtUserInterface(QWidget* mainWindow = nullptr) : m_main(mainWindow) {}
    void setMainWindow(QWidget* w) { m_main = w; }

    core::MsgResult msgBox(const QString& text, core::MsgButtons buttons, core::MsgIcon icon,
                           const QString& title) override;
    void statusShow(const QString& title) override;
    void statusSetText(const QString& text) override;
    void statusHide() override;
    void processEvents() override;
    void refreshGrid(int list) override;
    bool mainFormVisibleAndEnabled() const override;
    void focusMainForm() override;
    bool printText(const core::RichText& text, const QString& fontName, int pointSize) override;
    void setBusyCursor(bool busy) override;
    // Prints to this PDF file without a printer dialog; empty for the dialog. The
    // environment variable TESSARINE_PRINT_TO_PDF names such a file as well.
    void setPrintToFile(const QString& pdfPath) { m_printToFile = pdfPath; }

private:
    QPointer<QWidget> m_main;
    QPointer<QProgressDialog> m_status;
    QString m_printToFile;
};

} // namespace tsr::ui
