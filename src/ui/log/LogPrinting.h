// SPDX-License-Identifier: GPL-3.0-or-later
// The log's print-out on a real printer or into a PDF file. One LogPrinter
// keeps the printer the user chose under "Printer settings", so that the prints
// after it go there without asking again.
#pragma once

#include "core/UserInterface.h"

#include <QPrinter>
#include <QString>

class QWidget;

namespace tsr::ui {

// Lays the text out in the given font (bold runs in its bold face, tabs as
// columns) and prints it; false when the printer failed.
bool printRichText(const core::RichText& text, const QString& fontName, int pointSize, QPrinter& printer);

class LogPrinter {
public:
    LogPrinter();

    // The printer dialog; true when the user chose a printer (or a PDF file).
    bool PrinterEinstellungen(QWidget* parent);
    // Prints the text: into the file set by setPrintToFile or the environment variable
    // TESSARINE_PRINT_TO_PDF, on the printer chosen in the settings, or else after the
    // printer dialog. False when nothing was printed.
    bool print(const core::RichText& text, const QString& fontName, int pointSize, QWidget* parent);
    void setPrintToFile(const QString& pdfPath) { m_printToFile = pdfPath; }
    QPrinter& printer() { return m_printer; }

private:
    QPrinter m_printer;
    QString m_printToFile;
    bool m_chosen = false;
};

} // namespace tsr::ui
