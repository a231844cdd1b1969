// SPDX-License-Identifier: GPL-3.0-or-later
// The item objects of the local store: appointments (a whole event or one
// occurrence of a series), their recurrence pattern, contacts and contact groups.
// Each works on the store's parsed data and writes its file on Save.
#pragma once

#include "pim/Pim.h"
#include "pim/local/LocalStore.h"

#include <functional>
#include <optional>

namespace tsr::pim::local {

// Where an item lives: the store, its folder and its file (empty until the first Save).
struct ItemPlace {
    std::shared_ptr<LocalStore> store;
    QString rel;
    QString fileName;
};

class LocalAppointment : public AppointmentItem {
public:
    LocalAppointment(ItemPlace place, std::shared_ptr<EventData> data, std::optional<Occurrence> occurrence = {});

    int Class() const override { return olAppointment; }
    QString EntryID() const override { return m_data->uid; }
    core::VbDate CreationTime() const override { return m_data->created.local(); }
    core::VbDate LastModificationTime() const override { return m_data->lastModified.local(); }
    void Save() override;
    void Delete() override;

    core::VbDate Start() const override { return m_occurrence ? m_occurrence->start : m_data->start; }
    void setStart(core::VbDate start) override;
    core::VbDate End() const override { return m_occurrence ? m_occurrence->end : m_data->end; }
    void setEnd(core::VbDate end) override;
    QString Subject() const override { return m_data->summary; }
    void setSubject(const QString& subject) override { m_data->summary = subject; }
    int MeetingStatus() const override { return m_data->meetingStatus; }
    void setMeetingStatus(int status) override { m_data->meetingStatus = status; }
    bool AllDayEvent() const override { return m_data->allDay; }
    void setAllDayEvent(bool allDay) override;
    bool ReminderSet() const override { return m_data->reminderSet; }
    void setReminderSet(bool set) override;
    int32_t ReminderMinutesBeforeStart() const override { return m_data->reminderMinutes; }
    void setReminderMinutesBeforeStart(int32_t minutes) override;
    bool ReminderOverrideDefault() const override { return m_data->reminderOverride; }
    void setReminderOverrideDefault(bool override) override { m_data->reminderOverride = override; }
    bool IsRecurring() const override { return m_data->recurrence.has_value(); }
    std::shared_ptr<RecurrencePattern> GetRecurrencePattern() override;
    void ClearRecurrencePattern() override;

private:
    void noOccurrence(const char* member) const;

    ItemPlace m_place;
    std::shared_ptr<EventData> m_data;
    std::optional<Occurrence> m_occurrence;
};

class LocalContact : public ContactItem {
public:
    LocalContact(ItemPlace place, std::shared_ptr<ContactData> data);

    int Class() const override { return olContact; }
    QString EntryID() const override { return m_data->text(QStringLiteral("UID")); }
    core::VbDate CreationTime() const override { return m_data->created(); }
    core::VbDate LastModificationTime() const override { return m_data->lastModified(); }
    void Save() override;
    void Delete() override;

    QString FirstName() const override { return namePart(1); }
    void setFirstName(const QString& v) override { setNamePart(1, v); }
    QString LastName() const override { return namePart(0); }
    void setLastName(const QString& v) override { setNamePart(0, v); }
    QString FullName() const override { return m_data->text(QStringLiteral("FN")); }
    QString FileAs() const override;
    void setFileAs(const QString& v) override { m_data->setText(QStringLiteral("X-TESSARINE-FILEAS"), v); }
    QString CompanyName() const override;
    void setCompanyName(const QString& v) override;

    QString HomeAddressStreet() const override { return address(true, 2); }
    void setHomeAddressStreet(const QString& v) override { setAddress(true, 2, v); }
    QString HomeAddressPostalCode() const override { return address(true, 5); }
    void setHomeAddressPostalCode(const QString& v) override { setAddress(true, 5, v); }
    QString HomeAddressCity() const override { return address(true, 3); }
    void setHomeAddressCity(const QString& v) override { setAddress(true, 3, v); }
    QString HomeAddressCountry() const override { return address(true, 6); }
    void setHomeAddressCountry(const QString& v) override { setAddress(true, 6, v); }
    QString BusinessAddressStreet() const override { return address(false, 2); }
    void setBusinessAddressStreet(const QString& v) override { setAddress(false, 2, v); }
    QString BusinessAddressPostalCode() const override { return address(false, 5); }
    void setBusinessAddressPostalCode(const QString& v) override { setAddress(false, 5, v); }
    QString BusinessAddressCity() const override { return address(false, 3); }
    void setBusinessAddressCity(const QString& v) override { setAddress(false, 3, v); }
    QString BusinessAddressCountry() const override { return address(false, 6); }
    void setBusinessAddressCountry(const QString& v) override { setAddress(false, 6, v); }

    QString HomeTelephoneNumber() const override { return phone(Phone::Home); }
    void setHomeTelephoneNumber(const QString& v) override { setPhone(Phone::Home, v); }
    QString BusinessTelephoneNumber() const override { return phone(Phone::Business); }
    void setBusinessTelephoneNumber(const QString& v) override { setPhone(Phone::Business, v); }
    QString MobileTelephoneNumber() const override { return phone(Phone::Mobile); }
    void setMobileTelephoneNumber(const QString& v) override { setPhone(Phone::Mobile, v); }
    QString HomeFaxNumber() const override { return phone(Phone::HomeFax); }
    void setHomeFaxNumber(const QString& v) override { setPhone(Phone::HomeFax, v); }
    QString BusinessFaxNumber() const override { return phone(Phone::BusinessFax); }
    void setBusinessFaxNumber(const QString& v) override { setPhone(Phone::BusinessFax, v); }

    QString Email1Address() const override { return m_data->text(QStringLiteral("EMAIL")); }
    void setEmail1Address(const QString& v) override;
    QString WebPage() const override { return m_data->text(QStringLiteral("URL")); }
    void setWebPage(const QString& v) override { m_data->setText(QStringLiteral("URL"), v); }
    QString Categories() const override;
    void setCategories(const QString& v) override;

private:
    enum class Phone { Home, Business, Mobile, HomeFax, BusinessFax };
    QString namePart(int index) const;
    void setNamePart(int index, const QString& v);
    VCardProperty* findAddress(bool home) const;
    QString address(bool home, int part) const;
    void setAddress(bool home, int part, const QString& v);
    VCardProperty* findPhone(Phone kind) const;
    QString phone(Phone kind) const;
    void setPhone(Phone kind, const QString& v);

    ItemPlace m_place;
    std::shared_ptr<ContactData> m_data;
    bool m_namesChanged = false;
};

// A contact group: in a contact folder, but no contact item.
class LocalDistList : public Item {
public:
    LocalDistList(ItemPlace place, std::shared_ptr<ContactData> data)
        : m_place(std::move(place)), m_data(std::move(data)) {}
    int Class() const override { return olDistributionList; }
    QString EntryID() const override { return m_data->text(QStringLiteral("UID")); }
    core::VbDate CreationTime() const override { return m_data->created(); }
    core::VbDate LastModificationTime() const override { return m_data->lastModified(); }
    void Save() override;
    void Delete() override;

private:
    ItemPlace m_place;
    std::shared_ptr<ContactData> m_data;
};

} // namespace tsr::pim::local
