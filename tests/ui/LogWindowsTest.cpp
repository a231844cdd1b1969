// SPDX-License-Identifier: GPL-3.0-or-later
// The log windows as real windows: the summary after a failed transfer and OK
// clearing the error flag, the details grids with their heads and tool tips,
// and every print tool printing into a PDF that pdftotext and pdftoppm read back.
#include "DialogFixture.h"
#include "SampleLog.h"
#include "log/LogInit.h"
#include "tables/TSRADODB.h"
#include "ui/log/LogPrinting.h"
#include "ui/log/logSummaryForm.h"
#include "ui/log/log_Form.h"

#include <QAction>
#include <QFile>
#include <QHeaderView>
#include <QImage>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTableWidget>
#include <QToolBar>

using namespace tsr;

namespace {

// Prints through the real print code into a PDF file of the test's folder.
class PdfUi : public test::ScriptedUi {
public:
    bool printText(const core::RichText& text, const QString& fontName, int pointSize) override {
        ++prints;
        printer.setPrintToFile(pdfPath);
        return printer.print(text, fontName, pointSize, nullptr);
    }
    ui::LogPrinter printer;
    QString pdfPath;
    int prints = 0;
};

class LogWindowsTest : public test::DialogFixture {
protected:
    LogWindowsTest() { ctx.ui = &pdfUi; }

    QString run(const QString& program, const QStringList& args) {
        QProcess p;
        p.start(program, args);
        EXPECT_TRUE(p.waitForFinished(30000)) << program.toStdString();
        EXPECT_EQ(p.exitCode(), 0) << program.toStdString() << p.readAllStandardError().toStdString();
        return QString::fromUtf8(p.readAllStandardOutput());
    }
    // Triggers one tool of the print pop-up and gives the text of the PDF it printed.
    QString printWith(ui::logSummaryForm& form, const char* tool, const QString& name) {
        pdfUi.pdfPath = dir.filePath(name + QStringLiteral(".pdf"));
        QAction* action = form.popPrint()->findChild<QAction*>(QString::fromLatin1(tool));
        EXPECT_NE(action, nullptr) << tool;
        if (!action)
            return {};
        action->trigger();
        if (!QFile::exists(pdfUi.pdfPath))
            return {};
        return run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdfUi.pdfPath, QStringLiteral("-")});
    }
    static QStringList column(const QTableWidget* grid, int c) {
        QStringList out;
        for (int r = 0; r < grid->rowCount(); ++r)
            out << (grid->item(r, c) ? grid->item(r, c)->text() : QString());
        return out;
    }
    static QStringList heads(const QTableWidget* grid) {
        QStringList out;
        for (int c = 0; c < grid->columnCount(); ++c)
            out << grid->horizontalHeaderItem(c)->text();
        return out;
    }

    PdfUi pdfUi;
};

// After a failed transfer the summary counts the rows and errors; OK clears the flag.
TEST_F(LogWindowsTest, SummaryAfterAFailedTransferAndOkClearsTheFlag) {
    test::fillSampleLog(ctx);
    ASSERT_TRUE(ctx.log.LogHasError);
    ui::logSummaryForm form(ctx, pdfUi.printer);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Tessarine log summary"));
    auto* grid = child<QTableWidget>(&form, "Zusammenfassung");
    EXPECT_EQ(column(grid, 0), (QStringList{QStringLiteral("Summary"), QStringLiteral("Transfered data:"),
                                            QStringLiteral("Date of transfers:"), QStringLiteral("Start of transfer:"),
                                            QStringLiteral("End of transfer:"), QStringLiteral("Transfer errors:"),
                                            QStringLiteral("Program errors:")}));
    EXPECT_EQ(column(grid, 1),
              (QStringList{QString(), QStringLiteral("7"), QStringLiteral("14.03.26"), QStringLiteral("09:26:53"),
                           QStringLiteral("09:26:53"), QStringLiteral("1"), QStringLiteral("1")}));
    // Every label fits its column.
    EXPECT_GE(grid->columnWidth(0), grid->fontMetrics().horizontalAdvance(QStringLiteral("Date of transfers:")));
    form.show();
    child<QPushButton>(&form, "OKButton")->click();
    EXPECT_FALSE(ctx.log.LogHasError);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.result(), QDialog::Accepted);
}

