// SPDX-License-Identifier: GPL-3.0-or-later
// The OBEX file-transfer server through the real serial code against the
// emulated phone: when the slot is filled, the file operations and the
// driver routines over them, info.log as the phone keeps it, and every fault
// leaving the line to the AT commands.
#include "phone/ObexServer.h"
#include "core/Error.h"
#include "phone/ATCServer.h"
#include "phone/ComDrvCode.h"
#include "phone/GDX.h"
#include "phone/LinkFixture.h"

#include <QDir>

using namespace tsr;
using tsr::test::errorOf;
using tsr::test::LinkFixture;

namespace {

const QString kPb = QStringLiteral("\\telecom\\pb\\");
const QString kCal = QStringLiteral("\\telecom\\cal\\");

// A contact of `size` bytes as the phone keeps it, with bytes a text file might trip over.
QByteArray contact(const char* name, int size = 200) {
    QByteArray t = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:";
    t += name;
    t += "\r\nNOTE:caf\xE9 OK\r\n\r\nOK\r\nEND:VCARD\r\n";
    t += QByteArray(qMax(0, size - int(t.size()) - 2), 'x');
    t += "\r\n";
    return t;
}

class Obex : public LinkFixture {
protected:
    // Starts the phone and fills the slot as a link session does.
    phone::GDXServerSlot& slotWith(const char* options = "") {
        startPhone(options);
        EXPECT_TRUE(phone::InitComm(ctx));
        return ctx.servers.GDXServer;
    }
    phone::ObexServer& server() { return dynamic_cast<phone::ObexServer&>(*ctx.servers.GDXServer); }
    // How many journal lines start with `text`.
    int journalCount(const QString& text) const {
        int n = 0;
        for (const QString& line : phone->journal())
            n += line.startsWith(text) ? 1 : 0;
        return n;
    }
};

} // namespace

// The slot holds the server exactly when the setting allows it and the phone offers OBEX; else
// the driver keeps its empty-slot road. A phone that answered is asked once per link, a silent
// one again at the next step.
TEST_F(Obex, TheSlotIsFilledOnlyWhenAllowedAndOffered) {
    struct Case {
        const char* options;
        int16_t setting;
        bool filled;
        int probes; // of two steps
    };
    const Case cases[] = {{"", 1, true, 1},
                          {"--no-obex", 1, false, 1},
                          {"", 0, false, 0},
                          {"--error +CPROT", 1, false, 1},
                          {"--silent +CPROT", 1, false, 2}};
    for (const Case& c : cases) {
        ctx.servers = {};
        ctx.settings.FileTransfer = c.setting;
        startPhone(c.options);
        EXPECT_TRUE(phone::InitComm(ctx));
        EXPECT_TRUE(phone::InitComm(ctx));
        EXPECT_EQ(bool(ctx.servers.GDXServer), c.filled) << c.options << " setting " << c.setting;
        EXPECT_EQ(journalCount(QStringLiteral("AT+CPROT=?")), c.probes) << c.options;
        QStringList names;
        EXPECT_EQ(phone::DirMobileEntryFiles(ctx, ctx.servers.GDXServer, kPb, QStringLiteral("*.vcf"), names),
                  c.filled ? 0 : -1)
            << c.options;
    }
}

// A phone that is not there yet gets the slot filled once it answers on the port.
TEST_F(Obex, APhoneFoundLaterIsAskedAgain) {
    ctx.options.port = config.filePath(QStringLiteral("no-such-device"));
    EXPECT_TRUE(phone::InitComm(ctx));
    EXPECT_FALSE(ctx.servers.GDXServer);
    startPhone();
    EXPECT_TRUE(phone::InitComm(ctx));
    EXPECT_TRUE(ctx.servers.GDXServer);
}

