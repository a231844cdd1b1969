// SPDX-License-Identifier: GPL-3.0-or-later
// The log summary: what the last transfers did, in a two-column grid, with the
// print tools (printer settings, all, summary only, details only) on a tool
// bar and on the grid's right-click menu, the way to the details, and OK,
// which clears the flag that the last transfer failed.
#pragma once

#include <QDialog>

class QMenu;
class QPushButton;
class QTableWidget;
class QToolBar;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class LogPrinter;
class log_Form;

class logSummaryForm : public QDialog {
    Q_OBJECT
public:
    // Prints through the user boundary; `printer` is the one the printer settings set up.
    logSummaryForm(core::Context& ctx, LogPrinter& printer, QWidget* parent = nullptr);
    ~logSummaryForm() override;

    // The details window, made on first use.
    log_Form* details();
    QMenu* popPrint() const { return m_popPrint; }

private:
    void LogInitlogSummaryform();
    void detailButton_Click();
    void OKButton_Click();
    void ActiveBarlog_ToolClick(const QString& tool);

    core::Context& m_ctx;
    LogPrinter& m_printer;
    QTableWidget* Zusammenfassung = nullptr;
    QToolBar* ActiveBarlog = nullptr;
    QMenu* m_popPrint = nullptr;
    QPushButton* detailButton = nullptr;
    QPushButton* OKButton = nullptr;
    log_Form* m_details = nullptr;
};

// Shows the summary modally over `parent`. Without a printer of the caller's the
// window keeps its own for the time it is open.
void showLogSummary(core::Context& ctx, QWidget* parent, LogPrinter* printer = nullptr);

} // namespace tsr::ui
