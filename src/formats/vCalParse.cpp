// SPDX-License-Identifier: GPL-3.0-or-later
// The reading half of vCal: one file's text from the phone into a calendar row.
// The grammar is the phone's, not the whole of vCalendar 1.0: one event, the
// keys below, folded lines whose leading blank stays in the value.
#include "core/Error.h"
#include "core/Numbers.h"
#include "core/SeriesStep.h"
#include "formats/Allgemein.h"
#include "formats/unicode.h"
#include "formats/vCal.h"
#include "formats/vCalFields.h"

#include <optional>
#include <string_view>

namespace tsr::formats {

using namespace detail;
using namespace std::literals;
using core::VbDate;

namespace {
const QString kSource = QStringLiteral("ParsEntryFromMobile");

[[noreturn]] void unexpectedKey(const core::Context& ctx, int32_t number, const char16_t* after, QStringView key,
                                QStringView value) {
    core::raise(number, kSource,
                ctx.strings.text(753) + QString::fromUtf16(after) + QStringLiteral("\r\n") + key.toString() + u':' +
                    value.toString());
}

bool same(QStringView a, std::u16string_view b) {
    return size_t(a.size()) == b.size() && std::char_traits<char16_t>::compare(a.utf16(), b.data(), b.size()) == 0;
}

bool contains(QStringView text, std::u16string_view part) {
    return std::u16string_view(text.utf16(), size_t(text.size())).find(part) != std::u16string_view::npos;
}

// Where c is first found from `from` on, or -1. Lines are short: a plain loop
// finds a character in them sooner than a call into the library does.
qsizetype find(QStringView text, char16_t c, qsizetype from) {
    const char16_t* const data = text.utf16();
    for (qsizetype i = from; i < text.size(); ++i)
        if (data[i] == c)
            return i;
    return -1;
}

// A stamp read with every "T" and "Z" left out: "yyyymmddhhmmss". A date alone
// (8 digits) reads as midnight; anything else is the conversion error a date
// that is no date always gives.
VbDate stampToDate(QStringView value) {
    int digits[14];
    int n = 0;
    for (QChar c : value) {
        if (c == u'T' || c == u'Z')
            continue;
        if (n == 14 || c < u'0' || c > u'9')
            core::raise(core::err::TypeMismatch, kSource);
        digits[n++] = c.unicode() - u'0';
    }
    if (n == 14 || n == 8) {
        auto number = [&digits](int at, int count) {
            int v = 0;
            for (int i = at; i < at + count; ++i)
                v = v * 10 + digits[i];
            return v;
        };
        const int y = number(0, 4), mo = number(4, 2), d = number(6, 2);
        const int h = n == 14 ? number(8, 2) : 0, mi = n == 14 ? number(10, 2) : 0, sec = n == 14 ? number(12, 2) : 0;
        if (QDate::isValid(y, mo, d) && y >= 100 && h < 24 && mi < 60 && sec < 60)
            return VbDate(core::fromQDate(QDate(y, mo, d)).value + core::TimeSerial(h, mi, sec).value);
    }
    core::raise(core::err::TypeMismatch, kSource);
}

// A number of the rule; one that does not fit the field is the overflow error.
int64_t numberAt(QStringView text, qsizetype from, qsizetype length = -1) {
    const double v = core::Val(text.mid(from, length));
    if (!(v > -9.2e18 && v < 9.2e18))
        core::raise(core::err::Overflow, kSource);
    return int64_t(v);
}

// One letter of the rule as text: the letters a rule is made of are shared, not
// made anew for every entry.
QString letter(QStringView rule, qsizetype at) {
    static const QString letters[] = {QStringLiteral("D"), QStringLiteral("W"), QStringLiteral("M"),
                                      QStringLiteral("Y"), QStringLiteral("1")};
    const QStringView one = rule.mid(at, 1);
    for (const QString& l : letters)
        if (one == l)
            return l;
    return one.toString();
}

void parseRuleInto(core::Context& ctx, CalendarRow& row, QStringView rule) {
    const QString first = letter(rule, 0);
    const QString modKey = letter(rule, 1);
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
std::optional<Col> statusOfCategory(QStringView value) {
    if (same(value, u"MISCELLANEOUS"sv))
        return Col::MemoStatus;
    if (same(value, u"MEETING"sv))
        return Col::MeetingStatus;
    if (same(value, u"ANNIVERSARY"sv))
        return Col::AnniversaryStatus;
    if (same(value, u"PHONE CALL"sv))
        return Col::PhoneCallStatus;
    return std::nullopt;
}

// The steps after the last line, in their order: later steps read what earlier
// ones wrote.
void completeRow(core::Context& ctx, tables::Recordset& table, CalendarRow& row) {
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

    StartTexts texts = startTexts(table, start, ctx.formats.TimeFormat);
    row.set(Col::StartasText, std::move(texts.full));
    row.set(Col::MobileRecPattern, start);
    const VbDate startDate = core::DateValue(start);
    row.set(Col::StartDate, startDate);
    row.set(Col::PimRecPattString, std::move(texts.date));
    row.set(Col::PIMRecPatt, startDate);
    row.set(Col::StartTime, std::move(texts.time));

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
}
} // namespace

void parseRule(core::Context& ctx, tables::Recordset& table, const QString& rule) {
    CalendarRow row(table);
    parseRuleInto(ctx, row, rule);
}

bool ParsEntryFromMobile(core::Context& ctx, tables::Recordset& table, QString& text) {
    if (ctx.flags.GlobalCommandDebug)
        ctx.ui->msgBox(text, core::MsgButtons::OK, core::MsgIcon::Information, ctx.title());

    CalendarRow row(table);
    // The last DTSTART read. A finished row takes its texts from the start, so
    // the texts of this date are made only for an entry that breaks off.
    std::optional<VbDate> startRead;
    int nesting = 0;
    bool utf8Flag = row.flag(Col::UTF8Flag);
    // The text is read from `pos` on, as HolTeilstring would cut it, without
    // moving the rest on every line; `text` is cut once at the end, or at an error.
    qsizetype pos = 0;
    const qsizetype size = text.size();
    const QStringView all(text);
    auto lineEndFrom = [&all, size](qsizetype from) {
        for (qsizetype cr = find(all, u'\r', from); cr >= 0; cr = find(all, u'\r', cr + 1))
            if (cr + 1 < size && all[cr + 1] == u'\n')
                return cr;
        return qsizetype(-1);
    };

    try {
        while (pos < size) {
            QStringView key;
            const qsizetype colon = find(all, u':', pos);
            if (colon >= 0) {
                key = all.mid(pos, colon - pos);
                pos = colon + 1;
            }
            // Folded lines: a line that begins with a blank continues the value, the
            // blank included. A last line without CR LF gives an empty line and leaves
            // the text as it is, so the fold stops there.
            QStringView value;
            QString storage; // the value, where it is no longer one piece of the text
            if (const qsizetype lineEnd = lineEndFrom(pos); lineEnd >= 0) {
                value = all.mid(pos, lineEnd - pos);
                pos = lineEnd + 2;
                if (pos < size && all[pos] == u' ') {
                    storage = value.toString();
                    do {
                        const qsizetype next = lineEndFrom(pos);
                        if (next < 0)
                            break;
                        storage += all.mid(pos, next - pos);
                        pos = next + 2;
                    } while (pos < size && all[pos] == u' ');
                    value = storage;
                }
            }

            // Without this parameter the decoding leaves value and flag alone.
            if (contains(key, u"ENCODING=QUOTED-PRINTABLE"sv)) {
                const bool before = utf8Flag;
                storage = value.toString();
                encodeString(ctx, storage, key, utf8Flag);
                value = storage;
                if (utf8Flag != before)
                    row.set(Col::UTF8Flag, utf8Flag);
            }
            // The value as text of its own, taking over the storage where it lies there.
            auto valueText = [&value, &storage] {
                return value.data() == storage.constData() && value.size() == storage.size() ? std::move(storage)
                                                                                             : value.toString();
            };
            const qsizetype semicolon = find(key, u';', 0);
            if (semicolon >= 0)
                key.truncate(semicolon);

            auto isCalendarPart = [&value] { return same(value, u"VCALENDAR"sv) || same(value, u"VEVENT"sv); };
            if (same(key, u"BEGIN"sv)) {
                if (!isCalendarPart())
                    unexpectedKey(ctx, -1996, u" BEGIN", key, value);
                ++nesting;
            } else if (same(key, u"END"sv)) {
                if (!isCalendarPart())
                    unexpectedKey(ctx, -1995, u" END", key, value);
                --nesting;
            } else if (same(key, u"CATEGORIES"sv)) {
                const std::optional<Col> status = statusOfCategory(value);
                if (!status)
                    unexpectedKey(ctx, -1994, u" CATEGORIES", key, value);
                row.set(*status, true);
            } else if (same(key, u"DTSTART"sv)) {
                const VbDate d = stampToDate(value);
                row.set(Col::DTStart, d);
                startRead = d;
                row.set(Col::DTStartFlag, true);
                row.set(Col::PIMRecPatt, d);
            } else if (same(key, u"DTEND"sv)) {
                row.set(Col::DTEnd, stampToDate(value));
            } else if (same(key, u"AALARM"sv)) {
                row.set(Col::AAlarm, stampToDate(value));
                row.set(Col::AAlarmFlag, true);
            } else if (same(key, u"DALARM"sv)) {
                row.set(Col::DAlarm, stampToDate(value));
                row.set(Col::DAlarmFlag, true);
            } else if (same(key, u"DESCRIPTION"sv)) {
                row.set(Col::Description, RemoveCTRLCharactersFromString(FirstESCPiece(valueText())));
            } else if (same(key, u"SUMMARY"sv)) {
                row.set(Col::Summary, FirstESCPiece(valueText()));
            } else if (same(key, u"RRULE"sv)) {
                parseRuleInto(ctx, row, value);
            } else if (same(key, u"VERSION"sv)) {
                // No version is checked in this format.
            } else if (nesting == 0) {
                // Whatever follows the calendar is not ours.
                pos = size;
            } else {
                unexpectedKey(ctx, -1993, u" vcs key", key, value);
            }
        }
    } catch (...) {
        text.remove(0, pos);
        if (startRead) {
            const QString asText = quickDateText(table, *startRead);
            row.set(Col::StartasText, asText);
            row.set(Col::PimRecPattString, asText);
        }
        throw;
    }
    text.clear();

    row.set(Col::UTF8Flag, utf8Flag);
    completeRow(ctx, table, row);
    table.update();
    return true;
}

} // namespace tsr::formats