// The details show each table in its grid with localised heads and tool tips; grids
// without rows step aside, and with no rows anywhere all three stay.
TEST_F(LogWindowsTest, DetailsGridsHeadsAndLayout) {
    test::fillSampleLog(ctx);
    ui::logSummaryForm form(ctx, pdfUi.printer);
    child<QPushButton>(&form, "detailButton")->click();
    ui::log_Form* details = form.details();
    ASSERT_TRUE(details->isVisible());
    EXPECT_EQ(details->windowTitle(), QStringLiteral("Tessarine log details"));
    EXPECT_EQ(child<QPushButton>(details, "closeButton")->text(), QStringLiteral("close"));
    auto* calendar = child<QTableWidget>(details, "logAuflistung");
    auto* contacts = child<QTableWidget>(details, "logContact");
    auto* errors = child<QTableWidget>(details, "GridEXTSRFehler");
    EXPECT_EQ(calendar->rowCount(), 5);
    EXPECT_EQ(contacts->rowCount(), 2);
    EXPECT_EQ(errors->rowCount(), 1);
    EXPECT_EQ(
        heads(calendar),
        (QStringList{QStringLiteral("Destination"), QStringLiteral("Action"), QStringLiteral("Time of transfer"),
                     QStringLiteral("Entry date"), QStringLiteral("Entry time"), QStringLiteral("Description"),
                     QStringLiteral("Entry type"), QStringLiteral("Error"), QStringLiteral("Error description")}));
    EXPECT_EQ(heads(contacts)[4], QStringLiteral("Contact name"));
    EXPECT_EQ(heads(errors), (QStringList{QStringLiteral("Time of error"), QStringLiteral("Error number"),
                                          QStringLiteral("Error description"), QStringLiteral("Module name"),
                                          QStringLiteral("Function name")}));
    EXPECT_EQ(calendar->horizontalHeaderItem(0)->toolTip(), QStringLiteral("Transfer destination"));
    EXPECT_EQ(calendar->horizontalHeaderItem(1)->toolTip(), QStringLiteral("Implemented action"));
    EXPECT_EQ(calendar->horizontalHeaderItem(7)->toolTip(), QStringLiteral("Sync errors shown"));
    EXPECT_EQ(errors->horizontalHeaderItem(4)->toolTip(), QStringLiteral("Function name shown"));
    EXPECT_EQ(column(calendar, 5).last(), QStringLiteral("Quarterly review"));
    EXPECT_EQ(column(calendar, 7).last(), QStringLiteral("Yes"));
    EXPECT_EQ(column(contacts, 5), (QStringList{QStringLiteral("+49 30 1234567"), QStringLiteral("+44 20 7946 0018")}));
    EXPECT_EQ(column(errors, 3), QStringList{QStringLiteral("ATC")});
    EXPECT_TRUE(calendar->isVisible() && contacts->isVisible() && errors->isVisible());

    // Only the error grid holds rows: the others step aside.
    log::LogInit(ctx);
    log::logWriteError(ctx, core::TsrError(5, QStringLiteral("x"), QStringLiteral("Invalid call")), QString(),
                       QStringLiteral("Log"), QStringLiteral("logPrint"));
    details->LogInitlogForm();
    EXPECT_FALSE(calendar->isVisible());
    EXPECT_FALSE(contacts->isVisible());
    EXPECT_TRUE(errors->isVisible());
    log::LogInit(ctx);
    details->LogInitlogForm();
    EXPECT_TRUE(calendar->isVisible() && contacts->isVisible() && errors->isVisible());
    EXPECT_EQ(calendar->rowCount() + contacts->rowCount() + errors->rowCount(), 0);
}

