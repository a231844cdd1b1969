// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the contact reader with the phone's 8-bit bytes. A numbered error is the
// reader's normal answer to bad input; anything else is a fault. One context lives
// through the whole run, so a text that fails must leave it fit for the next one,
// and a known good contact is read after every input to prove it.
#include "FuzzUi.h"
#include "core/Context.h"
#include "core/Error.h"
#include "formats/Globals.h"
#include "formats/vCard.h"
#include "tables/TSRADODB.h"

#include <cstdlib>

using namespace tsr;

namespace {

bool readContact(core::Context& ctx, QString text, tables::Recordset& table) {
    tables::vCardCreateNewRecord(table);
    try {
        return formats::vCardParsEntryFromMobile(ctx, table, text);
    } catch (const core::TsrError&) {
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static fuzz::SilentUi ui;
    static core::Context ctx(ui);
    static const QString probe = QStringLiteral("BEGIN:VCARD\r\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:"
                                                "M=C3=BCller;Ann\r\nTEL;HOME:1\r\nEND:VCARD\r\n");

    tables::Recordset table(QStringLiteral("RSContacts"));
    tables::vCardInitRS(table);
    readContact(ctx, formats::textFromCodePage(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size))),
                table);

    // The text written from whatever was read must be readable again.
    QString written = formats::vCardEntryText(ctx, table);
    tables::Recordset again(QStringLiteral("RSContacts"));
    tables::vCardInitRS(again);
    if (!readContact(ctx, written, again))
        std::abort();

    tables::Recordset next(QStringLiteral("RSContacts"));
    tables::vCardInitRS(next);
    if (!readContact(ctx, probe, next) || next.value(QStringLiteral("LastName")).toText() != u"M\u00FCller")
        std::abort();
    return 0;
}
