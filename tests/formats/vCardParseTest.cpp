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

// Address pieces set fields by the highest piece index; a PIM copy needs a further piece behind it.
TEST_F(vCardParse, AddressPiecesAndPimCopies) {
    parse(crlf({"ADR:;;Only Street"}));
    expectFields({{u"Street", u"Only Street"}, {u"PIMStreet", u""}});

    newRow();
    parse(crlf({"ADR;WORK:;;S;C;R;Z"}));
    expectFields({{u"ZipCode", u"Z"}, {u"PIMCity", u"C"}, {u"PIMZipCode", u""}, {u"Country", u""}});

    newRow();
    parse(crlf({"ADR;POSTAL:PO;Ext"}));
    EXPECT_EQ(field(QStringLiteral("Street")), QString());
    EXPECT_TRUE(table->value(QStringLiteral("Mobile")).toBool());
}

// Escaped semicolons and control characters in structured values are resolved and cleaned.
TEST_F(vCardParse, StructuredValuesUnescapeAndClean) {
    parse(crlf({"N: Smith\\; Jones\t;Ann ", "ORG:A\\;B;Dept", "ADR:;;a\\;b;c\tx;;1;D"}));
    const test::FieldTexts want = {{u"LastName", u"Smith; Jones"},
                                   {u"FirstName", u"Ann"},
                                   {u"Company", u"A;B"},
                                   {u"Street", u"a;b"},
                                   {u"City", u"c x"}};
    expectFields(want);
    // A name with one piece leaves the first name alone.
    newRow();
    set(QStringLiteral("FirstName"), QStringLiteral("keep"));
    parse(crlf({"N:Solo", "ORG:", "N:"}));
    expectFields({{u"LastName", u"Solo"}, {u"FirstName", u"keep"}, {u"Company", u""}});
}

// A plain second number does not replace the first; a preferred one does.
TEST_F(vCardParse, PhonePreferenceRules) {
    parse(crlf({"TEL;HOME:1", "TEL;HOME:2", "TEL;WORK:3", "TEL;PREF;WORK:4", "TEL;WORK:5", "TEL;CELL:6", "TEL;CELL:7",
                "TEL;FAX:8", "TEL;FAX:9", "TEL;PREF;HOME:10", "TEL;VOICE:11", "TEL:12"}));
    const test::FieldTexts want = {
        {u"Phone", u"10"}, {u"PhoneWork", u"4"}, {u"PIMPhoneWork", u"4"}, {u"PhoneMobile", u"6"}, {u"Fax", u"9"}};
    expectFields(want);
}

// PREF chooses between the home and the work number only. The parameter after it
// is still read by its own rule, so a preferred mobile or fax number, as phones send
// them, is kept: CELL fills an empty mobile field, FAX sets the fax; neither touches
// the home or work number.
TEST_F(vCardParse, PreferredCellAndFax) {
    struct Case {
        std::vector<const char*> lines;
        QList<std::pair<QString, QString>> want;
    };
    const auto want = [](std::initializer_list<std::pair<const char*, const char*>> pairs) {
        QList<std::pair<QString, QString>> out;
        for (const auto& [f, v] : pairs)
            out.append({QString::fromLatin1(f), QString::fromLatin1(v)});
        return out;
    };
    const QList<Case> cases = {
        {{"TEL;PREF;CELL:1"}, want({{"PhoneMobile", "1"}, {"PIMPhoneMobile", "1"}, {"Phone", ""}, {"PhoneWork", ""}})},
        {{"TEL;CELL:1", "TEL;PREF;CELL:2"}, want({{"PhoneMobile", "1"}})},
        {{"TEL;PREF;CELL:2", "TEL;CELL:1"}, want({{"PhoneMobile", "2"}})},
        {{"TEL;PREF;FAX:3"}, want({{"Fax", "3"}, {"PIMFax", "3"}, {"Phone", ""}, {"PhoneWork", ""}})},
        {{"TEL;FAX:3", "TEL;PREF;FAX:4"}, want({{"Fax", "4"}})},
        {{"TEL;PREF;CELL:5", "TEL;PREF;FAX:6", "TEL;PREF;HOME:7"},
         want({{"PhoneMobile", "5"}, {"Fax", "6"}, {"Phone", "7"}})},
    };
    for (const Case& c : cases) {
        QString text;
        for (const char* line : c.lines)
            text += QString::fromLatin1(line) + QStringLiteral("\r\n");
        SCOPED_TRACE(text.toStdString());
        newRow();
        parse(text);
        for (const auto& [name, value] : c.want)
            EXPECT_EQ(field(name), value) << name.toStdString();
    }
}

// Any EMAIL line fills the address; foreign mail systems among the parameters change nothing.
TEST_F(vCardParse, EmailWhateverItsParameters) {
    parse(crlf({"EMAIL;X400:first@x", "EMAIL;AOL;PREF:second@x"}));
    expectFields({{u"eMail", u"second@x"}, {u"PIMeMail", u"second@x"}});
}

// Quoted-printable UTF-8 values are decoded before they are split; the flag follows the last line.
TEST_F(vCardParse, QuotedPrintableUtf8Values) {
    parse(crlf({"N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller\\;Sohn;J=C3=B6rg",
                "ORG;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=E6=9D=B1=E4=BA=AC"}));
    expectFields({{u"LastName", u"M\u00FCller;Sohn"}, {u"FirstName", u"J\u00F6rg"}, {u"Company", u"\u6771\u4EAC"}});
    EXPECT_TRUE(table->value(QStringLiteral("UTF8Flag")).toBool());
    parse(crlf({"TEL;HOME:1"}));
    EXPECT_FALSE(table->value(QStringLiteral("UTF8Flag")).toBool());
}

// Values keep every ":" after the first; lines without ":" or with an empty key are passed over.
TEST_F(vCardParse, ColonsInValueAndOddLines) {
    parse(QStringLiteral("URL:http://x.org:8080/a\r\n:lonely\r\nNOCOLON\r\n =20folded\r\nTEL;HOME:5"));
    expectFields({{u"URL", u"http://x.org:8080/a"}, {u"Phone", u"5"}});
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
    expectFields({{u"LastName", u"Next"}, {u"FirstName", u"One"}});
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
