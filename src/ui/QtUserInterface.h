// SPDX-License-Identifier: GPL-3.0-or-later
// The user boundary as real windows: message boxes, the progress dialog, printing.
#pragma once

#include "core/UserInterface.h"
#include "ui/log/LogPrinting.h"
#include "ui/mainwindow/Main_Form.h"

#include <QPointer>
#include <QWidget>
#include <functional>

class QDialog;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class StatusWindow;
class frmSplash;

class QtUserInterface : public core::UserInterface {
public:
    explicit QtUserInterface(QWidget* mainWindow = nullptr);
    ~QtUserInterface() override;
    void setMainWindow(QWidget* w) { m_main = w; }
    // The main window and the context its forms work on.
    void setMainForm(Main_Form* form, core::Context* ctx);
    Main_Form* mainForm() const { return m_form; }

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
    std::optional<core::WindowGeometry> mainWindowGeometry() const override;
    QSize screenTwips() const override;
    void activateMainWindow() override;
    void unloadMainForm() override;
    void showForm(Form form) override;
    void showMainWindow() override;
    void showSplash() override;
    void showLogSummary() override;
    int compareContacts(const tables::Recordset& pimRow, const tables::Recordset& mobileRow) override;
    void SetStatusBarMobile() override;

    // How a modal dialog of the main window runs: exec() unless a test answers it.
    // True when the dialog was accepted.
    using DialogRunner = std::function<bool(QDialog&)>;
    void setDialogRunner(DialogRunner runner) { m_runDialog = std::move(runner); }
    // Prints to this PDF file without a printer dialog; empty for the dialog. The
    // environment variable TESSARINE_PRINT_TO_PDF names such a file as well.
    void setPrintToFile(const QString& pdfPath) { m_printer.setPrintToFile(pdfPath); }

private:
    bool runDialog(QDialog& dialog);

    QPointer<QWidget> m_main;
    QPointer<Main_Form> m_form;
    core::Context* m_ctx = nullptr;
    DialogRunner m_runDialog;
    int m_busyDepth = 0;
    std::unique_ptr<StatusWindow> m_status;
    QPointer<frmSplash> m_splash;
    // One printer for the log's windows and the print commands: chosen once, kept.
    LogPrinter m_printer;
};

} // namespace tsr::ui
