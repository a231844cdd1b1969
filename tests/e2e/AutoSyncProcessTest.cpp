// SPDX-License-Identifier: GPL-3.0-or-later
// Unattended runs of the built program against the emulated phone and a store
// folder: every SyncTyp with every SyncZeitraum on one fixture, the type mask, a
// weekly series written once, and which switch wins when several are given.
#include "e2e/ProgramRun.h"
#include "phone/PhoneRecords.h"
#include "roads/AutoSyncCases.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace tsr::test;

namespace {

QString dotted(int daysFromToday) {
    return QDate::currentDate().addDays(daysFromToday).toString(QStringLiteral("dd.MM.yyyy"));
}

// The RRULE day of a date, as iCalendar names it.
QByteArray icalDay(int daysFromToday) {
    static const char* names[] = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
    return names[QDate::currentDate().addDays(daysFromToday).dayOfWeek() - 1];
}

class AutoSyncProcess : public ProgramRun {
protected:
    void seedBothSides(int syncTyp, int zeitraum) {
        EmulatedPhone& p = phoneWith();
        p.seed(1, vcs(phoneTime(8, 10, 30), phoneTime(8, 11, 45), "MISCELLANEOUS", "Dentist"));
        p.seed(2, vcs(phoneTime(2, 9), phoneTime(2, 10), "MISCELLANEOUS", "Phone memo"));
        p.seed(3, vcs(phoneTime(18, 14), phoneTime(18, 15), "MEETING", "Phone meeting"));
        appointment(QStringLiteral("dentist"), storeTime(8, 10, 30), storeTime(8, 11, 45), QStringLiteral("Dentist"));
        appointment(QStringLiteral("memo"), storeTime(3, 9), storeTime(3, 10), QStringLiteral("Store memo"));
        appointment(QStringLiteral("meeting"), storeTime(4, 14), storeTime(4, 15), QStringLiteral("Store meeting"), {},
                    true);
        appointment(QStringLiteral("far"), storeTime(105, 9), storeTime(105, 10), QStringLiteral("Far future"));
        appointment(QStringLiteral("yoga"), storeTime(0, 7), storeTime(0, 8), QStringLiteral("Yoga"),
                    "FREQ=WEEKLY;BYDAY=" + icalDay(0) + ',' + icalDay(2) + ',' + icalDay(4));
        setSetting(QStringLiteral("SyncTyp"), syncTyp);
        setSetting(QStringLiteral("SyncZeitraum"), zeitraum);
        setSetting(QStringLiteral("SyncTermine"), 32);
        setSetting(QStringLiteral("SyncAlarmAnzahl"), 10);
        setSetting(QStringLiteral("SyncEintraegeab"), int(QDate(1899, 12, 30).daysTo(QDate::currentDate().addDays(3))));
        setSetting(QStringLiteral("SyncEintraegevonbis"), dotted(3) + u'\t' + dotted(18) + QStringLiteral(" 23:59:59"));
        setSetting(QStringLiteral("SyncTageWochenMonate"), 1);
        setSetting(QStringLiteral("SyncnaechstenAnzahl"), 2);
    }
};

class AutoSyncProcessRuns : public AutoSyncProcess, public ::testing::WithParamInterface<RunCase> {};

} // namespace

TEST_P(AutoSyncProcessRuns, EachTypeAndPeriodWritesWhereItBelongs) {
    const RunCase& c = GetParam();
    seedBothSides(c.syncTyp, c.zeitraum);
    const RunResult r = run({QStringLiteral("VCAL")});
    EXPECT_EQ(r.status, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_EQ(phoneSubjects(), c.phone);
    EXPECT_EQ(storeSubjects(), c.store);
}

INSTANTIATE_TEST_SUITE_P(Runs, AutoSyncProcessRuns, ::testing::ValuesIn(kRuns),
                         [](const ::testing::TestParamInfo<RunCase>& info) {
                             return "Typ" + std::to_string(info.param.syncTyp) + "Zeitraum" +
                                    std::to_string(info.param.zeitraum);
                         });

namespace {

class AutoSyncChoices : public AutoSyncProcess {
protected:
    // The store fills the phone within the next 10 entries.
    void storeFillsPhone(int mask) {
        phoneWith();
        appointment(QStringLiteral("memo"), storeTime(3, 9), storeTime(3, 10), QStringLiteral("Store memo"));
        appointment(QStringLiteral("meeting"), storeTime(4, 14), storeTime(4, 15), QStringLiteral("Store meeting"), {},
                    true);
        setSetting(QStringLiteral("SyncTyp"), 2);
        setSetting(QStringLiteral("SyncZeitraum"), 1);
        setSetting(QStringLiteral("SyncAlarmAnzahl"), 10);
        setSetting(QStringLiteral("SyncTermine"), mask);
    }
    int journalCount(const char* line) const {
        int n = 0;
        for (const QString& l : phone->journal())
            n += l == QLatin1String(line);
        return n;
    }
};

void copyTree(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QFileInfo& fi : QDir(from).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (fi.isDir())
            copyTree(fi.filePath(), to + u'/' + fi.fileName());
        else
            QFile::copy(fi.filePath(), to + u'/' + fi.fileName());
    }
}

} // namespace

