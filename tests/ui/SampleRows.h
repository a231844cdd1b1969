// SPDX-License-Identifier: GPL-3.0-or-later
// Rows for the grids as the reads leave them: calendar entries of every type and
// series, on the phone, in the PIM or on both, and contacts. For the window's
// tests, its screenshots and its benchmark.
#pragma once

#include "core/Context.h"
#include "core/VbDate.h"
#include "tables/Recordset.h"
#include "tables/TSRADODB.h"

#include <QStringList>

namespace tsr::test {

struct SampleEntry {
    int y, mo, d, h, mi;
    const char* typ;   // "" memo, "1" meeting, "2" birthday, "3" call
    const char* serie; // "", "D", "W", "M", "Y"
    bool alarm;
    int entryType; // 1 PIM, 2 phone, 3 both
    const char16_t* text;
};

inline void addCalendarRow(core::Context& ctx, const SampleEntry& e, int id) {
    tables::Recordset& t = *ctx.tables.RSCalendar;
    tables::vCalCreateNewRecord(t);
    const core::VbDate day = core::DateSerial(e.y, e.mo, e.d);
    const core::VbDate start(day.value + core::TimeSerial(e.h, e.mi, 0).value);
    const QString text = QString::fromUtf16(e.text);
    auto set = [&](const char* field, const core::Value& v) { t.setValue(QString::fromLatin1(field), v); };
    set("PIM", e.entryType != 2);
    set("Mobile", e.entryType != 1);
    set("Alarm", e.alarm);
    set("StartDate", day);
    set("StartTime", core::Format(core::TimeSerial(e.h, e.mi, 0), ctx.formats.TimeFormatNoSec));
    set("Typ", QString::fromLatin1(e.typ));
    set("Text", text);
    set("Description", text);
    set("PIMText", text);
    set("Serie", QString::fromLatin1(e.serie));
    set("RecurrenceType", QString::fromLatin1(e.serie));
    set("ISRecurring", *e.serie != 0);
    set("EntryType", int32_t(e.entryType));
    set("EntryID", QString::number(id));
    set("SubType", int32_t(id));
    set("Start", start);
    set("DTStart", start);
    t.update();
}

// A fortnight of entries around 2 March 2026, every type and series.
inline void fillCalendar(core::Context& ctx) {
    static const SampleEntry entries[] = {
        {2026, 3, 2, 9, 0, "1", "W", true, 3, u"Team meeting"},
        {2026, 3, 2, 12, 30, "", "", false, 3, u"Lunch with Anna"},
        {2026, 3, 3, 8, 15, "3", "", true, 2, u"+49 30 1234567"},
        {2026, 3, 4, 0, 0, "2", "Y", true, 3, u"Birthday Jonas Müller"},
        {2026, 3, 4, 14, 0, "1", "", false, 1, u"Budget review"},
        {2026, 3, 5, 18, 0, "", "W", false, 3, u"Choir rehearsal"},
        {2026, 3, 6, 10, 30, "", "", true, 3, u"Dentist, bring the insurance card"},
        {2026, 3, 9, 7, 45, "", "D", false, 2, u"Take the pills"},
        {2026, 3, 10, 16, 0, "1", "M", true, 3, u"Board meeting, third floor"},
        {2026, 3, 11, 11, 0, "3", "", false, 1, u"0171 5550123"},
        {2026, 3, 12, 19, 30, "", "", false, 3, u"Theatre: Der zerbrochne Krug"},
        {2026, 3, 13, 9, 0, "1", "", true, 3, u"Workshop planning with the whole sales team and guests"},
        {2026, 3, 16, 8, 0, "", "", false, 2, u"Car service"},
        {2026, 5, 20, 10, 0, "", "", false, 2, u"Old reminder outside the range"},
    };
    int id = 1;
    for (const SampleEntry& e : entries)
        addCalendarRow(ctx, e, id++);
}

struct SampleContact {
    const char16_t* last;
    const char16_t* first;
    const char16_t* company;
    const char16_t* phone;
    const char16_t* street;
    const char16_t* zip;
    const char16_t* city;
    bool vip;
    int entryType;
};

inline void fillContacts(core::Context& ctx) {
    static const SampleContact contacts[] = {
        {u"Müller", u"Jonas", u"Orvane", u"+49 30 1234567", u"Hauptstraße 12", u"10115", u"Berlin", true, 3},
        {u"Schmidt", u"Anna", u"", u"0171 5550123", u"Lindenweg 3", u"80331", u"München", false, 3},
        {u"Okafor", u"Chidi", u"Halvorix Ltd", u"+44 20 7946 0958", u"12 Baker Street", u"NW1 6XE", u"London", false,
         1},
        {u"Lindqvist", u"Maja", u"", u"+46 8 123 456", u"Storgatan 5", u"11455", u"Stockholm", false, 2},
        {u"Weber", u"Tobias", u"Weber & Söhne", u"040 998877", u"Am Hafen 1", u"20095", u"Hamburg", true, 3},
        {u"Nakamura", u"Yuki", u"", u"+81 3 1234 5678", u"", u"", u"Tokyo", false, 2},
        {u"Rossi", u"Giulia", u"Studio Rossi", u"+39 06 555 0199", u"Via Roma 8", u"00184", u"Roma", false, 3},
        {u"Fischer", u"Paul", u"", u"0221 445566", u"Domplatz 2", u"50667", u"Köln", false, 1},
    };
    tables::Recordset& t = *ctx.tables.RSContacts;
    int id = 1;
    for (const SampleContact& c : contacts) {
        tables::vCardCreateNewRecord(t);
        auto set = [&](const char* field, const core::Value& v) { t.setValue(QString::fromLatin1(field), v); };
        set("PIM", c.entryType != 2);
        set("Mobile", c.entryType != 1);
        set("LastName", QString::fromUtf16(c.last));
        set("FirstName", QString::fromUtf16(c.first));
        set("Company", QString::fromUtf16(c.company));
        set("Phone", QString::fromUtf16(c.phone));
        set("Street", QString::fromUtf16(c.street));
        set("ZipCode", QString::fromUtf16(c.zip));
        set("City", QString::fromUtf16(c.city));
        set("Categories", c.vip);
        set("EntryType", int32_t(c.entryType));
        set("EntryID", QString::number(id++));
        t.update();
    }
}

// `rows` calendar rows spread over the years, for the benchmark.
inline void fillManyCalendarRows(core::Context& ctx, int rows) {
    static const char* typs[] = {"", "1", "2", "3"};
    static const char* series[] = {"", "", "", "D", "W", "M", "Y"};
    for (int i = 0; i < rows; ++i) {
        const int day = (i * 7919) % 3650;
        const core::VbDate d(core::DateSerial(2020, 1, 1).value + day);
        SampleEntry e{core::Year(d), core::Month(d), core::Day(d), (i * 13) % 24, (i * 17) % 60,
                      typs[i % 4],   series[i % 7],  i % 3 == 0,   1 + i % 3,     u""};
        const QString text = QStringLiteral("Entry %1 of the benchmark, a subject of ordinary length").arg(i);
        e.text = reinterpret_cast<const char16_t*>(text.utf16());
        addCalendarRow(ctx, e, i + 1);
    }
}

} // namespace tsr::test
