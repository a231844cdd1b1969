// SPDX-License-Identifier: GPL-3.0-or-later
// AutoSync of the calendar through the main window's run, against the emulated
// phone and a local store: every SyncTyp with every SyncZeitraum on one shared
// fixture, the type mask, and a weekly series shown on several days written once.
#include "roads/AutoSyncCases.h"
#include "roads/AutoSyncRun.h"
#include "roads/RoadsFixture.h"

#include <QSet>

using namespace tsr;
using tsr::test::kPhoneBefore;
using tsr::test::kRuns;
using tsr::test::kStoreBefore;
using tsr::test::plus;
using tsr::test::RoadsFixture;
using tsr::test::RunCase;
using tsr::test::vcs;
using tsr::test::when;

namespace {

class AutoSyncFixture : public RoadsFixture {
protected:
    test::EmulatedPhone& seedBothSides() {
        test::EmulatedPhone& p = phoneWith();
        p.seed(1, vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
        p.seed(2, vcs("20260304T090000Z", "20260304T100000Z", "MISCELLANEOUS", "Phone memo"));
        p.seed(3, vcs("20260320T140000Z", "20260320T150000Z", "MEETING", "Phone meeting"));
        appointment(when(2026, 3, 10, 10, 30), when(2026, 3, 10, 11, 45), QStringLiteral("Dentist"));
        appointment(when(2026, 3, 5, 9), when(2026, 3, 5, 10), QStringLiteral("Store memo"));
        appointment(when(2026, 3, 6, 14), when(2026, 3, 6, 15), QStringLiteral("Store meeting"), pim::olMeeting);
        appointment(when(2026, 6, 15, 9), when(2026, 6, 15, 10), QStringLiteral("Far future"));
        auto yoga = appointment(when(2026, 3, 2, 7), when(2026, 3, 2, 8), QStringLiteral("Yoga"));
        auto pattern = yoga->GetRecurrencePattern();
        pattern->setRecurrenceType(pim::olRecursWeekly);
        pattern->setDayOfWeekMask(2 | 8 | 32); // Monday, Wednesday, Friday
        yoga->Save();

        auto& s = ctx.settings;
        s.SyncTermine = 32;
        s.SyncAlarmAnzahl = 10;
        s.SyncEintraegeab = when(2026, 3, 5);
        s.SyncEintraegevonbis = QStringLiteral("05.03.2026\t20.03.2026 23:59:59");
        s.SyncTageWochenMonate = 1;
        s.SyncnaechstenAnzahl = 2;
        // The phone was read once, as before a click on AutoSync.
        EXPECT_TRUE(phone::ATCInfo(ctx));
        ctx.read.MobileConnected = true;
        return p;
    }

    QStringList phoneSubjects() {
        QStringList out;
        for (const QByteArray& r : phone->records()) {
            const int from = r.indexOf("DESCRIPTION:") + 12;
            out << QString::fromLatin1(r.mid(from, r.indexOf("\r\n", from) - from));
        }
        out.sort();
        return out;
    }
    QStringList storeSubjects() {
        QStringList out;
        for (const QString& name : icsFiles()) {
            const QByteArray t = icsText(name);
            const int from = t.indexOf("SUMMARY:") + 8;
            out << QString::fromUtf8(t.mid(from, t.indexOf("\r\n", from) - from));
        }
        out.sort();
        return out;
    }
};

class AutoSyncRuns : public AutoSyncFixture, public ::testing::WithParamInterface<RunCase> {};

} // namespace

TEST_P(AutoSyncRuns, EachTypeAndPeriodWritesWhereItBelongs) {
    const RunCase& c = GetParam();
    seedBothSides();
    ctx.settings.SyncTyp = int16_t(c.syncTyp);
    ctx.settings.SyncZeitraum = int16_t(c.zeitraum);
    roads::SyncMain(ctx);
    EXPECT_EQ(phoneSubjects(), c.phone);
    EXPECT_EQ(storeSubjects(), c.store);
    EXPECT_FALSE(ctx.read.SyncRunning);
}

INSTANTIATE_TEST_SUITE_P(Runs, AutoSyncRuns, ::testing::ValuesIn(kRuns),
                         [](const ::testing::TestParamInfo<RunCase>& info) {
                             return "SyncTyp" + std::to_string(info.param.syncTyp) + "Zeitraum" +
                                    std::to_string(info.param.zeitraum);
                         });

using AutoSyncMask = AutoSyncFixture;

// Meetings only: the meeting goes, the memo and the series stay; 16 lets nothing pass.
TEST_F(AutoSyncMask, TheTypeMaskChoosesTheRows) {
    seedBothSides();
    ctx.settings.SyncTyp = 2;
    ctx.settings.SyncZeitraum = 3;
    ctx.settings.SyncTermine = 2;
    roads::SyncMain(ctx);
    EXPECT_EQ(phoneSubjects(), plus(kPhoneBefore, {"Store meeting"}));

    ctx.settings.SyncTermine = 16;
    roads::SyncMain(ctx);
    EXPECT_EQ(phoneSubjects(), plus(kPhoneBefore, {"Store meeting"}));
}
