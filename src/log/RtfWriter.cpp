// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/RtfWriter.h"

namespace tsr::log {

namespace {

// The Windows-1252 byte of a character, or '?' where the code page has none.
uint8_t ansiFallback(char16_t c) {
    static const char16_t high[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    if (c >= 0xA0 && c <= 0xFF)
        return uint8_t(c);
    for (int i = 0; i < 32; ++i)
        if (high[i] == c)
            return uint8_t(0x80 + i);
    return '?';
}

void appendEscaped(QByteArray& out, const QString& text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        switch (c) {
        case u'\\':
            out += "\\\\";
            break;
        case u'{':
            out += "\\{";
            break;
        case u'}':
            out += "\\}";
            break;
        case u'\t':
            out += "\\tab ";
            break;
        case u'\r':
            // CR LF is one break.
            if (i + 1 < text.size() && text[i + 1] == u'\n')
                ++i;
            out += "\\par\r\n";
            break;
        case u'\n':
            out += "\\par\r\n";
            break;
        default:
            if (c >= 0x20 && c < 0x80) {
                out += char(c);
            } else if (c >= 0x80) {
                // \u counts in signed 16 bits and is followed by the one code-page character that
                // a reader without Unicode shows instead. That character goes as a hex escape:
                // some readers drop the rest of the word after a plain one.
                out += "\\u" + QByteArray::number(int(int16_t(c))) + "\\'" +
                       QByteArray::number(ansiFallback(c), 16).rightJustified(2, '0');
            }
            // Other control characters have no place in the log's text.
            break;
        }
    }
}

} // namespace

QByteArray richTextToRtf(const core::RichText& text, const QString& fontName, int pointSize) {
    QByteArray out = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1{\\fonttbl{\\f0\\fswiss ";
    appendEscaped(out, fontName);
    out += ";}}\r\n\\pard\\plain\\f0\\fs" + QByteArray::number(pointSize * 2) + ' ';
    bool bold = false;
    for (const auto& run : text) {
        if (run.bold != bold) {
            out += run.bold ? "\\b " : "\\b0 ";
            bold = run.bold;
        }
        appendEscaped(out, run.text);
    }
    if (bold)
        out += "\\b0 ";
    out += "\\par\r\n}\r\n";
    return out;
}

} // namespace tsr::log
