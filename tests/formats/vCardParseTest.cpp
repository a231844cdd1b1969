// SPDX-License-Identifier: GPL-3.0-or-later
// Reading a contact text from the phone into a row.
#include "ContactFixture.h"
#include "core/Error.h"
#include "formats/vCard.h"

using namespace tsr;
using formats::vCardParsEntryFromMobile;

namespace {

class vCardParse : public test::ContactFixture {
protected:
    bool parse(QString text) { return vCardParsEntryFromMobile(ctx, *table, text); }
    core::TsrError parseError(const QString& text) {
        try {
            parse(text);
        } catch (const core::TsrError& e) {
            return e;
        }
        ADD_FAILURE() << "no error for " << text.toStdString();
        return {};
    }
};

} // namespace

// A full contact fills the plain fields, their PIM copies, and marks the row as a phone row.
TEST_F(vCardParse, FullContactFillsRow) {
    ASSERT_TRUE(
        parse(crlf({"BEGIN:VCARD", "VERSION:1.0", "N:Doe;John", "ORG:ACME;Sales",
                    "ADR;HOME:;;Main St 1;Town;;12345;Land", "EMAIL;INTERNET:j@x.org", "URL:http://x.org",
                    "TEL;HOME:111", "TEL;WORK:222", "TEL;FAX:333", "TEL;CELL:444", "CATEGORIES:VIP", "END:VCARD"})));
    const std::pair<const char*, const char*> expected[] = {{"LastName", "Doe"},
                                                            {"PIMLastName", "Doe"},
                                                            {"FirstName", "John"},
                                                            {"PIMFirstName", "John"},
                                                            {"Company", "ACME"},
                                                            {"PIMCompany", "ACME"},
                                                            {"Street", "Main St 1"},
                                                            {"PIMStreet", "Main St 1"},
                                                            {"City", "Town"},
                                                            {"PIMCity", "Town"},
                                                            {"ZipCode", "12345"},
                                                            {"PIMZipCode", "12345"},
                                                            {"Country", "Land"},
                                                            {"PIMCountry", "Land"},
                                                            {"eMail", "j@x.org"},
                                                            {"PIMeMail", "j@x.org"},
                                                            {"URL", "http://x.org"},
                                                            {"PIMURL", "http://x.org"},
                                                            {"Phone", "111"},
                                                            {"PIMPhone", "111"},
                                                            {"PhoneWork", "222"},
                                                            {"PIMPhoneWork", "222"},
                                                            {"Fax", "333"},
                                                            {"PIMFax", "333"},
                                                            {"PhoneMobile", "444"},
                                                            {"PIMPhoneMobile", "444"},
                                                            {"CategoriesText", "VIP"},
                                                            {"MobileCategoriesText", "VIP"}};
    for (const auto& [name, value] : expected)
        EXPECT_EQ(field(QString::fromUtf8(name)), QString::fromUtf8(value)) << name;
    EXPECT_TRUE(table->value(QStringLiteral("Categories")).toBool());
    EXPECT_TRUE(table->value(QStringLiteral("Mobile")).toBool());
    EXPECT_EQ(table->value(QStringLiteral("EntryType")).toInt32(), 2);
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// Address pieces set fields by the highest piece index; a PIM copy needs a further piece behind it.
TEST_F(vCardParse, AddressPiecesAndPimCopies) {
    parse(crlf({"ADR;HOME:;;Main St;Town"}));
    EXPECT_EQ(field(QStringLiteral("Street")), QStringLiteral("Main St"));
    EXPECT_EQ(field(QStringLiteral("PIMStreet")), QStringLiteral("Main St"));
    EXPECT_EQ(field(QStringLiteral("City")), QStringLiteral("Town"));
    EXPECT_EQ(field(QStringLiteral("PIMCity")), QString());

    newRow();
    parse(crlf({"ADR:;;Only Street"}));
    EXPECT_EQ(field(QStringLiteral("Street")), QStringLiteral("Only Street"));
    EXPECT_EQ(field(QStringLiteral("PIMStreet")), QString());

    newRow();
    parse(crlf({"ADR;WORK:;;S;C;R;Z"}));
    EXPECT_EQ(field(QStringLiteral("ZipCode")), QStringLiteral("Z"));
    EXPECT_EQ(field(QStringLiteral("PIMCity")), QStringLiteral("C"));
    EXPECT_EQ(field(QStringLiteral("PIMZipCode")), QString());
    EXPECT_EQ(field(QStringLiteral("Country")), QString());

    newRow();
    parse(crlf({"ADR;POSTAL:PO;Ext"}));
    EXPECT_EQ(field(QStringLiteral("Street")), QString());
    EXPECT_TRUE(table->value(QStringLiteral("Mobile")).toBool());
}

// Escaped semicolons and control characters in structured values are resolved and cleaned.
TEST_F(vCardParse, StructuredValuesUnescapeAndClean) {
    parse(crlf({"N: Smith\\; Jones\t;Ann ", "ORG:A\\;B;Dept", "ADR:;;a\\;b;c\tx;;1;D"}));
    EXPECT_EQ(field(QStringLiteral("LastName")), QStringLiteral("Smith; Jones"));
    EXPECT_EQ(field(QStringLiteral("FirstName")), QStringLiteral("Ann"));
    EXPECT_EQ(field(QStringLiteral("Company")), QStringLiteral("A;B"));
    EXPECT_EQ(field(QStringLiteral("Street")), QStringLiteral("a;b"));
    EXPECT_EQ(field(QStringLiteral("City")), QStringLiteral("c x"));
    // A name with one piece leaves the first name alone.
    newRow();
    set(QStringLiteral("FirstName"), QStringLiteral("keep"));
    parse(crlf({"N:Solo", "ORG:", "N:"}));
    EXPECT_EQ(field(QStringLiteral("LastName")), QStringLiteral("Solo"));
    EXPECT_EQ(field(QStringLiteral("FirstName")), QStringLiteral("keep"));
    EXPECT_EQ(field(QStringLiteral("Company")), QString());
}

// A plain second number does not replace the first; a preferred one does.
TEST_F(vCardParse, PhonePreferenceRules) {
    parse(crlf({"TEL;HOME:1", "TEL;HOME:2", "TEL;WORK:3", "TEL;PREF;WORK:4", "TEL;WORK:5", "TEL;CELL:6", "TEL;CELL:7",
                "TEL;FAX:8", "TEL;FAX:9", "TEL;PREF;HOME:10", "TEL;VOICE:11", "TEL:12"}));
    EXPECT_EQ(field(QStringLiteral("Phone")), QStringLiteral("10"));
    EXPECT_EQ(field(QStringLiteral("PhoneWork")), QStringLiteral("4"));
    EXPECT_EQ(field(QStringLiteral("PIMPhoneWork")), QStringLiteral("4"));
    EXPECT_EQ(field(QStringLiteral("PhoneMobile")), QStringLiteral("6"));
    EXPECT_EQ(field(QStringLiteral("Fax")), QStringLiteral("9"));
}

// Any EMAIL line fills the address; foreign mail systems among the parameters change nothing.
TEST_F(vCardParse, EmailWhateverItsParameters) {
    parse(crlf({"EMAIL;X400:first@x", "EMAIL;AOL;PREF:second@x"}));
    EXPECT_EQ(field(QStringLiteral("eMail")), QStringLiteral("second@x"));
    EXPECT_EQ(field(QStringLiteral("PIMeMail")), QStringLiteral("second@x"));
}

// Quoted-printable UTF-8 values are decoded before they are split; the flag follows the last line.
TEST_F(vCardParse, QuotedPrintableUtf8Values) {
    parse(crlf({"N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller\\;Sohn;J=C3=B6rg",
                "ORG;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=E6=9D=B1=E4=BA=AC"}));
    EXPECT_EQ(field(QStringLiteral("LastName")), QStringLiteral("M\u00FCller;Sohn"));
    EXPECT_EQ(field(QStringLiteral("FirstName")), QStringLiteral("J\u00F6rg"));
    EXPECT_EQ(field(QStringLiteral("Company")), QStringLiteral("\u6771\u4EAC"));
    EXPECT_TRUE(table->value(QStringLiteral("UTF8Flag")).toBool());
    parse(crlf({"TEL;HOME:1"}));
    EXPECT_FALSE(table->value(QStringLiteral("UTF8Flag")).toBool());
}

// Values keep every ":" after the first; lines without ":" or with an empty key are passed over.
TEST_F(vCardParse, ColonsInValueAndOddLines) {
    parse(QStringLiteral("URL:http://x.org:8080/a\r\n:lonely\r\nNOCOLON\r\n =20folded\r\nTEL;HOME:5"));
    EXPECT_EQ(field(QStringLiteral("URL")), QStringLiteral("http://x.org:8080/a"));
    EXPECT_EQ(field(QStringLiteral("Phone")), QStringLiteral("5"));
}

// BEGIN and END other than VCARD raise -1996 and -1995 with the key and value in the text.
TEST_F(vCardParse, UnexpectedBeginEndRaise) {
    const core::TsrError begin = parseError(crlf({"BEGIN:VCALENDAR"}));
    EXPECT_EQ(begin.number(), -1996);
    EXPECT_EQ(begin.source(), QStringLiteral("ParsEntryFromMobile"));
    EXPECT_EQ(begin.description(), QStringLiteral("Unexpected TAG after BEGIN\r\nBEGIN:VCALENDAR"));
    const core::TsrError end = parseError(crlf({"BEGIN:VCARD", "END;X=1:vcard"}));
    EXPECT_EQ(end.number(), -1995);
    EXPECT_EQ(end.description(), QStringLiteral("Unexpected TAG after END\r\nEND;X=1:vcard"));
}

// A decoding error passes to the caller, and the next contact parses normally.
TEST_F(vCardParse, ErrorLeavesNextParseIntact) {
    const core::TsrError bad = parseError(crlf({"BEGIN:VCARD", "N;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:=FF"}));
    EXPECT_EQ(bad.number(), core::err::Utf8Decoding);
    newRow();
    EXPECT_TRUE(parse(crlf({"BEGIN:VCARD", "N:Next;One", "END:VCARD"})));
    EXPECT_EQ(field(QStringLiteral("LastName")), QStringLiteral("Next"));
    EXPECT_EQ(field(QStringLiteral("FirstName")), QStringLiteral("One"));
}

// A new version is shown once through the user boundary and then written in every later contact.
TEST_F(vCardParse, VersionConflictShownOnceAndTakenOver) {
    parse(crlf({"BEGIN:VCARD", "VERSION:2.1", "END:VCARD"}));
    parse(crlf({"BEGIN:VCARD", "VERSION:2.1", "END:VCARD"}));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Version conflict in vCard! Version: 2.1"));
    EXPECT_EQ(ui.boxes[0].title, ctx.title());
    newRow();
    EXPECT_TRUE(formats::vCardEntryText(ctx, *table).contains(QLatin1String("\r\nVERSION:2.1\r\n")));
}

// With the debug switch the received text is shown before it is read.
TEST_F(vCardParse, DebugSwitchShowsText) {
    ctx.flags.GlobalCommandDebug = true;
    const QString text = crlf({"BEGIN:VCARD", "N:A;B", "END:VCARD"});
    parse(text);
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, text);
    EXPECT_EQ(field(QStringLiteral("LastName")), QStringLiteral("A"));
}
