// SPDX-License-Identifier: GPL-3.0-or-later
// The reading half of vCal: one file's text from the phone into a calendar row.
// The grammar is the phone's, not the whole of vCalendar 1.0: one event, the
// keys below, folded lines whose leading blank stays in the value.
#include "core/Error.h"
#include "core/Numbers.h"
#include "core/SeriesStep.h"
#include "formats/Allgemein.h"
#include "formats/Globals.h"
#include "formats/unicode.h"
#include "formats/vCal.h"
#include "formats/vCalFields.h"

namespace tsr::formats {

using namespace detail;
using core::VbDate;

namespace {
const QString kSource = QStringLiteral("ParsEntryFromMobile");

[[noreturn]] void unexpectedKey(const core::Context& ctx, int32_t number, const char16_t* after, const QString& key,
                                const QString& value) {
    core::raise(number, kSource,
                ctx.strings.text(753) + QString::fromUtf16(after) + QStringLiteral("\r\n") + key + u':' + value);
}

bool allDigits(const QString& s) {
    for (QChar c : s)
        if (c < u'0' || c > u'9')
            return false;
    return true;
}

// A stamp with "T" and "Z" taken out: "yyyymmddhhmmss". A date alone (8 digits)
// reads as midnight; anything else is the conversion error a date that is no
// date always gives.
VbDate stampToDate(QString value) {
    Cleanit(value, QStringLiteral("TZ"));
    if ((value.size() == 14 || value.size() == 8) && allDigits(value)) {
        const int y = QStringView(value).mid(0, 4).toInt(), mo = QStringView(value).mid(4, 2).toInt(),
                  d = QStringView(value).mid(6, 2).toInt();
        int h = 0, mi = 0, s = 0;
        if (value.size() == 14) {
            h = QStringView(value).mid(8, 2).toInt();
            mi = QStringView(value).mid(10, 2).toInt();
            s = QStringView(value).mid(12, 2).toInt();
        }
        if (QDate::isValid(y, mo, d) && y >= 100 && h < 24 && mi < 60 && s < 60)
            return VbDate(core::DateSerial(y, mo, d).value + core::TimeSerial(h, mi, s).value);
    }
    core::raise(core::err::TypeMismatch, kSource);
}

// A number of the rule; one that does not fit the field is the overflow error.
int64_t numberAt(const QString& text, qsizetype from, qsizetype length = -1) {
    const double v = core::Val(text.mid(from, length));
    if (!(v > -9.2e18 && v < 9.2e18))
        core::raise(core::err::Overflow, kSource);
    return int64_t(v);
}
} // namespace

void parseRule(core::Context& ctx, tables::Recordset& table, const QString& rule) {
    auto set = [&table](const char16_t* field, const core::Value& v) { table.setValue(QString::fromUtf16(field), v); };
    const QString first = rule.left(1);
    const QString modKey = rule.mid(1, 1);
    set(u"RecurrenceFrequenz", first);
    set(u"RecurrenceDuration", int64_t(0));

    auto notASeries = [&] {
        set(u"RecurrenceIntervall", int64_t(1));
        set(u"ModKey", QString());
        set(u"RecurrenceType", QStringLiteral("D"));
        set(u"ISRecurring", false);
    };

    if (first == u"D" || first == u"W") {
        // The phone writes one digit: "D12" is interval 1.
        const int64_t interval = numberAt(rule, 1, 1);
        set(u"RecurrenceIntervall", interval);
        if (first == u"D") {
            set(u"RecurrenceType", interval == 7 ? QStringLiteral("W") : QStringLiteral("D"));
        } else {
            set(u"RecurrenceType", QStringLiteral("W"));
            set(u"Weekdaymask", int64_t(core::StringToDayOfWeekMask(rule.mid(3))));
        }
        set(u"ISRecurring", true);
    } else if (first == u"M") {
        set(u"ModKey", modKey);
        const qsizetype blank = rule.indexOf(u' ', 1);
        if (modKey == u"D") {
            if (blank >= 1) {
                set(u"RecurrenceIntervall", numberAt(rule, 2, blank - 2));
                set(u"DayOfMonth", numberAt(rule, blank));
            } else {
                set(u"RecurrenceIntervall", numberAt(rule, 2));
                set(u"DayOfMonth", int64_t(0));
            }
        } else if (modKey == u"1") {
            set(u"DayOfMonth", blank >= 1 ? numberAt(rule, blank) : int64_t(0));
            set(u"RecurrenceIntervall", int64_t(1));
            set(u"ModKey", QString());
        } else {
            notASeries();
            return;
        }
        set(u"RecurrenceType", QStringLiteral("M"));
        set(u"ISRecurring", true);
    } else if (first == u"Y") {
        set(u"ModKey", modKey);
        if (modKey == u"D" || modKey == u"M") {
            set(u"RecurrenceIntervall", numberAt(rule, 2));
            if (modelIsOneOf(ctx.phone.MobileModel, {u"Q52", u"Q33", u"R52", u"P52"}))
                set(u"ModKey", QString());
        } else if (modKey == u"1") {
            set(u"RecurrenceIntervall", int64_t(1));
            set(u"ModKey", QString());
        } else {
            set(u"RecurrenceIntervall", int64_t(1));
            set(u"ModKey", QStringLiteral("D"));
        }
        set(u"RecurrenceType", QStringLiteral("Y"));
        set(u"ISRecurring", true);
    } else {
        notASeries();
    }
}

namespace {
// The status field each category sets.
const char16_t* statusOfCategory(const QString& value) {
    if (value == u"MISCELLANEOUS")
        return u"MemoStatus";
    if (value == u"MEETING")
        return u"MeetingStatus";
    if (value == u"ANNIVERSARY")
        return u"AnniversaryStatus";
    if (value == u"PHONE CALL")
        return u"PhoneCallStatus";
    return nullptr;
}

// The steps after the last line, in their order: later steps read what earlier
// ones wrote.
void completeRow(core::Context& ctx, tables::Recordset& t) {
    auto set = [&t](const char16_t* field, const core::Value& v) { t.setValue(QString::fromUtf16(field), v); };
    set(u"noPhonecall", true);

    QString typ;
    if (boolField(t, QStringLiteral("MemoStatus")))
        typ = QString();
    else if (boolField(t, QStringLiteral("MeetingStatus")))
        typ = QStringLiteral("1");
    else if (boolField(t, QStringLiteral("AnniversaryStatus")))
        typ = QStringLiteral("2");
    else if (boolField(t, QStringLiteral("PhoneCallStatus")))
        typ = QStringLiteral("3");
    set(u"Typ", typ);
    set(u"Serie", t.value(QStringLiteral("RecurrenceType")));

    // An alarm before the start moves the shown start to the alarm.
    const bool hasStart = boolField(t, QStringLiteral("DTStartFlag"));
    const bool hasA = boolField(t, QStringLiteral("AAlarmFlag"));
    const bool hasD = boolField(t, QStringLiteral("DAlarmFlag"));
    const VbDate dtStart = dateField(t, QStringLiteral("DTStart"));
    const VbDate aAlarm = dateField(t, QStringLiteral("AAlarm"));
    const VbDate dAlarm = dateField(t, QStringLiteral("DAlarm"));
    VbDate start;
    if (hasStart)
        start = hasA ? std::min(dtStart, aAlarm) : hasD ? std::min(dtStart, dAlarm) : dtStart;
    else
        start = !hasD ? aAlarm : !hasA ? dAlarm : std::min(aAlarm, dAlarm);
    set(u"Start", start);

    set(u"StartasText", t.dateAsText(start));
    set(u"MobileRecPattern", start);
    const VbDate startDate = core::DateValue(start);
    set(u"StartDate", startDate);
    set(u"PimRecPattString", t.dateAsText(startDate));
    set(u"PIMRecPatt", startDate);
    set(u"StartTime", core::Format(core::TimeValue(start), ctx.formats.TimeFormat));

    VbDate dtEnd = dateField(t, QStringLiteral("DTEnd"));
    if (dtEnd < dtStart) {
        dtEnd = dtStart;
        set(u"DTEnd", dtEnd);
    }
    const VbDate endDate = core::DateValue(dtEnd);
    set(u"EndDate", endDate);
    set(u"EndTime", core::TimeValue(dtEnd));
    set(u"EndDateFlag", true);
    set(u"StartEndDiff", int64_t(core::DateDiff(QStringLiteral("d"), startDate, endDate)));

    set(u"Alarm", hasA || hasD);
    const QString description = textField(t, QStringLiteral("Description"));
    const QString text = description.isEmpty() ? textField(t, QStringLiteral("Summary")) : description;
    set(u"Text", text);
    set(u"PIMText", text);
    set(u"Mobile", true);
    set(u"EntryType", int32_t(2));
    t.update();
}
} // namespace

bool ParsEntryFromMobile(core::Context& ctx, tables::Recordset& table, QString& text) {
    if (ctx.flags.GlobalCommandDebug)
        ctx.ui->msgBox(text, core::MsgButtons::OK, core::MsgIcon::Information, ctx.title());

    const QString crLf = QStringLiteral("\r\n");
    int nesting = 0;
    bool utf8Flag = boolField(table, QStringLiteral("UTF8Flag"));
    auto set = [&table](const char16_t* field, const core::Value& v) { table.setValue(QString::fromUtf16(field), v); };

    while (!text.isEmpty()) {
        QString key = HolTeilstring(text, QStringLiteral(":"));
        QString value;
        // Folded lines: a line that begins with a blank continues the value, the
        // blank included. A last line without CR LF gives an empty line and leaves
        // the text as it is, so the fold stops there.
        do {
            const qsizetype before = text.size();
            value += HolTeilstring(text, crLf);
            if (text.size() == before)
                break;
        } while (text.startsWith(u' '));

        encodeString(ctx, value, key, utf8Flag);
        set(u"UTF8Flag", utf8Flag);
        const qsizetype semicolon = key.indexOf(u';');
        if (semicolon >= 0)
            key.truncate(semicolon);

        if (key == u"BEGIN") {
            if (value != u"VCALENDAR" && value != u"VEVENT")
                unexpectedKey(ctx, -1996, u" BEGIN", key, value);
            ++nesting;
        } else if (key == u"END") {
            if (value != u"VCALENDAR" && value != u"VEVENT")
                unexpectedKey(ctx, -1995, u" END", key, value);
            --nesting;
        } else if (key == u"CATEGORIES") {
            const char16_t* status = statusOfCategory(value);
            if (!status)
                unexpectedKey(ctx, -1994, u" CATEGORIES", key, value);
            set(status, true);
        } else if (key == u"DTSTART") {
            const VbDate d = stampToDate(value);
            set(u"DTStart", d);
            const QString asText = table.dateAsText(d);
            set(u"StartasText", asText);
            set(u"DTStartFlag", true);
            set(u"PIMRecPatt", d);
            set(u"PimRecPattString", asText);
        } else if (key == u"DTEND") {
            set(u"DTEnd", stampToDate(value));
        } else if (key == u"AALARM") {
            set(u"AAlarm", stampToDate(value));
            set(u"AAlarmFlag", true);
        } else if (key == u"DALARM") {
            set(u"DAlarm", stampToDate(value));
            set(u"DAlarmFlag", true);
        } else if (key == u"DESCRIPTION") {
            const QStringList pieces = SplitESCStrings(value);
            set(u"Description", pieces.isEmpty() ? QString() : RemoveCTRLCharactersFromString(pieces.first()));
        } else if (key == u"SUMMARY") {
            const QStringList pieces = SplitESCStrings(value);
            set(u"Summary", pieces.isEmpty() ? QString() : pieces.first());
        } else if (key == u"RRULE") {
            parseRule(ctx, table, value);
        } else if (key == u"VERSION") {
            // No version is checked in this format.
        } else if (nesting == 0) {
            // Whatever follows the calendar is not ours.
            text.clear();
        } else {
            unexpectedKey(ctx, -1993, u" vcs key", key, value);
        }
    }

    completeRow(ctx, table);
    return true;
}

} // namespace tsr::formats
