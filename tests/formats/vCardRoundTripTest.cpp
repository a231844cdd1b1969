// SPDX-License-Identifier: GPL-3.0-or-later
// Generated contacts go row -> text -> the phone's 8-bit bytes -> parser -> row
// and come back with every field the contact text carries, after the phone's limits.
#include "ContactFixture.h"
#include "formats/Globals.h"
#include "formats/vCard.h"

#include <algorithm>
#include <random>

using namespace tsr;

namespace {

// What the encoded fields may hold: umlauts, the euro sign, CJK, ";", "=", line breaks, tabs.
const QString kRich =
    QStringLiteral("abcXYZ 0129 \u00E4\u00F6\u00FC\u00DF\u00C4\u20AC\u6771\u4EAC\u8A9E;=;=\r\n\t.,-'!?");
// Values written without encoding: the phone keeps them as plain printable ASCII.
const QString kPhoneChars = QStringLiteral("0123456789 -/()");
const QString kMailChars = QStringLiteral("abcdefghijklmnopqrstuvwxyz0123456789._-");
const QString kZipChars = QStringLiteral("0123456789ABZ -");

class ContactGenerator {
public:
    explicit ContactGenerator(unsigned seed) : m_rng(seed) {}

    QString pick(const QString& alphabet, int minLen, int maxLen) {
        const int n = std::uniform_int_distribution<int>(minLen, maxLen)(m_rng);
        QString out;
        for (int i = 0; i < n; ++i) {
            const int k = std::uniform_int_distribution<int>(0, int(alphabet.size()) - 1)(m_rng);
            // A line break only goes in whole.
            if (alphabet[k] == u'\r' || alphabet[k] == u'\n')
                out += QStringLiteral("\r\n");
            else
                out += alphabet[k];
        }
        return out;
    }
    // A rich text, or empty now and then. A plain ASCII name or address goes unescaped
    // (see PlainNameSemicolonIsNotEscaped), so a ";" comes with a character that is encoded.
    QString rich(int maxLen) {
        if (chance(5))
            return {};
        QString v = pick(kRich, 1, maxLen);
        const bool plain =
            std::all_of(v.begin(), v.end(), [](QChar c) { return c >= u' ' && c < u'\x7F' && c != u'='; });
        if (plain && v.contains(u';'))
            v.prepend(QChar(0x00E4));
        return v;
    }
    bool chance(int oneIn) { return std::uniform_int_distribution<int>(1, oneIn)(m_rng) == 1; }

private:
    std::mt19937 m_rng;
};

// The encoded fields come back cut to the phone's limit, line breaks and tabs as blanks, without blanks at the ends.
QString carried(const QString& value, int limit) {
    QString v = value.left(limit);
    v.replace(QLatin1String("\r\n"), QLatin1String(" ")).replace(u'\t', u' ');
    while (v.startsWith(u' '))
        v.remove(0, 1);
    while (v.endsWith(u' '))
        v.chop(1);
    return v;
}

class vCardRoundTrip : public test::ContactFixture {
protected:
    // The text as the phone stores it: low bytes of each unit, read back through the code page.
    static QString overTheWire(const QString& text) {
        QByteArray raw(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
        formats::EntferneGeradeBytes(raw);
        return formats::textFromCodePage(raw);
    }
};

} // namespace

// A few hundred generated contacts survive the trip with every carried field.
TEST_F(vCardRoundTrip, GeneratedContactsComeBack) {
    ContactGenerator gen(20261122);
    const std::pair<const char*, int> encoded[] = {{"LastName", 24}, {"FirstName", 16}, {"Company", 16},
                                                   {"Street", 40},   {"City", 16},      {"Country", 16}};
    for (int n = 0; n < 400; ++n) {
        newRow();
        std::map<QString, QString> written;
        for (const auto& [name, limit] : encoded)
            written[QString::fromUtf8(name)] = gen.rich(limit + 6);
        written[QStringLiteral("ZipCode")] = gen.pick(kZipChars, 0, 10);
        written[QStringLiteral("Phone")] =
            (gen.chance(2) ? QStringLiteral("+") : QString()) + gen.pick(kPhoneChars, 0, 45);
        written[QStringLiteral("PhoneWork")] = gen.pick(kPhoneChars, 0, 12);
        written[QStringLiteral("PhoneMobile")] = gen.pick(kPhoneChars, 0, 12);
        written[QStringLiteral("Fax")] = gen.pick(kPhoneChars, 0, 12);
        written[QStringLiteral("eMail")] = gen.pick(kMailChars, 0, 30) + QStringLiteral("@example.org");
        written[QStringLiteral("URL")] =
            (gen.chance(2) ? QStringLiteral("http://") : QString()) + gen.pick(kMailChars, 1, 70);
        const bool vip = gen.chance(3);
        for (const auto& [name, value] : written)
            set(name, value);
        set(QStringLiteral("Categories"), vip);
        set(QStringLiteral("MobileCategoriesText"), vip ? QStringLiteral("VIP") : QString());

        const QString text = formats::vCardEntryText(ctx, *table);
        // The row now holds the cut values; what the phone got must come back as that.
        std::map<QString, QString> sent;
        for (const auto& [name, value] : written)
            sent[name] = field(name);

        newRow();
        QString received = overTheWire(text);
        ASSERT_EQ(received, text) << "the text holds a character the phone's bytes cannot carry";
        ASSERT_TRUE(formats::vCardParsEntryFromMobile(ctx, *table, received));
        for (const auto& [name, limit] : encoded) {
            const QString key = QString::fromUtf8(name);
            EXPECT_EQ(field(key), carried(written[key], limit)) << n << ' ' << name << '\n' << text.toStdString();
        }
        const QString zip = carried(sent[QStringLiteral("ZipCode")], 8);
        EXPECT_EQ(field(QStringLiteral("ZipCode")), zip) << n;
        EXPECT_EQ(field(QStringLiteral("PIMZipCode")), zip) << n;
        for (const char* name : {"Phone", "PhoneWork", "PhoneMobile", "Fax", "eMail", "URL"}) {
            const QString key = QString::fromUtf8(name);
            EXPECT_EQ(field(key), sent[key]) << n << ' ' << name;
            EXPECT_EQ(field(QStringLiteral("PIM") + key), sent[key]) << n << " PIM" << name;
        }
        EXPECT_EQ(table->value(QStringLiteral("Categories")).toBool(), vip);
        EXPECT_EQ(field(QStringLiteral("MobileCategoriesText")), vip ? QStringLiteral("VIP") : QString());
        if (HasFailure())
            break;
    }
}

// A plain ASCII name is written without escapes, so a ";" in it splits on the way back, as the phone reads it.
TEST_F(vCardRoundTrip, PlainNameSemicolonIsNotEscaped) {
    set(QStringLiteral("LastName"), QStringLiteral("Doe;Jr"));
    set(QStringLiteral("FirstName"), QStringLiteral("John"));
    QString text = formats::vCardEntryText(ctx, *table);
    EXPECT_TRUE(text.contains(QLatin1String("\r\nN:Doe;Jr;John\r\n")));
    newRow();
    formats::vCardParsEntryFromMobile(ctx, *table, text);
    EXPECT_EQ(field(QStringLiteral("LastName")), QStringLiteral("Doe"));
    EXPECT_EQ(field(QStringLiteral("FirstName")), QStringLiteral("Jr"));
}
