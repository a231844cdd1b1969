// SPDX-License-Identifier: GPL-3.0-or-later
// The PIM session at start: no PIM, an unsupported version, the stored contact
// folder and its fall-backs, the calendar check and the folder list.
#include "pim/DOROutlookSession.h"

#include "PimTestSupport.h"

namespace tsr::test {
namespace {

// The local store's application with another version, or a name that cannot be read.
class OtherVersion : public pim::Application {
public:
    OtherVersion(std::shared_ptr<pim::Application> inner, QString version, bool nameFails = false)
        : m_inner(std::move(inner)), m_version(std::move(version)), m_nameFails(nameFails) {}
    std::shared_ptr<pim::Namespace> GetNamespace(const QString& type) override { return m_inner->GetNamespace(type); }
    QString Name() const override {
        if (m_nameFails)
            core::raise(core::err::ServerGone, QStringLiteral("Application"), QStringLiteral("gone"));
        return m_inner->Name();
    }
    QString Version() const override { return m_version; }

private:
    std::shared_ptr<pim::Application> m_inner;
    QString m_version;
    bool m_nameFails;
};

class Session : public PimStoreTest {
protected:
    void SetUp() override {
        PimStoreTest::SetUp();
        ctx.options.pim = root();
    }
    int questions() const {
        int n = 0;
        for (const ShownBox& b : ui.boxes)
            n += b.buttons == core::MsgButtons::YesNo && b.text.contains(ctx.strings.text(882));
        return n;
    }
};

// NOORG: nothing is opened and start-up goes on.
TEST_F(Session, NoOrgDoesNothing) {
    ctx.flags.GlobalCommandNoOrg = true;
    EXPECT_TRUE(pim::Check4Outlook(ctx));
    EXPECT_FALSE(ctx.servers.MOL);
    EXPECT_FALSE(ctx.flags.GlobalOrganizerOK);
}

// A first start opens the store and stores the default contact folder's identity.
TEST_F(Session, FirstStartStoresTheDefaultFolder) {
    EXPECT_TRUE(pim::Check4Outlook(ctx));
    ASSERT_TRUE(ctx.servers.MOL);
    EXPECT_TRUE(ctx.flags.GlobalOrganizerOK);
    EXPECT_EQ(ctx.pim.PIMName, QStringLiteral("Local PIM"));
    auto contacts = ns->GetDefaultFolder(pim::olFolderContacts);
    EXPECT_EQ(ctx.settings.FolderEntryID, contacts->EntryID());
    EXPECT_EQ(ctx.settings.FolderStoreID, contacts->StoreID());
    EXPECT_EQ(ctx.settings.FolderName, QStringLiteral("Contacts"));
    EXPECT_EQ(ctx.settings.FolderParent, QStringLiteral("pim"));
    EXPECT_EQ(ctx.pim.GlobalContactFolderCount, 1);
    const pim::ContactFolderList list = pim::BuildOutlookContactFolderList(ctx);
    EXPECT_EQ(list.entries, QStringList{QStringLiteral("pim\\Contacts")});
    EXPECT_EQ(list.selected, 0);
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A running application is reused: no second one is opened.
TEST_F(Session, RunningApplicationIsReused) {
    auto running = std::make_shared<OtherVersion>(app, QStringLiteral("16.0"));
    ctx.servers.MOL = running;
    EXPECT_TRUE(pim::Check4Outlook(ctx));
    EXPECT_EQ(ctx.servers.MOL, running);
    EXPECT_TRUE(ctx.flags.GlobalOrganizerOK);
}

// 7.5 goes to the question (No ends the start, Yes runs without PIM); 8.0 and 10.0 pass.
TEST_F(Session, VersionCheck) {
    ctx.servers.MOL = std::make_shared<OtherVersion>(app, QStringLiteral("7.5"));
    ui.answer(core::MsgResult::No);
    EXPECT_FALSE(pim::Check4Outlook(ctx));
    EXPECT_EQ(questions(), 1);
    EXPECT_TRUE(ui.boxes[0].text.startsWith(QStringLiteral("Local PIM 7.5")));
    EXPECT_FALSE(ctx.flags.GlobalOrganizerOK);

    ui.answer(core::MsgResult::Yes);
    EXPECT_TRUE(pim::Check4Outlook(ctx));
    EXPECT_EQ(questions(), 2);
    EXPECT_FALSE(ctx.flags.GlobalOrganizerOK);

    for (const QString& v : {QStringLiteral("8.0"), QStringLiteral("10.0.0.4")}) {
        ctx.servers.MOL = std::make_shared<OtherVersion>(app, v);
        EXPECT_TRUE(pim::Check4Outlook(ctx));
        EXPECT_TRUE(ctx.flags.GlobalOrganizerOK) << v.toStdString();
    }
    EXPECT_EQ(questions(), 2);
}

// A name that cannot be read asks too; No also marks the start as done.
TEST_F(Session, UnreadableName) {
    ctx.servers.MOL = std::make_shared<OtherVersion>(app, QStringLiteral("16.0"), true);
    ui.answer(core::MsgResult::No);
    EXPECT_FALSE(pim::Check4Outlook(ctx));
    EXPECT_EQ(questions(), 1);
    EXPECT_TRUE(ctx.flags.GlobalStartDone);
}

// No store can be made: the program runs without PIM and says nothing.
TEST_F(Session, NoPimAtAll) {
    writeFile(QStringLiteral("plainfile"), "x");
    ctx.options.pim = root() + QStringLiteral("/plainfile/store");
    EXPECT_TRUE(pim::Check4Outlook(ctx));
    EXPECT_FALSE(ctx.servers.MOL);
    EXPECT_FALSE(ctx.flags.GlobalOrganizerOK);
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A stored folder that was deleted falls back silently to the folder at index 1.
TEST_F(Session, DeletedStoredFolderFallsBackToIndexOne) {
    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/contacts/second")));
    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/contacts/gone")));
    auto gone = ns->GetDefaultFolder(pim::olFolderContacts)->Folders().at(0);
    ASSERT_EQ(gone->Name(), QStringLiteral("gone"));
    ctx.settings.FolderEntryID = gone->EntryID();
    ctx.settings.FolderStoreID = gone->StoreID();
    ASSERT_TRUE(QDir(root() + QStringLiteral("/contacts/gone")).removeRecursively());

    EXPECT_TRUE(pim::Check4Outlook(ctx));
    EXPECT_TRUE(ctx.flags.GlobalOrganizerOK);
    ASSERT_EQ(ctx.pim.GlobalContactFolderCount, 2);
    EXPECT_EQ(ctx.pim.GlobalContactFolderArray[0].Name, QStringLiteral("Contacts"));
    ASSERT_TRUE(ctx.pim.GlobalContactFolder);
    EXPECT_EQ(ctx.pim.GlobalContactFolder->Name(), QStringLiteral("second"));
    EXPECT_EQ(ctx.settings.FolderName, QStringLiteral("second"));
    EXPECT_EQ(ctx.settings.FolderParent, QStringLiteral("Contacts"));
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_EQ(pim::BuildOutlookContactFolderList(ctx).selected, 1);
}

// When no record from index 1 works, the settings are emptied and -1987 "No Folder found!" is reported.
TEST_F(Session, NoFolderFound) {
    ctx.settings.FolderEntryID = QStringLiteral("TSRF000067");
    ctx.settings.FolderStoreID = ns->GetDefaultFolder(pim::olFolderContacts)->StoreID();
    EXPECT_TRUE(pim::Check4Outlook(ctx));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("No Folder found!")));
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("-1987")));
    EXPECT_TRUE(ctx.settings.FolderEntryID.isEmpty());
    EXPECT_TRUE(ctx.settings.FolderName.isEmpty());
    EXPECT_FALSE(ctx.pim.GlobalContactFolder);
}

