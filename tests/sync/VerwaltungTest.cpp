// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/Verwaltung.h"
#include "SyncTestSupport.h"
#include "pim/local/LocalStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace tsr;
using namespace tsr::sync;
using core::DateSerial;
using core::VbDate;
using test::setFields;
using test::textOf;

namespace {
class Verwaltung : public test::SyncTest {
protected:
    void addEntryIds(std::initializer_list<const char16_t*> ids) {
        for (const char16_t* id : ids)
            addCalendarRow(cal(), {{u"EntryID", id}});
    }
    std::shared_ptr<pim::Folder> folder(int type) {
        if (!app)
            app = pim::local::openLocalApplication(ctx, dir.path());
        return app->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder(type);
    }
    QTemporaryDir dir;
    std::shared_ptr<pim::Application> app;
};
} // namespace

// The lowest free number wins; an empty table gives 1 whatever the range says.
TEST_F(Verwaltung, GetFreeMobileEntryID) {
    int16_t id = 0;
    ctx.read.FirstMobileEntryID = 5;
    ctx.read.LastMobileEntryID = 9;
    EXPECT_TRUE(GetFreeMobileEntryID(ctx, cal(), id));
    EXPECT_EQ(id, 1);

    ctx.read.FirstMobileEntryID = 1;
    ctx.read.LastMobileEntryID = 4;
    addEntryIds({u"1", u"2", u"4"});
    cal().setAbsolutePosition(2);
    EXPECT_TRUE(GetFreeMobileEntryID(ctx, cal(), id));
    EXPECT_EQ(id, 3);
    EXPECT_EQ(cal().absolutePosition(), 2);

    addEntryIds({u"3"});
    cal().setAbsolutePosition(1);
    EXPECT_FALSE(GetFreeMobileEntryID(ctx, cal(), id));
    EXPECT_EQ(id, -1);
    EXPECT_EQ(cal().absolutePosition(), 1);
}

// The buffer shrinks by what the phone holds beyond it, with one warning box.
TEST_F(Verwaltung, MobileEntriesPruefungShrinksTheBuffer) {
    ctx.settings.freeMobileEntries = 20;
    ctx.read.MobileCalendarCapacity = 100;
    ctx.read.FreeCalendarSlots = 80;
    ctx.read.vCalMobileCount = 80;
    MobileEntriesPruefung(ctx);
    EXPECT_TRUE(ui.boxes.isEmpty());

    ctx.read.vCalMobileCount = 90;
    MobileEntriesPruefung(ctx);
    ASSERT_EQ(ui.boxes.size(), 1);
    // The new buffer stands between the texts, not behind them.
    EXPECT_EQ(ui.boxes.first().text,
              ctx.strings.text(694) + QStringLiteral(" 10 ") + ctx.strings.text(512) + u' ' + ctx.strings.text(703));
    EXPECT_EQ(ui.boxes.first().icon, core::MsgIcon::Exclamation);
    EXPECT_EQ(ctx.settings.freeMobileEntries, 10);
    EXPECT_EQ(ctx.read.FreeCalendarSlots, 90);
    EXPECT_EQ(ui.statusBarCount, 1);
}

// The status line the calendar's clear leaves shows the PIM rows as counted after the clear.
TEST_F(Verwaltung, ClearAfterMobileErrorShowsTheNewCount) {
    struct CountingUi : test::ScriptedUi {
        explicit CountingUi(const core::ReadState& read) : m_read(read) {}
        void SetStatusBarMobile() override { shown << m_read.vCalPIMCount; }
        QList<int32_t> shown;
        const core::ReadState& m_read;
    } counting(ctx.read);
    ctx.ui = &counting;
    addCalendarRow(cal(), {{u"EntryType", int32_t(1)}, {u"PIM", true}});
    addCalendarRow(cal(), {{u"EntryType", int32_t(3)}, {u"PIM", true}, {u"Mobile", true}});
    addCalendarRow(cal(), {{u"EntryType", int32_t(2)}, {u"Mobile", true}});
    ctx.read.vCalPIMCount = 9;
    vCalClearAfterMobileError(ctx);
    ctx.ui = &ui;
    ASSERT_FALSE(counting.shown.isEmpty());
    EXPECT_EQ(counting.shown.last(), 2);
    EXPECT_EQ(counting.refreshed, QList<int>{0});
}

