// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/vCardMatch.h"
#include "SyncTestSupport.h"

using namespace tsr;
using namespace tsr::sync;
using test::setFields;
using test::textOf;

namespace {
class vCardMatch : public test::SyncTest {
protected:
    vCardMatch() : entryTable(makeContacts(QStringLiteral("scratch"))) {}

    void addMobileContact(const QString& last, test::Fields extra = {}) {
        addContactRow(contacts(), {{u"Mobile", true},
                                   {u"EntryType", int32_t(2)},
                                   {u"LastName", last},
                                   {u"FirstName", u"Anna"},
                                   {u"Phone", u"+49 89 123"},
                                   {u"MobileID", u"12"}});
        setFields(contacts(), extra);
    }
    tables::Recordset& pimEntry(const QString& last, test::Fields extra = {}) {
        tables::ClearRecordSet(*entryTable);
        addContactRow(*entryTable, {{u"PIM", true},
                                    {u"EntryType", int32_t(1)},
                                    {u"LastName", last},
                                    {u"FirstName", u"Anna"},
                                    {u"Phone", u"+4989123"},
                                    {u"UID", u"pim-9"}});
        setFields(*entryTable, extra);
        return *entryTable;
    }
    bool find(tables::Recordset& e) { return vCardFindCompare(ctx, contacts(), e, roads); }

    std::unique_ptr<tables::Recordset> entryTable;
    test::RecordingRoads roads;
};
} // namespace

// The phone test: equal texts, equal digits, or equal digit counts beside an empty side.
TEST_F(vCardMatch, PhoneTest) {
    EXPECT_TRUE(phoneNumbersMatch(QStringLiteral("+49 89 123"), QStringLiteral("+4989123")));
    EXPECT_TRUE(phoneNumbersMatch(QStringLiteral("089/123"), QStringLiteral("089-123")));
    EXPECT_FALSE(phoneNumbersMatch(QStringLiteral("089 123"), QStringLiteral("089 124")));
    EXPECT_TRUE(phoneNumbersMatch(QString(), QStringLiteral("Home")));
    EXPECT_FALSE(phoneNumbersMatch(QString(), QStringLiteral("1")));
    EXPECT_TRUE(phoneNumbersMatch(QString(), QString()));
}

// A PIM contact pairs with the phone's on the key and the field tests, with the
// lengths the phone keeps; a field that differs within its length does not pair.
TEST_F(vCardMatch, FieldTestsWithTheirLengths) {
    addMobileContact(QStringLiteral("Berger"), {{u"FirstName", u"Maximilian-Alexa"}, {u"City", u"Munich "}});
    EXPECT_TRUE(
        find(pimEntry(QStringLiteral("Berger"), {{u"FirstName", u"Maximilian-Alexander"}, {u"City", u"munich"}})));
    EXPECT_FALSE(find(pimEntry(QStringLiteral("Berger"), {{u"FirstName", u"Otto"}})));
    // The string test also passes when the row's value sorts after the entry's.
    EXPECT_TRUE(find(pimEntry(QStringLiteral("Berger"), {{u"FirstName", u"Max"}, {u"City", u"Munich"}})));
    EXPECT_FALSE(find(pimEntry(QStringLiteral("Berger"), {{u"Fax", u"0891"}, {u"FirstName", u"Maximilian-Alexa"}})));
    EXPECT_FALSE(find(pimEntry(QStringLiteral("Bergerx"), {{u"FirstName", u"Maximilian-Alexa"}})));
    EXPECT_FALSE(find(pimEntry(QStringLiteral("Berger"),
                               {{u"FirstName", u"Maximilian-Alexa"}, {u"City", u"Munich"}, {u"Categories", true}})));
    EXPECT_FALSE(
        find(pimEntry(QStringLiteral("Berger"),
                      {{u"FirstName", u"Maximilian-Alexa"}, {u"City", u"Munich"}, {u"URL", u"http://example.org"}})));
}