// A missing calendar is -1987 "Default Calendar Folder not available!"; with no contact
// folder either, the PIM is off.
TEST_F(Session, MissingCalendar) {
    ASSERT_TRUE(pim::Check4Outlook(ctx));
    ASSERT_TRUE(QDir(root() + QStringLiteral("/calendar")).removeRecursively());
    EXPECT_FALSE(pim::TestOLCalFolder(ctx));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("Default Calendar Folder not available!")));

    ctx.settings = core::Settings{};
    ctx.servers.MOL = pim::local::openLocalApplication(ctx, root() + QStringLiteral("/third"));
    ASSERT_TRUE(QDir(root() + QStringLiteral("/third")).removeRecursively());
    EXPECT_TRUE(pim::Check4Outlook(ctx));
    EXPECT_EQ(ctx.pim.GlobalContactFolderCount, 0);
    EXPECT_FALSE(ctx.flags.GlobalOrganizerOK);
}

// The default contact folder is listed even when a stray calendar file makes it
// look like a calendar; another folder that holds only calendar files is not.
TEST_F(Session, DefaultContactFolderIsListedWhateverItHolds) {
    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/contacts/work")));
    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/holidays")));
    const QByteArray ics = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:x1\r\n"
                           "DTSTART:20260401T080000\r\nSUMMARY:Stray\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
    for (const char* rel : {"/contacts/stray.ics", "/holidays/h.ics"}) {
        QFile f(root() + QString::fromLatin1(rel));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(ics);
    }
    ctx.servers.MOL = app;
    auto contacts = ns->GetDefaultFolder(pim::olFolderContacts);
    ASSERT_NE(contacts->DefaultItemType(), pim::olContactItem) << "the stray file must make it look like a calendar";
    pim::OutlookContactFolder(ctx, true);
    QStringList names;
    for (int i = 0; i < ctx.pim.GlobalContactFolderCount; ++i)
        names << ctx.pim.GlobalContactFolderArray[i].Name;
    EXPECT_EQ(names, (QStringList{contacts->Name(), QStringLiteral("work")}));
    EXPECT_EQ(ctx.pim.GlobalContactFolderArray.value(0).EntryID, contacts->EntryID());
}

