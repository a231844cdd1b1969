// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the splitting of escaped property values: splitting must never fail, the
// pieces joined again must give the text with its escapes resolved, and any value
// escaped for the phone must split back into itself as one piece.
#include "formats/Allgemein.h"

#include <cstdlib>

using namespace tsr;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const QStringList pieces = formats::SplitESCStrings(text);
    if (text.isEmpty() != pieces.isEmpty())
        std::abort();
    QString resolved = text;
    resolved.replace(QLatin1String("\\;"), QLatin1String(";"));
    if (!text.isEmpty() && pieces.join(u';') != resolved)
        std::abort();

    QString escaped = text;
    formats::CheckSemicolonInToken(escaped);
    if (!text.isEmpty() && formats::SplitESCStrings(escaped) != QStringList{text})
        std::abort();

    const QString cleaned = formats::RemoveCTRLCharactersFromString(text);
    if (cleaned.contains(QLatin1String("\r\n")) || cleaned.contains(u'\t') || cleaned.startsWith(u' ') ||
        cleaned.endsWith(u' '))
        std::abort();
    return 0;
}
