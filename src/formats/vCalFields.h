// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing the fields of a calendar row as the formats need them.
// Fields are reached by position: a lookup by name folds case and hashes on
// every call, which would cost more than reading the entry itself. The positions
// are resolved once for the calendar layout; a table of another layout gets them
// resolved by name. An empty value reads as false, 0 or "".
#pragma once

#include "tables/Recordset.h"

#include <array>
#include <optional>

namespace tsr::formats::detail {

enum class Col {
    PIM,
    Mobile,
    Alarm,
    StartDate,
    StartTime,
    Typ,
    Text,
    Serie,
    EndDate,
    EndTime,
    EndDateFlag,
    DTStart,
    DTStartFlag,
    AAlarm,
    AAlarmFlag,
    AnniversaryStatus,
    DAlarm,
    DAlarmFlag,
    Description,
    Weekdaymask,
    DayOfMonth,
    EntryID,
    ISRecurring,
    MeetingStatus,
    MemoStatus,
    ModKey,
    PhoneCallStatus,
    RecurrenceDuration,
    RecurrenceFrequenz,
    RecurrenceType,
    RecurrenceIntervall,
    Start,
    DTEnd,
    Summary,
    SubType,
    EntryType,
    PIMText,
    UTF8Flag,
    StartasText,
    PIMRecPatt,
    MobileRecPattern,
    noPhonecall,
    PimRecPattString,
    StartEndDiff,
    Count
};

using Columns = std::array<int, size_t(Col::Count)>;

// The positions of the calendar fields in this table.
Columns calendarColumns(const tables::Recordset& table);

// The current row of a calendar table, seen through its column positions and
// read and written in place. Reading an entry writes some forty fields: a value
// already in the field's type goes straight into the row, any other through the
// table's setValue. The table's cursor must stay on the row.
class CalendarRow {
public:
    explicit CalendarRow(tables::Recordset& table)
        : m_table(table), m_cols(calendarColumns(table)), m_values(table.currentValues()),
          m_inPlace(table.writableInPlace()) {}

    const core::Value& value(Col c) const {
        const int i = m_cols[size_t(c)];
        if (i < 0)
            m_table.value(i); // raises the table's item-not-found error
        return m_values[size_t(i)];
    }
    void set(Col c, core::Value v) {
        const int i = m_cols[size_t(c)];
        if (m_inPlace && i >= 0 && (v.isEmpty() || v.type() == m_table.fieldType(i)))
            m_values[size_t(i)] = std::move(v);
        else
            m_table.setValue(i, std::move(v));
    }
    bool flag(Col c) const {
        const core::Value& v = value(c);
        return !v.isEmpty() && v.toBool();
    }
    core::VbDate date(Col c) const {
        const core::Value& v = value(c);
        return v.isEmpty() ? core::VbDate() : v.toDate();
    }
    int64_t number(Col c) const {
        const core::Value& v = value(c);
        return v.isEmpty() ? 0 : v.toInt64();
    }
    QString text(Col c) const { return value(c).toText(); }

private:
    tables::Recordset& m_table;
    Columns m_cols;
    std::span<core::Value> m_values;
    bool m_inPlace;
};

// By-name readers for the few places outside the calendar layout's hot paths.
inline bool boolField(const tables::Recordset& t, const QString& name) {
    const core::Value v = t.value(name);
    return !v.isEmpty() && v.toBool();
}
inline core::VbDate dateField(const tables::Recordset& t, const QString& name) {
    const core::Value v = t.value(name);
    return v.isEmpty() ? core::VbDate() : v.toDate();
}
inline int64_t intField(const tables::Recordset& t, const QString& name) {
    const core::Value v = t.value(name);
    return v.isEmpty() ? 0 : v.toInt64();
}
inline QString textField(const tables::Recordset& t, const QString& name) {
    return t.value(name).toText();
}

} // namespace tsr::formats::detail

namespace tsr::formats::detail {

// The mask formatter's result for masks of numbers only (d, dd, m, mm, y, yy,
// yyyy, h, hh, n, nn, s, ss and separators), built without the general
// formatter's locale and pattern work; nothing for any other mask.
std::optional<QString> quickFormat(core::VbDate d, const QString& mask);
// The table's text form of a date (as Recordset::dateAsText), quickly where the
// masks allow it.
QString quickDateText(const tables::Recordset& table, core::VbDate d);
// The time of day in the given mask (as core::Format), quickly where it allows it.
QString quickTimeText(core::VbDate d, const QString& mask);

// The texts a calendar entry keeps of its start, made from the start taken
// apart once: the table's text form of the start (quickDateText) and of its
// date alone, and the time of day in timeMask (quickTimeText).
struct StartTexts {
    QString full;
    QString date;
    QString time;
};
StartTexts startTexts(const tables::Recordset& table, core::VbDate start, const QString& timeMask);

} // namespace tsr::formats::detail