// Listing, reading, a new contact in the next slot, a replacement (delete then write) and a
// delete, through the driver routines; the bytes arrive as the phone holds them.
TEST_F(Obex, ListReadWriteReplaceAndDeleteContacts) {
    phone::GDXServerSlot& slot = slotWith();
    phone->seedFile(QStringLiteral("pb/1.vcf"), contact("One"));
    phone->seedFile(QStringLiteral("pb/3.vcf"), contact("Three", 380));

    QStringList names;
    ASSERT_EQ(phone::DirMobileEntryFiles(ctx, slot, kPb, QStringLiteral("*.vcf"), names), 2);
    EXPECT_EQ(names, (QStringList{QStringLiteral("1.vcf"), QStringLiteral("3.vcf")}));
    QByteArray text;
    ASSERT_TRUE(phone::GetSingleMobileEntry(ctx, slot, kPb, text, QStringLiteral("3.vcf")));
    EXPECT_EQ(text, contact("Three", 380));

    ASSERT_TRUE(phone::GDXWriteStream(ctx, slot, contact("Four"), kPb, QStringLiteral("new.vcf")));
    EXPECT_EQ(phone->file(QStringLiteral("pb/4.vcf")), contact("Four")) << "the slot after the highest in use";
    QString name;
    ASSERT_TRUE(phone::getvCardMobileEntryName(ctx, slot, name, kPb));
    EXPECT_EQ(name, QStringLiteral("4.vcf"));

    phone->clearJournal();
    ASSERT_TRUE(phone::GDXWriteStream(ctx, slot, contact("Uno"), kPb, QStringLiteral("1.vcf")));
    EXPECT_EQ(phone->file(QStringLiteral("pb/1.vcf")), contact("Uno"));
    const QStringList ops = phone->journal().filter(QStringLiteral("OBEX "));
    ASSERT_GE(ops.size(), 2);
    EXPECT_EQ(ops.mid(ops.size() - 2), (QStringList{QStringLiteral("OBEX DELETE:TELECOM/PB/1.VCF"),
                                                    QStringLiteral("OBEX PUT:TELECOM/PB/1.VCF")}));

    slot->DeleteFile(kPb + QStringLiteral("3.vcf"));
    EXPECT_EQ(phone->filesIn(QStringLiteral("pb")), (QStringList{QStringLiteral("1.vcf"), QStringLiteral("4.vcf")}));
    EXPECT_EQ(uint32_t(errorOf([&] { slot->DeleteFile(kPb + QStringLiteral("3.vcf")); })), 0x80070002u);
    EXPECT_EQ(uint32_t(errorOf([&] { slot->ReadFile(kPb + QStringLiteral("9.vcf")); })), 0x80070002u);
    EXPECT_EQ(uint32_t(errorOf([&] { slot->ReadFile(QStringLiteral("\\telecom\\nothing\\1.vcf")); })), 0x80070002u);
}

// A listing and a file longer than one packet arrive whole, and the next request stands alone.
TEST_F(Obex, ListingsAndFilesLongerThanAPacket) {
    phone::GDXServerSlot& slot = slotWith("--max-record 15000");
    for (int i = 1; i <= 150; ++i)
        phone->seedFile(QStringLiteral("pb/%1.vcf").arg(i), contact("Many", 150 + i));
    const QByteArray big = contact("Big", 4000) + contact("Bigger", 6000);
    phone->seedFile(QStringLiteral("pb/151.vcf"), big);
    QStringList names;
    ASSERT_EQ(phone::DirMobileEntryFiles(ctx, slot, kPb, QStringLiteral("*.vcf"), names), 151);
    EXPECT_EQ(names.first(), QStringLiteral("1.vcf"));
    EXPECT_EQ(names.last(), QStringLiteral("151.vcf"));
    EXPECT_EQ(slot->ReadFile(kPb + QStringLiteral("1.vcf")), contact("Many", 151));
    EXPECT_EQ(slot->ReadFile(kPb + QStringLiteral("151.vcf")), big);
    slot->WriteFile(kPb + QStringLiteral("new.vcf"), big, 0);
    EXPECT_EQ(phone->file(QStringLiteral("pb/152.vcf")), big);
    EXPECT_EQ(slot->ReadFile(kPb + QStringLiteral("2.vcf")), contact("Many", 152));
    EXPECT_EQ(uint32_t(errorOf([&] { slot->WriteFile(kPb + QStringLiteral("new.vcf"), big + big, 0); })), 0x80004005u)
        << "a file longer than the phone takes";
}

