// SPDX-License-Identifier: GPL-3.0-or-later
// The built program when things go wrong: a second start during a run, a phone
// that vanishes in the middle, a process killed at random points, and settings,
// folders and ports that are not what they should be. Whatever happens, the run
// says so, the files on both sides stay whole, and a later run finishes the work.
#include "e2e/ProgramRun.h"
#include "phone/PhoneRecords.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QThread>
#include <csignal>

using namespace tsr::test;

namespace {

class FaultRun : public ProgramRun {
protected:
    // The program's messages in English; these runs need no date typed in the locale's form.
    FaultRun() { m_env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8")); }

    // Ten entries on each side, none paired; a complete sync of the next year.
    void seedTenAndTen(const QStringList& phoneOptions) {
        EmulatedPhone& p = phoneWith(phoneOptions);
        for (int i = 1; i <= 10; ++i) {
            p.seed(i, vcs(phoneTime(i, 9), phoneTime(i, 10), "MISCELLANEOUS", "Phone " + QByteArray::number(i)));
            appointment(QStringLiteral("store-%1").arg(i), storeTime(i, 14), storeTime(i, 15),
                        QStringLiteral("Store %1").arg(i));
        }
        setSetting(QStringLiteral("SyncTyp"), 4);
        setSetting(QStringLiteral("SyncZeitraum"), 4);
        setSetting(QStringLiteral("SyncTageWochenMonate"), 3);
        setSetting(QStringLiteral("SyncnaechstenAnzahl"), 1);
    }
    // A phone like the one before, without its fault: the same records.
    void replacePhone() {
        const auto records = phone->records();
        phoneWith();
        for (auto it = records.begin(); it != records.end(); ++it)
            phone->seed(it.key(), it.value());
    }
    // Every store file is a whole calendar object; none is left half-written.
    void expectWholeStoreFiles() {
        for (const QString& name : filesIn(QStringLiteral("pim/calendar"), QString())) {
            if (name == QLatin1String("displayname"))
                continue;
            QFile f(pim() + QStringLiteral("/calendar/") + name);
            ASSERT_TRUE(f.open(QIODevice::ReadOnly));
            const QByteArray t = f.readAll();
            EXPECT_TRUE(name.endsWith(QLatin1String(".ics"))) << "a stray file: " << name.toStdString();
            EXPECT_TRUE(t.startsWith("BEGIN:VCALENDAR") && t.endsWith("END:VCALENDAR\r\n")) << name.toStdString();
        }
    }
    void expectNoDuplicates() {
        for (const QStringList& side : {storeSubjects(), phoneSubjects()})
            EXPECT_EQ(QSet<QString>(side.begin(), side.end()).size(), side.size()) << side.join(u',').toStdString();
    }
};

} // namespace

TEST_F(FaultRun, ASecondUnattendedStartDuringARunIsRefused) {
    seedTenAndTen(opts("--latency 150"));
    auto first = start({QStringLiteral("VCAL")});
    // The first holds the instance once its settings are read; give it that moment.
    QThread::msleep(700);
    const RunResult second = run({QStringLiteral("VCAL")});
    EXPECT_TRUE(second.err.contains(QStringLiteral("Cannot start autosync, as it has already been activated!")))
        << second.err.toStdString();
    EXPECT_NE(second.status, -1) << "the second start did not end by itself";
    ASSERT_TRUE(first->waitForFinished(60000));
    EXPECT_EQ(first->exitCode(), 0) << first->readAllStandardError().toStdString();
    EXPECT_EQ(storeSubjects().size(), 20);
}

TEST_F(FaultRun, APhoneThatVanishesEndsTheRunAndTheNextRunFinishes) {
    seedTenAndTen(opts("--break-after 30:OBEX:GET:TELECOM/CAL/6.VCS"));
    const RunResult broken = run({QStringLiteral("VCAL")});
    EXPECT_EQ(broken.status, 1) << broken.out.toStdString() << broken.err.toStdString();
    EXPECT_EQ(phone->records().size(), 10) << "the phone was written after its line broke";
    EXPECT_EQ(storeSubjects().size(), 10) << "the store was written from half a read";
    expectWholeStoreFiles();

    replacePhone();
    const RunResult next = run({QStringLiteral("VCAL")});
    EXPECT_EQ(next.status, 0) << next.out.toStdString() << next.err.toStdString();
    EXPECT_EQ(storeSubjects().size(), 20);
    EXPECT_EQ(phone->records().size(), 20);
    expectNoDuplicates();
}

// Killed at random moments of a run on a slow line, again and again: the store's
// files stay whole and the run that is let finish leaves no duplicate.
TEST_F(FaultRun, KilledAtRandomPointsLeavesWholeFilesAndNoDuplicates) {
    seedTenAndTen(opts("--baud 19200 --latency 20"));
    QRandomGenerator random(20261123);
    for (int round = 0; round < 6; ++round) {
        auto p = start({QStringLiteral("VCAL")});
        QThread::msleep(random.bounded(200, 2500));
        ::kill(pid_t(p->processId()), SIGKILL);
        p->waitForFinished(5000);
        expectWholeStoreFiles();
        // The killed host left its line open in the middle of a command: a new phone line.
        replacePhone();
    }
    const RunResult last = run({QStringLiteral("VCAL")}, 120000);
    EXPECT_EQ(last.status, 0) << last.out.toStdString() << last.err.toStdString();
    expectWholeStoreFiles();
    expectNoDuplicates();
    EXPECT_EQ(storeSubjects().size(), 20);
}

TEST_F(FaultRun, BrokenSettingsFilesFallBackToTheDefaults) {
    seedTenAndTen({});
    QByteArray garbage;
    for (int i = 0; i < 4096; ++i)
        garbage += char(QRandomGenerator::global()->bounded(256));
    writeConfigFile(QStringLiteral("machine.ini"), "[Software\n" + garbage);
    writeConfigFile(QStringLiteral("user.ini"), garbage);
    const RunResult r = run({QStringLiteral("VCAL")});
    EXPECT_TRUE(r.status == 0 || r.status == 1) << r.status << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(QStringLiteral("Summary")) || r.out.contains(QStringLiteral("Zusammenfassung")))
        << r.out.toStdString();
}

