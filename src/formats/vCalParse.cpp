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
        const QStringView v(value);
        const int y = v.mid(0, 4).toInt(), mo = v.mid(4, 2).toInt(), d = v.mid(6, 2).toInt();
        int h = 0, mi = 0, s = 0;
        if (value.size() == 14) {
            h = v.mid(8, 2).toInt();
            mi = v.mid(10, 2).toInt();
            s = v.mid(12, 2).toInt();
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

void parseRuleInto(core::Context& ctx, CalendarRow& row, const QString& rule) {
    const QString first = rule.left(1);
    const QString modKey = rule.mid(1, 1);
    row.set(Col::RecurrenceFrequenz, first);
    row.set(Col::RecurrenceDuration, int64_t(0));

    auto notASeries = [&row] {
        row.set(Col::RecurrenceIntervall, int64_t(1));
        row.set(Col::ModKey, QString());
        row.set(Col::RecurrenceType, QStringLiteral("D"));
        row.set(Col::ISRecurring, false);
    };

    if (first == u"D" || first == u"W") {
        // The phone writes one digit: "D12" is interval 1.
        const int64_t interval = numberAt(rule, 1, 1);
        row.set(Col::RecurrenceIntervall, interval);
        if (first == u"D") {
            row.set(Col::RecurrenceType, interval == 7 ? QStringLiteral("W") : QStringLiteral("D"));
        } else {
            row.set(Col::RecurrenceType, QStringLiteral("W"));
            row.set(Col::Weekdaymask, int64_t(core::StringToDayOfWeekMask(rule.mid(3))));
        }
        row.set(Col::ISRecurring, true);
    } else if (first == u"M") {
        row.set(Col::ModKey, modKey);
        const qsizetype blank = rule.indexOf(u' ', 1);
        if (modKey == u"D") {
            if (blank >= 1) {
                row.set(Col::RecurrenceIntervall, numberAt(rule, 2, blank - 2));
                row.set(Col::DayOfMonth, numberAt(rule, blank));
            } else {
                row.set(Col::RecurrenceIntervall, numberAt(rule, 2));
                row.set(Col::DayOfMonth, int64_t(0));
            }
        } else if (modKey == u"1") {
            row.set(Col::DayOfMonth, blank >= 1 ? numberAt(rule, blank) : int64_t(0));
            row.set(Col::RecurrenceIntervall, int64_t(1));
            row.set(Col::ModKey, QString());
        } else {
            notASeries();
            return;
        }
        row.set(Col::RecurrenceType, QStringLiteral("M"));
        row.set(Col::ISRecurring, true);
    } else if (first == u"Y") {
        row.set(Col::ModKey, modKey);
        if (modKey == u"D" || modKey == u"M") {
            row.set(Col::RecurrenceIntervall, numberAt(rule, 2));
            if (modelIsOneOf(ctx.phone.MobileModel, {u"Q52", u"Q33", u"R52", u"P52"}))
                row.set(Col::ModKey, QString());
        } else if (modKey == u"1") {
            row.set(Col::RecurrenceIntervall, int64_t(1));
            row.set(Col::ModKey, QString());
        } else {
            row.set(Col::RecurrenceIntervall, int64_t(1));
            row.set(Col::ModKey, QStringLiteral("D"));
        }
        row.set(Col::RecurrenceType, QStringLiteral("Y"));
        row.set(Col::ISRecurring, true);
    } else {
        notASeries();
    }
}

// The status field each category sets.
std::optional<Col> statusOfCategory(const QString& value) {
    if (value == u"MISCELLANEOUS")
        return Col::MemoStatus;
    if (value == u"MEETING")
        return Col::MeetingStatus;
    if (value == u"ANNIVERSARY")
        return Col::AnniversaryStatus;
    if (value == u"PHONE CALL")
        return Col::PhoneCallStatus;
    return std::nullopt;
}

// The text form of dates, remembering the last one: the start's text is asked
// for twice on most entries, and building it is the dearest step of a field.
class DateTexts {
public:
    explicit DateTexts(const tables::Recordset& table) : m_table(table) {}
    const QString& of(VbDate d) {
        if (!m_has || d != m_date) {
            m_text = quickDateText(m_table, d);
            m_date = d;
            m_has = true;
        }
        return m_text;
    }

private:
    const tables::Recordset& m_table;
    VbDate m_date;
    QString m_text;
    bool m_has = false;
};

// The steps after the last line, in their order: later steps read what earlier
// ones wrote.
void completeRow(core::Context& ctx, CalendarRow& row, DateTexts& texts) {
    row.set(Col::noPhonecall, true);

    QString typ;
    if (row.flag(Col::MemoStatus))
        typ = QString();
    else if (row.flag(Col::MeetingStatus))
        typ = QStringLiteral("1");
    else if (row.flag(Col::AnniversaryStatus))
        typ = QStringLiteral("2");
    else if (row.flag(Col::PhoneCallStatus))
        typ = QStringLiteral("3");
    row.set(Col::Typ, typ);
    row.set(Col::Serie, row.value(Col::RecurrenceType));

    // An alarm before the start moves the shown start to the alarm.
    const bool hasStart = row.flag(Col::DTStartFlag);
    const bool hasA = row.flag(Col::AAlarmFlag);
    const bool hasD = row.flag(Col::DAlarmFlag);
    const VbDate dtStart = row.date(Col::DTStart);
    const VbDate aAlarm = row.date(Col::AAlarm);
    const VbDate dAlarm = row.date(Col::DAlarm);
    VbDate start;
    if (hasStart)
        start = hasA ? std::min(dtStart, aAlarm) : hasD ? std::min(dtStart, dAlarm) : dtStart;
    else
        start = !hasD ? aAlarm : !hasA ? dAlarm : std::min(aAlarm, dAlarm);
    row.set(Col::Start, start);

    row.set(Col::StartasText, texts.of(start));
    row.set(Col::MobileRecPattern, start);
    const VbDate startDate = core::DateValue(start);
    row.set(Col::StartDate, startDate);
    row.set(Col::PimRecPattString, texts.of(startDate));
    row.set(Col::PIMRecPatt, startDate);
    row.set(Col::StartTime, quickTimeText(core::TimeValue(start), ctx.formats.TimeFormat));

    VbDate dtEnd = row.date(Col::DTEnd);
    if (dtEnd < dtStart) {
        dtEnd = dtStart;
        row.set(Col::DTEnd, dtEnd);
    }
    const VbDate endDate = core::DateValue(dtEnd);
    row.set(Col::EndDate, endDate);
    row.set(Col::EndTime, core::TimeValue(dtEnd));
    row.set(Col::EndDateFlag, true);
    row.set(Col::StartEndDiff, int64_t(endDate.value - startDate.value));

    row.set(Col::Alarm, hasA || hasD);
    const QString description = row.text(Col::Description);
    const QString text = description.isEmpty() ? row.text(Col::Summary) : description;
    row.set(Col::Text, text);
    row.set(Col::PIMText, text);
    row.set(Col::Mobile, true);
    row.set(Col::EntryType, int32_t(2));
    row.table().update();
}
} // namespace

