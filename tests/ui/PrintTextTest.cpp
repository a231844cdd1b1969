// SPDX-License-Identifier: GPL-3.0-or-later
// Printing the log's text through the real printer code, to a PDF file so that
// no dialog comes up: the file is a PDF, the point size and the bold runs reach
// the page, and a file that cannot be written gives false.
#include <QWidget> // the boundary keeps a guarded pointer to the main window

#include "ui/QtUserInterface.h"

#include <QApplication>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tsr;

namespace {

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

int pageCount(const QByteArray& pdf) {
    return int(QString::fromLatin1(pdf).count(QRegularExpression(QStringLiteral("/Type\\s*/Page[^s]"))));
}

// The font faces the PDF embeds, by their base names.
QStringList baseFonts(const QByteArray& pdf) {
    QStringList names;
    auto it =
        QRegularExpression(QStringLiteral("/BaseFont\\s*/([A-Za-z0-9+\\-_,]+)")).globalMatch(QString::fromLatin1(pdf));
    while (it.hasNext())
        names << it.next().captured(1);
    return names;
}

core::RichText logLines(int count, bool boldHead) {
    core::RichText text;
    text.append({QStringLiteral("Destination\tAction\tTime of transfer\r\n"), boldHead});
    QString body;
    for (int i = 0; i < count; ++i)
        body += QStringLiteral("Mobile\tcreated\t14.03.26 09:%1:00\r\n").arg(i % 60, 2, 10, QLatin1Char('0'));
    text.append({body, false});
    return text;
}

class PrintTextTest : public ::testing::Test {
protected:
    QString pdf(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }
    QTemporaryDir dir;
    ui::QtUserInterface ui;
};

// The setter sends the print to a PDF file without a dialog; a larger size needs more pages.
TEST_F(PrintTextTest, PrintsToPdfAndHonoursThePointSize) {
    ui.setPrintToFile(pdf("small.pdf"));
    ASSERT_TRUE(ui.printText(logLines(150, true), QStringLiteral("Arial"), 12));
    ui.setPrintToFile(pdf("large.pdf"));
    ASSERT_TRUE(ui.printText(logLines(150, true), QStringLiteral("Arial"), 24));

    const QByteArray small = readAll(pdf("small.pdf"));
    const QByteArray large = readAll(pdf("large.pdf"));
    ASSERT_TRUE(small.startsWith("%PDF-"));
    ASSERT_TRUE(large.startsWith("%PDF-"));
    const int smallPages = pageCount(small);
    const int largePages = pageCount(large);
    EXPECT_GE(smallPages, 2);
    EXPECT_GT(largePages, smallPages);
}

// Bold runs print in a bold face; a text without them embeds none.
TEST_F(PrintTextTest, BoldRunsUseABoldFace) {
    ui.setPrintToFile(pdf("bold.pdf"));
    ASSERT_TRUE(ui.printText(logLines(3, true), QStringLiteral("Arial"), 12));
    ui.setPrintToFile(pdf("plain.pdf"));
    ASSERT_TRUE(ui.printText(logLines(3, false), QStringLiteral("Arial"), 12));

    const QStringList bold = baseFonts(readAll(pdf("bold.pdf")));
    const QStringList plain = baseFonts(readAll(pdf("plain.pdf")));
    ASSERT_FALSE(plain.isEmpty());
    EXPECT_FALSE(bold.filter(QStringLiteral("Bold")).isEmpty()) << bold.join(u' ').toStdString();
    EXPECT_TRUE(plain.filter(QStringLiteral("Bold")).isEmpty()) << plain.join(u' ').toStdString();
}

// Without a setter the environment names the file; a file that cannot be written gives false.
TEST_F(PrintTextTest, EnvironmentNamesTheFileAndBadPathFails) {
    qputenv("TESSARINE_PRINT_TO_PDF", pdf("env.pdf").toLocal8Bit());
    const bool printed = ui.printText(logLines(2, true), QStringLiteral("Arial"), 12);
    qunsetenv("TESSARINE_PRINT_TO_PDF");
    ASSERT_TRUE(printed);
    EXPECT_TRUE(readAll(pdf("env.pdf")).startsWith("%PDF-"));

    ui.setPrintToFile(pdf("missing-folder/out.pdf"));
    EXPECT_FALSE(ui.printText(logLines(2, true), QStringLiteral("Arial"), 12));
}

} // namespace

// Printing needs fonts, so this program runs a full application object, not a core one.
// Test discovery runs it without ctest's environment, hence the offscreen default here.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
