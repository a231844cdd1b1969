// SPDX-License-Identifier: GPL-3.0-or-later
// The store itself: where it lives, folder identities across restarts, nested
// contact folders, safe writes, and damaged files that do not stop a read.
#include "pim/DOROutlookSession.h"

#include "PimTestSupport.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QThread>

namespace tsr::test {
namespace {

class Store : public PimStoreTest {};

// A damaged file is reported once as a numbered error naming it; the rest is read.
TEST_F(Store, DamagedFilesAreReportedAndSkipped) {
    auto a = newAppointment();
    a->Save();
    auto c = newContact();
    c->setLastName(QStringLiteral("Good"));
    c->Save();
    copyData(QStringLiteral("damaged-cut-off.ics"), QStringLiteral("calendar/broken.ics"));
    copyData(QStringLiteral("damaged-no-start.ics"), QStringLiteral("calendar/nostart.ics"));
    copyData(QStringLiteral("damaged-cut-off.vcf"), QStringLiteral("contacts/broken.vcf"));
    open();

    auto items = calendarItems();
    EXPECT_EQ(items->Count(), 1);
    EXPECT_EQ(contactItems()->Count(), 1);
    ASSERT_EQ(ui.boxes.size(), 3);
    for (const ShownBox& box : ui.boxes)
        EXPECT_TRUE(box.text.contains(QString::number(pim::err::CorruptData))) << box.text.toStdString();
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("broken.ics")));
    EXPECT_TRUE(ui.boxes[1].text.contains(QStringLiteral("nostart.ics")));
    EXPECT_TRUE(ui.boxes[2].text.contains(QStringLiteral("broken.vcf")));
    // A second read of the unchanged folder says nothing new.
    EXPECT_EQ(calendarItems()->Count(), 1);
    EXPECT_EQ(ui.boxes.size(), 3);
}

// What other tools do to the folder between two reads of one session shows in the
// next read: a file replaced by one of the same size, a file added, a damaged file
// (reported once) mended, a file removed.
TEST_F(Store, ChangesOnDiskShowInTheNextRead) {
    auto a = newAppointment();
    a->setSubject(QStringLiteral("Alpha"));
    a->Save();
    const QString file = QStringLiteral("calendar/") + filesIn(QStringLiteral("calendar")).filter(u".ics").value(0);
    const QByteArray alpha = readFile(file);
    auto subjects = [&] {
        QStringList out;
        auto items = calendarItems();
        for (int i = 1; i <= items->Count(); ++i)
            out << pim::asAppointment(items->ItemAt(i))->Subject();
        out.sort();
        return out;
    };
    // As vdirsyncer and khal write: a new file renamed over the old one.
    auto replace = [&](const QString& rel, const QByteArray& text) {
        QThread::msleep(20); // past the file system's clock step, so the folder's time moves
        QSaveFile f(root() + u'/' + rel);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
        ASSERT_TRUE(f.commit());
    };
    ASSERT_EQ(subjects(), QStringList{QStringLiteral("Alpha")});

    QByteArray bravo = alpha;
    bravo.replace("Alpha", "Bravo");
    replace(file, bravo);
    EXPECT_EQ(subjects(), QStringList{QStringLiteral("Bravo")});

    QByteArray charlie = alpha;
    charlie.replace("Alpha", "Charlie").replace(a->EntryID().toLatin1(), "other-uid");
    replace(QStringLiteral("calendar/other.ics"), charlie);
    EXPECT_EQ(subjects(), (QStringList{QStringLiteral("Bravo"), QStringLiteral("Charlie")}));

    replace(QStringLiteral("calendar/late.ics"), "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:late\r\n");
    EXPECT_EQ(subjects().size(), 2);
    EXPECT_EQ(subjects().size(), 2);
    EXPECT_EQ(ui.boxes.size(), 1);
    QByteArray delta = alpha;
    delta.replace("Alpha", "Delta").replace(a->EntryID().toLatin1(), "late");
    replace(QStringLiteral("calendar/late.ics"), delta);
    EXPECT_EQ(subjects(), (QStringList{QStringLiteral("Bravo"), QStringLiteral("Charlie"), QStringLiteral("Delta")}));
    EXPECT_EQ(ui.boxes.size(), 1);

    QThread::msleep(20);
    ASSERT_TRUE(QFile::remove(root() + QStringLiteral("/calendar/other.ics")));
    EXPECT_EQ(subjects(), (QStringList{QStringLiteral("Bravo"), QStringLiteral("Delta")}));
}