// The calendar files are the records of the AT road: one store, two views.
TEST_F(Obex, CalendarFilesAreTheATRecords) {
    phone::GDXServerSlot& slot = slotWith("--first 1 --last 20");
    phone->seed(2, "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n");
    EXPECT_EQ(slot->ReadFile(kCal + QStringLiteral("2.vcs")), QByteArray("BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n"));
    slot->WriteFile(kCal + QStringLiteral("7.vcs"), "seven", 0);
    QByteArray text;
    phone::atcServer(ctx).ReadEntry(7, text);
    EXPECT_EQ(text, QByteArray("seven"));
    QStringList names;
    EXPECT_EQ(phone::DirMobileEntryFiles(ctx, slot, kCal, QStringLiteral("*.VCS"), names), 2) << "masks ignore case";
    EXPECT_EQ(uint32_t(errorOf([&] { slot->WriteFile(kCal + QStringLiteral("21.vcs"), "out of range", 0); })),
              0x80070005u);
}

// info.log tells the truth as the store changes, and the driver evaluates it: the contact store
// for the card fields, the calendar with the entries kept free.
TEST_F(Obex, InfoLogFollowsTheStoreAndIsEvaluated) {
    phone::GDXServerSlot& slot = slotWith("--first 1 --last 50 --contacts 30");
    phone->seedFile(QStringLiteral("pb/2.vcf"), contact("Two"));
    phone->seedFile(QStringLiteral("pb/5.vcf"), contact("Five"));
    phone->seed(1, "one");
    slot->WriteFile(kPb + QStringLiteral("new.vcf"), contact("Six"), 0);
    slot->DeleteFile(kPb + QStringLiteral("2.vcf"));

    struct Case {
        QString path;
        bool isCard;
        int16_t maxOut, total, last;
    };
    ctx.settings.freeMobileEntries = 10;
    const Case cases[] = {{kPb, true, 30, 2, 6}, {kCal, false, 40, 1, 1}};
    for (const Case& c : cases) {
        phone::GDXInfoTable table;
        ASSERT_TRUE(phone::getMobileGDXInfo(ctx, slot, c.path, QStringLiteral("info.log"), table))
            << c.path.toStdString();
        phone::GDXDeviceInfo info;
        int16_t maxOut = 0, total = 0, last = 0;
        phone::GDXInfoAuswertung(ctx, table, info, maxOut, total, last, c.isCard);
        EXPECT_EQ(maxOut, c.maxOut) << c.path.toStdString();
        EXPECT_EQ(total, c.total) << c.path.toStdString();
        EXPECT_EQ(last, c.last) << c.path.toStdString();
    }
    EXPECT_EQ(ctx.phone.MaxEntries, 50);
    EXPECT_EQ(ctx.phone.LastIndex, 40);

    phone::GDXInfoTable table;
    ASSERT_TRUE(
        phone::getMobileGDXInfo(ctx, slot, QStringLiteral("\\telecom\\"), QStringLiteral("devinfo.txt"), table));
    phone::GDXDeviceInfo info;
    int16_t maxOut = 0, total = 0, last = 0;
    phone::GDXInfoAuswertung(ctx, table, info, maxOut, total, last, true);
    EXPECT_EQ(info.Manufacturer, QStringLiteral("Tessarine"));
    EXPECT_EQ(info.Model, QStringLiteral("TX1"));
}

