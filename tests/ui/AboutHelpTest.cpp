// SPDX-License-Identifier: GPL-3.0-or-later
// The about box and the help: the version shown, the user guide put into
// HomeDir/Help and opened in the browser at its contents, a help folder that
// cannot be written reported, and a guide whose links all lead somewhere.
#include "DialogFixture.h"
#include "ui/dialogs/CallHelp.h"
#include "ui/dialogs/Forms.h"
#include "ui/dialogs/frmAbout.h"

#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QRegularExpression>
#include <QUrl>

using namespace tsr;

namespace {

QByteArray readFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

const QString kGuideSource = QStringLiteral(TESSARINE_SOURCE_DIR "/docs/help/HELPFILE_HVX50.html");

} // namespace

// Stands in for the desktop's browser: records the addresses it was asked to open.
class Browser : public QObject {
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

namespace {

class AboutHelpTest : public test::DialogFixture {
protected:
    void SetUp() override { QDesktopServices::setUrlHandler(QStringLiteral("file"), &browser, "open"); }
    void TearDown() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    Browser browser;
};

TEST_F(AboutHelpTest, AboutShowsNameAndVersion) {
    ui::frmAbout about(ctx);
    EXPECT_EQ(about.windowTitle(), QStringLiteral("About Tessarine"));
    EXPECT_EQ(child<QLabel>(&about, "lblVersion")->text(), QStringLiteral("Version " TESSARINE_VERSION));
    EXPECT_EQ(child<QLabel>(&about, "lblDescription")->text(), ctx.strings.text(1003));
}

// The guide goes to HomeDir/Help as it ships; an old copy there is replaced; the
// browser opens it at its contents.
TEST_F(AboutHelpTest, HelpIsInstalledAndOpenedAtItsContents) {
    const QString target = ctx.settings.HomeDir + QStringLiteral("/Help/HELPFILE_HVX50.html");
    ASSERT_TRUE(ui::CallHelp(ctx));
    EXPECT_EQ(ctx.flags.HelpFile, target);
    EXPECT_EQ(readFile(target), readFile(kGuideSource));
    ASSERT_EQ(browser.opened.size(), 1);
    EXPECT_EQ(browser.opened[0].toLocalFile(), target);
    EXPECT_EQ(browser.opened[0].fragment(), QStringLiteral("contents"));

    {
        QFile old(target);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly | QIODevice::Truncate));
        old.write("<html>an older guide</html>");
    }
    EXPECT_TRUE(ui::showForm(ctx, core::UserInterface::Form::Help, nullptr));
    EXPECT_EQ(readFile(target), readFile(kGuideSource));
    EXPECT_EQ(browser.opened.size(), 2);
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A help folder that cannot be made is reported with the path, and nothing is opened.
TEST_F(AboutHelpTest, HelpThatCannotBeWrittenIsReported) {
    QFile blocker(ctx.settings.HomeDir + QStringLiteral("/Help"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly)); // a file where the folder should be
    blocker.close();
    EXPECT_FALSE(ui::CallHelp(ctx));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("The help file cannot be opened: ") + ctx.flags.HelpFile);
    EXPECT_EQ(ui.boxes[0].icon, core::MsgIcon::Exclamation);
    EXPECT_TRUE(browser.opened.isEmpty());
}

// Every link inside the guide leads to a heading of it, and the topics users look for are there.
TEST_F(AboutHelpTest, GuideLinksResolveAndTopicsAreCovered) {
    const QString guide = QString::fromUtf8(readFile(kGuideSource));
    ASSERT_FALSE(guide.isEmpty());
    QSet<QString> ids;
    for (auto it = QRegularExpression(QStringLiteral("id=\"([^\"]+)\"")).globalMatch(guide); it.hasNext();)
        ids << it.next().captured(1);
    int links = 0;
    for (auto it = QRegularExpression(QStringLiteral("href=\"#([^\"]+)\"")).globalMatch(guide); it.hasNext();) {
        const QString target = it.next().captured(1);
        EXPECT_TRUE(ids.contains(target)) << target.toStdString();
        ++links;
    }
    EXPECT_GE(links, 10);
    EXPECT_TRUE(ids.contains(QStringLiteral("contents")));
    for (const char* topic : {"/dev/ttyACM0", "rfcomm bind", "dialout", "tessarine --headless BOTH", "OnCalendar",
                              "crontab", "tessarine OPTIONS", "vdirsyncer sync", "type = \"caldav\"", "machine.ini",
                              "logFile.rtf", "Complete sync", "Transfer later"})
        EXPECT_TRUE(guide.contains(QString::fromUtf8(topic))) << topic;
}

// Forms the dialogs do not own are left to the caller.
TEST_F(AboutHelpTest, DispatcherKnowsItsForms) {
    EXPECT_FALSE(ui::showForm(ctx, core::UserInterface::Form::Find, nullptr));
    EXPECT_FALSE(ui::showForm(ctx, core::UserInterface::Form::DateFrame, nullptr));
}

} // namespace

#include "AboutHelpTest.moc"
