// SPDX-License-Identifier: GPL-3.0-or-later
// The contact road end to end, now that the file-transfer slot is filled: the
// phone's telecom/pb read over OBEX and the store's .vcf contacts pair by their
// fields, a store contact reaches the phone, a contact changed on both sides
// since the snapshot reaches the compare question, and the silent reads.
#include "roads/DOROutlookContacts.h"
#include "roads/Mobile.h"
#include "roads/MobileWrite.h"
#include "roads/RoadsFixture.h"
#include "sync/MobFile.h"

#include <QDirIterator>

using namespace tsr;
using tsr::test::RoadsFixture;

namespace {

QByteArray card(const char* last, const char* first, const char* email = nullptr) {
    QByteArray t = "BEGIN:VCARD\r\nVERSION:1.0\r\nN:";
    t += last;
    t += ';';
    t += first;
    t += "\r\n";
    if (email) {
        t += "EMAIL;INTERNET:";
        t += email;
        t += "\r\n";
    }
    return t + "END:VCARD\r\n";
}

class ContactRoads : public RoadsFixture {
protected:
    // Roth is on both sides, Kahn only on the phone, Lenz only in the store.
    void seedBothSides() {
        test::EmulatedPhone& p = phoneWith();
        p.seedFile(QStringLiteral("pb/1.vcf"), card("Roth", "Ida", "ida@example.org"));
        p.seedFile(QStringLiteral("pb/2.vcf"), card("Kahn", "Otto"));
        roth = storeContact(QStringLiteral("Roth"), QStringLiteral("Ida"), QStringLiteral("ida@example.org"));
        storeContact(QStringLiteral("Lenz"), QStringLiteral("Eva"), QStringLiteral("eva@example.org"));
    }
    std::shared_ptr<pim::ContactItem> storeContact(const QString& last, const QString& first, const QString& email) {
        auto c = pim::asContact(contacts()->Items()->Add());
        c->setLastName(last);
        c->setFirstName(first);
        c->setEmail1Address(email);
        c->Save();
        return c;
    }
    std::shared_ptr<pim::Folder> contacts() { return ns->GetDefaultFolder(pim::olFolderContacts); }
    tables::Recordset& rs() { return *ctx.tables.RSContacts; }

    // "Roth:MP" for a row of both sides, "Kahn:M", "Lenz:P", sorted.
    QStringList rowSides() {
        QStringList out;
        tables::Recordset& t = rs();
        if (t.recordCount() == 0)
            return out;
        for (t.moveFirst(); !t.eof(); t.moveNext()) {
            QString sides;
            if (t.value(QStringLiteral("Mobile")).toBool())
                sides += u'M';
            if (t.value(QStringLiteral("PIM")).toBool())
                sides += u'P';
            out << t.value(QStringLiteral("LastName")).toText() + u':' + sides;
        }
        out.sort();
        return out;
    }
    bool rowNamed(const QString& last) {
        tables::Recordset& t = rs();
        if (t.recordCount() == 0)
            return false;
        for (t.moveFirst(); !t.eof(); t.moveNext())
            if (t.value(QStringLiteral("LastName")).toText() == last)
                return true;
        return false;
    }

    std::shared_ptr<pim::ContactItem> roth;
};

} // namespace

// The phone's contacts and the store's pair in either order of reading.
TEST_F(ContactRoads, PhoneAndStoreContactsPair) {
    seedBothSides();
    const QStringList expected{QStringLiteral("Kahn:M"), QStringLiteral("Lenz:P"), QStringLiteral("Roth:MP")};
    ASSERT_TRUE(roads::vCardReadMobile(ctx));
    EXPECT_EQ(ctx.read.vCardMobileCount, 2);
    // The contact folder's info.log tells the room a run may fill.
    EXPECT_EQ(ctx.phone.MobileCardCapacity, 500);
    EXPECT_EQ(ctx.read.FreeContactSlots, 500);
    ASSERT_TRUE(roads::vCardReadOutlook(ctx, rs(), false));
    EXPECT_EQ(rowSides(), expected);
    EXPECT_TRUE(ui.boxes.isEmpty()) << boxTexts().toStdString();
}