TEST_F(AutoSyncChoices, TheTypeMaskChoosesTheRows) {
    storeFillsPhone(2); // meetings only
    ASSERT_EQ(run({QStringLiteral("VCAL")}).status, 0);
    EXPECT_EQ(phoneSubjects(), QStringList{QStringLiteral("Store meeting")});
}

TEST_F(AutoSyncChoices, TheMaskBitWithoutATypeChoosesNothing) {
    storeFillsPhone(16);
    ASSERT_EQ(run({QStringLiteral("VCAL")}).status, 0);
    EXPECT_TRUE(phoneSubjects().isEmpty()) << phoneSubjects().join(u',').toStdString();
}

// The store shows a weekly series on three days of the period; the phone gets one
// record that repeats, not three entries.
TEST_F(AutoSyncChoices, AWeeklySeriesOnThreeDaysIsWrittenOnce) {
    storeFillsPhone(32);
    QFile::remove(pim() + QStringLiteral("/calendar/memo.ics"));
    QFile::remove(pim() + QStringLiteral("/calendar/meeting.ics"));
    appointment(QStringLiteral("yoga"), storeTime(1, 7), storeTime(1, 8), QStringLiteral("Yoga"),
                "FREQ=WEEKLY;BYDAY=" + icalDay(1) + ',' + icalDay(3) + ',' + icalDay(5));
    ASSERT_EQ(run({QStringLiteral("VCAL")}).status, 0);
    const auto records = phone->records();
    ASSERT_EQ(records.size(), 1);
    EXPECT_TRUE(records.first().contains("RRULE:W1 ")) << records.first().toStdString();
}

TEST_F(AutoSyncChoices, OfSeveralSwitchesTheFirstInItsOrderRuns) {
    storeFillsPhone(32);
    ASSERT_EQ(run({QStringLiteral("VCARD"), QStringLiteral("VCAL")}).status, 0);
    EXPECT_EQ(journalCount("OBEX SETPATH:TELECOM/PB"), 0) << "the contact half ran beside the calendar half";
    EXPECT_EQ(phoneSubjects().size(), 2);

    phone->clearJournal();
    ASSERT_EQ(run({QStringLiteral("BOTH"), QStringLiteral("VCARD")}).status, 0);
    EXPECT_EQ(journalCount("OBEX SETPATH:TELECOM/PB"), 1) << phone->journal().join(u'\n').toStdString();
}

// The demo of the README: both sides change, the pairs stay single, and a second
// run finds nothing left to do and makes no duplicate.
TEST_F(AutoSyncChoices, TheDemoSyncsBothWaysAndASecondRunChangesNothing) {
    const QString demo = QStringLiteral(TESSARINE_SOURCE_DIR "/demo");
    phoneWith(opts("--last 200"));
    for (const QFileInfo& fi : QDir(demo + QStringLiteral("/phone/cal")).entryInfoList(QDir::Files)) {
        QFile f(fi.filePath());
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        phone->seed(fi.baseName().toInt(), f.readAll());
    }
    for (const QFileInfo& fi : QDir(demo + QStringLiteral("/phone/pb")).entryInfoList(QDir::Files)) {
        QFile f(fi.filePath());
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        phone->seedFile(QStringLiteral("pb/") + fi.fileName(), f.readAll());
    }
    QDir(pim()).removeRecursively();
    copyTree(demo + QStringLiteral("/pim"), pim());
    QFile::remove(path(QStringLiteral("config/machine.ini")));
    ASSERT_TRUE(QFile::copy(demo + QStringLiteral("/config/machine.ini"), path(QStringLiteral("config/machine.ini"))));

    for (int runNo = 1; runNo <= 2; ++runNo) {
        const RunResult r = run({QStringLiteral("BOTH")});
        ASSERT_EQ(r.status, 0) << "run " << runNo << '\n' << r.out.toStdString() << r.err.toStdString();
        EXPECT_EQ(phone->records().size(), 24) << "run " << runNo;
        EXPECT_EQ(phone->filesIn(QStringLiteral("pb")).filter(QStringLiteral(".vcf")).size(), 10) << "run " << runNo;
        EXPECT_EQ(filesIn(QStringLiteral("pim/calendar"), QStringLiteral(".ics")).size(), 27) << "run " << runNo;
        EXPECT_EQ(filesIn(QStringLiteral("pim/contacts"), QStringLiteral(".vcf")).size(), 20) << "run " << runNo;
        if (runNo == 2)
            EXPECT_TRUE(r.out.contains(QStringLiteral("\t0\n"))) << r.out.toStdString();
    }
    const QStringList store = storeSubjects();
    for (const char* fromPhone : {"Budget review", "Pills", "Concert: Brahms Requiem"})
        EXPECT_EQ(store.count(QString::fromLatin1(fromPhone)), 1) << fromPhone;
    const QStringList onPhone = phoneSubjects();
    for (const char* fromStore : {"Yoga", "Sprint planning", "Book club"})
        EXPECT_EQ(onPhone.count(QString::fromLatin1(fromStore)), 1) << fromStore;
    // The pairs stay single on both sides.
    EXPECT_EQ(store.count(QStringLiteral("Choir")), 1);
    EXPECT_EQ(onPhone.count(QStringLiteral("Choir")), 1);
}
