// SPDX-License-Identifier: GPL-3.0-or-later
// The file-transfer driver: its empty-server roads (the program's own state)
// and, through a test double in the slot, the reading of info.log, listing,
// reading and writing of entry files.
#include "phone/GDX.h"
#include "core/Error.h"
#include "phone/ATCServer.h"
#include "phone/LinkFixture.h"
#include "tables/TSRADODB.h"

#include <QMap>

using namespace tsr;
using tsr::test::LinkFixture;

namespace {

// A phone file system in memory; reading a missing file raises the phone's file-not-found.
class FakeGdxServer : public phone::GDXServerInterface {
public:
    void DeleteFile(const QString& fullPath) override {
        calls << QStringLiteral("delete ") + fullPath;
        if (!files.remove(fullPath))
            core::raise(phone::atc::NoDevice, QStringLiteral("GDX"), QStringLiteral("file not found"));
    }
    QList<QStringList> ListFiles(const QString& pathWithMask, int) override {
        calls << QStringLiteral("list ") + pathWithMask;
        QList<QStringList> rows;
        for (const QString& name : files.keys())
            rows << QStringList{name.section(u'\\', -1)};
        return rows;
    }
    QByteArray ReadFile(const QString& fullPath) override {
        calls << QStringLiteral("read ") + fullPath;
        if (failWith != 0)
            core::raise(failWith, QStringLiteral("GDX"), QStringLiteral("refused"));
        if (!files.contains(fullPath))
            core::raise(phone::atc::NoDevice, QStringLiteral("GDX"), QStringLiteral("file not found"));
        return files.value(fullPath);
    }
    void WriteFile(const QString& fullPath, const QByteArray& stream, int) override {
        calls << QStringLiteral("write ") + fullPath;
        files[fullPath] = stream;
    }

    QMap<QString, QByteArray> files;
    QStringList calls;
    int32_t failWith = 0;
};

class GDX : public LinkFixture {
protected:
    std::shared_ptr<FakeGdxServer> fake = std::make_shared<FakeGdxServer>();
    phone::GDXServerSlot slot = fake;
    phone::GDXServerSlot empty;

    phone::GDXInfoTable info(const QByteArray& text) {
        fake->files[QStringLiteral("\\telecom\\cal\\info.log")] = text;
        phone::GDXInfoTable table;
        EXPECT_TRUE(phone::getMobileGDXInfo(ctx, slot, ctx.phone.CalPath, ctx.phone.CalInfoFile, table));
        return table;
    }
};

} // namespace

// With no server every routine takes its quiet road: -1 files, no info, no entry, no write.
TEST_F(GDX, AnEmptySlotDoesNothing) {
    QStringList names{QStringLiteral("kept")};
    phone::GDXInfoTable table;
    QByteArray text = "x";
    QString name = QStringLiteral("x");
    EXPECT_EQ(phone::DirMobileEntryFiles(ctx, empty, ctx.phone.CalPath, QStringLiteral("*.vcs"), names), -1);
    EXPECT_EQ(names, QStringList{QStringLiteral("kept")});
    EXPECT_FALSE(phone::getMobileGDXInfo(ctx, empty, ctx.phone.CalPath, ctx.phone.CalInfoFile, table));
    EXPECT_FALSE(phone::GetSingleMobileEntry(ctx, empty, ctx.phone.CalPath, text, QStringLiteral("1.vcs")));
    EXPECT_TRUE(text.isEmpty());
    EXPECT_FALSE(phone::GDXWriteStream(ctx, empty, "data", ctx.phone.CalPath, QStringLiteral("1.vcs")));
    EXPECT_FALSE(phone::getvCardMobileEntryName(ctx, empty, name, ctx.phone.PbPath));
    EXPECT_TRUE(name.isEmpty());
    EXPECT_TRUE(phone::GDXInfovCard(ctx, empty, ctx.phone.PbPath));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// info.log lines become key and value; a line without ":" is an empty row; a value keeps its part
// before a second colon; a text in one line without CR LF is no info at all.
TEST_F(GDX, InfoLogIsParsedByLines) {
    const phone::GDXInfoTable table = info("MANU:Orvane\r\nno colon here\r\nMAXIMUM-RECORDS:10:20\r\n");
    ASSERT_EQ(table.size(), 4);
    EXPECT_EQ(table[0], std::make_pair(QStringLiteral("MANU"), QStringLiteral("Orvane")));
    EXPECT_EQ(table[1], std::make_pair(QString(), QString()));
    EXPECT_EQ(table[2], std::make_pair(QStringLiteral("MAXIMUM-RECORDS"), QStringLiteral("10")));

    fake->files[QStringLiteral("\\telecom\\cal\\info.log")] = "MANU:Orvane";
    phone::GDXInfoTable single;
    EXPECT_FALSE(phone::getMobileGDXInfo(ctx, slot, ctx.phone.CalPath, ctx.phone.CalInfoFile, single));
}

// A missing info.log is quietly no info; another failure is reported under GDX.
TEST_F(GDX, InfoReadFailures) {
    phone::GDXInfoTable table;
    EXPECT_FALSE(phone::getMobileGDXInfo(ctx, slot, ctx.phone.CalPath, ctx.phone.CalInfoFile, table));
    EXPECT_TRUE(ui.boxes.isEmpty());
    fake->failWith = phone::atc::AccessDenied;
    ctx.phone.MobileModel = QStringLiteral("QX71");
    EXPECT_FALSE(phone::getMobileGDXInfo(ctx, slot, ctx.phone.CalPath, ctx.phone.CalInfoFile, table));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes.first().text.contains(QStringLiteral("Mobile has denied access.")));
}