// Each print tool into a PDF, read back as text: all has the summary and the tables,
// details the tables alone, summary the summary alone. The page renders as an image.
TEST_F(LogWindowsTest, EachPrintModeToPdf) {
    for (const char* tool : {"pdftotext", "pdftoppm"})
        if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
            GTEST_SKIP() << tool << " is not installed (scripts/install-deps.sh installs poppler-utils)";
    test::fillSampleLog(ctx);
    ui::logSummaryForm form(ctx, pdfUi.printer);

    const QString all = printWith(form, "Printall", QStringLiteral("all"));
    EXPECT_EQ(ctx.log.LogPrintMode, QStringLiteral("all"));
    for (const char* expected : {"Summary", "Transfered data:", "Program errors:", "Destination", "Dentist, Dr. Brandt",
                                 "Contact name", "Okafor", "Time of error", "Mobile denied access.", "ATCSendEntry"})
        EXPECT_TRUE(all.contains(QString::fromLatin1(expected))) << expected << "\n" << all.toStdString();

    const QString details = printWith(form, "Printdetails", QStringLiteral("details"));
    EXPECT_EQ(ctx.log.LogPrintMode, QStringLiteral("details"));
    EXPECT_FALSE(details.contains(QStringLiteral("Transfered data:"))) << details.toStdString();
    for (const char* expected : {"Destination", "Quarterly review", "Contact phone number", "Function name"})
        EXPECT_TRUE(details.contains(QString::fromLatin1(expected))) << expected << "\n" << details.toStdString();

    const QString summary = printWith(form, "Printsummary", QStringLiteral("summary"));
    EXPECT_TRUE(summary.contains(QStringLiteral("Transfered data:"))) << summary.toStdString();
    EXPECT_TRUE(summary.contains(QStringLiteral("Transfer errors:")));
    EXPECT_FALSE(summary.contains(QStringLiteral("Dentist")));
    EXPECT_FALSE(summary.contains(QStringLiteral("Destination")));
    EXPECT_EQ(pdfUi.prints, 3);

    // The first page as an image: a white page with dark text on it.
    const QString prefix = dir.filePath(QStringLiteral("page"));
    run(QStringLiteral("pdftoppm"),
        {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("50"), QStringLiteral("-f"), QStringLiteral("1"),
         QStringLiteral("-l"), QStringLiteral("1"), dir.filePath(QStringLiteral("all.pdf")), prefix});
    QImage page;
    for (const QString& candidate : {prefix + QStringLiteral("-1.png"), prefix + QStringLiteral("-01.png")})
        if (page.load(candidate))
            break;
    ASSERT_FALSE(page.isNull());
    EXPECT_GT(page.height(), page.width()); // portrait paper
    int dark = 0;
    for (int y = 0; y < page.height(); ++y)
        for (int x = 0; x < page.width(); ++x)
            dark += qGray(page.pixel(x, y)) < 128;
    EXPECT_GT(dark, 200);
    EXPECT_LT(dark, page.width() * page.height() / 4);
}

// An empty log prints nothing for the details and says so; "all" still prints the titles.
TEST_F(LogWindowsTest, EmptyLogHasNoDataForPrinting) {
    ASSERT_TRUE(tables::CreateInitAndSetAllRS(ctx));
    ui::logSummaryForm form(ctx, pdfUi.printer);
    auto* grid = child<QTableWidget>(&form, "Zusammenfassung");
    EXPECT_EQ(column(grid, 1), (QStringList{QString(), QStringLiteral("0"), QString(), QString(), QString(),
                                            QStringLiteral("0"), QStringLiteral("0")}));
    EXPECT_TRUE(printWith(form, "Printdetails", QStringLiteral("empty-details")).isEmpty());
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("empty-details.pdf"))));
    ASSERT_EQ(pdfUi.boxes.size(), 1);
    EXPECT_EQ(pdfUi.boxes[0].text, QStringLiteral("No data for printing"));
    EXPECT_EQ(pdfUi.prints, 0);
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        return;
    const QString all = printWith(form, "Printall", QStringLiteral("empty-all"));
    EXPECT_TRUE(all.contains(QStringLiteral("Summary"))) << all.toStdString();
    EXPECT_FALSE(all.contains(QStringLiteral("Destination")));
}

// The right mouse button on the summary grid and on its tool bar opens the print pop-up.
TEST_F(LogWindowsTest, RightClickOpensThePrintPopup) {
    ASSERT_TRUE(tables::CreateInitAndSetAllRS(ctx));
    ui::logSummaryForm form(ctx, pdfUi.printer);
    form.show();
    auto* grid = child<QTableWidget>(&form, "Zusammenfassung");
    ASSERT_FALSE(form.popPrint()->isVisible());
    emit grid->customContextMenuRequested(QPoint(5, 5));
    EXPECT_TRUE(form.popPrint()->isVisible());
    form.popPrint()->close();
    emit child<QToolBar>(&form, "ActiveBarlog")->customContextMenuRequested(QPoint(5, 5));
    EXPECT_TRUE(form.popPrint()->isVisible());
    form.popPrint()->close();
    QStringList texts;
    for (QAction* a : form.popPrint()->actions())
        if (!a->isSeparator())
            texts << a->text();
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Printer settings"), QStringLiteral("Print all"),
                                  QStringLiteral("Print summary"), QStringLiteral("Print details")}));
}

} // namespace
