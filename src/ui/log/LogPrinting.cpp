// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/log/LogPrinting.h"

#include <QFontMetricsF>
#include <QPrintDialog>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextOption>

namespace tsr::ui {

bool printRichText(const core::RichText& text, const QString& fontName, int pointSize, QPrinter& printer) {
    QTextDocument doc;
    const QFont font(fontName, pointSize);
    doc.setDefaultFont(font);
    // The log separates its columns with tabs: stops every few centimetres keep
    // them in columns on paper.
    QTextOption option = doc.defaultTextOption();
    option.setTabStopDistance(QFontMetricsF(font).horizontalAdvance(QLatin1Char('x')) * 14);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    doc.setDefaultTextOption(option);
    QTextCursor cursor(&doc);
    for (const core::RichTextRun& run : text) {
        QTextCharFormat format;
        format.setFont(font);
        format.setFontWeight(run.bold ? QFont::Bold : QFont::Normal);
        // The log breaks its lines with CR LF; the document knows only paragraphs.
        QString plain = run.text;
        plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
        cursor.insertText(plain, format);
    }
    doc.print(&printer);
    return printer.printerState() != QPrinter::Error;
}

LogPrinter::LogPrinter() : m_printer(QPrinter::HighResolution) {}

bool LogPrinter::PrinterEinstellungen(QWidget* parent) {
    QPrintDialog dialog(&m_printer, parent);
    m_chosen = dialog.exec() == QDialog::Accepted;
    return m_chosen;
}

bool LogPrinter::print(const core::RichText& text, const QString& fontName, int pointSize, QWidget* parent) {
    QString pdf = m_printToFile;
    if (pdf.isEmpty())
        pdf = qEnvironmentVariable("TESSARINE_PRINT_TO_PDF");
    if (!pdf.isEmpty()) {
        QPrinter file(QPrinter::HighResolution);
        file.setOutputFormat(QPrinter::PdfFormat);
        file.setOutputFileName(pdf);
        return printRichText(text, fontName, pointSize, file);
    }
    if (!m_chosen && !PrinterEinstellungen(parent))
        return false;
    return printRichText(text, fontName, pointSize, m_printer);
}

} // namespace tsr::ui
