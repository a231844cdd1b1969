// SPDX-License-Identifier: GPL-3.0-or-later
// Appointments of the local store and their recurrence patterns. The pattern's
// start time, end time and duration are views of the event's start and end, so
// whichever the caller sets last decides, as in the object model.
#include "core/Error.h"
#include "pim/local/LocalItemTypes.h"

#include <QUuid>
#include <cmath>

namespace tsr::pim::local {

namespace {

constexpr double kMinute = 1.0 / 1440.0;

core::VbDate plus(core::VbDate d, double days) {
    return core::VbDate(d.value + days);
}

class LocalPattern : public RecurrencePattern {
public:
    explicit LocalPattern(std::shared_ptr<EventData> data) : m_data(std::move(data)) {}

    int RecurrenceType() const override { return rec().type; }
    void setRecurrenceType(int type) override {
        if (type < olRecursDaily || type > olRecursYearNth || type == 4)
            core::raise(err::InvalidArgument, QStringLiteral("RecurrencePattern"),
                        QStringLiteral("The recurrence type %1 is not known.").arg(type));
        // A new type starts from the start's day, month and weekday, as the object model does.
        Recurrence& r = rec();
        r.type = type;
        r.dayOfWeekMask = 1 << (core::Weekday(m_data->start) - 1);
        r.dayOfMonth = core::Day(m_data->start);
        r.monthOfYear = core::Month(m_data->start);
        r.instance = std::min(5, (core::Day(m_data->start) + 6) / 7);
        changed();
    }
    core::VbDate PatternStartDate() const override { return core::DateValue(m_data->start); }
    void setPatternStartDate(core::VbDate date) override {
        const double length = m_data->end.value - m_data->start.value;
        m_data->start = core::VbDate(core::DateValue(date).value + core::TimeValue(m_data->start).value);
        m_data->end = plus(m_data->start, length);
        m_data->timesChanged = true;
        changed();
    }
    std::optional<core::VbDate> PatternEndDate() const override { return rec().until; }
    int Occurrences() const override { return rec().count; }
    core::VbDate StartTime() const override { return core::TimeValue(m_data->start); }
    void setStartTime(core::VbDate time) override {
        const double length = m_data->end.value - m_data->start.value;
        m_data->start = core::VbDate(core::DateValue(m_data->start).value + core::TimeValue(time).value);
        m_data->end = plus(m_data->start, length);
        m_data->timesChanged = true;
    }
    core::VbDate EndTime() const override { return core::TimeValue(m_data->end); }
    void setEndTime(core::VbDate time) override {
        double minutes = std::round((core::TimeValue(time).value - StartTime().value) * 1440.0);
        if (minutes < 0)
            minutes += 1440.0;
        setDuration(int32_t(minutes));
    }
    int32_t Duration() const override {
        return int32_t(std::lround((m_data->end.value - m_data->start.value) * 1440.0));
    }
    void setDuration(int32_t minutes) override {
        m_data->end = plus(m_data->start, std::max(0, minutes) * kMinute);
        m_data->timesChanged = true;
    }
    int Interval() const override { return rec().interval; }
    void setInterval(int interval) override {
        rec().interval = std::max(1, interval);
        changed();
    }
    int DayOfWeekMask() const override { return rec().dayOfWeekMask; }
    void setDayOfWeekMask(int mask) override {
        rec().dayOfWeekMask = mask & 127;
        changed();
    }
    int DayOfMonth() const override { return rec().dayOfMonth; }
    void setDayOfMonth(int day) override {
        if (day < 1 || day > 31)
            core::raise(err::InvalidArgument, QStringLiteral("RecurrencePattern"),
                        QStringLiteral("The day of month %1 is out of range.").arg(day));
        rec().dayOfMonth = day;
        changed();
    }
    int MonthOfYear() const override { return rec().monthOfYear; }
    void setMonthOfYear(int month) override {
        rec().monthOfYear = std::clamp(month, 1, 12);
        changed();
    }
    int Instance() const override { return rec().instance; }
    void setInstance(int instance) override {
        rec().instance = std::clamp(instance, 1, 5);
        changed();
    }

private:
    Recurrence& rec() const { return *m_data->recurrence; }
    void changed() {
        m_data->recurrenceChanged = true;
        rec().rule.clear();
        if (rec().type >= 0)
            normaliseRecurrence(rec(), m_data->start);
    }

    std::shared_ptr<EventData> m_data;
};

} // namespace

LocalAppointment::LocalAppointment(ItemPlace place, std::shared_ptr<EventData> data,
                                   std::optional<Occurrence> occurrence)
    : m_place(std::move(place)), m_data(std::move(data)), m_occurrence(occurrence) {}

void LocalAppointment::noOccurrence(const char* member) const {
    if (m_occurrence)
        core::raise(err::NotSupported, QStringLiteral("AppointmentItem"),
                    QStringLiteral("%1 on a single occurrence is not supported; change the series instead.")
                        .arg(QString::fromLatin1(member)));
}

void LocalAppointment::setStart(core::VbDate start) {
    noOccurrence("Start");
    const double length = m_data->end.value - m_data->start.value;
    m_data->start = start;
    m_data->end = plus(start, length);
    m_data->timesChanged = true;
}

void LocalAppointment::setEnd(core::VbDate end) {
    noOccurrence("End");
    m_data->end = end < m_data->start ? m_data->start : end;
    m_data->timesChanged = true;
}

void LocalAppointment::setAllDayEvent(bool allDay) {
    noOccurrence("AllDayEvent");
    if (allDay == m_data->allDay)
        return;
    m_data->allDay = allDay;
    if (allDay) {
        const double days = std::max(1.0, std::ceil(m_data->end.value - core::DateValue(m_data->start).value - 1e-9));
        m_data->start = core::DateValue(m_data->start);
        m_data->end = plus(m_data->start, days);
    }
    m_data->timesChanged = true;
}

void LocalAppointment::setReminderSet(bool set) {
    m_data->reminderSet = set;
    m_data->reminderChanged = true;
}

void LocalAppointment::setReminderMinutesBeforeStart(int32_t minutes) {
    m_data->reminderMinutes = minutes;
    m_data->reminderChanged = true;
}

std::shared_ptr<RecurrencePattern> LocalAppointment::GetRecurrencePattern() {
    if (!m_data->recurrence) {
        Recurrence r;
        r.type = olRecursWeekly;
        r.dayOfWeekMask = 1 << (core::Weekday(m_data->start) - 1);
        normaliseRecurrence(r, m_data->start);
        m_data->recurrence = r;
        m_data->recurrenceChanged = true;
    }
    return std::make_shared<LocalPattern>(m_data);
}

void LocalAppointment::ClearRecurrencePattern() {
    if (!m_data->recurrence)
        return;
    m_data->recurrence.reset();
    m_data->recurrenceChanged = true;
}

void LocalAppointment::Save() {
    LocalStore& store = *m_place.store;
    if (m_data->uid.isEmpty())
        m_data->uid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    if (m_place.fileName.isEmpty())
        m_place.fileName = store.newFileName(m_place.rel, m_data->uid, QStringLiteral(".ics"));
    const QByteArray text = writeEvent(*m_data, store.ctx().clock.Now());
    store.writeFile(m_place.rel, m_place.fileName, text).event = m_data;
}

void LocalAppointment::Delete() {
    // Removing the file would take the whole series with the one occurrence.
    noOccurrence("Delete");
    if (!m_place.fileName.isEmpty())
        m_place.store->removeFile(m_place.rel, m_place.fileName);
    m_place.fileName.clear();
}

} // namespace tsr::pim::local
