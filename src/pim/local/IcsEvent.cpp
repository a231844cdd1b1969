// SPDX-License-Identifier: GPL-3.0-or-later
// Reading, writing and expanding the events of the local store with libical.
// Times are kept as the local wall clock: floating and TZID times of the local
// zone are taken as they stand; times of other zones and UTC times (as other
// tools and servers write them) are shown in the local zone.
#include "pim/local/IcsEvent.h"

#include "core/Error.h"
#include "pim/Pim.h"

#include <libical/ical.h>

#include <cmath>
#include <cstdlib>

namespace tsr::pim::local {

namespace {

const QByteArray kMeetingStatus = QByteArrayLiteral("X-TESSARINE-MEETINGSTATUS");
const QByteArray kReminderOverride = QByteArrayLiteral("X-TESSARINE-REMINDEROVERRIDE");

[[noreturn]] void corrupt(const QString& path, const QString& why) {
    core::raise(err::CorruptData, QStringLiteral("LocalStore"),
                QStringLiteral("The file \"%1\" cannot be read: %2").arg(path, why));
}

core::VbDate wallClock(const icaltimetype& t) {
    core::VbDate d = core::DateSerial(t.year, t.month, t.day);
    if (t.is_date)
        return d;
    return core::VbDate(d.value + core::TimeSerial(t.hour, t.minute, t.second).value);
}

core::VbDate fromIcal(const icaltimetype& t, icalproperty* prop, ZoneCache& zones) {
    const core::VbDate wall = wallClock(t);
    if (t.is_date)
        return wall;
    if (icaltime_is_utc(t))
        return core::utcToLocal(wall);
    icalparameter* tzParam = prop ? icalproperty_get_first_parameter(prop, ICAL_TZID_PARAMETER) : nullptr;
    if (!tzParam)
        return wall;
    const QTimeZone& zone = zones.zone(QByteArray(icalparameter_get_tzid(tzParam)));
    if (!zone.isValid() || zone == QTimeZone::systemTimeZone())
        return wall;
    const QDateTime asWritten = core::toQDateTime(wall);
    return core::fromQDateTime(QDateTime(asWritten.date(), asWritten.time(), zone).toLocalTime());
}

icaltimetype toIcal(core::VbDate d, bool isDate) {
    icaltimetype t = icaltime_null_time();
    t.year = core::Year(d);
    t.month = core::Month(d);
    t.day = core::Day(d);
    t.is_date = isDate ? 1 : 0;
    if (!isDate) {
        t.hour = core::Hour(d);
        t.minute = core::Minute(d);
        t.second = core::Second(d);
    }
    return t;
}

Stamp stampOf(const icaltimetype& t) {
    return {wallClock(t), bool(icaltime_is_utc(t))};
}

icaltimetype toUtcStamp(core::VbDate local) {
    const QDateTime utc = core::toQDateTime(local).toUTC();
    icaltimetype t = toIcal(core::fromQDateTime(QDateTime(utc.date(), utc.time())), false);
    t.zone = icaltimezone_get_utc_timezone();
    return t;
}

int dayBit(int icalWeekday) {
    return 1 << (icalWeekday - 1);
} // Sunday is 1 in both counts

int weekdayBitOf(core::VbDate d) {
    return 1 << (core::Weekday(d) - 1);
}

QByteArray weekdayNames(int mask, int position) {
    static const char* names[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    QByteArrayList out;
    for (int i = 0; i < 7; ++i)
        if (mask & (1 << i))
            out << (position ? QByteArray::number(position) : QByteArray()) + names[i];
    return out.join(',');
}

// The rule's fields as the object model knows them; type -1 when it says more.
Recurrence fromRule(const icalrecurrencetype& r, core::VbDate start, ZoneCache& zones) {
    Recurrence out;
    char* text = icalrecurrencetype_as_string_r(const_cast<icalrecurrencetype*>(&r));
    out.rule = QByteArray(text);
    std::free(text);
    out.interval = std::max<int>(1, r.interval);
    out.count = r.count;
    if (!icaltime_is_null_time(r.until))
        out.until = core::DateValue(fromIcal(r.until, nullptr, zones));

    auto arrayLength = [](const short* a, int max) {
        int n = 0;
        while (n < max && a[n] != ICAL_RECURRENCE_ARRAY_MAX)
            ++n;
        return n;
    };
    const int nDays = arrayLength(r.by_day, ICAL_BY_DAY_SIZE);
    const int nMonthDays = arrayLength(r.by_month_day, ICAL_BY_MONTHDAY_SIZE);
    const int nMonths = arrayLength(r.by_month, ICAL_BY_MONTH_SIZE);
    const int nSetPos = arrayLength(r.by_set_pos, ICAL_BY_SETPOS_SIZE);
    const bool extra = arrayLength(r.by_second, ICAL_BY_SECOND_SIZE) || arrayLength(r.by_minute, ICAL_BY_MINUTE_SIZE) ||
                       arrayLength(r.by_hour, ICAL_BY_HOUR_SIZE) || arrayLength(r.by_year_day, ICAL_BY_YEARDAY_SIZE) ||
                       arrayLength(r.by_week_no, ICAL_BY_WEEKNO_SIZE) || nSetPos > 1 || nMonthDays > 1 || nMonths > 1;
    int mask = 0, position = 0;
    for (int i = 0; i < nDays; ++i) {
        mask |= dayBit(icalrecurrencetype_day_day_of_week(r.by_day[i]));
        const int p = icalrecurrencetype_day_position(r.by_day[i]);
        if (p)
            position = p;
    }
    if (nSetPos)
        position = r.by_set_pos[0];
    const int instance = position == -1 ? 5 : position;
    out.type = -1;
    if (extra || position < -1 || position > 5 || (nDays && nMonthDays))
        return out;
    switch (r.freq) {
    case ICAL_DAILY_RECURRENCE:
        if (!nDays && !nMonthDays && !nMonths)
            out.type = olRecursDaily;
        else if (nDays && !position && !nMonths && out.interval == 1) {
            out.type = olRecursWeekly; // every working day and the like
            out.dayOfWeekMask = mask;
        }
        break;
    case ICAL_WEEKLY_RECURRENCE:
        if (!position && !nMonthDays && !nMonths) {
            out.type = olRecursWeekly;
            out.dayOfWeekMask = nDays ? mask : weekdayBitOf(start);
        }
        break;
    case ICAL_MONTHLY_RECURRENCE:
        if (nMonths)
            break;
        if (nDays && position) {
            out.type = olRecursMonthNth;
            out.dayOfWeekMask = mask;
            out.instance = instance;
        } else if (!nDays) {
            out.type = olRecursMonthly;
            out.dayOfMonth = nMonthDays ? r.by_month_day[0] : core::Day(start);
        }
        break;
    case ICAL_YEARLY_RECURRENCE:
        out.monthOfYear = nMonths ? r.by_month[0] : core::Month(start);
        if (nDays && position) {
            out.type = olRecursYearNth;
            out.dayOfWeekMask = mask;
            out.instance = instance;
        } else if (!nDays) {
            out.type = olRecursYearly;
            out.dayOfMonth = nMonthDays ? r.by_month_day[0] : core::Day(start);
        }
        break;
    default:
        break;
    }
    if (out.dayOfMonth < 0)
        out.type = -1;
    return out;
}

icalcomponent* masterOf(icalcomponent* calendar) {
    for (icalcomponent* c = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT); c;
         c = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT))
        if (!icalcomponent_get_first_property(c, ICAL_RECURRENCEID_PROPERTY))
            return c;
    return nullptr;
}

icalproperty* findX(icalcomponent* c, const QByteArray& name) {
    for (icalproperty* p = icalcomponent_get_first_property(c, ICAL_X_PROPERTY); p;
         p = icalcomponent_get_next_property(c, ICAL_X_PROPERTY))
        if (name == icalproperty_get_x_name(p))
            return p;
    return nullptr;
}

void removeAll(icalcomponent* c, icalproperty_kind kind) {
    while (icalproperty* p = icalcomponent_get_first_property(c, kind)) {
        icalcomponent_remove_property(c, p);
        icalproperty_free(p);
    }
}

void removeX(icalcomponent* c, const QByteArray& name) {
    while (icalproperty* p = findX(c, name)) {
        icalcomponent_remove_property(c, p);
        icalproperty_free(p);
    }
}

void setX(icalcomponent* c, const QByteArray& name, const QByteArray& value) {
    removeX(c, name);
    icalproperty* p = icalproperty_new_x(value.constData());
    icalproperty_set_x_name(p, name.constData());
    icalcomponent_add_property(c, p);
}

bool hasAttendees(icalcomponent* c) {
    return icalcomponent_get_first_property(c, ICAL_ORGANIZER_PROPERTY) ||
           icalcomponent_get_first_property(c, ICAL_ATTENDEE_PROPERTY);
}

void readAlarm(icalcomponent* master, EventData& ev) {
    icalcomponent* alarm = icalcomponent_get_first_component(master, ICAL_VALARM_COMPONENT);
    if (!alarm)
        return;
    ev.reminderSet = true;
    ev.reminderMinutes = 0;
    if (icalproperty* p = icalcomponent_get_first_property(alarm, ICAL_TRIGGER_PROPERTY)) {
        const icaltriggertype trigger = icalproperty_get_trigger(p);
        if (!icaltime_is_null_time(trigger.time)) {
            ZoneCache none;
            const double minutes = (ev.start.value - fromIcal(trigger.time, p, none).value) * 1440.0;
            ev.reminderMinutes = int32_t(std::lround(minutes));
        } else {
            ev.reminderMinutes = -icaldurationtype_as_int(trigger.duration) / 60;
        }
    }
}

} // namespace

