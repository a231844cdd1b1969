// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/vCalFields.h"

#include "tables/TSRADODB.h"

#include <deque>
#include <vector>

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

// A numeric mask read once into the steps that write it. The same few masks
// format every date of a run, so each is read only the first time it is met.
struct MaskPlan {
    enum class Part : uint8_t { Day, Month, Minute, Year4, Year2, DayOfYear, Hour, Second, Literal };
    struct Step {
        Part part;
        bool pad;
        char16_t literal;
    };
    // No step writes more than four characters: a year's four digits.
    static constexpr size_t kMaxSteps = 32;
    static constexpr size_t kMaxLength = kMaxSteps * 4;

    std::vector<Step> steps;
    bool quick = true;     // false: the mask needs the general formatter
    bool usesDate = false; // day, month or year
    bool usesTime = false; // hours, minutes or seconds
};

MaskPlan compile(const QString& mask) {
    using Part = MaskPlan::Part;
    MaskPlan plan;
    const qsizetype n = mask.size();
    auto lower = [&mask](qsizetype i) { return mask[i].toLower(); };
    auto runOf = [&](qsizetype at, QChar c) {
        qsizetype k = at;
        while (k < n && lower(k) == c)
            ++k;
        return int(k - at);
    };
    // "m" or "mm" means minutes behind an hour or before seconds.
    auto secondsFollow = [&](qsizetype at) {
        for (qsizetype k = at; k < n; ++k) {
            const QChar c = lower(k);
            if (c == u's')
                return true;
            if (QStringView(u"dmyhnwq").contains(c))
                return false;
        }
        return false;
    };
    bool lastWasHour = false;
    for (qsizetype i = 0; i < n;) {
        const QChar lc = lower(i);
        const int run = runOf(i, lc);
        if (lc == u'd' && run <= 2) {
            plan.steps.push_back({Part::Day, run == 2, 0});
            i += run;
            lastWasHour = false;
        } else if (lc == u'm' && run <= 2) {
            const bool minutes = lastWasHour || secondsFollow(i + run);
            plan.steps.push_back({minutes ? Part::Minute : Part::Month, run == 2, 0});
            i += run;
            lastWasHour = false;
        } else if (lc == u'y') {
            const Part part = run >= 3 ? Part::Year4 : run == 2 ? Part::Year2 : Part::DayOfYear;
            plan.steps.push_back({part, true, 0});
            i += run >= 3 ? std::min(run, 4) : run;
            lastWasHour = false;
        } else if (lc == u'h' || lc == u'n' || lc == u's') {
            const Part part = lc == u'h' ? Part::Hour : lc == u'n' ? Part::Minute : Part::Second;
            plan.steps.push_back({part, run >= 2, 0});
            i += std::min(run, 2);
            lastWasHour = lc == u'h';
        } else if (QStringView(u".:/- ,").contains(lc)) {
            plan.steps.push_back({Part::Literal, false, mask[i].unicode()});
            ++i;
        } else {
            plan.quick = false; // names, quoted text, day-half marks, weeks
            break;
        }
    }
    // A mask longer than any date format is left to the general formatter too.
    if (plan.steps.size() > MaskPlan::kMaxSteps)
        plan.quick = false;
    if (!plan.quick)
        plan.steps.clear();
    for (const MaskPlan::Step& step : plan.steps) {
        const bool timePart = step.part == Part::Hour || step.part == Part::Minute || step.part == Part::Second;
        plan.usesTime |= timePart;
        plan.usesDate |= !timePart && step.part != Part::Literal;
    }
    return plan;
}

// A run meets a handful of masks. Plans stay where they are once made (callers
// hold two at a time); past kMaxPlans masks the general formatter writes the rest.
const MaskPlan& planFor(const QString& mask) {
    constexpr size_t kMaxPlans = 64;
    thread_local std::deque<std::pair<QString, MaskPlan>> plans;
    for (const auto& [text, plan] : plans)
        if (text == mask)
            return plan;
    if (plans.size() >= kMaxPlans) {
        static const MaskPlan general = [] {
            MaskPlan plan;
            plan.quick = false;
            return plan;
        }();
        return general;
    }
    plans.emplace_back(mask, compile(mask));
    return plans.back().second;
}

void appendNumber(char16_t*& out, int value, bool pad) {
    char16_t digits[12];
    int n = 0;
    unsigned v = unsigned(value < 0 ? -value : value);
    do {
        digits[n++] = char16_t(u'0' + v % 10);
        v /= 10;
    } while (v);
    if (pad && value < 10)
        *out++ = u'0';
    if (value < 0)
        *out++ = u'-';
    while (n)
        *out++ = digits[--n];
}

