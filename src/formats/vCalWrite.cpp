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

QString stamp(VbDate date, VbDate time) {
    return core::Format(date, QStringLiteral("yyyymmdd")) + u'T' + core::Format(time, QStringLiteral("hhmmss")) + u'Z';
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

QString ruleText(tables::Recordset& row) {
    const QString type = textField(row, QStringLiteral("RecurrenceType"));
    const QString interval = textField(row, QStringLiteral("RecurrenceIntervall"));
    QString rule = textField(row, QStringLiteral("RecurrenceFrequenz"));
    if (type == u"D") {
        rule += interval;
    } else if (type == u"W") {
        rule += interval;
        const int64_t mask = intField(row, QStringLiteral("Weekdaymask"));
        if (mask > 0)
            rule += u' ' + core::DayOfWeekMaskToString(mask);
    } else if (type == u"M") {
        rule +=
            textField(row, QStringLiteral("ModKey")) + interval + u' ' + textField(row, QStringLiteral("DayOfMonth"));
    } else if (type == u"Y") {
        rule += textField(row, QStringLiteral("ModKey")) + interval;
    }
    return rule + QStringLiteral(" #") + textField(row, QStringLiteral("RecurrenceDuration"));
}

QString calendarEntryText(tables::Recordset& row) {
    const vCalHeads heads = PreSetActEntryFields();
    QString out;
    out.reserve(512);
    auto line = [&out](const QString& text) { out += text + kCrLf; };

    line(heads.BeginCalendar);
    line(heads.Version);
    line(heads.BeginEvent);

    QString category = QStringLiteral("MISCELLANEOUS");
    if (boolField(row, QStringLiteral("MeetingStatus")))
        category = QStringLiteral("MEETING");
    else if (boolField(row, QStringLiteral("AnniversaryStatus")))
        category = QStringLiteral("ANNIVERSARY");
    else if (boolField(row, QStringLiteral("PhoneCallStatus")))
        category = QStringLiteral("PHONE CALL");
    line(heads.Categories + category);

    // A series goes to the phone from its reference date; the shown occurrence
    // gives only the time of day.
    const VbDate start = dateField(row, QStringLiteral("Start"));
    const bool recurring = boolField(row, QStringLiteral("ISRecurring"));
    const VbDate recPatt = dateField(row, QStringLiteral("PIMRecPatt"));
    const VbDate reference = (recurring && recPatt.value != 0) ? recPatt : start;
    line(heads.DTStart + stamp(reference, start));

    const int64_t startEndDiff = intField(row, QStringLiteral("StartEndDiff"));
    const VbDate endDate = startEndDiff >= 0 ? core::DateAdd(QStringLiteral("d"), double(startEndDiff), reference)
                                             : dateField(row, QStringLiteral("DTEnd"));
    line(heads.DTEnd + stamp(endDate, dateField(row, QStringLiteral("EndTime"))));

    if (boolField(row, QStringLiteral("DAlarmFlag")))
        line(heads.DAlarm + stamp(reference, dateField(row, QStringLiteral("DAlarm"))));
    if (boolField(row, QStringLiteral("AAlarmFlag")))
        line(heads.AAlarm + stamp(reference, dateField(row, QStringLiteral("AAlarm"))));
    if (recurring)
        line(heads.RRule + ruleText(row));

    const QString description = textField(row, QStringLiteral("Description"));
    QString encoded = StringToUniToUTFToQuoted(description);
    const QString descriptionHead = (encoded.contains(u'=') && encoded != description)
                                        ? QStringLiteral("DESCRIPTION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:")
                                        : QStringLiteral("DESCRIPTION:");
    CheckSemicolonInToken(encoded);
    line(descriptionHead + encoded);
    // The phone shows SUMMARY; it carries the description's text, under the plain
    // head even when that text is quoted-printable.
    if (!textField(row, QStringLiteral("Summary")).isEmpty())
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