// The capacity less the entries kept free is the maximum, and it bounds the calendar's last index.
TEST_F(GDX, EvaluationKeepsFreeEntriesAside) {
    const auto table = info("MANU:Orvane\r\nMOD:QX71\r\nMAXIMUM-RECORDS:100\r\nTOTAL-RECORDS:12\r\n"
                            "LAST-USED-INDEX:57\r\nOTHER:1\r\n");
    ctx.settings.freeMobileEntries = 10;
    phone::GDXDeviceInfo dev;
    int16_t maxOut = 0, total = 0, last = 0;
    phone::GDXInfoAuswertung(ctx, table, dev, maxOut, total, last, false);
    EXPECT_EQ(dev.Manufacturer, QStringLiteral("Orvane"));
    EXPECT_EQ(dev.Model, QStringLiteral("QX71"));
    EXPECT_EQ(ctx.phone.MaxEntries, 100);
    EXPECT_EQ(maxOut, 90);
    EXPECT_EQ(total, 12);
    EXPECT_EQ(last, 57);
    EXPECT_EQ(ctx.phone.FirstIndex, 1);
    EXPECT_EQ(ctx.phone.LastIndex, 90);

    // More kept free than the phone holds: nothing is kept free.
    ctx.settings.freeMobileEntries = 150;
    phone::GDXInfoAuswertung(ctx, table, dev, maxOut, total, last, false);
    EXPECT_EQ(ctx.settings.freeMobileEntries, 0);
    EXPECT_EQ(maxOut, 100);

    // The contact store leaves the calendar's fields alone; a maximum of 0 still gives last index 1.
    ctx.settings.freeMobileEntries = 5;
    ctx.phone.MaxEntries = 33;
    phone::GDXInfoAuswertung(ctx, table, dev, maxOut, total, last, true);
    EXPECT_EQ(maxOut, 100);
    EXPECT_EQ(ctx.phone.MaxEntries, 33);
    phone::GDXInfoAuswertung(ctx, info("MAXIMUM-RECORDS:0\r\n"), dev, maxOut, total, last, false);
    EXPECT_EQ(ctx.phone.LastIndex, 1);
}

// A new contact's file is named after the last used index of the contact store.
TEST_F(GDX, NewContactNameComesFromTheLastUsedIndex) {
    fake->files[QStringLiteral("\\telecom\\pb\\info.log")] = "LAST-USED-INDEX:57\r\n";
    ctx.settings.SaveTyp = 2;
    QString name;
    EXPECT_TRUE(phone::getvCardMobileEntryName(ctx, slot, name, ctx.phone.PbPath));
    EXPECT_EQ(name, QStringLiteral("57.vcf"));
    EXPECT_TRUE(ctx.read.MobileConnected);
    EXPECT_FALSE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRAutoSync")));
}