// Writes go through a temporary file renamed into place: no stray files; a failed write raises.
TEST_F(Store, WritesAreAtomic) {
    auto a = newAppointment();
    a->setSubject(QStringLiteral("first"));
    a->Save();
    const QString name = a->EntryID() + QStringLiteral(".ics");
    EXPECT_EQ(filesIn(QStringLiteral("calendar")), (QStringList{name, QStringLiteral("displayname")}));
    const QByteArray before = readFile(QStringLiteral("calendar/") + name);

    a->setSubject(QStringLiteral("second"));
    a->Save();
    EXPECT_EQ(filesIn(QStringLiteral("calendar")), (QStringList{name, QStringLiteral("displayname")}));
    EXPECT_NE(readFile(QStringLiteral("calendar/") + name), before);

    // A folder that cannot take the file: the save raises a numbered error.
    ASSERT_TRUE(QDir(root() + QStringLiteral("/calendar")).removeRecursively());
    writeFile(QStringLiteral("calendar"), "not a folder");
    a->setSubject(QStringLiteral("third"));
    try {
        a->Save();
        ADD_FAILURE() << "a save into a missing folder succeeded";
    } catch (const core::TsrError& e) {
        EXPECT_EQ(e.number(), pim::err::DiskError);
        EXPECT_TRUE(e.description().contains(name));
    }
    EXPECT_EQ(readFile(QStringLiteral("calendar")), QByteArray("not a folder"));
}

// Folder identities survive a restart; a store id is long enough for the settings store.
TEST_F(Store, FolderIdentityIsStable) {
    auto contacts = ns->GetDefaultFolder(pim::olFolderContacts);
    const QString entryID = contacts->EntryID(), storeID = contacts->StoreID();
    EXPECT_GE(storeID.size(), 100);
    EXPECT_EQ(contacts->Name(), QStringLiteral("Contacts"));
    EXPECT_EQ(contacts->DefaultItemType(), pim::olContactItem);
    EXPECT_EQ(ns->GetDefaultFolder(pim::olFolderCalendar)->DefaultItemType(), pim::olAppointmentItem);
    open();
    auto again = ns->GetFolderFromID(entryID, storeID);
    EXPECT_EQ(again->EntryID(), entryID);
    EXPECT_EQ(again->StoreID(), storeID);
    EXPECT_EQ(again->Name(), QStringLiteral("Contacts"));
    EXPECT_THROW(ns->GetFolderFromID(entryID, storeID.left(99) + u'X'), core::TsrError);
    EXPECT_THROW(ns->GetFolderFromID(QStringLiteral("nonsense"), storeID), core::TsrError);
    EXPECT_THROW(ns->GetDefaultFolder(6), core::TsrError);
    EXPECT_THROW(app->GetNamespace(QStringLiteral("OTHER")), core::TsrError);
}

// Nested contact folders: names from displayname files, parents, and items of their own.
TEST_F(Store, NestedContactFolders) {
    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/contacts/work/suppliers")));
    writeFile(QStringLiteral("contacts/work/displayname"), "Work\n");
    writeFile(QStringLiteral("contacts/work/suppliers/s.vcf"),
              "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:s1\r\nFN:Sup Plier\r\nN:Plier;Sup;;;\r\nEND:VCARD\r\n");
    auto contacts = ns->GetDefaultFolder(pim::olFolderContacts);
    auto children = contacts->Folders();
    ASSERT_EQ(children.size(), 1);
    EXPECT_EQ(children[0]->Name(), QStringLiteral("Work"));
    EXPECT_EQ(pim::parentName(*children[0]), QStringLiteral("Contacts"));
    auto grand = children[0]->Folders();
    ASSERT_EQ(grand.size(), 1);
    EXPECT_EQ(grand[0]->Name(), QStringLiteral("suppliers"));
    EXPECT_EQ(pim::parentName(*grand[0]), QStringLiteral("Work"));
    EXPECT_EQ(grand[0]->DefaultItemType(), pim::olContactItem);
    EXPECT_EQ(grand[0]->Items()->Count(), 1);
    EXPECT_EQ(contacts->Items()->Count(), 0);
    EXPECT_EQ(ns->GetItemFromID(QStringLiteral("s1"))->EntryID(), QStringLiteral("s1"));
    EXPECT_EQ(ns->GetFolderFromID(grand[0]->EntryID(), grand[0]->StoreID())->Name(), QStringLiteral("suppliers"));
}

// --pim=DIR chooses the store; without it the store is under XDG_DATA_HOME, made on first use.
TEST_F(Store, StoreFolderFromOptionOrDefault) {
    QTemporaryDir data;
    const QByteArray old = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", data.path().toUtf8());
    EXPECT_FALSE(pim::PimOption(ctx, QStringLiteral("--port=/dev/ttyS0")));
    EXPECT_EQ(pim::PimStoreDir(ctx), data.path() + QStringLiteral("/Tessarine/pim"));
    pim::local::openLocalApplication(ctx, pim::PimStoreDir(ctx));
    EXPECT_TRUE(QFileInfo(data.path() + QStringLiteral("/Tessarine/pim/calendar")).isDir());
    EXPECT_TRUE(QFileInfo(data.path() + QStringLiteral("/Tessarine/pim/contacts")).isDir());
    EXPECT_TRUE(pim::PimOption(ctx, QStringLiteral("--pim=") + data.path() + QStringLiteral("/other")));
    EXPECT_EQ(pim::PimStoreDir(ctx), data.path() + QStringLiteral("/other"));
    qputenv("XDG_DATA_HOME", old);
}

} // namespace
} // namespace tsr::test
