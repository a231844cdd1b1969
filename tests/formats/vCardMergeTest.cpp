// SPDX-License-Identifier: GPL-3.0-or-later
// Merging the two sides of a matched contact pair into one row.
#include "ContactFixture.h"
#include "formats/vCard.h"

using namespace tsr;

namespace {

class vCardMerge : public test::ContactFixture {
protected:
    vCardMerge() {
        tables::vCardInitRS(source);
        tables::vCardCreateNewRecord(source);
    }
    // The row read from one side: plain names hold `mobile`, PIM names hold `pim`.
    static void fill(tables::Recordset& row, const QString& mobile, const QString& pim) {
        for (const char* name : {"LastName", "FirstName", "Company", "Street", "City", "ZipCode", "Country", "eMail",
                                 "URL", "Phone", "PhoneWork", "PhoneMobile", "Fax"}) {
            const QString field = QString::fromUtf8(name);
            row.setValue(field, mobile + field);
            row.setValue(QStringLiteral("PIM") + field, pim + field);
        }
    }
    tables::Recordset source{QStringLiteral("RSContactsWork")};
};

} // namespace

// A PIM contact merged into the phone row brings its identifier and PIM values; the phone values stay.
TEST_F(vCardMerge, OutlookEntryBringsPimSide) {
    fill(*table, QStringLiteral("phone-"), QStringLiteral("old-"));
    set(QStringLiteral("Mobile"), true);
    set(QStringLiteral("EntryType"), int32_t(2));
    set(QStringLiteral("MobileID"), QStringLiteral("7"));
    fill(source, QStringLiteral("pimplain-"), QStringLiteral("pim-"));
    source.setValue(QStringLiteral("UID"), QStringLiteral("uid-1"));
    source.setValue(QStringLiteral("PIM"), true);
    source.setValue(QStringLiteral("PIMNew"), true);

    formats::vCardSyncOutlookEntry(ctx, *table, source);
    EXPECT_EQ(field(QStringLiteral("LastName")), QStringLiteral("phone-LastName"));
    EXPECT_EQ(field(QStringLiteral("PIMLastName")), QStringLiteral("pim-LastName"));
    EXPECT_EQ(field(QStringLiteral("PIMFax")), QStringLiteral("pim-Fax"));
    EXPECT_EQ(field(QStringLiteral("Fax")), QStringLiteral("phone-Fax"));
    EXPECT_EQ(field(QStringLiteral("UID")), QStringLiteral("uid-1"));
    EXPECT_EQ(field(QStringLiteral("MobileID")), QStringLiteral("7"));
    EXPECT_TRUE(table->value(QStringLiteral("PIM")).toBool());
    EXPECT_TRUE(table->value(QStringLiteral("Mobile")).toBool());
    EXPECT_TRUE(table->value(QStringLiteral("PIMNew")).toBool());
    EXPECT_EQ(table->value(QStringLiteral("EntryType")).toInt32(), 3);
}

// A phone contact merged into the PIM row brings its values and file; the PIM values and UID stay.
TEST_F(vCardMerge, MobileEntryBringsPhoneSide) {
    fill(*table, QStringLiteral("pimplain-"), QStringLiteral("pim-"));
    set(QStringLiteral("PIM"), true);
    set(QStringLiteral("EntryType"), int32_t(1));
    set(QStringLiteral("UID"), QStringLiteral("uid-1"));
    QString text = QStringLiteral("BEGIN:VCARD\r\nN:Phone;Ann\r\nTEL;CELL:0171\r\nCATEGORIES:VIP\r\nEND:VCARD\r\n");
    ASSERT_TRUE(formats::vCardParsEntryFromMobile(ctx, source, text));
    source.setValue(QStringLiteral("MobileID"), QStringLiteral("12"));
    source.setValue(QStringLiteral("EntryFile"), QStringLiteral("12.vcf"));

    formats::vCardSyncMobileEntry(ctx, *table, source);
    EXPECT_EQ(field(QStringLiteral("LastName")), QStringLiteral("Phone"));
    EXPECT_EQ(field(QStringLiteral("PhoneMobile")), QStringLiteral("0171"));
    EXPECT_EQ(field(QStringLiteral("PIMLastName")), QStringLiteral("pim-LastName"));
    // Fields the phone did not send are the phone's too: empty.
    EXPECT_EQ(field(QStringLiteral("Street")), QString());
    EXPECT_EQ(field(QStringLiteral("PIMStreet")), QStringLiteral("pim-Street"));
    EXPECT_EQ(field(QStringLiteral("MobileID")), QStringLiteral("12"));
    EXPECT_EQ(field(QStringLiteral("EntryFile")), QStringLiteral("12.vcf"));
    EXPECT_EQ(field(QStringLiteral("UID")), QStringLiteral("uid-1"));
    EXPECT_EQ(field(QStringLiteral("MobileCategoriesText")), QStringLiteral("VIP"));
    EXPECT_TRUE(table->value(QStringLiteral("Categories")).toBool());
    EXPECT_TRUE(table->value(QStringLiteral("PIM")).toBool());
    EXPECT_TRUE(table->value(QStringLiteral("Mobile")).toBool());
    EXPECT_EQ(table->value(QStringLiteral("EntryType")).toInt32(), 3);
}
