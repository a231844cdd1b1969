// SPDX-License-Identifier: GPL-3.0-or-later
// Small text helpers the entry parsers rest on, and the one 8-bit code page
// the program uses wherever a byte becomes a character or back.
#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>
#include <cstdint>

namespace tsr::formats {

// The 8-bit code page (Windows-1252). Bytes 0-127 are ASCII; the five bytes the
// code page leaves undefined map to the control characters of the same value.
QChar charFromCodePage(uint8_t byte);
// A character the code page cannot show becomes "?", as the classic conversion does.
uint8_t byteFromCodePage(QChar c);
QString textFromCodePage(const QByteArray& bytes);
QByteArray textToCodePage(const QString& text);

// Removes every character of `set` from `text` (exact comparison).
void Cleanit(QString& text, const QString& set);

// The part of `text` before the first `delimiter`; `text` then keeps only what
// follows the delimiter. Without a delimiter the result is empty and `text` stays
// as it is: a parser loop over a last line without line end relies on that.
QString HolTeilstring(QString& text, const QString& delimiter);

// `bytes` holds a 16-bit text as raw bytes, low byte first: keeps byte 0 and then
// every second byte, so each 16-bit unit leaves its low byte. High bytes are dropped.
void EntferneGeradeBytes(QByteArray& bytes);

} // namespace tsr::formats
