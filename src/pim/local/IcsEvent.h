// SPDX-License-Identifier: GPL-3.0-or-later
// One calendar item of the local store: an iCalendar file with one event
// (and the changed occurrences of its series), read and written through
// libical. Properties the program does not know are kept as they stand.
#pragma once

#include "core/VbDate.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QTimeZone>
#include <memory>
#include <optional>

typedef struct icalcomponent_impl icalcomponent;

namespace tsr::pim::local {

// A series as the object model describes it; `rule` holds the file's own rule text
// when it says more than these fields can (then RecurrenceType is -1).
struct Recurrence {
    int type = 1;
    int interval = 1;
    int dayOfWeekMask = 0;
    int dayOfMonth = 0;
    int monthOfYear = 0;
    int instance = 0;
    std::optional<core::VbDate> until;
    int count = 0;
    QByteArray rule;
};

// An occurrence moved or renamed in the file (a VEVENT with RECURRENCE-ID).
struct Override {
    core::VbDate recurrenceId;
    core::VbDate start;
    core::VbDate end;
};

// A moment as the file has it: its wall clock, and whether that is universal time.
// Turned into local time only when asked, which a read seldom does.
struct Stamp {
    core::VbDate wall;
    bool utc = false;
    core::VbDate local() const;
};

struct EventData {
    EventData() = default;
    EventData(const EventData&) = delete;
    EventData& operator=(const EventData&) = delete;
    ~EventData();

    QString uid;
    QString summary;
    core::VbDate start;
    core::VbDate end;
    bool allDay = false;
    int meetingStatus = 0;
    bool reminderSet = false;
    int32_t reminderMinutes = 15;
    bool reminderOverride = false;
    Stamp created;
    Stamp lastModified;
    std::optional<Recurrence> recurrence;
    QList<core::VbDate> exdates;
    QList<Override> overrides;

    // A start in another zone than the local one: a series steps in that zone's wall
    // clock, so that its occurrences keep their hour across that zone's clock changes.
    QTimeZone zone;
    core::VbDate zoneStart;

    // The parsed file, kept so that a save writes back what others put there.
    icalcomponent* calendar = nullptr;
    bool timesChanged = false;
    bool recurrenceChanged = false;
    bool reminderChanged = false;
};

// Time zones by name, looked up once per read of a folder.
class ZoneCache {
public:
    const QTimeZone& zone(const QByteArray& id);

private:
    QHash<QByteArray, QTimeZone> m_zones;
};

// Reads the text of an .ics file; raises pim::err::CorruptData naming the file.
std::unique_ptr<EventData> parseEvent(const QByteArray& text, const QString& path, ZoneCache& zones);
// The file's new text, with the fields written into the kept component.
QByteArray writeEvent(EventData& event, core::VbDate now);

// Rebuilds `rule` from the fields; a weekly series without days takes the start's day.
void normaliseRecurrence(Recurrence& r, core::VbDate start);

// Starts of the series' occurrences from `from` to `to` (both inclusive), at most `limit`.
struct Occurrence {
    core::VbDate start;
    core::VbDate end;
};
QList<Occurrence> occurrences(const EventData& event, core::VbDate from, core::VbDate to, int limit);

} // namespace tsr::pim::local
