// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/MobFile.h"
#include "SyncTestSupport.h"

#include <QFile>
#include <QTemporaryDir>

using namespace tsr;
using namespace tsr::sync;
using test::setFields;
using test::textOf;

namespace {
class MobFile : public test::SyncTest {
protected:
    MobFile() {
        ctx.settings.HomeDir = home.path();
        pimTable = makeContacts(QStringLiteral("scratch"));
    }
    QByteArray fileBytes() {
        QFile f(mobFilePath(ctx));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }
    void writeFile(const QByteArray& bytes) {
        QFile f(mobFilePath(ctx));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    // A phone row and its PIM partner as the snapshot last saw them.
    void addPair(const QString& phone, const QString& pimPhone) {
        addContactRow(contacts(), {{u"Mobile", true},
                                   {u"EntryType", int32_t(2)},
                                   {u"MobileID", u"4"},
                                   {u"LastName", u"Roth"},
                                   {u"FirstName", u"Ida"},
                                   {u"Phone", phone},
                                   {u"EntryFile", u"4.vcf"}});
        addContactRow(*pimTable, {{u"PIM", true},
                                  {u"EntryType", int32_t(1)},
                                  {u"UID", u"uid-4"},
                                  {u"LastName", u"Roth"},
                                  {u"FirstName", u"Ida"},
                                  {u"Phone", pimPhone}});
    }
    void snapshot(const QString& phone) {
        writeFile("\"4\tuid-4\t1\t1\tRoth\tIda\t\t" + phone.toLatin1() + "\t\t\t\t0\t\t\t\t\t\t\r\n\"\r\n");
        ASSERT_TRUE(ReadMobFile(ctx));
    }

    QTemporaryDir home;
    std::unique_ptr<tables::Recordset> pimTable;
    test::RecordingRoads roads;
};
} // namespace

// The file is one quoted text: a quote before the first record, CR LF after each,
// a last line of one quote; only phone rows, flags as 1 and 0, the cursor kept.
TEST_F(MobFile, WrittenInTheQuotedForm) {
    EXPECT_TRUE(WriteMobFileforall(ctx, contacts()));
    EXPECT_EQ(fileBytes(), QByteArray("\"\"\r\n"));

    addContactRow(contacts(), {{u"Mobile", true},
                               {u"PIM", true},
                               {u"MobileID", u"3"},
                               {u"LastName", u"M\u00fcller \"Mo\""},
                               {u"Categories", true},
                               {u"URL", u"example.org"}});
    addContactRow(contacts(), {{u"PIM", true}, {u"LastName", u"PIM only"}});
    addContactRow(contacts(), {{u"Mobile", true}, {u"MobileID", u"9"}, {u"UID", u"u9"}, {u"Phone", u"089"}});
    contacts().setAbsolutePosition(2);
    EXPECT_TRUE(WriteMobFileforall(ctx, contacts()));
    EXPECT_EQ(contacts().absolutePosition(), 2);
    EXPECT_EQ(fileBytes(), QByteArray("\"3\t\t1\t1\tM\xfcller \"Mo\"\t\t\t\t\t\t\t1\t\t\t\t\t\texample.org\r\n"
                                      "9\tu9\t1\t0\t\t\t\t089\t\t\t\t0\t\t\t\t\t\t\r\n"
                                      "\"\r\n"));
}

// Reading takes the quote off the first line and drops empty and quote-only lines;
// an emptied or missing file gives no contacts.
TEST_F(MobFile, ReadBackAndEmptyForms) {
    EXPECT_FALSE(ReadMobFile(ctx));
    EXPECT_TRUE(ctx.read.MobFileFilled);

    addContactRow(contacts(), {{u"Mobile", true}, {u"MobileID", u"3"}, {u"LastName", u"Lang"}});
    addContactRow(contacts(), {{u"Mobile", true}, {u"MobileID", u"5"}, {u"LastName", u"Kurz"}});
    ASSERT_TRUE(WriteMobFileforall(ctx, contacts()));
    EXPECT_TRUE(ReadMobFile(ctx));
    ASSERT_EQ(ctx.read.MobFileLines.size(), 2);
    EXPECT_EQ(ctx.read.MobFileLines[0].size(), 18);
    EXPECT_EQ(ctx.read.MobFileLines[0][0], QStringLiteral("3"));
    EXPECT_EQ(ctx.read.MobFileLines[1][4], QStringLiteral("Kurz"));

    ASSERT_TRUE(DeleteMobFile(ctx));
    EXPECT_EQ(fileBytes(), QByteArray("\r\n"));
    EXPECT_FALSE(ReadMobFile(ctx));
    EXPECT_TRUE(ctx.read.MobFileLines.isEmpty());
    ASSERT_TRUE(WriteMobFileforall(ctx, *pimTable));
    EXPECT_FALSE(ReadMobFile(ctx));
}

// A tab or a line break inside a field neither shifts the columns nor splits the
// record: each stands as a blank, and the record after it reads as written.
TEST_F(MobFile, TabsAndLineBreaksStayInTheirField) {
    addContactRow(contacts(), {{u"Mobile", true},
                               {u"MobileID", u"3"},
                               {u"LastName", u"Lang\tHof"},
                               {u"Street", u"Hauptstr. 1\r\nHinterhaus"},
                               {u"City", u"Linz\nNord"},
                               {u"Country", u"AT\r"},
                               {u"URL", u"example.org"}});
    addContactRow(contacts(), {{u"Mobile", true}, {u"MobileID", u"5"}, {u"LastName", u"Kurz"}});
    ASSERT_TRUE(WriteMobFileforall(ctx, contacts()));
    ASSERT_TRUE(ReadMobFile(ctx));
    ASSERT_EQ(ctx.read.MobFileLines.size(), 2);
    const QStringList& first = ctx.read.MobFileLines[0];
    ASSERT_EQ(first.size(), 18);
    EXPECT_EQ(first[4], QStringLiteral("Lang Hof"));
    EXPECT_EQ(first[8], QStringLiteral("Hauptstr. 1 Hinterhaus"));
    EXPECT_EQ(first[10], QStringLiteral("Linz Nord"));
    EXPECT_EQ(first[16], QStringLiteral("AT "));
    EXPECT_EQ(first[17], QStringLiteral("example.org"));
    EXPECT_EQ(ctx.read.MobFileLines[1].size(), 18);
    EXPECT_EQ(ctx.read.MobFileLines[1][4], QStringLiteral("Kurz"));
}

// A file that cannot be written is reported, and nothing is thrown at the caller.
TEST_F(MobFile, UnwritableHomeIsReported) {
    ctx.settings.HomeDir = home.path() + QStringLiteral("/missing/dir");
    EXPECT_FALSE(WriteMobFileforall(ctx, contacts()));
    EXPECT_EQ(ui.boxes.size(), 1);
}

// Only the PIM changed since the snapshot: the PIM's data go to the phone.
TEST_F(MobFile, PimChangedOverwritesThePhone) {
    addPair(QStringLiteral("111"), QStringLiteral("222"));
    snapshot(QStringLiteral("111"));
    MobFileAuswertung(ctx, *pimTable, contacts(), roads);
    EXPECT_EQ(roads.calls, QStringList{QStringLiteral("SendSinglevCardEntry:Roth")});
    EXPECT_EQ(textOf(contacts(), u"Phone"), QStringLiteral("222"));
    EXPECT_EQ(textOf(contacts(), u"MobileID"), QStringLiteral("4"));
    EXPECT_EQ(textOf(contacts(), u"EntryFile"), QStringLiteral("4.vcf"));
    EXPECT_EQ(contacts().value(QStringLiteral("EntryType")).toInt32(), 3);
}

// Only the phone changed: the phone's data go to the PIM, which keeps its UID.
TEST_F(MobFile, PhoneChangedOverwritesThePim) {
    addPair(QStringLiteral("333"), QStringLiteral("111"));
    snapshot(QStringLiteral("111"));
    MobFileAuswertung(ctx, *pimTable, contacts(), roads);
    EXPECT_EQ(roads.calls, QStringList{QStringLiteral("vCardWriteOutookEntry:Roth")});
    EXPECT_EQ(textOf(*pimTable, u"Phone"), QStringLiteral("333"));
    EXPECT_EQ(textOf(*pimTable, u"UID"), QStringLiteral("uid-4"));
    EXPECT_EQ(pimTable->value(QStringLiteral("EntryType")).toInt32(), 3);
}

// Both changed: the compare question decides; a cancel writes neither side, and
// a failed write leaves the row's side as it was.
TEST_F(MobFile, BothChangedAsksTheUser) {
    addPair(QStringLiteral("333"), QStringLiteral("222"));
    snapshot(QStringLiteral("111"));
    ui.compareAnswers.enqueue(0);
    MobFileAuswertung(ctx, *pimTable, contacts(), roads);
    EXPECT_EQ(ui.compareCount, 1);
    EXPECT_TRUE(roads.calls.isEmpty());

    ui.compareAnswers.enqueue(2);
    roads.writeResult = false;
    MobFileAuswertung(ctx, *pimTable, contacts(), roads);
    EXPECT_EQ(roads.calls, QStringList{QStringLiteral("SendSinglevCardEntry:Roth")});
    EXPECT_EQ(contacts().value(QStringLiteral("EntryType")).toInt32(), 1);
}

// Unchanged pairs, pairs not in the file and an unread file write nothing.
TEST_F(MobFile, NothingToDo) {
    addPair(QStringLiteral("111"), QStringLiteral("111"));
    MobFileAuswertung(ctx, *pimTable, contacts(), roads);
    snapshot(QStringLiteral("111"));
    MobFileAuswertung(ctx, *pimTable, contacts(), roads);
    setFields(contacts(), {{u"MobileID", u"5"}, {u"Phone", u"999"}});
    MobFileAuswertung(ctx, *pimTable, contacts(), roads);
    EXPECT_TRUE(roads.calls.isEmpty());
    EXPECT_EQ(ui.compareCount, 0);
}
