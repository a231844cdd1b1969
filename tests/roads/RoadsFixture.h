// SPDX-License-Identifier: GPL-3.0-or-later
// A context wired like the program's: the emulated phone on a pseudo-terminal,
// a local PIM store in a temporary folder, the nine tables, the user's formats
// and a fixed clock. The phone's records and the store's appointments are
// seeded through their own files and API, then read through the real roads.
#pragma once

#include "phone/ATC.h"
#include "phone/LinkFixture.h"
#include "phone/PhoneRecords.h"
#include "pim/DOROutlookSession.h"
#include "pim/Pim.h"
#include "tables/TSRADODB.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <map>

namespace tsr::test {

inline core::VbDate when(int y, int mo, int d, int h = 0, int mi = 0) {
    return core::VbDate(core::DateSerial(y, mo, d).value + core::TimeSerial(h, mi, 0).value);
}

class RoadsFixture : public LinkFixture {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_store.isValid());
        ctx.options.pim = m_store.path() + QStringLiteral("/pim");
        ctx.settings.HomeDir = m_store.path();
        ctx.clock.setFixed(QDateTime(QDate(2026, 3, 2), QTime(9, 15)));
        auto& f = ctx.formats;
        f.DateFormat = QStringLiteral("dd.mm.yyyy");
        f.TimeFormat = QStringLiteral("hh:mm:ss");
        f.GridTimeStyle = QStringLiteral("hh:mm");
        f.DateTimeFormat = QStringLiteral("hh:mm dd.mm.yyyy");
        ctx.flags.GlobalStartDate = when(2026, 3, 1);
        ctx.flags.GlobalEndDate = core::VbDate(when(2026, 4, 30).value + 86399.0 / 86400.0);
        ASSERT_TRUE(tables::CreateInitAndSetAllRS(ctx));
        ASSERT_TRUE(pim::Check4Outlook(ctx));
        ASSERT_TRUE(ctx.flags.GlobalOrganizerOK);
        ns = ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"));
    }

    // Starts the phone and makes the AT-command server for it.
    EmulatedPhone& phoneWith(const char* options = "--first 1 --last 20") {
        EmulatedPhone& p = startPhone(options);
        EXPECT_TRUE(phone::ATCTest(ctx));
        return p;
    }

    std::shared_ptr<pim::AppointmentItem> appointment(core::VbDate start, core::VbDate end, const QString& subject,
                                                      int meeting = pim::olNonMeeting) {
        auto item = pim::asAppointment(calendar()->Items()->Add());
        item->setStart(start);
        item->setEnd(end);
        item->setSubject(subject);
        item->setMeetingStatus(meeting);
        item->Save();
        return item;
    }

    std::shared_ptr<pim::Folder> calendar() { return ns->GetDefaultFolder(pim::olFolderCalendar); }

    QStringList icsFiles() const {
        return QDir(ctx.options.pim + QStringLiteral("/calendar")).entryList({QStringLiteral("*.ics")}, QDir::Files);
    }
    QByteArray icsText(const QString& name) const {
        QFile f(ctx.options.pim + QStringLiteral("/calendar/") + name);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    // All .ics texts of the store, joined.
    QByteArray allIcs() const {
        QByteArray all;
        for (const QString& name : icsFiles())
            all += icsText(name);
        return all;
    }
    // All .vcf texts of the store, in every contact folder, joined.
    QByteArray storeCards() const {
        QByteArray all;
        QDirIterator it(ctx.options.pim, {QStringLiteral("*.vcf")}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile f(it.next());
            if (f.open(QIODevice::ReadOnly))
                all += f.readAll();
        }
        return all;
    }

    tables::Recordset& cal() { return *ctx.tables.RSCalendar; }

    // How many rows of the calendar table have each EntryType.
    std::map<int, int> rowsByType() {
        std::map<int, int> out;
        tables::Recordset& t = cal();
        if (t.recordCount() == 0)
            return out;
        for (t.moveFirst(); !t.eof(); t.moveNext())
            ++out[t.value(QStringLiteral("EntryType")).toInt32()];
        return out;
    }

    // Goes to the row whose Text starts with `text`; false when there is none.
    bool rowWithText(const QString& text) {
        tables::Recordset& t = cal();
        if (t.recordCount() == 0)
            return false;
        for (t.moveFirst(); !t.eof(); t.moveNext())
            if (t.value(QStringLiteral("Text")).toText().startsWith(text) ||
                t.value(QStringLiteral("PIMText")).toText().startsWith(text))
                return true;
        return false;
    }

    QString field(const char* name) { return cal().value(QString::fromLatin1(name)).toText(); }

    std::shared_ptr<pim::Namespace> ns;

private:
    QTemporaryDir m_store;
};

} // namespace tsr::test
