// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the decoding road of a received value: quoted-printable to bytes, then
// UTF-8 to text, under the parameters the phone may send. The input also runs
// the other way: any text encoded for the phone must decode back to itself.
#include "core/Context.h"
#include "core/Error.h"
#include "core/SilentUserInterface.h"
#include "formats/Globals.h"
#include "formats/unicode.h"

#include <cstdlib>

using namespace tsr;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static core::SilentUserInterface ui;
    static core::Context ctx(ui);
    static const QString kParams[] = {QStringLiteral("N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE"),
                                      QStringLiteral("N;ENCODING=QUOTED-PRINTABLE"), QStringLiteral("N")};
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));

    const QString received = formats::textFromCodePage(bytes);
    for (const QString& params : kParams) {
        QString value = received;
        bool flag = false;
        try {
            formats::encodeString(ctx, value, params, flag);
        } catch (const core::TsrError&) {
        }
    }

    // The same bytes as 16-bit text: what the writer may meet, unpaired surrogates included.
    QString text(reinterpret_cast<const QChar*>(data), qsizetype(size / 2));
    if (!text.isEmpty() && text[0] != QChar(0)) {
        QString encoded = formats::StringToUniToUTFToQuoted(text);
        for (QChar c : std::as_const(encoded)) {
            if (c.unicode() < 32 || c.unicode() > 127)
                std::abort();
        }
        bool flag = false;
        formats::encodeString(ctx, encoded, kParams[0], flag);
        if (encoded != text || !flag)
            std::abort();
    }
    return 0;
}
