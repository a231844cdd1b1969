// SPDX-License-Identifier: GPL-3.0-or-later
// The UTF-8 and quoted-printable converters and the Globals text helpers.
#include "formats/unicode.h"
#include "core/Context.h"
#include "core/Error.h"
#include "formats/Globals.h"
#include "support/ScriptedUi.h"

#include <gtest/gtest.h>

using namespace tsr;
using formats::ByteBuffer;

namespace {

class UnicodeTest : public ::testing::Test {
protected:
    test::ScriptedUi ui;
    core::Context ctx{ui};

    // Decodes a value with the given parameters; the flag starts as `flagIn`.
    std::pair<QString, bool> decode(const QString& value, const QString& params, bool flagIn = false) {
        QString v = value;
        bool flag = flagIn;
        formats::encodeString(ctx, v, params, flag);
        return {v, flag};
    }

    int32_t errorOf(const QString& value) {
        try {
            decode(value, QStringLiteral("N;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8"));
        } catch (const core::TsrError& e) {
            lastError = e;
            return e.number();
        }
        return 0;
    }
    core::TsrError lastError;
};

const QString kQpUtf8 = QStringLiteral("ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8");

} // namespace

// A UTF-8 value is decoded only with both parameters, in exact case, and only then is the flag set.
TEST_F(UnicodeTest, EncodeStringDecodesOnlyQuotedPrintableUtf8) {
    EXPECT_EQ(decode(QStringLiteral("=C3=A4"), kQpUtf8), std::make_pair(QStringLiteral("\u00E4"), true));
    EXPECT_EQ(decode(QStringLiteral("=C3=A4"), QStringLiteral("ENCODING=QUOTED-PRINTABLE")),
              std::make_pair(QStringLiteral("=C3=A4"), false));
    EXPECT_EQ(decode(QStringLiteral("=C3=A4"), QStringLiteral("ENCODING=QUOTED-PRINTABLE"), true).second, true);
    EXPECT_EQ(decode(QStringLiteral("=C3=A4"), QStringLiteral("encoding=quoted-printable;charset=utf-8")).first,
              QStringLiteral("=C3=A4"));
    EXPECT_EQ(decode(QStringLiteral("=C3=A4"), QStringLiteral("ENCODING=QUOTED-PRINTABLE;CHARSET=utf-8")).first,
              QStringLiteral("=C3=A4"));
    EXPECT_EQ(decode(QStringLiteral("=C3=A4"), QStringLiteral("CHARSET=UTF-8")).first, QStringLiteral("=C3=A4"));
}

// An empty value and one starting with "=00" stay as they are and leave the flag alone.
TEST_F(UnicodeTest, EncodeStringLeavesEmptyAndNulLeadAlone) {
    EXPECT_EQ(decode(QString(), kQpUtf8), std::make_pair(QString(), false));
    EXPECT_EQ(decode(QString(), kQpUtf8, true), std::make_pair(QString(), true));
    EXPECT_EQ(decode(QStringLiteral("=00abc"), kQpUtf8), std::make_pair(QStringLiteral("=00abc"), false));
}

// Mixed ASCII, "=", euro sign, CJK, a line break and a surrogate pair (written half by half) decode back.
TEST_F(UnicodeTest, QuotedRoundTripOfMixedText) {
    const QString text = QStringLiteral("M\u00FCller = 5\u20AC; \u6771\u4EAC\r\nzwei\tTab ~\u007F \U0001F600");
    const QString quoted = formats::StringToUniToUTFToQuoted(text);
    EXPECT_FALSE(quoted.contains(u'\n'));
    EXPECT_EQ(decode(quoted, kQpUtf8).first, text);
}

// The writer's exact bytes: umlaut, euro sign, "=", line break, DEL unescaped, controls with two digits.
TEST_F(UnicodeTest, StringToQuotedGivesExactEscapes) {
    EXPECT_EQ(formats::StringToUniToUTFToQuoted(QStringLiteral("\u00C4")), QStringLiteral("=C3=84"));
    EXPECT_EQ(formats::StringToUniToUTFToQuoted(QStringLiteral("\u20AC")), QStringLiteral("=E2=82=AC"));
    EXPECT_EQ(formats::StringToUniToUTFToQuoted(QStringLiteral("a=b")), QStringLiteral("a=3Db"));
    EXPECT_EQ(formats::StringToUniToUTFToQuoted(QStringLiteral("a\r\nb")), QStringLiteral("a=0D=0Ab"));
    EXPECT_EQ(formats::StringToUniToUTFToQuoted(QStringLiteral("\x7F\x1F ")), QStringLiteral("\x7F=1F "));
    EXPECT_EQ(formats::StringToUniToUTFToQuoted(QString()), QString());
    // A surrogate pair is written half by half, three bytes each.
    EXPECT_EQ(formats::StringToUniToUTFToQuoted(QStringLiteral("\U0001F600")), QStringLiteral("=ED=A0=BD=ED=B8=80"));
}