TEST_F(FaultRun, AHomeFolderThatCannotBeWrittenIsSaidAndTheRunGoesOn) {
    seedTenAndTen({});
    QFile blocker(path(QStringLiteral("not-a-folder")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    auto p = std::make_unique<QProcess>();
    p->setProcessEnvironment(m_env);
    QStringList args = commonArgs();
    args.replaceInStrings(QRegularExpression(QStringLiteral("^--home=.*")),
                          QStringLiteral("--home=") + path(QStringLiteral("not-a-folder/home")));
    p->start(program(), args << QStringLiteral("VCAL"));
    ASSERT_TRUE(p->waitForFinished(60000));
    EXPECT_EQ(p->exitStatus(), QProcess::NormalExit);
    const QString err = QString::fromUtf8(p->readAllStandardError());
    EXPECT_TRUE(err.contains(QStringLiteral("not-a-folder"))) << err.toStdString();
    EXPECT_EQ(storeSubjects().size(), 20) << "the sync itself needs no home folder";
}

TEST_F(FaultRun, AMissingLanguageTableFallsBackToEnglish) {
    seedTenAndTen({});
    setSetting(QStringLiteral("Sprache"), QStringLiteral("0410")); // Italian: no table is shipped
    const RunResult r = run({QStringLiteral("VCAL")});
    EXPECT_TRUE(r.status == 0 || r.status == 1) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(QStringLiteral("Summary"))) << r.out.toStdString();
    EXPECT_FALSE(r.err.isEmpty()) << "the missing table was not reported";
}

TEST_F(FaultRun, APortThatDoesNotExistIsAnErrorRowAndStatusOne) {
    appointment(QStringLiteral("a"), storeTime(1, 9), storeTime(1, 10), QStringLiteral("Store 1"));
    const RunResult r = run({QStringLiteral("VCAL")});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("no-such-phone")) || r.out.contains(QStringLiteral("no-such-phone")))
        << r.out.toStdString() << r.err.toStdString();
    EXPECT_EQ(storeSubjects(), QStringList{QStringLiteral("Store 1")});
}
