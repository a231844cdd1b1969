// SPDX-License-Identifier: GPL-3.0-or-later
// Contacts through Save and a fresh read, contact groups in a contact folder,
// and what other tools wrote staying in the file.
#include "PimTestSupport.h"

namespace tsr::test {
namespace {

class ContactRoundTrip : public PimStoreTest {
protected:
    std::shared_ptr<pim::ContactItem> reread(const QString& entryID) {
        open();
        return pim::asContact(ns->GetItemFromID(entryID));
    }
};

// Every property the write road sets comes back after a restart.
TEST_F(ContactRoundTrip, AllPropertiesOfABusinessContact) {
    auto c = newContact();
    c->setFirstName(QStringLiteral("Jörg"));
    c->setLastName(QStringLiteral("Meier"));
    c->setCompanyName(QStringLiteral("Smith, Jones; Partners"));
    c->setBusinessAddressStreet(QStringLiteral("Hauptstr. 5"));
    c->setBusinessAddressPostalCode(QStringLiteral("10115"));
    c->setBusinessAddressCity(QStringLiteral("Berlin"));
    c->setBusinessAddressCountry(QStringLiteral("Germany"));
    c->setBusinessFaxNumber(QStringLiteral("+49 30 1"));
    c->setHomeTelephoneNumber(QStringLiteral("+49 30 2"));
    c->setBusinessTelephoneNumber(QStringLiteral("+49 30 3"));
    c->setMobileTelephoneNumber(QStringLiteral("+49 170 4"));
    c->setEmail1Address(QStringLiteral("joerg@example.org"));
    c->setWebPage(QStringLiteral("http://example.org"));
    c->setCategories(QStringLiteral("VIP, Friends"));
    c->Save();
    ASSERT_FALSE(c->EntryID().isEmpty());

    auto d = reread(c->EntryID());
    ASSERT_TRUE(d);
    EXPECT_EQ(d->Class(), pim::olContact);
    EXPECT_EQ(d->FirstName(), QStringLiteral("Jörg"));
    EXPECT_EQ(d->LastName(), QStringLiteral("Meier"));
    EXPECT_EQ(d->FullName(), QStringLiteral("Jörg Meier"));
    EXPECT_EQ(d->FileAs(), QStringLiteral("Meier, Jörg"));
    EXPECT_EQ(d->CompanyName(), QStringLiteral("Smith, Jones; Partners"));
    EXPECT_EQ(d->BusinessAddressStreet(), QStringLiteral("Hauptstr. 5"));
    EXPECT_EQ(d->BusinessAddressPostalCode(), QStringLiteral("10115"));
    EXPECT_EQ(d->BusinessAddressCity(), QStringLiteral("Berlin"));
    EXPECT_EQ(d->BusinessAddressCountry(), QStringLiteral("Germany"));
    EXPECT_EQ(d->HomeAddressStreet(), QString());
    EXPECT_EQ(d->BusinessFaxNumber(), QStringLiteral("+49 30 1"));
    EXPECT_EQ(d->HomeFaxNumber(), QString());
    EXPECT_EQ(d->HomeTelephoneNumber(), QStringLiteral("+49 30 2"));
    EXPECT_EQ(d->BusinessTelephoneNumber(), QStringLiteral("+49 30 3"));
    EXPECT_EQ(d->MobileTelephoneNumber(), QStringLiteral("+49 170 4"));
    EXPECT_EQ(d->Email1Address(), QStringLiteral("joerg@example.org"));
    EXPECT_EQ(d->WebPage(), QStringLiteral("http://example.org"));
    EXPECT_EQ(d->Categories(), QStringLiteral("VIP, Friends"));
    EXPECT_EQ(d->CreationTime(), at(2026, 3, 2, 9, 15));
    const QByteArray text = readFile(QStringLiteral("contacts/") +
                                     filesIn(QStringLiteral("contacts")).filter(QStringLiteral(".vcf")).first());
    EXPECT_TRUE(text.startsWith("BEGIN:VCARD\r\nVERSION:3.0\r\n"));
    EXPECT_TRUE(text.contains("ORG:Smith\\, Jones\\; Partners"));
}

// The address moves from the home to the business fields when a company comes,
// and emptied fields leave the file.
TEST_F(ContactRoundTrip, AddressMovesWhenACompanyComes) {
    auto c = newContact();
    c->setLastName(QStringLiteral("Private"));
    c->setHomeAddressStreet(QStringLiteral("Gartenweg 1"));
    c->setHomeAddressCity(QStringLiteral("Köln"));
    c->setHomeFaxNumber(QStringLiteral("0221 9"));
    c->Save();
    auto d = reread(c->EntryID());
    EXPECT_EQ(d->HomeAddressCity(), QStringLiteral("Köln"));
    EXPECT_EQ(d->HomeFaxNumber(), QStringLiteral("0221 9"));

    d->setCompanyName(QStringLiteral("Firma"));
    d->setBusinessAddressStreet(d->HomeAddressStreet());
    d->setBusinessAddressCity(d->HomeAddressCity());
    d->setHomeAddressStreet(QString());
    d->setHomeAddressCity(QString());
    d->setHomeFaxNumber(QString());
    d->Save();
    auto e = reread(c->EntryID());
    EXPECT_EQ(e->BusinessAddressCity(), QStringLiteral("Köln"));
    EXPECT_EQ(e->HomeAddressCity(), QString());
    EXPECT_EQ(e->HomeFaxNumber(), QString());
    const QByteArray text = readFile(QStringLiteral("contacts/") + c->EntryID() + QStringLiteral(".vcf"));
    EXPECT_EQ(text.count("ADR;"), 1);
    EXPECT_FALSE(text.contains("FAX"));
}

// A contact group is in the folder but is no contact item, and no name search finds it.
TEST_F(ContactRoundTrip, GroupsAreNoContacts) {
    copyData(QStringLiteral("group-kind.vcf"), QStringLiteral("contacts/g1.vcf"));
    copyData(QStringLiteral("group-addressbookserver-kind.vcf"), QStringLiteral("contacts/g2.vcf"));
    writeFile(QStringLiteral("contacts/p.vcf"),
              "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:p1\r\nFN:Team Player\r\nN:Team;Player;;;\r\nEND:VCARD\r\n");
    open();
    auto items = contactItems();
    ASSERT_EQ(items->Count(), 3);
    int contacts = 0, groups = 0;
    for (int i = 1; i <= items->Count(); ++i) {
        auto item = items->ItemAt(i);
        if (pim::asContact(item))
            ++contacts;
        else if (item->Class() == pim::olDistributionList)
            ++groups;
    }
    EXPECT_EQ(contacts, 1);
    EXPECT_EQ(groups, 2);
    auto found = findAll(*items, QStringLiteral("[LastName] =\"Team\""));
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found[0]->EntryID(), QStringLiteral("p1"));
}

// A save keeps what other tools wrote: birthday, nickname, a second mail address, groups.
TEST_F(ContactRoundTrip, ForeignPropertiesSurviveASave) {
    writeFile(QStringLiteral("contacts/f.vcf"),
              "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:f1\r\nFN:Ann Lee\r\nN:Lee;Ann;;;\r\nBDAY:1980-05-17\r\n"
              "NICKNAME:Annie\r\nEMAIL;TYPE=home:ann@home.example\r\nEMAIL;TYPE=work:ann@work.example\r\n"
              "item1.X-ABLABEL:Custom\r\nEND:VCARD\r\n");
    open();
    auto c = pim::asContact(ns->GetItemFromID(QStringLiteral("f1")));
    EXPECT_EQ(c->Email1Address(), QStringLiteral("ann@home.example"));
    c->setMobileTelephoneNumber(QStringLiteral("0170 5"));
    c->Save();
    const QByteArray text = readFile(QStringLiteral("contacts/f.vcf"));
    for (const char* kept : {"BDAY:1980-05-17", "NICKNAME:Annie", "ann@work.example", "item1.X-ABLABEL:Custom",
                             "TEL;TYPE=cell:0170 5", "FN:Ann Lee"})
        EXPECT_TRUE(text.contains(kept)) << kept;
}

} // namespace
} // namespace tsr::test
