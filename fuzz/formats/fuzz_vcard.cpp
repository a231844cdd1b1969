// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the contact reader with the phone's 8-bit bytes. A numbered error is the
// reader's normal answer to bad input; anything else is a fault. One context lives
// through the whole run, so a text that fails must leave it fit for the next one,
// and a known good contact is read after every input to prove it.
#include "core/Context.h"
#include "core/Error.h"
#include "core/SilentUserInterface.h"
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

bool plainFieldsAreAscii(const tables::Recordset& table) {
    for (const char16_t* name :
         {u"ZipCode", u"eMail", u"URL", u"Phone", u"PhoneWork", u"PhoneMobile", u"Fax", u"MobileCategoriesText"}) {
        for (QChar c : table.value(QString::fromUtf16(name)).toText()) {
            if (c.unicode() < 32 || c.unicode() > 126 || c == u'=')
                return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static core::SilentUserInterface ui;
    static core::Context ctx(ui);
    static const QString probe = QStringLiteral("BEGIN:VCARD\r\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:"
                                                "M=C3=BCller;Ann\r\nTEL;HOME:1\r\nEND:VCARD\r\n");

    tables::Recordset table(QStringLiteral("RSContacts"));
    tables::vCardInitRS(table);
    readContact(ctx, formats::textFromCodePage(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size))),
                table);

    // The text written from whatever was read must be readable again, as long as
    // the values the writer sends unencoded are plain ASCII: a zip code or a mail
    // address is sent as it stands, so a line break or a byte the decoder rejects
    // in one of them reaches the phone as such, and then only a numbered error may come.
    QString written = formats::vCardEntryText(ctx, table);
    tables::Recordset again(QStringLiteral("RSContacts"));
    tables::vCardInitRS(again);
    if (!readContact(ctx, written, again) && plainFieldsAreAscii(table))
        std::abort();

    tables::Recordset next(QStringLiteral("RSContacts"));
    tables::vCardInitRS(next);
    if (!readContact(ctx, probe, next) || next.value(QStringLiteral("LastName")).toText() != u"M\u00FCller")
        std::abort();
    return 0;
}
