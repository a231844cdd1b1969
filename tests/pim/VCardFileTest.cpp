// SPDX-License-Identifier: GPL-3.0-or-later
// A contact file read, written and read again keeps every property as it was,
// above all its UID: a UID that changes makes the next sync see a new contact.
// What cannot be written back as it was read is refused with a numbered error.
#include "pim/local/VCardFile.h"
#include "core/Error.h"
#include "pim/Pim.h"

#include <gtest/gtest.h>

namespace tsr::test {
namespace {

using pim::local::ContactData;
using pim::local::VCardProperty;

const core::VbDate kNow(46000.5);

QByteArray card(const QByteArray& lines) {
    return "BEGIN:VCARD\r\nVERSION:3.0\r\n" + lines + "END:VCARD\r\n";
}

std::string describe(const QList<VCardProperty>& props) {
    QStringList out;
    for (const VCardProperty& p : props) {
        QString line = p.group + u'.' + p.name;
        for (const auto& [key, value] : p.params)
            line += u';' + key + u'=' + u'[' + value + u']';
        out << line + u':' + p.value;
    }
    return out.join(u'\n').toStdString();
}

// Each input: the UID it must read as, and the whole contact the same after a write and a fresh read.
TEST(VCardFile, WriteAndReadKeepEveryProperty) {
    struct Case {
        const char* what;
        QByteArray lines;
        QString uid;
    };
    const QList<Case> cases = {
        {"quoted parameter with colon and semicolon", "UID;X-A=\"a:b;c\":id1\r\n", QStringLiteral("id1")},
        {"quotes inside a parameter value", "UID;X-A=a\"b:c\"d:id2\r\n", QStringLiteral("id2")},
        {"caret escapes in a parameter", "UID;X-A=x^^y^'z^nw:id3\r\n", QStringLiteral("id3")},
        {"line break from quoted-printable", "UID;ENCODING=QUOTED-PRINTABLE:id=0D=0AFOO:bar\r\nFN:Ann\r\n",
         QStringLiteral("id\nFOO:bar")},
        {"the words quoted-printable in a value ending in =", "UID:quoted-printable=\r\nFN:Ann\r\n",
         QStringLiteral("quoted-printable=")},
        {"bytes that are not UTF-8", "UID:\xff\xfeid\r\n", QStringLiteral(u"\u00ff\u00feid")},
        {"NUL bytes", QByteArray("UID:a\0b\r\n", 9), QStringLiteral("a") + QChar(0) + QStringLiteral("b")},
        {"Latin-1 named by its charset", "UID;CHARSET=ISO-8859-1:caf\xe9\r\n", QStringLiteral(u"caf\u00e9")},
        {"a value long enough to fold", "UID:" + QByteArray(100, 'u') + "\r\nNOTE:" + QByteArray(74, 'n') + " \r\n",
         QString(100, u'u')},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        try {
            auto first = pim::local::parseVCard(card(c.lines), QStringLiteral("a.vcf"));
            EXPECT_EQ(first->text(QStringLiteral("UID")), c.uid);
            const QByteArray written = pim::local::writeVCard(*first, kNow);
            auto again = pim::local::parseVCard(written, QStringLiteral("a.vcf"));
            EXPECT_EQ(describe(again->props), describe(first->props)) << written.toStdString();
        } catch (const core::TsrError& e) {
            ADD_FAILURE() << e.description().toStdString();
        }
    }
}

// Two UIDs of different bytes that are not UTF-8 stay two contacts.
TEST(VCardFile, DifferentBytesStayDifferentUids) {
    auto a = pim::local::parseVCard(card("UID:\xff\r\n"), QStringLiteral("a.vcf"));
    auto b = pim::local::parseVCard(card("UID:\xfe\r\n"), QStringLiteral("b.vcf"));
    EXPECT_NE(a->text(QStringLiteral("UID")), b->text(QStringLiteral("UID")));
}

// Names that are no names cannot be written back: the file is refused, named in the error.
TEST(VCardFile, NamesThatAreNoNamesAreRefused) {
    const QByteArray fuzzed =
        QByteArray::fromBase64("QkVHSU46VkNBUkQNClZFUlNJT046NC4wDQpVSUQ7ZzFnVFoAAAAAANhkPj0iMDEuMDEuMjUgMDA6MDAiIGFuZC"
                               "BbU3RhcnRdPj0iMDEuMDEuMjUgMDA6MDAiIGFuZCBbU3RhcnRdPj0iMDcuMzEuMjUgMDA6MDAiO2FuZCA3LjMx"
                               "LjI1IDAwOv8NCkVORDpWQ0FSRA0K");
    for (const QByteArray& text : {fuzzed, card("UID:x\r\nU ID:y\r\n"), card("UID:x\r\na b.TEL:1\r\n"),
                                   card("UID:x\r\nTEL;=cell:1\r\n"), card("UID;X\"A\"=1:x\r\n")}) {
        SCOPED_TRACE(text.toStdString());
        try {
            pim::local::parseVCard(text, QStringLiteral("/pim/contacts/odd.vcf"));
            ADD_FAILURE() << "read without an error";
        } catch (const core::TsrError& e) {
            EXPECT_EQ(e.number(), pim::err::CorruptData);
            EXPECT_TRUE(e.description().contains(QStringLiteral("/pim/contacts/odd.vcf")));
        }
    }
}

} // namespace
} // namespace tsr::test
