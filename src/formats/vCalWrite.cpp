// SPDX-License-Identifier: GPL-3.0-or-later
// The writing half of vCal: the text sent to the phone and the rule fields of a
// new series.
#include "core/ErrorReport.h"
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
const QString kCrLf = QStringLiteral("\r\n");

void appendDigits(QString& out, int value, int width) {
    char16_t buf[8];
    for (int i = width - 1; i >= 0; --i) {
        buf[i] = char16_t(u'0' + value % 10);
        value /= 10;
    }
    out.append(QStringView(buf, width));
}

// "yyyymmdd" of the date, "T", "hhmmss" of the time, "Z": the date-time stays
// local in spite of the "Z".
QString stamp(VbDate date, VbDate time) {
    const QDate d = core::toQDate(date);
    QString out;
    out.reserve(16);
    appendDigits(out, d.year(), 4);
    appendDigits(out, d.month(), 2);
    appendDigits(out, d.day(), 2);
    out += u'T';
    appendDigits(out, core::Hour(time), 2);
    appendDigits(out, core::Minute(time), 2);
    appendDigits(out, core::Second(time), 2);
    out += u'Z';
    return out;
}

QString ruleOf(const CalendarRow& row) {
    const QString type = row.text(Col::RecurrenceType);
    const QString interval = row.text(Col::RecurrenceIntervall);
    QString rule = row.text(Col::RecurrenceFrequenz);
    if (type == u"D") {
        rule += interval;
    } else if (type == u"W") {
        rule += interval;
        const int64_t mask = row.number(Col::Weekdaymask);
        if (mask > 0)
            rule += u' ' + core::DayOfWeekMaskToString(mask);
    } else if (type == u"M") {
        rule += row.text(Col::ModKey) + interval + u' ' + row.text(Col::DayOfMonth);
    } else if (type == u"Y") {
        rule += row.text(Col::ModKey) + interval;
    }
    return rule + QStringLiteral(" #") + row.text(Col::RecurrenceDuration);
}
} // namespace

vCalHeads PreSetActEntryFields() {
    return vCalHeads{};
}

bool modelIsOneOf(const QString& model, std::initializer_list<const char16_t*> names) {
    for (const char16_t* name : names)
        if (model.contains(QString::fromUtf16(name)))
            return true;
    return false;
}

QString ruleText(tables::Recordset& table) {
    return ruleOf(CalendarRow(table));
}

QString calendarEntryText(tables::Recordset& table) {
    static const vCalHeads heads = PreSetActEntryFields();
    const CalendarRow row(table);
    QString out;
    out.reserve(512);
    auto line = [&out](const QString& text) {
        out += text;
        out += kCrLf;
    };

    line(heads.BeginCalendar);
    line(heads.Version);
    line(heads.BeginEvent);

    QString category = QStringLiteral("MISCELLANEOUS");
    if (row.flag(Col::MeetingStatus))
        category = QStringLiteral("MEETING");
    else if (row.flag(Col::AnniversaryStatus))
        category = QStringLiteral("ANNIVERSARY");
    else if (row.flag(Col::PhoneCallStatus))
        category = QStringLiteral("PHONE CALL");
    line(heads.Categories + category);

    // A series goes to the phone from its reference date; the shown occurrence
    // gives only the time of day.
    const VbDate start = row.date(Col::Start);
    const bool recurring = row.flag(Col::ISRecurring);
    const VbDate recPatt = row.date(Col::PIMRecPatt);
    const VbDate reference = (recurring && recPatt.value != 0) ? recPatt : start;
    line(heads.DTStart + stamp(reference, start));

    const int64_t startEndDiff = row.number(Col::StartEndDiff);
    const VbDate endDate =
        startEndDiff >= 0 ? core::DateAdd(QStringLiteral("d"), double(startEndDiff), reference) : row.date(Col::DTEnd);
    line(heads.DTEnd + stamp(endDate, row.date(Col::EndTime)));

    if (row.flag(Col::DAlarmFlag))
        line(heads.DAlarm + stamp(reference, row.date(Col::DAlarm)));
    if (row.flag(Col::AAlarmFlag))
        line(heads.AAlarm + stamp(reference, row.date(Col::AAlarm)));
    if (recurring)
        line(heads.RRule + ruleOf(row));

    const QString description = row.text(Col::Description);
    QString encoded = StringToUniToUTFToQuoted(description);
    const QString descriptionHead = (encoded.contains(u'=') && encoded != description)
                                        ? QStringLiteral("DESCRIPTION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:")
                                        : QStringLiteral("DESCRIPTION:");
    CheckSemicolonInToken(encoded);
    line(descriptionHead + encoded);
    // The phone shows SUMMARY; it carries the description's text, under the plain
    // head even when that text is quoted-printable.
    if (!row.text(Col::Summary).isEmpty())
        line(heads.Summary + encoded);

    line(heads.EndEvent);
    line(heads.EndCalendar);
    return out;
}

QByteArray calendarEntryBytes(const QString& text) {
    QByteArray raw;
    raw.reserve(text.size() * 2);
    for (QChar c : text) {
        raw.append(char(c.unicode() & 0xFF));
        raw.append(char(c.unicode() >> 8));
    }
    EntferneGeradeBytes(raw);
    return raw;
}

QString calendarEntryFileName(tables::Recordset& row) {
    const int64_t subType = intField(row, QStringLiteral("SubType"));
    const QString number = subType == -1 ? textField(row, QStringLiteral("EntryID")) : QString::number(subType);
    return number + QStringLiteral(".vcs");
}

void vCalSetSerieFields(core::Context& ctx, tables::Recordset& table, std::optional<int16_t> editorWeekdays) {
    core::guarded(ctx, QStringLiteral("vCal"), QStringLiteral("vCalSetSerieFields"), [&] {
        const QString type = textField(table, QStringLiteral("RecurrenceType"));
        const QString& model = ctx.phone.MobileModel;
        auto set = [&table](const char16_t* field, const core::Value& v) {
            table.setValue(QString::fromUtf16(field), v);
        };
        if (type == u"D") {
            set(u"RecurrenceIntervall", int64_t(1));
            set(u"RecurrenceFrequenz", QStringLiteral("D"));
        } else if (type == u"W") {
            // The older models know no weekly rule: a week is seven days to them.
            if (modelIsOneOf(model, {u"R52", u"Q52", u"P52", u"Q33"})) {
                set(u"RecurrenceIntervall", int64_t(7));
                set(u"RecurrenceFrequenz", QStringLiteral("D"));
            } else {
                set(u"RecurrenceIntervall", int64_t(1));
                set(u"RecurrenceFrequenz", QStringLiteral("W"));
            }
            if (editorWeekdays)
                set(u"Weekdaymask", int64_t(*editorWeekdays));
        } else if (type == u"M") {
            set(u"RecurrenceIntervall", int64_t(1));
            set(u"RecurrenceFrequenz", QStringLiteral("M"));
            set(u"DayOfMonth", int64_t(core::Day(dateField(table, QStringLiteral("Start")))));
            // Q33 keeps "D" here, unlike in the yearly rule.
            set(u"ModKey", modelIsOneOf(model, {u"R52", u"Q52", u"P52"}) ? QString() : QStringLiteral("D"));
        } else if (type == u"Y") {
            set(u"RecurrenceFrequenz", QStringLiteral("Y"));
            set(u"RecurrenceIntervall", int64_t(1));
            set(u"ModKey", modelIsOneOf(model, {u"Q33", u"Q52", u"R52", u"P52"}) ? QString() : QStringLiteral("D"));
        }
        table.update();
    });
}

} // namespace tsr::formats
