// SPDX-License-Identifier: GPL-3.0-or-later
// The Windows-1252 table and the text helpers of Globals.
#include "formats/Globals.h"

#include <array>
#include <cstring>

namespace tsr::formats {

namespace {

// Bytes 0x80-0x9F of Windows-1252; the undefined ones keep their own value.
constexpr std::array<char16_t, 32> kHighControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

QChar charFromCodePage(uint8_t byte) {
    if (byte >= 0x80 && byte <= 0x9F)
        return QChar(kHighControls[byte - 0x80]);
    return QChar(char16_t(byte));
}

uint8_t byteFromCodePage(QChar c) {
    const char16_t u = c.unicode();
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF))
        return uint8_t(u);
    for (size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == u)
            return uint8_t(0x80 + i);
    }
    return '?';
}

QString textFromCodePage(const QByteArray& bytes) {
    // Windows-1252 is Latin-1 but for 0x80-0x9F: the library's Latin-1 reader is
    // quick, and those few bytes, where there are any, are put right behind it.
    QString out = QString::fromLatin1(bytes);
    const auto* src = reinterpret_cast<const uint8_t*>(bytes.constData());
    const qsizetype n = bytes.size();
    // Most texts are ASCII: eight bytes at a time show that no byte is 0x80 or above.
    uint64_t highBits = 0;
    qsizetype i = 0;
    for (; i + 8 <= n; i += 8) {
        uint64_t word;
        std::memcpy(&word, src + i, sizeof word);
        highBits |= word;
    }
    for (; i < n; ++i)
        highBits |= src[i];
    if (highBits & 0x8080808080808080u) {
        auto* dst = reinterpret_cast<char16_t*>(out.data());
        for (qsizetype i = 0; i < n; ++i)
            if (uint8_t(src[i] - 0x80) < 0x20)
                dst[i] = kHighControls[src[i] - 0x80];
    }
    return out;
}

QByteArray textToCodePage(const QString& text) {
    QByteArray out;
    out.resize(text.size());
    for (qsizetype i = 0; i < text.size(); ++i)
        out[i] = char(byteFromCodePage(text[i]));
    return out;
}

void Cleanit(QString& text, const QString& set) {
    QString out;
    out.reserve(text.size());
    for (QChar c : std::as_const(text)) {
        if (!set.contains(c))
            out.append(c);
    }
    text = out;
}

QString HolTeilstring(QString& text, const QString& delimiter) {
    const qsizetype p = text.indexOf(delimiter);
    if (p < 0 || delimiter.isEmpty())
        return {};
    QString head = text.left(p);
    text.remove(0, p + delimiter.size());
    return head;
}

void EntferneGeradeBytes(QByteArray& bytes) {
    const qsizetype upper = bytes.size() - 1;
    if (upper < 0)
        return;
    qsizetype k = 1;
    for (; 2 * k <= upper; ++k)
        bytes[k] = bytes[2 * k];
    bytes.truncate(k);
}

} // namespace tsr::formats
