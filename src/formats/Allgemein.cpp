// SPDX-License-Identifier: GPL-3.0-or-later
// Token helpers and field checks shared by the calendar and contact formats.
#include "formats/Allgemein.h"

namespace tsr::formats {

namespace {

const QString kHttp = QStringLiteral("http://");

// Text comparison without regard to case, -1, 0 or 1.
int textCompare(const QString& a, const QString& b) {
    const int r = QString::compare(a, b, Qt::CaseInsensitive);
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

} // namespace

namespace {

// The piece from `from` up to the next ";" that has no "\" before it, each
// "\;" on the way read as ";". `from` moves behind that ";", or past the end.
QString nextPiece(QStringView text, qsizetype& from) {
    QString piece;
    for (;;) {
        const qsizetype semicolon = text.indexOf(u';', from);
        piece += text.mid(from, semicolon < 0 ? -1 : semicolon - from);
        if (semicolon < 0) {
            from = text.size() + 1;
            return piece;
        }
        from = semicolon + 1;
        if (!piece.endsWith(u'\\'))
            return piece;
        piece.back() = u';';
    }
}

} // namespace

QStringList SplitESCStrings(const QString& text) {
    QStringList out;
    for (qsizetype from = 0; !text.isEmpty() && from <= text.size();)
        out.append(nextPiece(text, from));
    return out;
}

QString FirstESCPiece(const QString& text) {
    if (!text.contains(u';'))
        return text;
    qsizetype from = 0;
    return nextPiece(text, from);
}

void CheckSemicolonInToken(QString& text) {
    if (text.isEmpty())
        return;
    text.replace(u';', QLatin1String("\\;"));
}

QString RemoveCTRLCharactersFromString(const QString& text) {
    if (text.isEmpty() ||
        (!text.contains(u'\r') && !text.contains(u'\t') && text.front() != u' ' && text.back() != u' '))
        return text; // nothing to remove
    QString out = text;
    out.replace(QLatin1String("\r\n"), QLatin1String(" "));
    out.replace(u'\t', u' ');
    qsizetype from = 0;
    qsizetype to = out.size();
    while (from < to && out[from] == u' ')
        ++from;
    while (to > from && out[to - 1] == u' ')
        --to;
    return out.mid(from, to - from);
}

bool CheckvCardString(QString& first, QString& second) {
    if (first.right(1) != second.right(1)) {
        if (first.endsWith(u' '))
            first.chop(1);
        else if (second.endsWith(u' '))
            second.chop(1);
    }
    const int r = textCompare(first, second);
    return r == 0 || r == 1;
}

bool CheckURL(const QString& first, const QString& second) {
    const int r = textCompare(first, second);
    if (r == 0 || r == 1)
        return true;
    const bool firstHas = first.startsWith(kHttp);
    const bool secondHas = second.startsWith(kHttp);
    if (firstHas && !secondHas)
        return textCompare(first.mid(kHttp.size()), second) == 0;
    if (secondHas && !firstHas)
        return textCompare(first, second.mid(kHttp.size())) == 0;
    return false;
}

QString URLwithouthttp(const QString& text) {
    if (!text.contains(kHttp))
        return text;
    return text.right(text.size() - kHttp.size());
}

int Phonecall_Len(const QString& text) {
    return text.startsWith(u'+') ? 41 : 40;
}

int vCardPhoneNumber_Len(const QString& text, int limit, int limitWithPlus) {
    return text.startsWith(u'+') ? limitWithPlus : limit;
}

} // namespace tsr::formats
