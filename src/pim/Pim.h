// SPDX-License-Identifier: GPL-3.0-or-later
// The PIM's object model as the program uses it: application, namespace,
// folders, item collections, appointments, contacts and recurrence patterns,
// with the members the logic reads and sets. Abstract, so that another store
// than the local one could stand behind it. Failures raise numbered TsrErrors.
#pragma once

#include "core/Error.h"
#include "core/VbDate.h"

#include <QList>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

namespace tsr::pim {

// Default folders, item types and item classes keep the object model's numbers.
inline constexpr int olFolderCalendar = 9;
inline constexpr int olFolderContacts = 10;
inline constexpr int olAppointmentItem = 1;
inline constexpr int olContactItem = 2;
inline constexpr int olAppointment = 26;
inline constexpr int olContact = 40;
inline constexpr int olDistributionList = 69;

// Meeting states.
inline constexpr int olNonMeeting = 0;
inline constexpr int olMeeting = 1;
inline constexpr int olMeetingReceived = 3;
inline constexpr int olMeetingCanceled = 5;

// Recurrence types.
inline constexpr int olRecursDaily = 0;
inline constexpr int olRecursWeekly = 1;
inline constexpr int olRecursMonthly = 2;
inline constexpr int olRecursMonthNth = 3;
inline constexpr int olRecursYearly = 5;
inline constexpr int olRecursYearNth = 6;

// Day bits of DayOfWeekMask: Sunday 1 ... Saturday 64.
inline constexpr int olSunday = 1;
inline constexpr int olSaturday = 64;

// Error numbers of the object model, as the messaging layer reports them.
namespace err {
inline constexpr int32_t NotFound = static_cast<int32_t>(0x8004010F);
inline constexpr int32_t InvalidArgument = static_cast<int32_t>(0x80070057);
inline constexpr int32_t CorruptData = static_cast<int32_t>(0x8004011B);
inline constexpr int32_t DiskError = static_cast<int32_t>(0x80040116);
inline constexpr int32_t IndexOutOfBounds = static_cast<int32_t>(0x8002000B);
inline constexpr int32_t NotSupported = static_cast<int32_t>(0x80040102);
} // namespace err

class Folder;
class Items;
class Namespace;

class Item {
public:
    virtual ~Item() = default;
    virtual int Class() const = 0;
    virtual QString EntryID() const = 0;
    virtual core::VbDate CreationTime() const = 0;
    virtual core::VbDate LastModificationTime() const = 0;
    virtual void Save() = 0;
    virtual void Delete() = 0;
};

class RecurrencePattern {
public:
    virtual ~RecurrencePattern() = default;
    virtual int RecurrenceType() const = 0;
    virtual void setRecurrenceType(int type) = 0;
    virtual core::VbDate PatternStartDate() const = 0;
    virtual void setPatternStartDate(core::VbDate date) = 0;
    // The last day of the series, or nothing for a series without end.
    virtual std::optional<core::VbDate> PatternEndDate() const = 0;
    virtual int Occurrences() const = 0; // 0 when the series is not counted
    virtual core::VbDate StartTime() const = 0;
    virtual void setStartTime(core::VbDate time) = 0;
    virtual core::VbDate EndTime() const = 0;
    virtual void setEndTime(core::VbDate time) = 0;
    virtual int32_t Duration() const = 0; // minutes
    virtual void setDuration(int32_t minutes) = 0;
    virtual int Interval() const = 0;
    virtual void setInterval(int interval) = 0;
    virtual int DayOfWeekMask() const = 0;
    virtual void setDayOfWeekMask(int mask) = 0;
    virtual int DayOfMonth() const = 0;
    virtual void setDayOfMonth(int day) = 0;
    virtual int MonthOfYear() const = 0;
    virtual void setMonthOfYear(int month) = 0;
    virtual int Instance() const = 0; // the n-th weekday of types 3 and 6; 5 is the last
    virtual void setInstance(int instance) = 0;
};

class AppointmentItem : public Item {
public:
    virtual core::VbDate Start() const = 0;
    virtual void setStart(core::VbDate start) = 0;
    virtual core::VbDate End() const = 0;
    virtual void setEnd(core::VbDate end) = 0;
    virtual QString Subject() const = 0;
    virtual void setSubject(const QString& subject) = 0;
    virtual int MeetingStatus() const = 0;
    virtual void setMeetingStatus(int status) = 0;
    virtual bool AllDayEvent() const = 0;
    virtual void setAllDayEvent(bool allDay) = 0;
    virtual bool ReminderSet() const = 0;
    virtual void setReminderSet(bool set) = 0;
    virtual int32_t ReminderMinutesBeforeStart() const = 0;
    virtual void setReminderMinutesBeforeStart(int32_t minutes) = 0;
    virtual bool ReminderOverrideDefault() const = 0;
    virtual void setReminderOverrideDefault(bool override) = 0;
    virtual bool IsRecurring() const = 0;
    // Makes the item a series (weekly on the start's day) when it was none.
    virtual std::shared_ptr<RecurrencePattern> GetRecurrencePattern() = 0;
    virtual void ClearRecurrencePattern() = 0;
};

class ContactItem : public Item {
public:
    virtual QString FirstName() const = 0;
    virtual void setFirstName(const QString& v) = 0;
    virtual QString LastName() const = 0;
    virtual void setLastName(const QString& v) = 0;
    virtual QString FullName() const = 0;
    virtual QString FileAs() const = 0;
    virtual void setFileAs(const QString& v) = 0;
    virtual QString CompanyName() const = 0;
    virtual void setCompanyName(const QString& v) = 0;

