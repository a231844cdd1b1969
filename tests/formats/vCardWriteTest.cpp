// SPDX-License-Identifier: GPL-3.0-or-later
// The contact text written for the phone and the field limits applied first.
#include "ContactFixture.h"
#include "formats/vCard.h"

using namespace tsr;
using formats::vCardEntryText;

namespace {
using vCardWrite = test::ContactFixture;
}

// An empty contact still has its name and address lines, but no company or other lines.
TEST_F(vCardWrite, EmptyContactHasNameAndAddressOnly) {
    EXPECT_EQ(vCardEntryText(ctx, *table), crlf({"BEGIN:VCARD", "VERSION:1.0", "N:;", "ADR:;;;;;;", "END:VCARD"}));
}

// Plain ASCII fields: heads without encoding, the optional lines in their fixed order, ";" escaped.
TEST_F(vCardWrite, PlainContactLineByLine) {
    const test::FieldValues values = {
        {u"LastName", u"Doe"},     {u"FirstName", u"John"},  {u"Company", u"A;B"},
        {u"Street", u"Main St 1"}, {u"City", u"Town"},       {u"ZipCode", u"12345"},
        {u"Country", u"Land"},     {u"PhoneMobile", u"444"}, {u"Fax", u"333"},
        {u"PhoneWork", u"222"},    {u"Phone", u"111"},       {u"URL", u"x.org"},
        {u"eMail", u"a;b@x"},      {u"Categories", true},    {u"MobileCategoriesText", u"VIP;Home"}};
    setFields(values);
    EXPECT_EQ(vCardEntryText(ctx, *table),
              crlf({"BEGIN:VCARD", "VERSION:1.0", "N:Doe;John", "ORG:A\\;B", "ADR:;;Main St 1;Town;;12345;Land",
                    "EMAIL:a\\;b@x", "URL:x.org", "TEL;HOME:111", "TEL;WORK:222", "TEL;FAX:333", "TEL;CELL:444",
                    "CATEGORIES:VIP\\;Home", "END:VCARD"}));
}

// Any character outside printable ASCII switches a line to quoted-printable UTF-8 and escapes ";" in it.
TEST_F(vCardWrite, EncodedHeadsWhenNeeded) {
    const test::FieldValues values = {{u"LastName", u"M\u00FCller;X"},
                                      {u"FirstName", u"Jo"},
                                      {u"Company", u"a=b"},
                                      {u"City", u"K\u00F6ln"},
                                      {u"ZipCode", u"5;0"},
                                      {u"Categories", false},
                                      {u"MobileCategoriesText", u"ignored"}};
    setFields(values);
    EXPECT_EQ(vCardEntryText(ctx, *table),
              crlf({"BEGIN:VCARD", "VERSION:1.0", "N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller\\;X;Jo",
                    "ORG;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=3Db",
                    "ADR;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;;K=C3=B6ln;;5\\;0;", "END:VCARD"}));
}

// Every limit of the phone, with one more character for a leading "+".
TEST_F(vCardWrite, LenControlCutsEveryField) {
    const QString longText(100, u'x');
    const std::pair<const char*, int> limits[] = {
        {"FirstName", 16},   {"LastName", 24}, {"Company", 16}, {"Phone", 40}, {"PhoneWork", 40},
        {"PhoneMobile", 40}, {"Fax", 40},      {"Street", 40},  {"City", 16},  {"ZipCode", 8},
        {"eMail", 40},       {"Country", 16},  {"URL", 64}};
    for (const auto& [name, limit] : limits)
        set(QString::fromUtf8(name), longText);
    formats::vCardLenControl(ctx, *table);
    for (const auto& [name, limit] : limits)
        EXPECT_EQ(field(QString::fromUtf8(name)), longText.left(limit)) << name;

    setFields({{u"Phone", QStringLiteral("+") + QString(50, u'1')}, {u"Fax", u"12345"}});
    formats::vCardLenControl(ctx, *table);
    EXPECT_EQ(field(QStringLiteral("Phone")).size(), 41);
    EXPECT_EQ(field(QStringLiteral("Fax")), QStringLiteral("12345"));
}

// A URL over the limit loses "http://" before it is cut; one within the limit keeps it.
TEST_F(vCardWrite, LenControlUrlRule) {
    const QString host = QStringLiteral("www.") + QString(70, u'a') + QStringLiteral(".org");
    set(QStringLiteral("URL"), QStringLiteral("http://") + host);
    formats::vCardLenControl(ctx, *table);
    EXPECT_EQ(field(QStringLiteral("URL")), host.left(64));
    set(QStringLiteral("URL"), QStringLiteral("http://x.org"));
    formats::vCardLenControl(ctx, *table);
    EXPECT_EQ(field(QStringLiteral("URL")), QStringLiteral("http://x.org"));
}