void parseRule(core::Context& ctx, tables::Recordset& table, const QString& rule) {
    CalendarRow row(table);
    parseRuleInto(ctx, row, rule);
}

bool ParsEntryFromMobile(core::Context& ctx, tables::Recordset& table, QString& text) {
    if (ctx.flags.GlobalCommandDebug)
        ctx.ui->msgBox(text, core::MsgButtons::OK, core::MsgIcon::Information, ctx.title());

    static const QString quotedPrintable = QStringLiteral("ENCODING=QUOTED-PRINTABLE");
    CalendarRow row(table);
    DateTexts texts(table);
    int nesting = 0;
    bool utf8Flag = row.flag(Col::UTF8Flag);
    // The text is read from `pos` on, as HolTeilstring would cut it, without
    // moving the rest on every line; `text` is cut once at the end, or at an error.
    qsizetype pos = 0;
    const qsizetype size = text.size();

    try {
        while (pos < size) {
            QStringView key;
            const qsizetype colon = text.indexOf(u':', pos);
            if (colon >= 0) {
                key = QStringView(text).mid(pos, colon - pos);
                pos = colon + 1;
            }
            // Folded lines: a line that begins with a blank continues the value, the
            // blank included. A last line without CR LF gives an empty line and leaves
            // the text as it is, so the fold stops there.
            QString value;
            do {
                const qsizetype lineEnd = text.indexOf(QLatin1StringView("\r\n"), pos);
                if (lineEnd < 0)
                    break;
                value += QStringView(text).mid(pos, lineEnd - pos);
                pos = lineEnd + 2;
            } while (pos < size && text[pos] == u' ');

            // Without this parameter the decoding leaves value and flag alone.
            if (key.contains(quotedPrintable)) {
                const bool before = utf8Flag;
                encodeString(ctx, value, key.toString(), utf8Flag);
                if (utf8Flag != before)
                    row.set(Col::UTF8Flag, utf8Flag);
            }
            const qsizetype semicolon = key.indexOf(u';');
            if (semicolon >= 0)
                key.truncate(semicolon);

            if (key == u"BEGIN") {
                if (value != u"VCALENDAR" && value != u"VEVENT")
                    unexpectedKey(ctx, -1996, u" BEGIN", key.toString(), value);
                ++nesting;
            } else if (key == u"END") {
                if (value != u"VCALENDAR" && value != u"VEVENT")
                    unexpectedKey(ctx, -1995, u" END", key.toString(), value);
                --nesting;
            } else if (key == u"CATEGORIES") {
                const std::optional<Col> status = statusOfCategory(value);
                if (!status)
                    unexpectedKey(ctx, -1994, u" CATEGORIES", key.toString(), value);
                row.set(*status, true);
            } else if (key == u"DTSTART") {
                const VbDate d = stampToDate(value);
                row.set(Col::DTStart, d);
                const QString& asText = texts.of(d);
                row.set(Col::StartasText, asText);
                row.set(Col::DTStartFlag, true);
                row.set(Col::PIMRecPatt, d);
                row.set(Col::PimRecPattString, asText);
            } else if (key == u"DTEND") {
                row.set(Col::DTEnd, stampToDate(value));
            } else if (key == u"AALARM") {
                row.set(Col::AAlarm, stampToDate(value));
                row.set(Col::AAlarmFlag, true);
            } else if (key == u"DALARM") {
                row.set(Col::DAlarm, stampToDate(value));
                row.set(Col::DAlarmFlag, true);
            } else if (key == u"DESCRIPTION") {
                const QStringList pieces = SplitESCStrings(value);
                row.set(Col::Description,
                        pieces.isEmpty() ? QString() : RemoveCTRLCharactersFromString(pieces.first()));
            } else if (key == u"SUMMARY") {
                const QStringList pieces = SplitESCStrings(value);
                row.set(Col::Summary, pieces.isEmpty() ? QString() : pieces.first());
            } else if (key == u"RRULE") {
                parseRuleInto(ctx, row, value);
            } else if (key == u"VERSION") {
                // No version is checked in this format.
            } else if (nesting == 0) {
                // Whatever follows the calendar is not ours.
                pos = size;
            } else {
                unexpectedKey(ctx, -1993, u" vcs key", key.toString(), value);
            }
        }
    } catch (...) {
        text.remove(0, pos);
        throw;
    }
    text.clear();

    row.set(Col::UTF8Flag, utf8Flag);
    completeRow(ctx, row, texts);
    return true;
}

} // namespace tsr::formats
