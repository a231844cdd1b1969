// SPDX-License-Identifier: GPL-3.0-or-later
// Field checks and token helpers of Allgemein: the escaping of ";" in property
// values, the cleaning of control characters, the comparison of values the phone
// may have altered, and the limits of call numbers. The series and time checks of
// the same module live in AllgemeinTime.h.
#pragma once

#include <QString>
#include <QStringList>

namespace tsr::formats {

// Splits at every ";" not preceded by a backslash; the escaping backslash goes.
// An empty text gives an empty list.
QStringList SplitESCStrings(const QString& text);
// The first of those pieces, without splitting the rest; "" for an empty text.
QString FirstESCPiece(const QString& text);

// Every ";" becomes "\;".
void CheckSemicolonInToken(QString& text);

// Line breaks (CR LF) and tabs become one blank each; blanks at both ends go.
QString RemoveCTRLCharactersFromString(const QString& text);

// True when the two texts count as equal though the phone may have dropped or
// added a trailing blank (the blank is cut from the text that has it, which the
// caller sees). Also true when the first sorts after the second without regard
// to case: callers rely on that looseness to see no change.
bool CheckvCardString(QString& first, QString& second);

// True when the two URLs count as the same, one of them perhaps with "http://".
// As in CheckvCardString, a first text that sorts after the second counts as equal.
bool CheckURL(const QString& first, const QString& second);

// The text without its leading "http://" when it holds that prefix anywhere.
QString URLwithouthttp(const QString& text);

// The phone keeps 40 digits; a leading "+" does not count, hence 41.
int Phonecall_Len(const QString& text);
int vCardPhoneNumber_Len(const QString& text, int limit, int limitWithPlus);

} // namespace tsr::formats
