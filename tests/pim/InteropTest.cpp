// SPDX-License-Identifier: GPL-3.0-or-later
// The store shared with khal and khard: they list what Tessarine wrote, and
// Tessarine reads what they made. Both run as real processes over a temporary
// HOME with their own configuration pointing at the test store.
#include "PimTestSupport.h"

#include "support/UserTools.h"

namespace tsr::test {
namespace {

class Interop : public PimStoreTest {
protected:
    void SetUp() override {
        PimStoreTest::SetUp();
        m_tools = std::make_unique<UserTools>(root());
    }

    QString run(const QString& program, const QStringList& args, const QByteArray& input = {}) {
        return m_tools->run(program, args, input);
    }
    static bool installed(const QString& program) { return UserTools::installed(program); }
    static QStringList lines(const QString& text) { return UserTools::lines(text); }

private:
    std::unique_ptr<UserTools> m_tools;
};

// khal lists the single event, the all-day event and the weekly series on their days.
TEST_F(Interop, KhalListsWhatTessarineWrote) {
    if (!installed(QStringLiteral("khal")))
        GTEST_SKIP() << "khal is not installed: the khal checks did not run";
    auto single = newAppointment();
    single->setStart(at(2026, 11, 23, 10, 0));
    single->setEnd(at(2026, 11, 23, 11, 30));
    single->setSubject(QStringLiteral("Dentist"));
    single->setReminderSet(true);
    single->setReminderMinutesBeforeStart(15);
    single->Save();
    auto allDay = newAppointment();
    allDay->setStart(at(2026, 11, 25));
    allDay->setAllDayEvent(true);
    allDay->setSubject(QStringLiteral("Holiday"));
    allDay->Save();
    auto weekly = newAppointment();
    weekly->setSubject(QStringLiteral("Standup"));
    auto p = weekly->GetRecurrencePattern();
    p->setPatternStartDate(at(2026, 11, 24));
    p->setStartTime(core::TimeSerial(9, 0, 0));
    p->setDuration(30);
    p->setRecurrenceType(pim::olRecursWeekly);
    p->setDayOfWeekMask(4 | 32); // Tuesday and Friday
    weekly->Save();

    const QStringList listed = lines(
        run(QStringLiteral("khal"), {QStringLiteral("list"), QStringLiteral("2026-11-23"), QStringLiteral("2026-12-02"),
                                     QStringLiteral("--format"), QStringLiteral("{start-date} {start-time} {title}"),
                                     QStringLiteral("--day-format"), QString()}));
    EXPECT_EQ(listed,
              (QStringList{QStringLiteral("2026-11-23 10:00 Dentist"), QStringLiteral("2026-11-24 09:00 Standup"),
                           QStringLiteral("2026-11-25 Holiday"), QStringLiteral("2026-11-27 09:00 Standup"),
                           QStringLiteral("2026-12-01 09:00 Standup")}));
}

// khard lists the contacts with their phones and addresses.
TEST_F(Interop, KhardListsWhatTessarineWrote) {
    if (!installed(QStringLiteral("khard")))
        GTEST_SKIP() << "khard is not installed: the khard checks did not run";
    auto home = newContact();
    home->setFirstName(QStringLiteral("Anna"));
    home->setLastName(QStringLiteral("Private"));
    home->setHomeTelephoneNumber(QStringLiteral("+49 30 111"));
    home->setMobileTelephoneNumber(QStringLiteral("+49 170 222"));
    home->setHomeAddressStreet(QStringLiteral("Gartenweg 1"));
    home->setHomeAddressPostalCode(QStringLiteral("50667"));
    home->setHomeAddressCity(QStringLiteral("Koeln"));
    home->Save();
    auto work = newContact();
    work->setFirstName(QStringLiteral("Bob"));
    work->setLastName(QStringLiteral("Business"));
    work->setCompanyName(QStringLiteral("Acme"));
    work->setBusinessTelephoneNumber(QStringLiteral("+49 89 333"));
    work->setBusinessAddressStreet(QStringLiteral("Hauptstr. 5"));
    work->setBusinessAddressCity(QStringLiteral("Muenchen"));
    work->Save();

    const QString list = run(QStringLiteral("khard"), {QStringLiteral("list")});
    EXPECT_TRUE(list.contains(QStringLiteral("Anna Private")));
    EXPECT_TRUE(list.contains(QStringLiteral("Bob Business")));
    const QStringList phones = lines(run(QStringLiteral("khard"), {QStringLiteral("phone")}));
    EXPECT_TRUE(phones.contains(QStringLiteral("Anna Private home +49 30 111"))) << phones.join(u'|').toStdString();
    EXPECT_TRUE(phones.contains(QStringLiteral("Anna Private cell +49 170 222"))) << phones.join(u'|').toStdString();
    EXPECT_TRUE(phones.contains(QStringLiteral("Bob Business work +49 89 333"))) << phones.join(u'|').toStdString();
    const QString addresses = run(QStringLiteral("khard"), {QStringLiteral("postaddress")});
    EXPECT_TRUE(addresses.contains(QStringLiteral("Gartenweg 1")));
    EXPECT_TRUE(addresses.contains(QStringLiteral("50667 Koeln")));
    EXPECT_TRUE(addresses.contains(QStringLiteral("Hauptstr. 5")));
    EXPECT_TRUE(lines(addresses).filter(QStringLiteral("Bob Business work")).size() == 1) << addresses.toStdString();
}

// Events made with khal new come back with their times, alarm and series.
TEST_F(Interop, TessarineReadsKhalEvents) {
    if (!installed(QStringLiteral("khal")))
        GTEST_SKIP() << "khal is not installed: the khal checks did not run";
    run(QStringLiteral("khal"), {QStringLiteral("new"), QStringLiteral("-a"), QStringLiteral("tsr"),
                                 QStringLiteral("-m"), QStringLiteral("15m"), QStringLiteral("2026-11-23"),
                                 QStringLiteral("10:00"), QStringLiteral("11:30"), QStringLiteral("Dentist")});
    run(QStringLiteral("khal"), {QStringLiteral("new"), QStringLiteral("-a"), QStringLiteral("tsr"),
                                 QStringLiteral("-r"), QStringLiteral("weekly"), QStringLiteral("2026-11-24"),
                                 QStringLiteral("09:00"), QStringLiteral("10:00"), QStringLiteral("Standup")});
    run(QStringLiteral("khal"), {QStringLiteral("new"), QStringLiteral("-a"), QStringLiteral("tsr"),
                                 QStringLiteral("2026-11-25"), QStringLiteral("Holiday")});
    open();
    auto items = calendarItems();
    items->setIncludeRecurrences(true);
    items->Sort(QStringLiteral("[Start]"));
    auto found = findAll<pim::AppointmentItem>(
        *items, QStringLiteral("[Start]>=\"23.11.2026\" and [Start] <=\"01.12.2026 23:59\""));
    ASSERT_EQ(found.size(), 4);
    EXPECT_EQ(found[0]->Subject(), QStringLiteral("Dentist"));
    EXPECT_EQ(found[0]->Start(), berlin(2026, 11, 23, 10, 0));
    EXPECT_EQ(found[0]->End(), berlin(2026, 11, 23, 11, 30));
    EXPECT_TRUE(found[0]->ReminderSet());
    EXPECT_EQ(found[0]->ReminderMinutesBeforeStart(), 15);
    EXPECT_FALSE(found[0]->IsRecurring());
    EXPECT_EQ(found[1]->Subject(), QStringLiteral("Standup"));
    EXPECT_EQ(found[1]->Start(), berlin(2026, 11, 24, 9, 0));
    EXPECT_TRUE(found[1]->IsRecurring());
    EXPECT_EQ(found[1]->GetRecurrencePattern()->RecurrenceType(), pim::olRecursWeekly);
    EXPECT_EQ(found[1]->GetRecurrencePattern()->DayOfWeekMask(), 4);
    EXPECT_EQ(found[2]->Subject(), QStringLiteral("Holiday"));
    EXPECT_TRUE(found[2]->AllDayEvent());
    EXPECT_EQ(found[2]->Start(), at(2026, 11, 25));
    EXPECT_EQ(found[3]->Start(), berlin(2026, 12, 1, 9, 0));
    EXPECT_EQ(found[3]->EntryID(), found[1]->EntryID());
}

// A contact made with khard new comes back with names, company, phones, mail and address.
TEST_F(Interop, TessarineReadsKhardContacts) {
    if (!installed(QStringLiteral("khard")))
        GTEST_SKIP() << "khard is not installed: the khard checks did not run";
    run(QStringLiteral("khard"), {QStringLiteral("new"), QStringLiteral("-a"), QStringLiteral("tsr")},
        "First name : Erika\nLast name  : Mustermann\nOrganisation : Acme GmbH\nPhone :\n"
        "    cell : +49 170 1234567\n    home : +49 30 123456\n    work : +49 30 999\n"
        "Email :\n    home : erika@example.org\nAddress :\n    work :\n        Street   : Hauptstr. 5\n"
        "        Code     : 10115\n        City     : Berlin\n        Country  : Germany\n"
        "Categories :\n    - VIP\n    - Friends\nWebpage : https://example.org\n");
    open();
    auto items = contactItems();
    ASSERT_EQ(items->Count(), 1);
    auto c = pim::asContact(items->ItemAt(1));
    ASSERT_TRUE(c);
    EXPECT_EQ(c->FirstName(), QStringLiteral("Erika"));
    EXPECT_EQ(c->LastName(), QStringLiteral("Mustermann"));
    EXPECT_EQ(c->CompanyName(), QStringLiteral("Acme GmbH"));
    EXPECT_EQ(c->MobileTelephoneNumber(), QStringLiteral("+49 170 1234567"));
    EXPECT_EQ(c->HomeTelephoneNumber(), QStringLiteral("+49 30 123456"));
    EXPECT_EQ(c->BusinessTelephoneNumber(), QStringLiteral("+49 30 999"));
    EXPECT_EQ(c->Email1Address(), QStringLiteral("erika@example.org"));
    EXPECT_EQ(c->BusinessAddressStreet(), QStringLiteral("Hauptstr. 5"));
    EXPECT_EQ(c->BusinessAddressPostalCode(), QStringLiteral("10115"));
    EXPECT_EQ(c->BusinessAddressCity(), QStringLiteral("Berlin"));
    EXPECT_EQ(c->BusinessAddressCountry(), QStringLiteral("Germany"));
    EXPECT_EQ(c->HomeAddressStreet(), QString());
    EXPECT_EQ(c->Categories(), QStringLiteral("VIP, Friends"));
    EXPECT_EQ(c->WebPage(), QStringLiteral("https://example.org"));
    EXPECT_FALSE(c->EntryID().isEmpty());
}

} // namespace
} // namespace tsr::test
