// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/RtfWriter.h"

namespace tsr::log {

namespace {

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
                // RTF counts \u in signed 16-bit; "?" is what a reader without Unicode shows.
                out += "\\u" + QByteArray::number(int(int16_t(c))) + '?';
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
