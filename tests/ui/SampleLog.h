// SPDX-License-Identifier: GPL-3.0-or-later
// A log as a day of work leaves it: calendar entries and contacts sent to the
// phone and the PIM, one transfer the phone refused, one program error. The
// rows go through the log's own writers, as the transfer roads write them.
#pragma once

#include "core/Context.h"
#include "log/LogWrite.h"
#include "tables/TSRADODB.h"

namespace tsr::test {

struct SampleEntry {
    int day;
    const char* time;
    const char* typ;
    const char* text;
    const char* transfer;
};

// Fills the nine tables and writes the sample rows; the last calendar row failed.
inline void fillSampleLog(core::Context& ctx) {
    tables::CreateInitAndSetAllRS(ctx);
    tables::Recordset& calendar = *ctx.tables.RSCalendar;
    tables::Recordset& contacts = *ctx.tables.RSContacts;
    const SampleEntry entries[] = {
        {3, "09:30", "1", "Dentist, Dr. Brandt", "Mobile"},
        {4, "", "2", "Birthday Anna", "Mobile"},
        {5, "14:00", "", "Call the garage about the tyres", "PIM"},
        {6, "18:15", "3", "Call Ben back", "Mobile"},
    };
    const core::TsrError ok;
    for (const SampleEntry& e : entries) {
        tables::vCalCreateNewRecord(calendar);
        calendar.setValue(QStringLiteral("StartDate"), core::DateSerial(2026, 3, e.day));
        calendar.setValue(QStringLiteral("StartTime"), QString::fromLatin1(e.time));
        calendar.setValue(QStringLiteral("Typ"), QString::fromLatin1(e.typ));
        calendar.setValue(QStringLiteral("Text"), QString::fromUtf8(e.text));
        calendar.update();
        ctx.log.LogTransfer = QString::fromLatin1(e.transfer);
        ctx.log.LogAction = log::logActionCreated(ctx);
        log::logWriteEntry(ctx, calendar, ok, QStringLiteral("Mobile"), QStringLiteral("SendSingleEntry"));
    }
    const char* people[][3] = {{"Brandt", "Praxis Brandt", "+49 30 1234567"}, {"Okafor", "", "+44 20 7946 0018"}};
    for (const auto& p : people) {
        tables::vCardCreateNewRecord(contacts);
        contacts.setValue(QStringLiteral("LastName"), QString::fromUtf8(p[0]));
        contacts.setValue(QStringLiteral("Company"), QString::fromUtf8(p[1]));
        contacts.setValue(p[1][0] ? QStringLiteral("PhoneWork") : QStringLiteral("Phone"), QString::fromUtf8(p[2]));
        contacts.update();
        ctx.log.LogTransfer = QStringLiteral("Mobile");
        ctx.log.LogAction = log::logActionChanged(ctx);
        log::logWriteEntry(ctx, contacts, ok, QStringLiteral("Mobile"), QStringLiteral("SendSinglevCardEntry"));
    }
    // The phone refuses the last entry: its memory is full.
    tables::vCalCreateNewRecord(calendar);
    calendar.setValue(QStringLiteral("StartDate"), core::DateSerial(2026, 3, 9));
    calendar.setValue(QStringLiteral("StartTime"), QStringLiteral("10:00"));
    calendar.setValue(QStringLiteral("Text"), QStringLiteral("Quarterly review"));
    calendar.update();
    ctx.log.LogTransfer = QStringLiteral("Mobile");
    ctx.log.LogAction = log::logActionCreated(ctx);
    const core::TsrError full(int32_t(0x80042000 + 20), QStringLiteral("ATC"), QStringLiteral("Memory full"));
    log::logWriteEntry(ctx, calendar, full, QStringLiteral("Mobile"), QStringLiteral("SendSingleEntry"));
    log::logWriteError(ctx, full, QStringLiteral("Mobile denied access."), QStringLiteral("ATC"),
                       QStringLiteral("ATCSendEntry"));
}

} // namespace tsr::test