// A name with a single quote is found by walking the rows, not by a search. The
// walk stops at a row whose name sorts after it; that row goes through the field
// tests, and the loop ends only with the table.
TEST_F(vCardMatch, NameWithQuoteIsWalkedTo) {
    // "de Vries" sorts after "O'Neil" (lower case after upper): the walk stops there first.
    addMobileContact(QStringLiteral("de Vries"), {{u"FirstName", u"Aaron"}, {u"MobileID", u"10"}});
    addMobileContact(QStringLiteral("O'Neil"), {{u"MobileID", u"20"}});
    addMobileContact(QStringLiteral("Smith"), {{u"FirstName", u"Bert"}, {u"MobileID", u"30"}});
    EXPECT_TRUE(find(pimEntry(QStringLiteral("O'Neil"))));
    EXPECT_EQ(textOf(contacts(), u"MobileID"), QStringLiteral("20"));

    // No row agrees in the fields: the walk reaches the end and the table goes back.
    contacts().setAbsolutePosition(3);
    EXPECT_FALSE(find(pimEntry(QStringLiteral("O'Brien"), {{u"FirstName", u"Cleo"}})));
    EXPECT_EQ(contacts().absolutePosition(), 3);

    // The row the walk stopped at pairs when every field test and the identity pass.
    EXPECT_TRUE(find(pimEntry(QStringLiteral("D'Angelo"), {{u"FirstName", u"Aaron"}})));
    EXPECT_EQ(textOf(contacts(), u"MobileID"), QStringLiteral("10"));

    // Case counts; the walk stands where it stopped.
    contacts().moveFirst();
    EXPECT_FALSE(vCardFindLastName(ctx, contacts(), QStringLiteral("O'NEIL")));
    EXPECT_EQ(textOf(contacts(), u"LastName"), QStringLiteral("de Vries"));
}

// Identity: a paired row pairs again only with the UID or MobileID it holds.
TEST_F(vCardMatch, IdentityWithMobileID) {
    addMobileContact(QStringLiteral("Kern"), {{u"EntryType", int32_t(3)}, {u"UID", u"pim-1"}});
    EXPECT_FALSE(find(pimEntry(QStringLiteral("Kern"))));
    EXPECT_TRUE(find(pimEntry(QStringLiteral("Kern"), {{u"UID", u"pim-1"}})));
    EXPECT_TRUE(find(pimEntry(QStringLiteral("Kern"), {{u"EntryType", int32_t(3)}, {u"MobileID", u"12"}})));
    // Two rows of the same side pair only by identity, as a snapshot compare needs.
    EXPECT_FALSE(find(pimEntry(QStringLiteral("Kern"), {{u"EntryType", int32_t(3)}, {u"MobileID", u""}})));
}

// Only while an AutoSync run compares are gaps filled, and each row that took a
// value is written to its side; otherwise neither row changes.
TEST_F(vCardMatch, GapsFilledOnlyWhileSyncRuns) {
    addMobileContact(QStringLiteral("Vogel"), {{u"Street", u"Hauptstr. 1"}});
    auto& e = pimEntry(QStringLiteral("Vogel"), {{u"City", u"Ulm"}});
    // The row's empty City against "Ulm" fails without the fill.
    EXPECT_FALSE(find(e));
    EXPECT_TRUE(roads.calls.isEmpty());
    EXPECT_EQ(textOf(contacts(), u"City"), QString());

    ctx.read.SyncRunning = true;
    EXPECT_TRUE(find(e));
    EXPECT_EQ(textOf(contacts(), u"City"), QStringLiteral("Ulm"));
    EXPECT_EQ(textOf(e, u"Street"), QStringLiteral("Hauptstr. 1"));
    EXPECT_EQ(textOf(e, u"PIMStreet"), QStringLiteral("Hauptstr. 1"));
    EXPECT_EQ(roads.calls, (QStringList{QStringLiteral("SendSinglevCardEntry:Vogel"),
                                        QStringLiteral("vCardWriteOutookEntry:Vogel")}));
    EXPECT_EQ(contacts().value(QStringLiteral("Transfernew")).toInt32(), 0);
}