// A contact only in the store, sent as new, lands in the phone's next slot and the row learns
// the file's name; the phone's other contacts stay as they were.
TEST_F(ContactRoads, ANewStoreContactReachesThePhone) {
    seedBothSides();
    ctx.settings.SaveTyp = 1;
    ASSERT_TRUE(roads::vCardReadMobile(ctx));
    ASSERT_TRUE(roads::vCardReadOutlook(ctx, rs(), false));
    ASSERT_TRUE(rowNamed(QStringLiteral("Lenz")));
    ASSERT_TRUE(roads::SendSinglevCardEntry(ctx, rs(), true));
    EXPECT_EQ(rs().value(QStringLiteral("MobileID")).toText(), QStringLiteral("3.vcf"));
    EXPECT_EQ(rs().value(QStringLiteral("EntryFile")).toText(), QStringLiteral("3.vcf"));
    const QByteArray sent = phone->file(QStringLiteral("pb/3.vcf"));
    EXPECT_TRUE(sent.contains("N:Lenz;Eva")) << sent.constData();
    EXPECT_TRUE(sent.contains("eva@example.org")) << sent.constData();
    EXPECT_EQ(phone->file(QStringLiteral("pb/2.vcf")), card("Kahn", "Otto"));

    // Read again from both sides: Lenz is now a pair.
    tables::ClearRecordSet(rs());
    ctx.read = {};
    ASSERT_TRUE(roads::vCardReadMobile(ctx));
    ASSERT_TRUE(roads::vCardReadOutlook(ctx, rs(), false));
    EXPECT_EQ(rowSides(),
              (QStringList{QStringLiteral("Kahn:M"), QStringLiteral("Lenz:MP"), QStringLiteral("Roth:MP")}));
}

// A contact changed on both sides since the snapshot asks the user; the store's side chosen,
// the phone's file holds the store's data afterwards and the store keeps its own.
TEST_F(ContactRoads, ChangedOnBothSidesReachesTheCompareQuestion) {
    seedBothSides();
    ctx.settings.SaveTyp = 1;
    ASSERT_TRUE(roads::vCardReadMobile(ctx));
    ASSERT_TRUE(roads::vCardReadOutlook(ctx, rs(), false));
    ASSERT_TRUE(sync::WriteMobFileforall(ctx, rs()));

    phone->seedFile(QStringLiteral("pb/1.vcf"), card("Roth", "Ida", "ida@phone.example"));
    roth->setEmail1Address(QStringLiteral("ida@store.example"));
    roth->Save();

    tables::ClearRecordSet(rs());
    ctx.read = {};
    ASSERT_TRUE(sync::ReadMobFile(ctx));
    ui.compareAnswers.enqueue(2);
    ASSERT_TRUE(roads::vCardReadMobile(ctx));
    EXPECT_EQ(ui.compareCount, 1);
    EXPECT_TRUE(phone->file(QStringLiteral("pb/1.vcf")).contains("ida@store.example"))
        << phone->file(QStringLiteral("pb/1.vcf")).constData();
    EXPECT_TRUE(storeCards().contains("ida@store.example"));
    EXPECT_FALSE(storeCards().contains("ida@phone.example"));
}

// Unattended, with the slot filled and the phone known, both of the phone's lists are read;
// with the slot empty the same reads end with false and nothing read.
TEST_F(ContactRoads, SilentReadsFollowTheSlot) {
    for (const int16_t setting : {1, 0}) {
        tables::ClearRecordSet(rs());
        tables::ClearRecordSet(cal());
        ctx.read = {};
        ctx.servers = {};
        ctx.settings.FileTransfer = setting;
        test::EmulatedPhone& p = phoneWith();
        p.seedFile(QStringLiteral("pb/1.vcf"), card("Roth", "Ida"));
        p.seed(3, test::vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
        ctx.flags.GlobalSilent = true;
        ctx.read.MobileConnected = true;
        EXPECT_EQ(roads::SilentvCardReadMobile(ctx), setting == 1) << setting;
        EXPECT_EQ(ctx.read.vCardMobileCount, setting == 1 ? 1 : 0) << setting;
        EXPECT_EQ(ctx.read.FreeContactSlots, setting == 1 ? 500 : 0) << setting;
        ctx.read.MobileConnected = true;
        EXPECT_EQ(roads::SilentvCalReadMobile(ctx), setting == 1) << setting;
        EXPECT_EQ(rowsByType()[2], setting == 1 ? 1 : 0) << setting;
        EXPECT_TRUE(ui.boxes.isEmpty()) << boxTexts().toStdString();
    }
}