// A date-time taken apart once for all the masks that write it.
struct DateParts {
    explicit DateParts(core::VbDate d)
        : date(core::toQDate(d)), hour(core::Hour(d)), minute(core::Minute(d)), second(core::Second(d)) {
        date.getDate(&year, &month, &day);
    }
    QDate date;
    int year = 0, month = 0, day = 0;
    int hour, minute, second;
};

// Writes the date in the plan's mask from `p` on (room for kMaxLength) and
// returns the end; nullptr where the general formatter must write it.
char16_t* formatInto(char16_t* p, const DateParts& parts, const MaskPlan& plan) {
    if (!plan.quick)
        return nullptr;
    using Part = MaskPlan::Part;
    const auto& [date, year, month, day, hour, minute, second] = parts;
    for (const MaskPlan::Step& step : plan.steps) {
        switch (step.part) {
        case Part::Day:
            appendNumber(p, day, step.pad);
            break;
        case Part::Month:
            appendNumber(p, month, step.pad);
            break;
        case Part::Minute:
            appendNumber(p, minute, step.pad);
            break;
        case Part::Year4:
            if (year < 0 || year > 9999)
                return nullptr;
            for (int div = 1000; div; div /= 10)
                *p++ = char16_t(u'0' + year / div % 10);
            break;
        case Part::Year2:
            appendNumber(p, year % 100, true);
            break;
        case Part::DayOfYear:
            appendNumber(p, date.dayOfYear(), false);
            break;
        case Part::Hour:
            appendNumber(p, hour, step.pad);
            break;
        case Part::Second:
            appendNumber(p, second, step.pad);
            break;
        case Part::Literal:
            *p++ = step.literal;
            break;
        }
    }
    return p;
}

// The date in one mask, or in two with a blank between; nothing where the
// general formatter must write it. Digits go straight into the text's memory.
std::optional<QString> formatted(const DateParts& parts, const MaskPlan& first, const MaskPlan* second = nullptr) {
    if (!first.quick || (second && !second->quick))
        return std::nullopt;
    const size_t room = first.steps.size() * 4 + (second ? 1 + second->steps.size() * 4 : 0);
    QString out(qsizetype(room), Qt::Uninitialized);
    char16_t* const begin = reinterpret_cast<char16_t*>(out.data());
    char16_t* end = formatInto(begin, parts, first);
    if (end && second) {
        *end++ = u' ';
        end = formatInto(end, parts, *second);
    }
    if (!end)
        return std::nullopt;
    out.truncate(end - begin);
    return out;
}

} // namespace

std::optional<QString> quickFormat(core::VbDate d, const QString& mask) {
    return formatted(DateParts(d), planFor(mask));
}

QString quickDateText(const tables::Recordset& table, core::VbDate d) {
    const core::VbDate datePart = core::DateValue(d);
    const core::VbDate timePart = core::TimeValue(d);
    const DateParts parts(d);
    const MaskPlan& datePlan = planFor(table.dateMask());
    const MaskPlan& timePlan = planFor(table.timeMask());
    std::optional<QString> text;
    if (timePart.value == 0)
        text = formatted(parts, datePlan);
    else if (datePart.value == 0)
        text = formatted(parts, timePlan);
    else
        text = formatted(parts, datePlan, &timePlan);
    return text ? *std::move(text) : table.dateAsText(d);
}

StartTexts startTexts(const tables::Recordset& table, core::VbDate start, const QString& timeMask) {
    const core::VbDate datePart = core::DateValue(start);
    const core::VbDate timePart = core::TimeValue(start);
    const DateParts parts(start);
    const MaskPlan& datePlan = planFor(table.dateMask());
    const MaskPlan& timePlan = planFor(timeMask);
    // The date alone has the start's day and no time; the time of day has day 0
    // and the start's time. A mask that reads only the parts they share writes
    // the same from the start's parts.
    std::optional<QString> date = datePlan.usesTime ? std::nullopt : formatted(parts, datePlan);
    std::optional<QString> time = timePlan.usesDate ? std::nullopt : formatted(parts, timePlan);
    const bool fromParts = date && time;
    StartTexts texts;
    texts.date = date ? *std::move(date) : quickDateText(table, datePart);
    texts.time = time ? *std::move(time) : quickTimeText(timePart, timeMask);
    if (timePart.value == 0)
        texts.full = texts.date; // the start is its date
    else if (datePart.value != 0 && fromParts && timeMask == table.timeMask())
        texts.full = *formatted(parts, datePlan, &timePlan);
    else
        texts.full = quickDateText(table, start);
    return texts;
}

QString quickTimeText(core::VbDate d, const QString& mask) {
    std::optional<QString> text = formatted(DateParts(d), planFor(mask));
    return text ? *std::move(text) : core::Format(d, mask);
}

} // namespace tsr::formats::detail