    virtual QString HomeAddressStreet() const = 0;
    virtual void setHomeAddressStreet(const QString& v) = 0;
    virtual QString HomeAddressPostalCode() const = 0;
    virtual void setHomeAddressPostalCode(const QString& v) = 0;
    virtual QString HomeAddressCity() const = 0;
    virtual void setHomeAddressCity(const QString& v) = 0;
    virtual QString HomeAddressCountry() const = 0;
    virtual void setHomeAddressCountry(const QString& v) = 0;
    virtual QString BusinessAddressStreet() const = 0;
    virtual void setBusinessAddressStreet(const QString& v) = 0;
    virtual QString BusinessAddressPostalCode() const = 0;
    virtual void setBusinessAddressPostalCode(const QString& v) = 0;
    virtual QString BusinessAddressCity() const = 0;
    virtual void setBusinessAddressCity(const QString& v) = 0;
    virtual QString BusinessAddressCountry() const = 0;
    virtual void setBusinessAddressCountry(const QString& v) = 0;

    virtual QString HomeTelephoneNumber() const = 0;
    virtual void setHomeTelephoneNumber(const QString& v) = 0;
    virtual QString BusinessTelephoneNumber() const = 0;
    virtual void setBusinessTelephoneNumber(const QString& v) = 0;
    virtual QString MobileTelephoneNumber() const = 0;
    virtual void setMobileTelephoneNumber(const QString& v) = 0;
    virtual QString HomeFaxNumber() const = 0;
    virtual void setHomeFaxNumber(const QString& v) = 0;
    virtual QString BusinessFaxNumber() const = 0;
    virtual void setBusinessFaxNumber(const QString& v) = 0;

    virtual QString Email1Address() const = 0;
    virtual void setEmail1Address(const QString& v) = 0;
    virtual QString WebPage() const = 0;
    virtual void setWebPage(const QString& v) = 0;
    virtual QString Categories() const = 0;
    virtual void setCategories(const QString& v) = 0;
};

class Items {
public:
    virtual ~Items() = default;
    virtual bool IncludeRecurrences() const = 0;
    virtual void setIncludeRecurrences(bool include) = 0;
    // "[Start]", "[LastName]", "[FileAs]", ...; an unknown property raises an error.
    virtual void Sort(const QString& property, bool descending = false) = 0;
    // The first item the filter matches, or none; a filter it cannot read raises an error.
    virtual std::shared_ptr<Item> Find(const QString& filter) = 0;
    virtual std::shared_ptr<Item> FindNext() = 0;
    virtual int Count() = 0;
    virtual std::shared_ptr<Item> ItemAt(int index) = 0; // 1-based, as the object model counts
    // A new item of the folder's default type, stored on its first Save.
    virtual std::shared_ptr<Item> Add() = 0;
};

class Folder {
public:
    virtual ~Folder() = default;
    virtual QString Name() const = 0;
    // The folder above, or none at the top of a store.
    virtual std::shared_ptr<Folder> Parent() const = 0;
    virtual QString EntryID() const = 0;
    virtual QString StoreID() const = 0;
    virtual std::shared_ptr<pim::Items> Items() = 0;
    virtual QList<std::shared_ptr<Folder>> Folders() = 0;
    virtual int DefaultItemType() const = 0;
};

class Namespace {
public:
    virtual ~Namespace() = default;
    virtual std::shared_ptr<Folder> GetDefaultFolder(int folderType) = 0;
    virtual std::shared_ptr<Folder> GetFolderFromID(const QString& entryID, const QString& storeID = {}) = 0;
    virtual std::shared_ptr<Item> GetItemFromID(const QString& entryID, const QString& storeID = {}) = 0;
    virtual QList<std::shared_ptr<Folder>> Folders() = 0;
};

class Application {
public:
    virtual ~Application() = default;
    virtual std::shared_ptr<Namespace> GetNamespace(const QString& type) = 0;
    virtual QString Name() const = 0;
    virtual QString Version() const = 0;
};

// The item as an appointment or a contact; none when it is another class.
inline std::shared_ptr<AppointmentItem> asAppointment(const std::shared_ptr<Item>& item) {
    return std::dynamic_pointer_cast<AppointmentItem>(item);
}
inline std::shared_ptr<ContactItem> asContact(const std::shared_ptr<Item>& item) {
    return std::dynamic_pointer_cast<ContactItem>(item);
}

// The parent's name of a folder, empty at the top.
inline QString parentName(const Folder& folder) {
    auto parent = folder.Parent();
    return parent ? parent->Name() : QString();
}

} // namespace tsr::pim
