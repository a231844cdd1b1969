// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the calendar entry reader with the phone's 8-bit bytes. A numbered error
// is the reader's normal answer to bad input; anything else is a fault. Whatever
// was read is written again and must read back; and since one context lives
// through the whole run, a known good entry is read after every input to prove a
// failed text left nothing behind.
#include "core/Context.h"
#include "core/Error.h"
#include "core/SilentUserInterface.h"
#include "formats/Globals.h"
#include "formats/vCal.h"
#include "tables/TSRADODB.h"

#include <cstdlib>

using namespace tsr;

namespace {

bool readEntry(core::Context& ctx, QString text, tables::Recordset& table) {
    tables::vCalCreateNewRecord(table);
    try {
        return formats::ParsEntryFromMobile(ctx, table, text);
    } catch (const core::TsrError&) {
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static core::SilentUserInterface ui;
    static core::Context ctx(ui);
    static const QString probe =
        QStringLiteral("BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nCATEGORIES:MEETING\r\n"
                       "DTSTART:20261122T100000Z\r\nRRULE:W1 MO TH #0\r\n"
                       "DESCRIPTION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller\r\n"
                       "END:VEVENT\r\nEND:VCALENDAR\r\n");
    // The model decides some rules; the first byte picks one of them.
    static const char16_t* const models[] = {u"QX71", u"R52", u"Q33", u"P52"};
    ctx.phone.MobileModel = QString::fromUtf16(models[size ? data[0] % 4 : 0]);

    tables::Recordset table(QStringLiteral("RSCalendar"));
    tables::InitCalendarRS(table);
    const QString input = formats::textFromCodePage(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
    if (readEntry(ctx, input, table)) {
        QString written;
        try {
            written = formats::textFromCodePage(formats::calendarEntryBytes(formats::calendarEntryText(table)));
        } catch (const core::TsrError&) {
            // A date far out of range cannot be written; the error is the writer's answer.
            written.clear();
        }
        tables::Recordset again(QStringLiteral("RSCalendar"));
        tables::InitCalendarRS(again);
        if (!written.isEmpty() && !readEntry(ctx, written, again))
            std::abort();
    }

    ctx.phone.MobileModel = QStringLiteral("QX71");
    tables::Recordset next(QStringLiteral("RSCalendar"));
    tables::InitCalendarRS(next);
    if (!readEntry(ctx, probe, next) || next.value(QStringLiteral("Text")).toText() != u"M\u00FCller" ||
        next.value(QStringLiteral("Weekdaymask")).toInt64() != 18)
        std::abort();
    return 0;
}