// A full contact store refuses a new contact as access denied and keeps what it holds.
TEST_F(Obex, AFullStoreRefusesANewContact) {
    phone::GDXServerSlot& slot = slotWith("--contacts 2");
    phone->seedFile(QStringLiteral("pb/1.vcf"), contact("One"));
    phone->seedFile(QStringLiteral("pb/2.vcf"), contact("Two"));
    EXPECT_EQ(uint32_t(errorOf([&] { slot->WriteFile(kPb + QStringLiteral("new.vcf"), contact("Three"), 0); })),
              0x80070005u);
    EXPECT_EQ(phone->filesIn(QStringLiteral("pb")).size(), 2);
}

// One session serves many calls; the AT road takes the line back with a DISCONNECT and the
// next file call opens a fresh session.
TEST_F(Obex, TheSessionLastsUntilTheATRoadNeedsTheLine) {
    phone::GDXServerSlot& slot = slotWith();
    phone->seed(1, "cal one");
    for (int i = 1; i <= 3; ++i)
        phone->seedFile(QStringLiteral("pb/%1.vcf").arg(i), contact("Some"));
    slot->ListFiles(kPb + QStringLiteral("*.vcf"), 0);
    for (int i = 1; i <= 3; ++i)
        slot->ReadFile(kPb + QStringLiteral("%1.vcf").arg(i));
    EXPECT_EQ(server().sessionCount(), 1);
    EXPECT_EQ(journalCount(QStringLiteral("OBEX SETPATH")), 3) << "root, telecom, pb: once";

    QByteArray text;
    phone::atcServer(ctx).ReadEntry(1, text);
    EXPECT_EQ(text, QByteArray("cal one"));
    EXPECT_EQ(journalCount(QStringLiteral("OBEX DISCONNECT")), 1);
    slot->ReadFile(kPb + QStringLiteral("2.vcf"));
    EXPECT_EQ(server().sessionCount(), 2);
}

namespace {

struct ObexFaultCase {
    const char* name;
    const char* options;
    const char* operation; // list, read, write, delete
    uint32_t number;
};

const ObexFaultCase kObexFaults[] = {
    {"ReadNotFound", "--cme 196:OBEX:GET:TELECOM/PB/2.VCF", "read", 0x80070002u},
    {"ReadForbidden", "--cme 195:OBEX:GET:TELECOM/PB/2.VCF", "read", 0x80070005u},
    {"NewContactForbidden", "--cme 195:OBEX:PUT:TELECOM/PB/NEW.VCF", "write", 0x80070005u},
    {"DeleteForbidden", "--cme 195:OBEX:DELETE:TELECOM/PB/2.VCF", "delete", 0x80070005u},
    {"ListInternalError", "--error OBEX:GET:TELECOM/PB", "list", 0x80004005u},
    {"FolderNotFound", "--cme 196:OBEX:SETPATH:TELECOM/PB", "list", 0x80070002u},
    {"ConnectRefused", "--cme 195:OBEX:CONNECT", "read", 0x80070005u},
    {"SwitchRefused", "--error +CPROT=0", "read", 0x80004005u},
    {"ReadSilent", "--silent OBEX:GET:TELECOM/PB/2.VCF", "read", 0x80010001u},
    {"ConnectSilent", "--silent OBEX:CONNECT", "list", 0x80010001u},
    {"PutSilent", "--silent OBEX:PUT:TELECOM/PB/NEW.VCF", "write", 0x80010001u},
    {"ReadBreaks", "--break-after 20:OBEX:GET:TELECOM/PB/2.VCF", "read", 462u},
    {"SetPathBreaks", "--break-after 5:OBEX:SETPATH:TELECOM", "list", 462u},
};

class ObexFault : public Obex, public ::testing::WithParamInterface<ObexFaultCase> {};

} // namespace