// The texts of a store without its calendar folder come from the language table.
TEST_F(Session, MissingCalendarSpeaksTheUsersLanguage) {
    ASSERT_TRUE(pim::Check4Outlook(ctx));
    ctx.strings.set(925, QStringLiteral("Der Standard-Kalenderordner ist nicht verf\u00fcgbar!"));
    ASSERT_TRUE(QDir(root() + QStringLiteral("/calendar")).removeRecursively());
    EXPECT_FALSE(pim::TestOLCalFolder(ctx));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(
        ui.boxes[0].text.contains(QStringLiteral("\nDer Standard-Kalenderordner ist nicht verf\u00fcgbar!\r\n")))
        << ui.boxes[0].text.toStdString();
}

// The folder walk shows each folder's name in the status dialog unless silent.
TEST_F(Session, FolderWalkShowsProgress) {
    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/contacts/a/b")));
    ctx.servers.MOL = app;
    ctx.status.Start(QStringLiteral("Tessarine"), false);
    pim::OutlookContactFolder(ctx, false);
    EXPECT_EQ(ctx.pim.GlobalContactFolderCount, 3);
    EXPECT_TRUE(ui.statusTexts.contains(QStringLiteral("Please wait.\r\nb")));
    ui.statusTexts.clear();
    pim::OutlookContactFolder(ctx, true);
    EXPECT_EQ(ctx.pim.GlobalContactFolderCount, 3);
    EXPECT_TRUE(ui.statusTexts.isEmpty());
}

} // namespace
} // namespace tsr::test