// A real four-byte sequence from the phone becomes one surrogate pair, not a cut code.
TEST_F(UnicodeTest, FourByteSequenceDecodesToSurrogatePair) {
    EXPECT_EQ(decode(QStringLiteral("=F0=9F=98=80"), kQpUtf8).first, QStringLiteral("\U0001F600"));
}

// Lead bytes 0xFE/0xFF raise -1991 with the title-based source and string 940; a cut sequence a subscript error.
TEST_F(UnicodeTest, BadUtf8RaisesNumberedErrors) {
    EXPECT_EQ(errorOf(QStringLiteral("=FF")), core::err::Utf8Decoding);
    EXPECT_EQ(lastError.source(), ctx.title() + QStringLiteral(":utf8_2_unicode"));
    EXPECT_EQ(lastError.description(), QStringLiteral("Wrong Byte count! UTF-8 decoding unknown!"));
    EXPECT_EQ(errorOf(QStringLiteral("ab=FE=80")), core::err::Utf8Decoding);
    EXPECT_EQ(errorOf(QStringLiteral("ab=E2=82")), core::err::SubscriptOutOfRange);
    // A lone continuation byte is no error: it comes through as its own value.
    EXPECT_EQ(decode(QStringLiteral("=80x"), kQpUtf8).first, QStringLiteral("\u0080x"));
}

// Quoted-printable to bytes: exact hex, lenient on bad digits and a trailing "=", code page for others.
TEST_F(UnicodeTest, EncodingOuotedPrintableIsLenient) {
    EXPECT_EQ(formats::EncodingOuotedPrintable(QString()), ByteBuffer{0});
    EXPECT_EQ(formats::EncodingOuotedPrintable(QStringLiteral("a=3Db")), (ByteBuffer{'a', '=', 'b'}));
    EXPECT_EQ(formats::EncodingOuotedPrintable(QStringLiteral("=c3=a4")), (ByteBuffer{0xC3, 0xA4}));
    EXPECT_EQ(formats::EncodingOuotedPrintable(QStringLiteral("=ZZx")), (ByteBuffer{0, 'x'}));
    EXPECT_EQ(formats::EncodingOuotedPrintable(QStringLiteral("x=")), (ByteBuffer{'x', 0}));
    EXPECT_EQ(formats::EncodingOuotedPrintable(QStringLiteral("=\r\nA")), (ByteBuffer{0, 'A'}));
    EXPECT_EQ(formats::EncodingOuotedPrintable(QStringLiteral("\u20AC\u00E4\u6771")), (ByteBuffer{0x80, 0xE4, '?'}));
}

// Bytes to quoted-printable: the table of escapes, byte by byte.
TEST_F(UnicodeTest, DecodingOuotedPrintableEscapesByRange) {
    const ByteBuffer bytes{0, 15, 16, 31, 32, 60, 61, 62, 127, 128, 255};
    EXPECT_EQ(formats::DecodingOuotedPrintable(bytes), QStringLiteral("=00=0F=10=1F <=3D>\x7F=80=FF"));
}

// UTF-8 bit layout up to six bytes, the zero pair for a negative code, and the way back.
TEST_F(UnicodeTest, Utf8LayoutAndBack) {
    const std::vector<std::pair<int32_t, ByteBuffer>> cases = {
        {0x41, {0x41}},
        {0x7FF, {0xDF, 0xBF}},
        {0x20AC, {0xE2, 0x82, 0xAC}},
        {0x1F600, {0xF0, 0x9F, 0x98, 0x80}},
        {0x200000, {0xF8, 0x88, 0x80, 0x80, 0x80}},
        {0x7FFFFFFF, {0xFD, 0xBF, 0xBF, 0xBF, 0xBF, 0xBF}},
    };
    for (const auto& [code, bytes] : cases) {
        int32_t c = code;
        EXPECT_EQ(formats::unicode_2_utf8(c), bytes) << code;
        int16_t n = int16_t(bytes.size());
        EXPECT_EQ(formats::utf8_2_unicode(ctx, n, bytes), code);
        EXPECT_EQ(formats::CheckUTF8ByteCount(bytes[0]), bytes.size() == 1 ? 0 : int16_t(bytes.size()));
    }
    int32_t negative = -5;
    EXPECT_EQ(formats::unicode_2_utf8(negative), (ByteBuffer{0, 0}));
    // Count 1 passes any byte unmasked; counts outside 1..6 raise.
    int16_t one = 1;
    EXPECT_EQ(formats::utf8_2_unicode(ctx, one, ByteBuffer{0xBF}), 0xBF);
    int16_t seven = 7;
    EXPECT_THROW(formats::utf8_2_unicode(ctx, seven, ByteBuffer(7, 0x80)), core::TsrError);
}

