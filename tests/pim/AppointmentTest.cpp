// SPDX-License-Identifier: GPL-3.0-or-later
// Appointments through Save and a fresh read of the store: every property the
// logic sets comes back, and what other tools wrote into a file stays.
#include "PimTestSupport.h"

namespace tsr::test {
namespace {

class AppointmentRoundTrip : public PimStoreTest {
protected:
    std::shared_ptr<pim::AppointmentItem> reread(const QString& entryID) {
        open();
        return pim::asAppointment(ns->GetItemFromID(entryID));
    }
};

// A timed appointment with a reminder keeps all its properties through a restart.
TEST_F(AppointmentRoundTrip, TimedWithReminder) {
    auto a = newAppointment();
    a->setMeetingStatus(pim::olNonMeeting);
    a->setReminderSet(true);
    a->setReminderMinutesBeforeStart(0);
    a->setReminderOverrideDefault(true);
    a->setStart(at(2026, 3, 10, 14, 0));
    a->setEnd(at(2026, 3, 10, 15, 45));
    a->setSubject(QStringLiteral("Zahnarzt; Dr. Müller, 2nd floor"));
    EXPECT_TRUE(a->EntryID().isEmpty());
    a->Save();
    const QString id = a->EntryID();
    ASSERT_FALSE(id.isEmpty());
    EXPECT_EQ(filesIn(QStringLiteral("calendar")).filter(QStringLiteral(".ics")).size(), 1);

    auto b = reread(id);
    ASSERT_TRUE(b);
    EXPECT_EQ(b->EntryID(), id);
    EXPECT_EQ(b->Class(), pim::olAppointment);
    EXPECT_EQ(b->Start(), at(2026, 3, 10, 14, 0));
    EXPECT_EQ(b->End(), at(2026, 3, 10, 15, 45));
    EXPECT_EQ(b->Subject(), QStringLiteral("Zahnarzt; Dr. Müller, 2nd floor"));
    EXPECT_FALSE(b->AllDayEvent());
    EXPECT_TRUE(b->ReminderSet());
    EXPECT_EQ(b->ReminderMinutesBeforeStart(), 0);
    EXPECT_TRUE(b->ReminderOverrideDefault());
    EXPECT_EQ(b->MeetingStatus(), pim::olNonMeeting);
    EXPECT_FALSE(b->IsRecurring());
    EXPECT_EQ(b->CreationTime(), at(2026, 3, 2, 9, 15));
    EXPECT_EQ(b->LastModificationTime(), at(2026, 3, 2, 9, 15));
    // Local wall-clock times are written floating: no zone, no UTC shift.
    EXPECT_TRUE(readFile(QStringLiteral("calendar/") +
                         filesIn(QStringLiteral("calendar")).filter(QStringLiteral(".ics")).first())
                    .contains("DTSTART:20260310T140000"));
}

// An all-day event is a date-valued start and ends at the next midnight.
TEST_F(AppointmentRoundTrip, AllDayEvent) {
    auto a = newAppointment();
    a->setStart(at(2026, 4, 3, 11, 0));
    a->setAllDayEvent(true);
    a->setSubject(QStringLiteral("Holiday"));
    a->Save();
    EXPECT_EQ(a->Start(), at(2026, 4, 3));
    EXPECT_EQ(a->End(), at(2026, 4, 4));
    const QByteArray text = readFile(QStringLiteral("calendar/") +
                                     filesIn(QStringLiteral("calendar")).filter(QStringLiteral(".ics")).first());
    EXPECT_TRUE(text.contains("DTSTART;VALUE=DATE:20260403"));
    EXPECT_TRUE(text.contains("DTEND;VALUE=DATE:20260404"));
    auto b = reread(a->EntryID());
    EXPECT_TRUE(b->AllDayEvent());
    EXPECT_EQ(b->Start(), at(2026, 4, 3));
    EXPECT_EQ(b->End(), at(2026, 4, 4));
}

// MeetingStatus 1 stays without attendees; a file with attendees reads as a meeting
// and can be turned into a plain appointment.
TEST_F(AppointmentRoundTrip, MeetingStatusWithAndWithoutAttendees) {
    auto a = newAppointment();
    a->setMeetingStatus(pim::olMeeting);
    a->Save();
    EXPECT_EQ(reread(a->EntryID())->MeetingStatus(), pim::olMeeting);

    writeFile(QStringLiteral("calendar/team.ics"),
              "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:x\r\nBEGIN:VEVENT\r\nUID:team-1\r\n"
              "DTSTART:20260305T100000\r\nDTEND:20260305T110000\r\nSUMMARY:Team\r\n"
              "ORGANIZER:mailto:boss@example.org\r\nATTENDEE:mailto:me@example.org\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    auto team = reread(QStringLiteral("team-1"));
    EXPECT_EQ(team->MeetingStatus(), pim::olMeeting);
    team->setMeetingStatus(pim::olNonMeeting);
    team->Save();
    EXPECT_EQ(reread(QStringLiteral("team-1"))->MeetingStatus(), pim::olNonMeeting);
}

// Switching the reminder off takes the alarm out of the file; minutes come back as written.
TEST_F(AppointmentRoundTrip, ReminderOnAndOff) {
    auto a = newAppointment();
    a->setReminderSet(true);
    a->setReminderMinutesBeforeStart(30);
    a->Save();
    auto b = reread(a->EntryID());
    EXPECT_TRUE(b->ReminderSet());
    EXPECT_EQ(b->ReminderMinutesBeforeStart(), 30);
    b->setReminderSet(false);
    b->Save();
    EXPECT_FALSE(reread(a->EntryID())->ReminderSet());
    EXPECT_FALSE(readFile(QStringLiteral("calendar/") + a->EntryID() + QStringLiteral(".ics")).contains("VALARM"));
}

// A save changes what the program set and keeps what other tools wrote.
TEST_F(AppointmentRoundTrip, ForeignPropertiesSurviveASave) {
    writeFile(QStringLiteral("calendar/x.ics"),
              "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:other\r\nBEGIN:VEVENT\r\nUID:foreign-1\r\n"
              "DTSTART:20260306T080000\r\nDTEND:20260306T090000\r\nSUMMARY:Old\r\nLOCATION:Room 4\r\n"
              "DESCRIPTION:Bring slides\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    open();
    auto a = pim::asAppointment(ns->GetItemFromID(QStringLiteral("foreign-1")));
    a->setSubject(QStringLiteral("New"));
    a->setStart(at(2026, 3, 6, 9, 0)); // moving the start keeps the length
    EXPECT_EQ(a->End(), at(2026, 3, 6, 10, 0));
    a->Save();
    const QByteArray text = readFile(QStringLiteral("calendar/x.ics"));
    EXPECT_TRUE(text.contains("LOCATION:Room 4"));
    EXPECT_TRUE(text.contains("DESCRIPTION:Bring slides"));
    EXPECT_TRUE(text.contains("SUMMARY:New"));
    EXPECT_FALSE(text.contains("SUMMARY:Old"));
    EXPECT_EQ(filesIn(QStringLiteral("calendar")).filter(QStringLiteral(".ics")), QStringList{QStringLiteral("x.ics")});
}

// Delete removes the file, and the item is no longer found by its id.
TEST_F(AppointmentRoundTrip, DeleteRemovesTheItem) {
    auto a = newAppointment();
    a->Save();
    const QString id = a->EntryID();
    a->Delete();
    EXPECT_TRUE(filesIn(QStringLiteral("calendar")).filter(QStringLiteral(".ics")).isEmpty());
    try {
        ns->GetItemFromID(id);
        FAIL() << "a deleted item was found";
    } catch (const core::TsrError& e) {
        EXPECT_EQ(e.number(), pim::err::NotFound);
    }
}

} // namespace
} // namespace tsr::test