core::VbDate Stamp::local() const {
    if (!utc || wall.value == 0.0)
        return wall;
    return core::utcToLocal(wall);
}

EventData::~EventData() {
    if (calendar)
        icalcomponent_free(calendar);
}

const QTimeZone& ZoneCache::zone(const QByteArray& id) {
    auto it = m_zones.find(id);
    if (it == m_zones.end())
        it = m_zones.insert(id, QTimeZone(id.startsWith('/') ? id.mid(1) : id));
    return *it;
}

std::unique_ptr<EventData> parseEvent(const QByteArray& text, const QString& path, ZoneCache& zones) {
    icalcomponent* root = icalparser_parse_string(text.constData());
    if (!root)
        corrupt(path, QStringLiteral("no iCalendar data"));
    if (icalcomponent_isa(root) == ICAL_VEVENT_COMPONENT) {
        icalcomponent* wrapper = icalcomponent_new(ICAL_VCALENDAR_COMPONENT);
        icalcomponent_add_component(wrapper, root);
        root = wrapper;
    }
    auto ev = std::make_unique<EventData>();
    ev->calendar = root;
    icalcomponent* master = icalcomponent_isa(root) == ICAL_VCALENDAR_COMPONENT ? masterOf(root) : nullptr;
    if (!master)
        corrupt(path, QStringLiteral("it holds no event"));
    icalproperty* dtstart = icalcomponent_get_first_property(master, ICAL_DTSTART_PROPERTY);
    const icaltimetype start = dtstart ? icalproperty_get_dtstart(dtstart) : icaltime_null_time();
    if (icaltime_is_null_time(start) || !icaltime_is_valid_time(start))
        corrupt(path, QStringLiteral("the event has no valid start"));

    ev->uid = QString::fromUtf8(icalcomponent_get_uid(master));
    if (ev->uid.isEmpty())
        corrupt(path, QStringLiteral("the event has no UID"));
    ev->summary = QString::fromUtf8(icalcomponent_get_summary(master));
    ev->allDay = start.is_date;
    ev->start = fromIcal(start, dtstart, zones);
    if (!start.is_date && !icaltime_is_utc(start) && !(ev->start == wallClock(start))) {
        if (icalparameter* tz = icalproperty_get_first_parameter(dtstart, ICAL_TZID_PARAMETER)) {
            ev->zone = zones.zone(QByteArray(icalparameter_get_tzid(tz)));
            ev->zoneStart = wallClock(start);
        }
    }
    if (icalproperty* p = icalcomponent_get_first_property(master, ICAL_DTEND_PROPERTY)) {
        ev->end = fromIcal(icalproperty_get_dtend(p), p, zones);
    } else if (icalproperty* d = icalcomponent_get_first_property(master, ICAL_DURATION_PROPERTY)) {
        ev->end = core::VbDate(ev->start.value + icaldurationtype_as_int(icalproperty_get_duration(d)) / 86400.0);
    } else {
        ev->end = core::VbDate(ev->start.value + (ev->allDay ? 1.0 : 0.0));
    }
    if (ev->end < ev->start)
        ev->end = ev->start;

    if (icalproperty* x = findX(master, kMeetingStatus))
        ev->meetingStatus = QByteArray(icalproperty_get_x(x)).toInt();
    else if (hasAttendees(master))
        ev->meetingStatus = icalcomponent_get_status(master) == ICAL_STATUS_CANCELLED ? olMeetingCanceled : olMeeting;
    ev->reminderOverride = findX(master, kReminderOverride) != nullptr;
    readAlarm(master, *ev);

    if (icalproperty* p = icalcomponent_get_first_property(master, ICAL_CREATED_PROPERTY))
        ev->created = stampOf(icalproperty_get_created(p));
    else if (icalproperty* s = icalcomponent_get_first_property(master, ICAL_DTSTAMP_PROPERTY))
        ev->created = stampOf(icalproperty_get_dtstamp(s));
    if (icalproperty* p = icalcomponent_get_first_property(master, ICAL_LASTMODIFIED_PROPERTY))
        ev->lastModified = stampOf(icalproperty_get_lastmodified(p));
    else
        ev->lastModified = ev->created;

    if (icalproperty* p = icalcomponent_get_first_property(master, ICAL_RRULE_PROPERTY)) {
        ev->recurrence = fromRule(icalproperty_get_rrule(p), ev->start, zones);
        for (icalproperty* x = icalcomponent_get_first_property(master, ICAL_EXDATE_PROPERTY); x;
             x = icalcomponent_get_next_property(master, ICAL_EXDATE_PROPERTY))
            ev->exdates << fromIcal(icalproperty_get_exdate(x), x, zones);
        for (icalcomponent* c = icalcomponent_get_first_component(root, ICAL_VEVENT_COMPONENT); c;
             c = icalcomponent_get_next_component(root, ICAL_VEVENT_COMPONENT)) {
            icalproperty* rid = icalcomponent_get_first_property(c, ICAL_RECURRENCEID_PROPERTY);
            icalproperty* s = icalcomponent_get_first_property(c, ICAL_DTSTART_PROPERTY);
            if (!rid || !s)
                continue;
            Override o;
            o.recurrenceId = fromIcal(icalproperty_get_recurrenceid(rid), rid, zones);
            o.start = fromIcal(icalproperty_get_dtstart(s), s, zones);
            icalproperty* e = icalcomponent_get_first_property(c, ICAL_DTEND_PROPERTY);
            o.end = e ? fromIcal(icalproperty_get_dtend(e), e, zones)
                      : core::VbDate(o.start.value + (ev->end.value - ev->start.value));
            ev->overrides << o;
        }
    }
    return ev;
}

