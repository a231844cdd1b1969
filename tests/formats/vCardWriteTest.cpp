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
    set(QStringLiteral("LastName"), QStringLiteral("Doe"));
    set(QStringLiteral("FirstName"), QStringLiteral("John"));
    set(QStringLiteral("Company"), QStringLiteral("A;B"));
    set(QStringLiteral("Street"), QStringLiteral("Main St 1"));
    set(QStringLiteral("City"), QStringLiteral("Town"));
    set(QStringLiteral("ZipCode"), QStringLiteral("12345"));
    set(QStringLiteral("Country"), QStringLiteral("Land"));
    set(QStringLiteral("PhoneMobile"), QStringLiteral("444"));
    set(QStringLiteral("Fax"), QStringLiteral("333"));
    set(QStringLiteral("PhoneWork"), QStringLiteral("222"));
    set(QStringLiteral("Phone"), QStringLiteral("111"));
    set(QStringLiteral("URL"), QStringLiteral("x.org"));
    set(QStringLiteral("eMail"), QStringLiteral("a;b@x"));
    set(QStringLiteral("Categories"), true);
    set(QStringLiteral("MobileCategoriesText"), QStringLiteral("VIP;Home"));
    EXPECT_EQ(vCardEntryText(ctx, *table),
              crlf({"BEGIN:VCARD", "VERSION:1.0", "N:Doe;John", "ORG:A\\;B", "ADR:;;Main St 1;Town;;12345;Land",
                    "EMAIL:a\\;b@x", "URL:x.org", "TEL;HOME:111", "TEL;WORK:222", "TEL;FAX:333", "TEL;CELL:444",
                    "CATEGORIES:VIP\\;Home", "END:VCARD"}));
}

// Any character outside printable ASCII switches a line to quoted-printable UTF-8 and escapes ";" in it.
TEST_F(vCardWrite, EncodedHeadsWhenNeeded) {
    set(QStringLiteral("LastName"), QStringLiteral("M\u00FCller;X"));
    set(QStringLiteral("FirstName"), QStringLiteral("Jo"));
    set(QStringLiteral("Company"), QStringLiteral("a=b"));
    set(QStringLiteral("City"), QStringLiteral("K\u00F6ln"));
    set(QStringLiteral("ZipCode"), QStringLiteral("5;0"));
    set(QStringLiteral("Categories"), false);
    set(QStringLiteral("MobileCategoriesText"), QStringLiteral("ignored"));
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

    set(QStringLiteral("Phone"), QStringLiteral("+") + QString(50, u'1'));
    set(QStringLiteral("Fax"), QStringLiteral("12345"));
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