// The phone's side leaves the table: paired rows stay as PIM rows unless the
// transfer made them from the phone; phone-only rows go.
TEST_F(Verwaltung, ClearAfterMobileError) {
    addCalendarRow(cal(), {{u"EntryType", int32_t(3)}, {u"PIM", true}, {u"Mobile", true}, {u"Text", u"keep"}});
    addCalendarRow(cal(), {{u"EntryType", int32_t(3)}, {u"PIM", true}, {u"Mobile", true}, {u"creafromMob", true}});
    addCalendarRow(cal(), {{u"EntryType", int32_t(2)}, {u"Mobile", true}});
    addCalendarRow(cal(), {{u"EntryType", int32_t(1)}, {u"PIM", true}, {u"Text", u"pim"}});
    ctx.read.vCalMobileRead = true;
    ctx.read.vCalMobileCount = 3;
    ctx.read.MobileConnected = true;
    vCalClearAfterMobileError(ctx);
    ASSERT_EQ(cal().recordCount(), 2);
    cal().moveFirst();
    EXPECT_EQ(textOf(cal(), u"Text"), QStringLiteral("keep"));
    EXPECT_EQ(cal().value(QStringLiteral("EntryType")).toInt32(), 1);
    EXPECT_FALSE(cal().value(QStringLiteral("Mobile")).toBool());
    EXPECT_FALSE(ctx.read.vCalMobileRead);
    EXPECT_EQ(ctx.read.vCalMobileCount, 0);
    EXPECT_EQ(ctx.read.vCalPIMCount, 2);
    EXPECT_TRUE(ctx.read.vCalPIMRead);
    EXPECT_FALSE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRClearMobileCal")));
    EXPECT_FALSE(ctx.tools.isEnabled(QStringLiteral("TSROrganizerMenu"), QStringLiteral("TSRAutoSync")));
    EXPECT_EQ(ui.refreshed, QList<int>{0});

    // Contacts: no second condition, and a quiet call refreshes nothing.
    addContactRow(contacts(), {{u"EntryType", int32_t(3)}, {u"PIM", true}, {u"Mobile", true}});
    addContactRow(contacts(), {{u"EntryType", int32_t(2)}, {u"Mobile", true}});
    ctx.read.vCardPIMCount = 7;
    vCardClearAfterMobileError(ctx, true, false);
    EXPECT_EQ(contacts().recordCount(), 1);
    EXPECT_EQ(ctx.read.vCardPIMCount, 7);
    EXPECT_EQ(ui.refreshed, QList<int>{0});
    vCardClearAfterMobileError(ctx, false, true);
    EXPECT_EQ(ctx.read.vCardPIMCount, 1);
    EXPECT_EQ(ui.refreshed, (QList<int>{0, 1}));
}

// A reset leaves an empty table of the same layout and both sides unread; AutoSync
// follows the connection only when the setting is on.
TEST_F(Verwaltung, ResetClearsTableAndState) {
    addCalendarRow(cal(), {{u"Text", u"x"}});
    ctx.read.vCalPIMRead = true;
    ctx.read.vCalPIMCount = 1;
    ctx.read.vCalMobileRead = true;
    ctx.settings.Sync = 1;
    vCalReset(ctx, ctx.tables.RSCalendar);
    EXPECT_EQ(cal().recordCount(), 0);
    EXPECT_EQ(cal().fieldCount(), 60);
    EXPECT_EQ(cal().name(), QStringLiteral("RSCalendar"));
    EXPECT_FALSE(ctx.read.vCalPIMRead);
    EXPECT_FALSE(ctx.read.vCalMobileRead);
    EXPECT_FALSE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRAutoSync")));
    ctx.read.vCardPIMRead = true;
    vCardReset(ctx, ctx.tables.RSContacts);
    EXPECT_EQ(contacts().fieldCount(), 45);
    EXPECT_FALSE(ctx.read.vCardPIMRead);
}