void normaliseRecurrence(Recurrence& r, core::VbDate start) {
    if (r.type == -1)
        return;
    QByteArray rule;
    const QByteArray interval = QByteArrayLiteral(";INTERVAL=") + QByteArray::number(std::max(1, r.interval));
    const int mask = r.dayOfWeekMask ? r.dayOfWeekMask : weekdayBitOf(start);
    const int position = r.instance == 5 ? -1 : std::max(1, r.instance);
    switch (r.type) {
    case olRecursDaily:
        rule = QByteArrayLiteral("FREQ=DAILY") + interval;
        break;
    case olRecursWeekly:
        r.dayOfWeekMask = mask;
        rule = QByteArrayLiteral("FREQ=WEEKLY") + interval + ";BYDAY=" + weekdayNames(mask, 0);
        break;
    case olRecursMonthly:
        rule = QByteArrayLiteral("FREQ=MONTHLY") + interval +
               ";BYMONTHDAY=" + QByteArray::number(r.dayOfMonth ? r.dayOfMonth : core::Day(start));
        break;
    case olRecursMonthNth:
        rule = QByteArrayLiteral("FREQ=MONTHLY") + interval + ";BYDAY=" + weekdayNames(mask, 0) +
               ";BYSETPOS=" + QByteArray::number(position);
        break;
    case olRecursYearly:
        rule = QByteArrayLiteral("FREQ=YEARLY") + interval +
               ";BYMONTH=" + QByteArray::number(r.monthOfYear ? r.monthOfYear : core::Month(start)) +
               ";BYMONTHDAY=" + QByteArray::number(r.dayOfMonth ? r.dayOfMonth : core::Day(start));
        break;
    case olRecursYearNth:
        rule = QByteArrayLiteral("FREQ=YEARLY") + interval +
               ";BYMONTH=" + QByteArray::number(r.monthOfYear ? r.monthOfYear : core::Month(start)) +
               ";BYDAY=" + weekdayNames(mask, 0) + ";BYSETPOS=" + QByteArray::number(position);
        break;
    default:
        core::raise(err::InvalidArgument, QStringLiteral("RecurrencePattern"),
                    QStringLiteral("The recurrence type %1 is not known.").arg(r.type));
    }
    if (r.count > 0)
        rule += ";COUNT=" + QByteArray::number(r.count);
    else if (r.until)
        rule += ";UNTIL=" + core::Format(*r.until, QStringLiteral("yyyymmdd")).toLatin1() + "T235959";
    r.rule = rule;
}