// Leading one-bits of a byte, for the marks the decoder meets.
TEST_F(UnicodeTest, CheckUTF8ByteCountCountsLeadingOnes) {
    const std::vector<std::pair<uint8_t, int16_t>> cases = {{0x7F, 0}, {0x80, 1}, {0xBF, 1}, {0xC3, 2},
                                                            {0xE2, 3}, {0xF0, 4}, {0xFE, 7}, {0xFF, 8}};
    for (const auto& [byte, count] : cases)
        EXPECT_EQ(formats::CheckUTF8ByteCount(byte), count) << int(byte);
}

// HolTeilstring takes the head and consumes the delimiter; without one it leaves the text whole.
TEST_F(UnicodeTest, HolTeilstringConsumesOrLeaves) {
    QString text = QStringLiteral("KEY:val:ue\r\nNEXT");
    EXPECT_EQ(formats::HolTeilstring(text, QStringLiteral("\r\n")), QStringLiteral("KEY:val:ue"));
    EXPECT_EQ(text, QStringLiteral("NEXT"));
    EXPECT_EQ(formats::HolTeilstring(text, QStringLiteral("\r\n")), QString());
    EXPECT_EQ(text, QStringLiteral("NEXT"));
    QString abc = QStringLiteral("ABC");
    EXPECT_EQ(formats::HolTeilstring(abc, QStringLiteral(":")), QString());
    EXPECT_EQ(abc, QStringLiteral("ABC"));
    QString lead = QStringLiteral(":x");
    EXPECT_EQ(formats::HolTeilstring(lead, QStringLiteral(":")), QString());
    EXPECT_EQ(lead, QStringLiteral("x"));
}

// Cleanit removes each character of the set, case-exactly; EntferneGeradeBytes keeps low bytes.
TEST_F(UnicodeTest, CleanitAndEntferneGeradeBytes) {
    QString text = QStringLiteral("(+49) 30-12 a\u00E4A");
    formats::Cleanit(text, QStringLiteral("()- a"));
    EXPECT_EQ(text, QStringLiteral("+493012\u00E4A"));

    QByteArray raw("\x41\x00\x42\x00", 4);
    formats::EntferneGeradeBytes(raw);
    EXPECT_EQ(raw, QByteArray("AB"));
    const QString wide = QStringLiteral("x\u20ACz\r\n");
    QByteArray wideRaw(reinterpret_cast<const char*>(wide.utf16()), wide.size() * 2);
    formats::EntferneGeradeBytes(wideRaw);
    EXPECT_EQ(wideRaw, QByteArray("x\xACz\r\n"));
    QByteArray empty;
    formats::EntferneGeradeBytes(empty);
    EXPECT_TRUE(empty.isEmpty());
}

// The code page maps both ways for its special bytes and turns the unknown into "?".
TEST_F(UnicodeTest, CodePageWindows1252) {
    EXPECT_EQ(formats::charFromCodePage(0x80), QChar(0x20AC));
    EXPECT_EQ(formats::charFromCodePage(0x9F), QChar(0x0178));
    EXPECT_EQ(formats::charFromCodePage(0x81), QChar(0x0081));
    EXPECT_EQ(formats::charFromCodePage(0xE4), QChar(0x00E4));
    for (int b = 0; b < 256; ++b)
        EXPECT_EQ(formats::byteFromCodePage(formats::charFromCodePage(uint8_t(b))), b);
    EXPECT_EQ(formats::byteFromCodePage(QChar(0x6771)), '?');
    EXPECT_EQ(formats::textToCodePage(QStringLiteral("\u20ACa")), QByteArray("\x80"
                                                                             "a"));
}