// A PIM appointment of the local store becomes a PIM row: meeting type, times,
// the alarm at the start, and a weekly series with its mask and pattern start.
TEST_F(Verwaltung, InsertEntryFromStoreAppointment) {
    auto item = pim::asAppointment(folder(pim::olFolderCalendar)->Items()->Add());
    ASSERT_TRUE(item);
    const VbDate start(DateSerial(2026, 11, 24).value + core::TimeSerial(9, 15, 0).value);
    item->setSubject(QStringLiteral("Planning"));
    item->setStart(start);
    item->setEnd(VbDate(start.value + 1 + 1.0 / 24));
    item->setMeetingStatus(pim::olMeetingReceived);
    item->setReminderSet(true);
    auto pattern = item->GetRecurrencePattern();
    pattern->setRecurrenceType(pim::olRecursWeekly);
    pattern->setDayOfWeekMask(2 + 8);
    item->Save();

    auto scratch = makeCalendar(QStringLiteral("scratch"));
    tables::vCalCreateNewRecord(*scratch);
    InsertEntry(ctx, *item, *scratch);
    auto& r = *scratch;
    EXPECT_EQ(textOf(r, u"Typ"), QStringLiteral("1"));
    EXPECT_TRUE(r.value(QStringLiteral("MeetingStatus")).toBool());
    EXPECT_EQ(textOf(r, u"StartTime"), QStringLiteral("09:15:00"));
    EXPECT_EQ(r.value(QStringLiteral("StartDate")).toDate(), DateSerial(2026, 11, 24));
    EXPECT_EQ(r.value(QStringLiteral("StartEndDiff")).toInt64(), 1);
    EXPECT_EQ(r.value(QStringLiteral("AAlarm")).toDate(), start);
    EXPECT_TRUE(r.value(QStringLiteral("Alarm")).toBool());
    EXPECT_TRUE(r.value(QStringLiteral("ISRecurring")).toBool());
    EXPECT_EQ(textOf(r, u"RecurrenceType"), QStringLiteral("W"));
    EXPECT_EQ(r.value(QStringLiteral("Weekdaymask")).toInt64(), 10);
    EXPECT_EQ(textOf(r, u"PimRecPattString"), r.dateAsText(DateSerial(2026, 11, 24)));
    EXPECT_EQ(textOf(r, u"Text"), QStringLiteral("Planning"));
    EXPECT_EQ(textOf(r, u"PIMText"), QStringLiteral("Planning"));
    EXPECT_FALSE(textOf(r, u"UID").isEmpty());
    EXPECT_EQ(textOf(r, u"UID"), textOf(r, u"EntryID"));
    EXPECT_EQ(r.value(QStringLiteral("EntryType")).toInt32(), 1);
    EXPECT_TRUE(r.value(QStringLiteral("PIM")).toBool());
    EXPECT_EQ(textOf(r, u"StartasText"), r.dateAsText(start));
}

// Monthly and yearly series by weekday come in as "M" and "Y" with the day modifier
// the phone model takes; a rule the phone cannot keep comes in as a single entry.
TEST_F(Verwaltung, InsertEntryByWeekdayAndUnknownPatterns) {
    // An hourly rule, which the object model cannot describe, as another tool wrote it.
    ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("calendar")));
    QFile ics(dir.filePath(QStringLiteral("calendar/h1.ics")));
    ASSERT_TRUE(ics.open(QIODevice::WriteOnly));
    ics.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:x\r\nBEGIN:VEVENT\r\nUID:h1\r\n"
              "DTSTART:20260401T080000\r\nDTEND:20260401T081500\r\nRRULE:FREQ=HOURLY;INTERVAL=6;COUNT=3\r\n"
              "SUMMARY:Pill\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    ics.close();
    auto items = folder(pim::olFolderCalendar)->Items();

    struct Case {
        const char* what;
        int type; // -1: the hourly rule of the file
        const char* model;
        const char* kind;
        const char* modKey;
    };
    const QList<Case> cases = {
        {"second Tuesday of the month", pim::olRecursMonthNth, "Tessa X1", "M", "D"},
        {"second Tuesday, a model without day modifier", pim::olRecursMonthNth, "Tessa P52", "M", ""},
        {"monthly, Q33 keeps its modifier", pim::olRecursMonthNth, "Tessa Q33", "M", "D"},
        {"last Friday of March", pim::olRecursYearNth, "Tessa X1", "Y", "D"},
        {"last Friday of March, Q33", pim::olRecursYearNth, "Tessa Q33", "Y", ""},
        {"hourly", -1, "Tessa X1", "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ctx.phone.MobileModel = QString::fromLatin1(c.model);
        std::shared_ptr<pim::AppointmentItem> item;
        if (c.type < 0) {
            item = pim::asAppointment(items->Find(QStringLiteral("[Subject] = 'Pill'")));
        } else {
            item = pim::asAppointment(items->Add());
            item->setSubject(QString::fromLatin1(c.what));
            item->setStart(VbDate(DateSerial(2026, 3, 10).value + 0.5));
            item->setEnd(VbDate(DateSerial(2026, 3, 10).value + 0.55));
            auto pattern = item->GetRecurrencePattern();
            pattern->setRecurrenceType(c.type);
            pattern->setDayOfWeekMask(c.type == pim::olRecursMonthNth ? 4 : 32);
            pattern->setInstance(c.type == pim::olRecursMonthNth ? 2 : 5);
            if (c.type == pim::olRecursYearNth)
                pattern->setMonthOfYear(3);
            item->Save();
        }
        ASSERT_TRUE(item);
        ASSERT_TRUE(item->IsRecurring());
        auto scratch = makeCalendar(QStringLiteral("scratch"));
        tables::vCalCreateNewRecord(*scratch);
        InsertEntry(ctx, *item, *scratch);
        const QString kind = QString::fromLatin1(c.kind);
        EXPECT_EQ(textOf(*scratch, u"RecurrenceType"), kind);
        EXPECT_EQ(scratch->value(QStringLiteral("ISRecurring")).toBool(), !kind.isEmpty());
        if (kind.isEmpty())
            continue;
        EXPECT_EQ(textOf(*scratch, u"Serie"), kind);
        EXPECT_EQ(textOf(*scratch, u"RecurrenceFrequenz"), kind);
        EXPECT_EQ(scratch->value(QStringLiteral("RecurrenceIntervall")).toInt64(), 1);
        EXPECT_EQ(textOf(*scratch, u"ModKey"), QString::fromLatin1(c.modKey));
        EXPECT_EQ(scratch->value(QStringLiteral("PIMRecPatt")).toDate(), DateSerial(2026, 3, 10));
    }
}

