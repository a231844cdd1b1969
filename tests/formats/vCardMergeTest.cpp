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
    setFields({{u"Mobile", true}, {u"EntryType", int32_t(2)}, {u"MobileID", u"7"}});
    fill(source, QStringLiteral("pimplain-"), QStringLiteral("pim-"));
    test::setFields(source, {{u"UID", u"uid-1"}, {u"PIM", true}, {u"PIMNew", true}});

    formats::vCardSyncOutlookEntry(ctx, *table, source);
    const test::FieldTexts want = {{u"LastName", u"phone-LastName"},
                                   {u"PIMLastName", u"pim-LastName"},
                                   {u"PIMFax", u"pim-Fax"},
                                   {u"Fax", u"phone-Fax"},
                                   {u"UID", u"uid-1"},
                                   {u"MobileID", u"7"},
                                   {u"EntryType", u"3"}};
    expectFields(want);
    expectFlags({u"PIM", u"Mobile", u"PIMNew"});
}

// A phone contact merged into the PIM row brings its values and file; the PIM values and UID stay.
TEST_F(vCardMerge, MobileEntryBringsPhoneSide) {
    fill(*table, QStringLiteral("pimplain-"), QStringLiteral("pim-"));
    setFields({{u"PIM", true}, {u"EntryType", int32_t(1)}, {u"UID", u"uid-1"}});
    QString text = QStringLiteral("BEGIN:VCARD\r\nN:Phone;Ann\r\nTEL;CELL:0171\r\nCATEGORIES:VIP\r\nEND:VCARD\r\n");
    ASSERT_TRUE(formats::vCardParsEntryFromMobile(ctx, source, text));
    test::setFields(source, {{u"MobileID", u"12"}, {u"EntryFile", u"12.vcf"}});

    formats::vCardSyncMobileEntry(ctx, *table, source);
    // Fields the phone did not send are the phone's too: Street is empty.
    const test::FieldTexts want = {{u"LastName", u"Phone"},           {u"PhoneMobile", u"0171"},
                                   {u"PIMLastName", u"pim-LastName"}, {u"Street", u""},
                                   {u"PIMStreet", u"pim-Street"},     {u"MobileID", u"12"},
                                   {u"EntryFile", u"12.vcf"},         {u"UID", u"uid-1"},
                                   {u"MobileCategoriesText", u"VIP"}, {u"EntryType", u"3"}};
    expectFields(want);
    expectFlags({u"Categories", u"PIM", u"Mobile"});
}