QByteArray writeEvent(EventData& ev, core::VbDate now) {
    if (!ev.calendar) {
        ev.calendar = icalcomponent_new(ICAL_VCALENDAR_COMPONENT);
        icalcomponent_add_property(ev.calendar, icalproperty_new_version("2.0"));
        icalcomponent_add_property(ev.calendar, icalproperty_new_prodid("-//Tessarine//Tessarine//EN"));
        icalcomponent_add_component(ev.calendar, icalcomponent_new(ICAL_VEVENT_COMPONENT));
        ev.timesChanged = ev.recurrenceChanged = ev.reminderChanged = true;
    }
    icalcomponent* master = masterOf(ev.calendar);
    icalcomponent_set_uid(master, ev.uid.toUtf8().constData());
    removeAll(master, ICAL_SUMMARY_PROPERTY);
    icalcomponent_add_property(master, icalproperty_new_summary(ev.summary.toUtf8().constData()));

    if (ev.timesChanged) {
        ev.zone = QTimeZone();
        removeAll(master, ICAL_DTSTART_PROPERTY);
        removeAll(master, ICAL_DTEND_PROPERTY);
        removeAll(master, ICAL_DURATION_PROPERTY);
        icalcomponent_add_property(master, icalproperty_new_dtstart(toIcal(ev.start, ev.allDay)));
        core::VbDate end = ev.end;
        // An all-day event ends at the start of the following day, one day at least.
        if (ev.allDay && core::DateValue(end) <= core::DateValue(ev.start))
            end = core::VbDate(core::DateValue(ev.start).value + 1.0);
        icalcomponent_add_property(master, icalproperty_new_dtend(toIcal(end, ev.allDay)));
    }

    const int implied = hasAttendees(master) ? olMeeting : olNonMeeting;
    removeX(master, kMeetingStatus);
    if (ev.meetingStatus != implied)
        setX(master, kMeetingStatus, QByteArray::number(ev.meetingStatus));
    removeX(master, kReminderOverride);
    if (ev.reminderOverride)
        setX(master, kReminderOverride, QByteArrayLiteral("TRUE"));

    if (ev.reminderChanged) {
        while (icalcomponent* a = icalcomponent_get_first_component(master, ICAL_VALARM_COMPONENT)) {
            icalcomponent_remove_component(master, a);
            icalcomponent_free(a);
        }
        if (ev.reminderSet) {
            icalcomponent* alarm = icalcomponent_new(ICAL_VALARM_COMPONENT);
            icalcomponent_add_property(alarm, icalproperty_new_action(ICAL_ACTION_DISPLAY));
            icalcomponent_add_property(alarm, icalproperty_new_description(ev.summary.toUtf8().constData()));
            icaltriggertype trigger = icaltriggertype_from_int(-ev.reminderMinutes * 60);
            icalcomponent_add_property(alarm, icalproperty_new_trigger(trigger));
            icalcomponent_add_component(master, alarm);
        }
    }

    if (ev.recurrenceChanged) {
        removeAll(master, ICAL_RRULE_PROPERTY);
        if (ev.recurrence) {
            normaliseRecurrence(*ev.recurrence, ev.start);
            icalcomponent_add_property(
                master, icalproperty_new_rrule(icalrecurrencetype_from_string(ev.recurrence->rule.constData())));
        } else {
            removeAll(master, ICAL_EXDATE_PROPERTY);
            ev.exdates.clear();
            ev.overrides.clear();
            QList<icalcomponent*> moved;
            for (icalcomponent* c = icalcomponent_get_first_component(ev.calendar, ICAL_VEVENT_COMPONENT); c;
                 c = icalcomponent_get_next_component(ev.calendar, ICAL_VEVENT_COMPONENT))
                if (c != master)
                    moved << c;
            for (icalcomponent* c : moved) {
                icalcomponent_remove_component(ev.calendar, c);
                icalcomponent_free(c);
            }
        }
    }

    // The stamps are universal time, as the format demands of them.
    if (ev.created.wall.value == 0.0)
        ev.created = {now, false};
    if (!icalcomponent_get_first_property(master, ICAL_CREATED_PROPERTY))
        icalcomponent_add_property(master, icalproperty_new_created(toUtcStamp(ev.created.local())));
    ev.lastModified = {now, false};
    removeAll(master, ICAL_LASTMODIFIED_PROPERTY);
    icalcomponent_add_property(master, icalproperty_new_lastmodified(toUtcStamp(now)));
    removeAll(master, ICAL_DTSTAMP_PROPERTY);
    icalcomponent_add_property(master, icalproperty_new_dtstamp(toUtcStamp(now)));

    ev.timesChanged = ev.recurrenceChanged = ev.reminderChanged = false;
    char* text = icalcomponent_as_ical_string_r(ev.calendar);
    QByteArray out(text);
    std::free(text);
    return out;
}