// A PIM contact fills the row and its PIM mirrors; the address follows the company;
// VIP in any case counts; a phone row becomes paired, a paired row stays.
TEST_F(Verwaltung, vCardInsertEntryFromStoreContact) {
    auto item = pim::asContact(folder(pim::olFolderContacts)->Items()->Add());
    ASSERT_TRUE(item);
    item->setLastName(QStringLiteral("Huber"));
    item->setFirstName(QStringLiteral("Eva\tMaria"));
    item->setCompanyName(QStringLiteral("ACME"));
    item->setBusinessAddressCity(QStringLiteral("Graz"));
    item->setHomeAddressCity(QStringLiteral("Wien"));
    item->setWebPage(QStringLiteral("http://acme.example"));
    item->setCategories(QStringLiteral("friends; vip"));
    item->Save();

    addContactRow(contacts(), {{u"EntryType", int32_t(2)}, {u"Mobile", true}});
    vCardInsertEntry(ctx, *item, contacts());
    EXPECT_EQ(textOf(contacts(), u"City"), QStringLiteral("Graz"));
    EXPECT_EQ(textOf(contacts(), u"PIMCity"), QStringLiteral("Graz"));
    EXPECT_FALSE(textOf(contacts(), u"FirstName").contains(u'\t'));
    EXPECT_EQ(textOf(contacts(), u"PIMFirstname"), textOf(contacts(), u"FirstName"));
    EXPECT_EQ(textOf(contacts(), u"URL"), QStringLiteral("acme.example"));
    EXPECT_EQ(textOf(contacts(), u"PIMURL"), QStringLiteral("http://acme.example"));
    EXPECT_TRUE(contacts().value(QStringLiteral("Categories")).toBool());
    EXPECT_EQ(textOf(contacts(), u"MobileCategoriesText"), QStringLiteral("VIP"));
    EXPECT_EQ(contacts().value(QStringLiteral("EntryType")).toInt32(), 3);
    EXPECT_TRUE(contacts().value(QStringLiteral("PIM")).toBool());

    item->setCompanyName(QString());
    setFields(contacts(), {{u"EntryType", int32_t(1)}});
    vCardInsertEntry(ctx, *item, contacts());
    EXPECT_EQ(textOf(contacts(), u"City"), QStringLiteral("Wien"));
    EXPECT_EQ(contacts().value(QStringLiteral("EntryType")).toInt32(), 1);

    // A paired row stays paired, keeps its phone's number and takes the PIM's values.
    item->setLastName(QStringLiteral("Huber-Lang"));
    setFields(contacts(), {{u"EntryType", int32_t(3)}, {u"Mobile", true}, {u"MobileID", u"17"}});
    vCardInsertEntry(ctx, *item, contacts());
    EXPECT_EQ(contacts().value(QStringLiteral("EntryType")).toInt32(), 3);
    EXPECT_TRUE(contacts().value(QStringLiteral("Mobile")).toBool());
    EXPECT_EQ(textOf(contacts(), u"MobileID"), QStringLiteral("17"));
    EXPECT_EQ(textOf(contacts(), u"LastName"), QStringLiteral("Huber-Lang"));
    EXPECT_EQ(textOf(contacts(), u"PIMLastName"), QStringLiteral("Huber-Lang"));
}
