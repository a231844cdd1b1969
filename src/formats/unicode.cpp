// SPDX-License-Identifier: GPL-3.0-or-later
// UTF-8 and quoted-printable conversion for the phone's entry texts.
#include "formats/unicode.h"

#include "core/Context.h"
#include "core/Error.h"
#include "formats/Globals.h"

#include <string_view>

namespace tsr::formats {

using core::raise;

namespace {

constexpr char kHex[] = "0123456789ABCDEF";

int hexDigit(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    return -1;
}

void appendQuoted(QString& out, uint8_t b) {
    if (b >= 32 && b <= 127 && b != 61) {
        out.append(QChar(char16_t(b)));
        return;
    }
    out.append(u'=');
    out.append(QChar(char16_t(kHex[b >> 4])));
    out.append(QChar(char16_t(kHex[b & 0x0F])));
}

} // namespace

int32_t utf8_2_unicode(const core::Context& ctx, int16_t& count, const ByteBuffer& bytes) {
    if (count < 1 || count > 6) {
        raise(core::err::Utf8Decoding, ctx.title() + QStringLiteral(":utf8_2_unicode"), ctx.strings.text(940));
    }
    if (bytes.size() < size_t(count))
        raise(core::err::SubscriptOutOfRange, QStringLiteral("utf8_2_unicode"));
    if (count == 1)
        return bytes[0];
    static constexpr uint8_t kLeadMask[7] = {0, 0, 0x1F, 0x0F, 0x07, 0x03, 0x01};
    int64_t code = bytes[0] & kLeadMask[count];
    for (int i = 1; i < count; ++i)
        code = (code << 6) | (bytes[size_t(i)] & 0x3F);
    if (code > INT32_MAX)
        raise(core::err::Overflow, QStringLiteral("utf8_2_unicode"));
    return int32_t(code);
}

ByteBuffer unicode_2_utf8(int32_t& code) {
    if (code < 0)
        return ByteBuffer(2, 0);
    const uint32_t v = uint32_t(code);
    int n;
    uint8_t lead;
    if (v <= 127)
        return ByteBuffer{uint8_t(v)};
    if (v <= 2047) {
        n = 2;
        lead = 192;
    } else if (v <= 65535) {
        n = 3;
        lead = 224;
    } else if (v <= 2097151) {
        n = 4;
        lead = 240;
    } else if (v <= 67108863) {
        n = 5;
        lead = 248;
    } else {
        n = 6;
        lead = 252;
    }
    ByteBuffer out(size_t(n), 0);
    uint32_t rest = v;
    for (int i = n - 1; i >= 1; --i) {
        out[size_t(i)] = uint8_t(128 + (rest & 0x3F));
        rest >>= 6;
    }
    out[0] = uint8_t(lead + rest);
    return out;
}

ByteBuffer EncodingOuotedPrintable(const QString& text) {
    if (text.isEmpty())
        return ByteBuffer(1, 0);
    ByteBuffer out;
    out.reserve(size_t(text.size()));
    const qsizetype n = text.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = text[i];
        if (c != u'=') {
            out.push_back(byteFromCodePage(c));
            ++i;
            continue;
        }
        // Read like a number: the leading hex digits of the two characters count,
        // the rest is ignored, none at all gives 0.
        int value = 0;
        for (qsizetype k = i + 1; k <= i + 2 && k < n; ++k) {
            const int d = hexDigit(text[k]);
            if (d < 0)
                break;
            value = value * 16 + d;
        }
        out.push_back(uint8_t(value));
        i += 3;
    }
    return out;
}

QString DecodingOuotedPrintable(const ByteBuffer& bytes) {
    QString out;
    out.reserve(qsizetype(bytes.size()) * 3);
    for (uint8_t b : bytes)
        appendQuoted(out, b);
    return out;
}

int16_t CheckUTF8ByteCount(const uint8_t& byte) {
    int16_t count = 0;
    for (int bit = 7; bit >= 0 && (byte >> bit) & 1; --bit)
        ++count;
    return count;
}

QString StringToUniToUTFToQuoted(const QString& text) {
    QString out;
    if (text.isEmpty())
        return out;
    out.reserve(text.size() * 3);
    for (QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x80) {
            appendQuoted(out, uint8_t(u));
            continue;
        }
        int32_t code = u;
        for (uint8_t b : unicode_2_utf8(code))
            appendQuoted(out, b);
    }
    return out;
}

void encodeString(const core::Context& ctx, QString& value, QStringView parameters, bool& flag) {
    // Parameters are a few dozen characters: a plain search beats the library's.
    const std::u16string_view params(parameters.utf16(), size_t(parameters.size()));
    if (params.find(u"ENCODING=QUOTED-PRINTABLE") == params.npos)
        return;
    const ByteBuffer bytes = EncodingOuotedPrintable(value);
    if (params.find(u"UTF-8") == params.npos)
        return;
    if (bytes.empty() || bytes[0] == 0)
        return;

    // No byte gives more than one 16-bit unit, but for codes beyond 16 bits,
    // which take four bytes or more for their two.
    QString out(qsizetype(bytes.size()), Qt::Uninitialized);
    char16_t* const begin = reinterpret_cast<char16_t*>(out.data());
    char16_t* dst = begin;
    ByteBuffer sequence;
    size_t i = 0;
    while (i < bytes.size()) {
        int16_t count = CheckUTF8ByteCount(bytes[i]);
        if (count == 0) {
            *dst++ = charFromCodePage(bytes[i]).unicode();
            ++i;
            continue;
        }
        // A lead byte 0xFE/0xFF fails on its count first; a sequence cut off at the
        // end fails at the copy.
        if (count > 6)
            utf8_2_unicode(ctx, count, bytes);
        if (i + size_t(count) > bytes.size())
            raise(core::err::SubscriptOutOfRange, QStringLiteral("encodeString"));
        sequence.assign(bytes.begin() + qsizetype(i), bytes.begin() + qsizetype(i + size_t(count)));
        const int32_t code = utf8_2_unicode(ctx, count, sequence);
        if (code >= 0 && code <= 0xFFFF) {
            *dst++ = char16_t(code);
        } else if (code > 0xFFFF && code <= 0x10FFFF) {
            *dst++ = QChar::highSurrogate(char32_t(code));
            *dst++ = QChar::lowSurrogate(char32_t(code));
        } else {
            *dst++ = QChar::ReplacementCharacter; // nothing is silently cut to a different character
        }
        i += size_t(count);
    }
    out.truncate(dst - begin);
    value = out;
    flag = true;
}

} // namespace tsr::formats
