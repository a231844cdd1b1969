// SPDX-License-Identifier: GPL-3.0-or-later
// Number conversions with the program's rules: the leading-number parse of
// settings and checked narrowing that raises the overflow error.
#pragma once

#include <QString>
#include <cstdint>

namespace tsr::core {

// The numeric value of the longest leading number of the text ("12abc" -> 12,
// "abc" -> 0, " -3.5" -> -3.5); blanks before it are skipped.
double Val(QStringView text);

// Rounds half to even and narrows; a value outside the range raises error 6 "Overflow".
int16_t CInt(double value);
int32_t CLng(double value);
// Narrowing without rounding (the value is already whole), raising error 6 outside the range.
int16_t toInt16(qint64 value);

// True for text that reads entirely as a number (blanks around it allowed).
bool IsNumeric(const QString& text);

} // namespace tsr::core
