// SPDX-License-Identifier: GPL-3.0-or-later
// Pairs that must and must not match, each built from both sides' reads of the
// same appointments: the PIM side as a local store appointment admitted with
// InsertEntry, the phone side as vCalendar text through the entry parser.
#include "SyncTestSupport.h"
#include "formats/vCal.h"
#include "pim/local/LocalStore.h"
#include "sync/Verwaltung.h"
#include "sync/vCalMatch.h"

#include <QTemporaryDir>

using namespace tsr;
using namespace tsr::sync;
using core::DateSerial;
using core::TimeSerial;
using core::VbDate;

namespace {

struct PimSide {
    QString subject;
    VbDate start;
    double hours = 1;
    int meeting = pim::olNonMeeting;
    int weeklyMask = 0; // a weekly series on these days when not 0
    VbDate patternStart{};
};

struct PairCase {
    const char* name;
    QList<PimSide> pim;
    QList<QByteArray> phone; // vCalendar bodies (the lines inside VEVENT)
    int pairedRows;          // rows of EntryType 3 after both reads
    int rows;                // all rows after both reads
};

VbDate at(int y, int m, int d, int hh, int mm) {
    return VbDate(DateSerial(y, m, d).value + TimeSerial(hh, mm, 0).value);
}

QByteArray vcs(const QByteArray& body) {
    return "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\n" + body + "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

// The lines inside VEVENT of one phone entry; times are UTC stamps without the Z.
QByteArray ev(const char* category, const char* from, const char* to, const QByteArray& text,
              const QByteArray& rule = {}) {
    return QByteArray("CATEGORIES:") + category + "\r\nDTSTART:" + from + "Z\r\nDTEND:" + to + "Z\r\n" +
           (rule.isEmpty() ? QByteArray() : QByteArray("RRULE:" + rule + "\r\n")) + "DESCRIPTION:" + text + "\r\n";
}

// Built on first use: the dates need the date library ready, which a static list is not.
QList<PairCase> pairCases() {
    const QString kLong = QStringLiteral("Annual general meeting of the rowing club, boathouse");
    const PimSide dentist{QStringLiteral("Dentist"), at(2026, 3, 2, 9, 0)};
    const PimSide board{QStringLiteral("Board"), at(2026, 6, 1, 11, 0), 1, pim::olMeeting};
    const PimSide choir{QStringLiteral("Choir"), at(2026, 1, 5, 18, 0), 1.5, pim::olNonMeeting, 2 + 16,
                        DateSerial(2026, 1, 5)};
    const PimSide shift{QStringLiteral("Shift"), at(2026, 7, 1, 6, 0)};
    const char* misc = "MISCELLANEOUS";
    const QByteArray shiftEv = ev(misc, "20260701T060000", "20260701T070000", "Shift");
    PimSide choirMondays = choir;
    choirMondays.weeklyMask = 2;
    return {
        {"single memo", {dentist}, {ev(misc, "20260302T090000", "20260302T100000", "dentist")}, 1, 1},
        {"single at another time", {dentist}, {ev(misc, "20260302T100000", "20260302T110000", "Dentist")}, 0, 2},
        {"single with another subject", {dentist}, {ev(misc, "20260302T090000", "20260302T100000", "Doctor")}, 0, 2},
        {"long subject cut by the phone",
         {{kLong, at(2026, 4, 11, 19, 30)}},
         {ev(misc, "20260411T193000", "20260411T203000", kLong.left(32).toLatin1())},
         1,
         1},
        {"call with a number",
         {{QStringLiteral("+498912345678"), at(2026, 5, 6, 14, 0)}},
         {ev("PHONE CALL", "20260506T140000", "20260506T141500", "+498912345678")},
         1,
         1},
        {"meeting against a phone memo", {board}, {ev(misc, "20260601T110000", "20260601T120000", "Board")}, 0, 2},
        {"meeting on both sides", {board}, {ev("MEETING", "20260601T110000", "20260601T120000", "Board")}, 1, 1},
        {"weekly series", {choir}, {ev(misc, "20260105T180000", "20260105T193000", "Choir", "W1 MO TH #0")}, 1, 1},
        {"weekly series begun a week later on the phone",
         {choir},
         {ev(misc, "20260112T180000", "20260112T193000", "Choir", "W1 MO TH #0")},
         0,
         2},
        {"series against a single entry",
         {choirMondays},
         {ev(misc, "20260105T180000", "20260105T193000", "Choir")},
         0,
         2},
        {"identical twins stay two pairs", {shift, shift}, {shiftEv, shiftEv}, 2, 2},
        {"one twin on the phone, two on the PIM", {shift, shift}, {shiftEv}, 1, 2},
    };
}

class vCalPairs : public test::SyncTest, public ::testing::WithParamInterface<PairCase> {
protected:
    vCalPairs() : scratch(makeCalendar(QStringLiteral("scratch"))) {
        app = pim::local::openLocalApplication(ctx, dir.path());
    }

    void readPim(const QList<PimSide>& sides) {
        auto items = app->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder(pim::olFolderCalendar)->Items();
        for (const PimSide& s : sides) {
            auto item = pim::asAppointment(items->Add());
            item->setSubject(s.subject);
            item->setStart(s.start);
            item->setEnd(VbDate(s.start.value + s.hours / 24));
            item->setMeetingStatus(s.meeting);
            if (s.weeklyMask) {
                auto pattern = item->GetRecurrencePattern();
                pattern->setRecurrenceType(pim::olRecursWeekly);
                pattern->setDayOfWeekMask(s.weeklyMask);
                pattern->setPatternStartDate(s.patternStart);
            }
            item->Save();
            tables::ClearRecordSet(*scratch);
            tables::vCalCreateNewRecord(*scratch);
            InsertEntry(ctx, *item, *scratch);
            admitCalendarEntry(ctx, cal(), *scratch, ReadSide::PIM);
        }
        ctx.read.vCalPIMRead = true;
        ctx.read.vCalPIMCount = int32_t(sides.size());
    }

    void readPhone(const QList<QByteArray>& bodies) {
        int index = 1;
        for (const QByteArray& body : bodies) {
            tables::ClearRecordSet(*scratch);
            tables::vCalCreateNewRecord(*scratch);
            QString text = QString::fromLatin1(vcs(body));
            ASSERT_TRUE(formats::ParsEntryFromMobile(ctx, *scratch, text));
            scratch->setValue(QStringLiteral("EntryID"), QString::number(index++));
            admitCalendarEntry(ctx, cal(), *scratch, ReadSide::Mobile);
        }
    }

    QTemporaryDir dir;
    std::shared_ptr<pim::Application> app;
    std::unique_ptr<tables::Recordset> scratch;
};

} // namespace

// Each case: both reads of the same appointments give the rows and pairs expected.
TEST_P(vCalPairs, BothReadsPairAsExpected) {
    const PairCase& c = GetParam();
    readPim(c.pim);
    readPhone(c.phone);
    int paired = 0;
    for (cal().moveFirst(); !cal().eof(); cal().moveNext())
        if (cal().value(QStringLiteral("EntryType")).toInt32() == 3)
            ++paired;
    EXPECT_EQ(paired, c.pairedRows);
    EXPECT_EQ(cal().recordCount(), c.rows);
}

INSTANTIATE_TEST_SUITE_P(Appointments, vCalPairs, ::testing::ValuesIn(pairCases()), [](const auto& info) {
    QString name = QString::fromLatin1(info.param.name);
    name.replace(u' ', u'_').remove(u',');
    return name.toStdString();
});