// Listing gives the names of column 0; reading a missing file is false without a box but dumps.
TEST_F(GDX, ListAndReadEntryFiles) {
    QStringList names;
    EXPECT_EQ(phone::DirMobileEntryFiles(ctx, slot, ctx.phone.CalPath, QStringLiteral("*.vcs"), names), 0);
    fake->files[QStringLiteral("\\telecom\\cal\\3.vcs")] = "three";
    fake->files[QStringLiteral("\\telecom\\cal\\12.vcs")] = "twelve";
    EXPECT_EQ(phone::DirMobileEntryFiles(ctx, slot, QStringLiteral("\\telecom\\cal"), QStringLiteral("*.vcs"), names),
              2);
    EXPECT_EQ(fake->calls.last(), QStringLiteral("list \\telecom\\cal\\*.vcs")) << "a missing \\ is added";
    EXPECT_EQ(names, (QStringList{QStringLiteral("12.vcs"), QStringLiteral("3.vcs")}));
    QByteArray text;
    EXPECT_TRUE(phone::GetSingleMobileEntry(ctx, slot, ctx.phone.CalPath, text, QStringLiteral("3.vcs")));
    EXPECT_EQ(text, QByteArray("three"));
    EXPECT_FALSE(phone::GetSingleMobileEntry(ctx, slot, ctx.phone.CalPath, text, QStringLiteral("4.vcs")));
    EXPECT_TRUE(text.isEmpty());
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A known calendar entry is replaced by delete then write, a new one only written; a contact file is
// deleted first unless it is NEW.VCF.
TEST_F(GDX, WriteStreamReplacesKnownEntries) {
    ASSERT_TRUE(tables::CreateInitAndSetAllRS(ctx));
    tables::vCalCreateNewRecord(*ctx.tables.RSCalendar);
    ctx.tables.RSCalendar->setValue(QStringLiteral("Mobile"), false);
    EXPECT_TRUE(phone::GDXWriteStream(ctx, slot, "v1", ctx.phone.CalPath, QStringLiteral("5.vcs")));
    EXPECT_EQ(fake->calls, QStringList{QStringLiteral("write \\telecom\\cal\\5.vcs")});
    ctx.tables.RSCalendar->setValue(QStringLiteral("Mobile"), true);
    fake->calls.clear();
    EXPECT_TRUE(phone::GDXWriteStream(ctx, slot, "v2", ctx.phone.CalPath, QStringLiteral("5.vcs")));
    EXPECT_EQ(fake->calls, (QStringList{QStringLiteral("delete \\telecom\\cal\\5.vcs"),
                                        QStringLiteral("write \\telecom\\cal\\5.vcs")}));
    EXPECT_EQ(fake->files.value(QStringLiteral("\\telecom\\cal\\5.vcs")), QByteArray("v2"));
    fake->calls.clear();
    EXPECT_TRUE(phone::GDXWriteStream(ctx, slot, "c", ctx.phone.PbPath, QStringLiteral("new.vcf")));
    EXPECT_EQ(fake->calls, QStringList{QStringLiteral("write \\telecom\\pb\\new.vcf")});
    EXPECT_FALSE(phone::GDXWriteStream(ctx, slot, "c", ctx.phone.PbPath, QStringLiteral("9.vcf")))
        << "deleting a contact file that is not there fails the write";
}

// The status read goes to the AT-command server; GDXInfovCal has its test the other way round.
TEST_F(GDX, StatusReadsGoThroughTheATCommandServer) {
    startPhone("--first 0 --last 49");
    ctx.settings.SaveTyp = 1;
    ctx.read.vCalMobileCount = 2;
    EXPECT_TRUE(phone::GDXInfoAll(ctx, empty, ctx.phone.CalPath));
    EXPECT_EQ(ctx.phone.MobileCapacity, 50);
    EXPECT_TRUE(ctx.read.MobileConnected);
    EXPECT_TRUE(ctx.tools.isEnabled(QStringLiteral("TSROrganizerMenu"), QStringLiteral("TSRAutoSync")));
    EXPECT_TRUE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRClearMobileCal")));

    ctx.read.MobileConnected = false;
    EXPECT_FALSE(phone::GDXInfovCal(ctx, empty, ctx.phone.CalPath)) << "a working phone ends a silent read";
    EXPECT_FALSE(ctx.read.MobileConnected);

    ctx.options.port = config.filePath(QStringLiteral("gone"));
    ctx.flags.GlobalSilent = true;
    EXPECT_TRUE(phone::GDXInfovCal(ctx, empty, ctx.phone.CalPath));
    EXPECT_TRUE(ctx.read.MobileConnected);
    EXPECT_FALSE(phone::GDXInfoAll(ctx, empty, ctx.phone.CalPath));
    EXPECT_FALSE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRAutoSync")));
}