// Each fault reaches the caller as its number, and the line is back in AT mode: the next AT
// command and the next file call both work.
TEST_P(ObexFault, MapsToItsNumberAndLeavesTheLineToAT) {
    const ObexFaultCase& c = GetParam();
    phone::GDXServerSlot& slot = slotWith(c.options);
    ASSERT_TRUE(slot) << c.options;
    phone->seed(1, "cal one");
    phone->seedFile(QStringLiteral("pb/1.vcf"), contact("One"));
    phone->seedFile(QStringLiteral("pb/2.vcf"), contact("Two"));
    const QString op = QString::fromLatin1(c.operation);
    const int32_t number = errorOf([&] {
        if (op == u"list")
            slot->ListFiles(kPb + QStringLiteral("*.vcf"), 0);
        else if (op == u"read")
            slot->ReadFile(kPb + QStringLiteral("2.vcf"));
        else if (op == u"write")
            slot->WriteFile(kPb + QStringLiteral("new.vcf"), contact("New"), 0);
        else
            slot->DeleteFile(kPb + QStringLiteral("2.vcf"));
    });
    EXPECT_EQ(uint32_t(number), c.number) << c.options;
    EXPECT_EQ(phone->filesIn(QStringLiteral("pb")), (QStringList{QStringLiteral("1.vcf"), QStringLiteral("2.vcf")}))
        << "a failed call changed the store";

    QByteArray text;
    EXPECT_NO_THROW(phone::atcServer(ctx).ReadEntry(1, text)) << c.options;
    EXPECT_EQ(text, QByteArray("cal one")) << c.options;
    const QString options = QString::fromLatin1(c.options);
    if (options.contains(QLatin1String("CONNECT")) || options.contains(QLatin1String("CPROT")) ||
        options.contains(QLatin1String("SETPATH")))
        return; // every session meets the fault again
    EXPECT_EQ(slot->ReadFile(kPb + QStringLiteral("1.vcf")), contact("One")) << c.options;
}

INSTANTIATE_TEST_SUITE_P(Faults, ObexFault, ::testing::ValuesIn(kObexFaults),
                         [](const ::testing::TestParamInfo<ObexFaultCase>& info) {
                             return std::string(info.param.name);
                         });

// A line that breaks in the middle of a PUT leaves no half file on the phone, and the next
// command works on the new line.
TEST_F(Obex, ABreakInThePutLeavesNoHalfFile) {
    phone::GDXServerSlot& slot = slotWith("--break-after 150:OBEX:PUT:TELECOM/PB/NEW.VCF");
    phone->seed(1, "cal one");
    EXPECT_EQ(errorOf([&] { slot->WriteFile(kPb + QStringLiteral("new.vcf"), contact("Half", 400), 0); }), 462);
    EXPECT_TRUE(phone->filesIn(QStringLiteral("pb")).isEmpty());
    EXPECT_EQ(phone->devices(2).size(), 2) << "the line did not break";
    QByteArray text;
    EXPECT_NO_THROW(phone::atcServer(ctx).ReadEntry(1, text));
    EXPECT_EQ(text, QByteArray("cal one"));
}

// A broken line met by a driver routine is reported and empties both slots; the next step makes
// the AT server afresh, asks the phone again and fills the slot, and the read works.
TEST_F(Obex, ABrokenLineEmptiesTheSlotsAndTheNextStepFillsThem) {
    slotWith("--break-after 20:OBEX:GET:TELECOM/PB/2.VCF");
    phone->seedFile(QStringLiteral("pb/1.vcf"), contact("One"));
    phone->seedFile(QStringLiteral("pb/2.vcf"), contact("Two"));
    QByteArray text;
    EXPECT_FALSE(phone::GetSingleMobileEntry(ctx, ctx.servers.GDXServer, kPb, text, QStringLiteral("2.vcf")));
    EXPECT_FALSE(ctx.servers.GDXServer);
    EXPECT_FALSE(ctx.servers.ATCServer);
    EXPECT_TRUE(boxTexts().contains(QLatin1String("Process communication between"))) << boxTexts().toStdString();
    EXPECT_TRUE(phone::InitComm(ctx));
    ASSERT_TRUE(ctx.servers.GDXServer);
    EXPECT_TRUE(phone::GetSingleMobileEntry(ctx, ctx.servers.GDXServer, kPb, text, QStringLiteral("1.vcf")));
    EXPECT_EQ(text, contact("One"));
}
