// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/vCalFields.h"

#include "tables/TSRADODB.h"

namespace tsr::formats::detail {

namespace {
const char16_t* const kNames[] = {u"PIM",
                                  u"Mobile",
                                  u"Alarm",
                                  u"StartDate",
                                  u"StartTime",
                                  u"Typ",
                                  u"Text",
                                  u"Serie",
                                  u"EndDate",
                                  u"EndTime",
                                  u"EndDateFlag",
                                  u"DTStart",
                                  u"DTStartFlag",
                                  u"AAlarm",
                                  u"AAlarmFlag",
                                  u"AnniversaryStatus",
                                  u"DAlarm",
                                  u"DAlarmFlag",
                                  u"Description",
                                  u"Weekdaymask",
                                  u"DayOfMonth",
                                  u"EntryID",
                                  u"ISRecurring",
                                  u"MeetingStatus",
                                  u"MemoStatus",
                                  u"ModKey",
                                  u"PhoneCallStatus",
                                  u"RecurrenceDuration",
                                  u"RecurrenceFrequenz",
                                  u"RecurrenceType",
                                  u"RecurrenceIntervall",
                                  u"Start",
                                  u"DTEnd",
                                  u"Summary",
                                  u"SubType",
                                  u"EntryType",
                                  u"PIMText",
                                  u"UTF8Flag",
                                  u"StartasText",
                                  u"PIMRecPatt",
                                  u"MobileRecPattern",
                                  u"noPhonecall",
                                  u"PimRecPattString",
                                  u"StartEndDiff"};
static_assert(std::size(kNames) == size_t(Col::Count));

// Unknown names keep -1: using one raises the table's item-not-found error.
Columns resolve(const tables::Recordset& table) {
    Columns cols{};
    for (size_t i = 0; i < cols.size(); ++i)
        cols[i] = table.fieldIndex(QString::fromUtf16(kNames[i]));
    return cols;
}

struct Layout {
    tables::Recordset reference{QStringLiteral("RSCalendar")};
    Columns cols;
    Layout() {
        tables::InitCalendarRS(reference);
        cols = resolve(reference);
    }
    bool sameAs(const tables::Recordset& t) const {
        const int n = reference.fieldCount();
        return t.fieldCount() == n && t.fieldName(0) == reference.fieldName(0) &&
               t.fieldName(n - 1) == reference.fieldName(n - 1);
    }
};
} // namespace

Columns calendarColumns(const tables::Recordset& table) {
    static const Layout layout;
    return layout.sameAs(table) ? layout.cols : resolve(table);
}

} // namespace tsr::formats::detail
