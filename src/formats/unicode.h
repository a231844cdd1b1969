// SPDX-License-Identifier: GPL-3.0-or-later
// The converters between the program's 16-bit text and the phone's 8-bit text,
// in which every character outside printable ASCII travels as quoted-printable
// UTF-8 bytes.
//
// Two names read the other way round and are kept so: EncodingOuotedPrintable
// turns quoted-printable text into bytes (it decodes), DecodingOuotedPrintable
// turns bytes into quoted-printable text (it encodes). encodeString decodes a
// received property value.
#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace tsr::core {
struct Context;
}

namespace tsr::formats {

// A byte buffer; element 0 is the buffer's first byte (index 1 of the classic routines).
using ByteBuffer = std::vector<uint8_t>;

// The code of one UTF-8 sequence of `count` bytes (1 to 6) at the front of `bytes`.
// Count 1 gives the byte itself, unmasked; following bytes are not checked for the
// 10xxxxxx form. Any other count raises -1991; a buffer shorter than the count
// raises the subscript error.
int32_t utf8_2_unicode(const core::Context& ctx, int16_t& count, const ByteBuffer& bytes);

// The UTF-8 bytes of a code, extended to six bytes for codes up to 31 bits.
// A negative code gives two zero bytes.
ByteBuffer unicode_2_utf8(int32_t& code);

// Quoted-printable text to bytes. "=" and two hexadecimal characters give one byte,
// leniently (no hex digits, or "=" at the end, give 0); any other character gives
// its byte in the code page. An empty text gives one zero byte.
ByteBuffer EncodingOuotedPrintable(const QString& text);

// Bytes to quoted-printable text, upper-case hex, on one line without soft breaks:
// printable ASCII but "=" stays (127 too), everything else is "=XX".
QString DecodingOuotedPrintable(const ByteBuffer& bytes);

// The count of one-bits at the top of the byte (0 for ASCII, 1 for a continuation byte).
int16_t CheckUTF8ByteCount(const uint8_t& byte);

// Each 16-bit unit alone as UTF-8, then quoted-printable; surrogate halves are
// encoded one by one, never combined.
QString StringToUniToUTFToQuoted(const QString& text);

// Decodes a received value in place when `parameters` (the text before ":") says
// "ENCODING=QUOTED-PRINTABLE" and "UTF-8" (exact case), and then sets `flag`.
// Otherwise the value stays as it came and the flag is left alone. Raises -1991 on
// a lead byte 0xFE/0xFF and the subscript error on a sequence cut off at the end.
void encodeString(const core::Context& ctx, QString& value, QStringView parameters, bool& flag);

} // namespace tsr::formats
