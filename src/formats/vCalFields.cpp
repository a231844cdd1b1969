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

namespace {
void appendNumber(QString& out, int value, bool pad) {
    if (pad && value < 10)
        out += u'0';
    out += QString::number(value);
}
} // namespace

std::optional<QString> quickFormat(core::VbDate d, const QString& mask) {
    const QDate date = core::toQDate(d);
    const int hour = core::Hour(d), minute = core::Minute(d), second = core::Second(d);
    QString out;
    out.reserve(mask.size() + 4);
    const qsizetype n = mask.size();
    bool lastWasHour = false;
    auto runOf = [&](qsizetype at, QChar c) {
        qsizetype k = at;
        while (k < n && mask[k].toLower() == c)
            ++k;
        return int(k - at);
    };
    // "m" or "mm" means minutes behind an hour or before seconds.
    auto secondsFollow = [&](qsizetype at) {
        for (qsizetype k = at; k < n; ++k) {
            const QChar c = mask[k].toLower();
            if (c == u's')
                return true;
            if (QStringView(u"dmyhnwq").contains(c))
                return false;
        }
        return false;
    };
    for (qsizetype i = 0; i < n;) {
        const QChar lc = mask[i].toLower();
        const int run = runOf(i, lc);
        if (lc == u'd' && run <= 2) {
            appendNumber(out, date.day(), run == 2);
            i += run;
            lastWasHour = false;
        } else if (lc == u'm' && run <= 2) {
            const bool minutes = lastWasHour || secondsFollow(i + run);
            appendNumber(out, minutes ? minute : date.month(), run == 2);
            i += run;
            lastWasHour = false;
        } else if (lc == u'y') {
            if (run >= 3) {
                const int y = date.year();
                if (y < 0 || y > 9999)
                    return std::nullopt;
                out += QString::number(y).rightJustified(4, u'0');
                i += std::min(run, 4);
            } else if (run == 2) {
                appendNumber(out, date.year() % 100, true);
                i += 2;
            } else {
                out += QString::number(date.dayOfYear());
                i += 1;
            }
            lastWasHour = false;
        } else if (lc == u'h' || lc == u'n' || lc == u's') {
            appendNumber(out, lc == u'h' ? hour : lc == u'n' ? minute : second, run >= 2);
            i += std::min(run, 2);
            lastWasHour = lc == u'h';
        } else if (lc == u'.' || lc == u':' || lc == u'/' || lc == u'-' || lc == u' ' || lc == u',') {
            out += mask[i];
            ++i;
        } else {
            return std::nullopt; // names, quoted text, day-half marks, weeks: the general formatter
        }
    }
    return out;
}

QString quickDateText(const tables::Recordset& table, core::VbDate d) {
    const core::VbDate datePart = core::DateValue(d);
    const core::VbDate timePart = core::TimeValue(d);
    std::optional<QString> dateText, timeText;
    if (timePart.value != 0 || datePart.value == 0)
        timeText = quickFormat(d, table.timeMask());
    if (datePart.value != 0 || timePart.value == 0)
        dateText = quickFormat(d, table.dateMask());
    if (timePart.value == 0)
        return dateText ? *dateText : table.dateAsText(d);
    if (datePart.value == 0)
        return timeText ? *timeText : table.dateAsText(d);
    if (!dateText || !timeText)
        return table.dateAsText(d);
    return *dateText + u' ' + *timeText;
}

QString quickTimeText(core::VbDate d, const QString& mask) {
    const std::optional<QString> quick = quickFormat(d, mask);
    return quick ? *quick : core::Format(d, mask);
}

} // namespace tsr::formats::detail