QList<Occurrence> occurrences(const EventData& ev, core::VbDate from, core::VbDate to, int limit) {
    QList<Occurrence> out;
    const double length = ev.end.value - ev.start.value;
    if (!ev.recurrence) {
        if (ev.start >= from && ev.start <= to)
            out.append({ev.start, ev.end});
        return out;
    }
    Recurrence rule = *ev.recurrence;
    if (rule.rule.isEmpty())
        normaliseRecurrence(rule, ev.start);
    icalrecurrencetype recur = icalrecurrencetype_from_string(rule.rule.constData());
    if (recur.freq == ICAL_NO_RECURRENCE)
        return out;
    const bool inZone = ev.zone.isValid() && !ev.timesChanged;
    const core::VbDate first = inZone ? ev.zoneStart : ev.start;
    icalrecur_iterator* it = icalrecur_iterator_new(recur, toIcal(first, ev.allDay));
    if (!it)
        return out;
    // Without a count the walk may begin at the range's first day (a day early, for the zones) instead of the series'.
    if (recur.count == 0 && from.value - 1.0 > first.value)
        icalrecur_iterator_set_start(it, toIcal(core::VbDate(core::DateValue(from).value - 1.0), ev.allDay));
    for (icaltimetype t = icalrecur_iterator_next(it); !icaltime_is_null_time(t) && out.size() < limit;
         t = icalrecur_iterator_next(it)) {
        core::VbDate s = wallClock(t);
        if (inZone) {
            const QDateTime wall = core::toQDateTime(s);
            s = core::fromQDateTime(QDateTime(wall.date(), wall.time(), ev.zone).toLocalTime());
        }
        if (s > to)
            break;
        if (s < from)
            continue;
        auto sameAs = [&](core::VbDate d) { return std::fabs(d.value - s.value) < 1.0 / 86400.0; };
        if (std::any_of(ev.exdates.begin(), ev.exdates.end(), sameAs))
            continue;
        Occurrence o{s, core::VbDate(s.value + length)};
        for (const Override& ov : ev.overrides)
            if (sameAs(ov.recurrenceId))
                o = {ov.start, ov.end};
        out << o;
    }
    icalrecur_iterator_free(it);
    return out;
}

} // namespace tsr::pim::local
