// SPDX-License-Identifier: GPL-3.0-or-later
// AutoSync of the calendar through the main window's run, against the emulated
// phone and a local store: every SyncTyp with every SyncZeitraum on one shared
// fixture, the type mask, and a weekly series shown on several days written once.
#include "phone/RoadsFixture.h"
#include "sync/AutoSyncRun.h"

#include <QSet>

using namespace tsr;
using tsr::test::RoadsFixture;
using tsr::test::vcs;
using tsr::test::when;

namespace {

struct RunCase {
    int syncTyp;
    int zeitraum;
    QStringList phone; // the subjects the phone holds afterwards, sorted
    QStringList store; // the subjects the store holds afterwards, sorted
};

const QStringList kStoreBefore{QStringLiteral("Dentist"), QStringLiteral("Far future"), QStringLiteral("Store meeting"),
                               QStringLiteral("Store memo"), QStringLiteral("Yoga")};
const QStringList kPhoneBefore{QStringLiteral("Dentist"), QStringLiteral("Phone meeting"),
                               QStringLiteral("Phone memo")};

QStringList plus(QStringList list, std::initializer_list<const char*> more) {
    for (const char* m : more)
        list << QString::fromLatin1(m);
    list.sort();
    return list;
}

// Today is Monday 2 March 2026. The period settings: 10 entries; from 5 March;
// 5 to 20 March; the next 2 weeks.
const RunCase kRuns[] = {
    // The phone writes the store: no period, the phone's own entries go over.
    {3, 1, kPhoneBefore, plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    {3, 2, kPhoneBefore, plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    {3, 3, kPhoneBefore, plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    {3, 4, kPhoneBefore, plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    // The store fills the phone's free room with what the period holds.
    {2, 1, plus(kPhoneBefore, {"Far future", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {2, 2, plus(kPhoneBefore, {"Far future", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {2, 3, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {2, 4, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    // The store overwrites the phone: the phone's own entries go first.
    {1, 1, plus({}, {"Dentist", "Far future", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {1, 2, plus({}, {"Dentist", "Far future", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {1, 3, plus({}, {"Dentist", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {1, 4, plus({}, {"Dentist", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    // Both ways within the period. The limit counts the paired rows it walks past,
    // so a long period can leave its latest store entry for the next run.
    {4, 1, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}),
     plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    {4, 2, plus(kPhoneBefore, {"Far future", "Store meeting", "Store memo", "Yoga"}),
     plus(kStoreBefore, {"Phone meeting"})},
    {4, 3, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}), plus(kStoreBefore, {"Phone meeting"})},
    {4, 4, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}), plus(kStoreBefore, {"Phone memo"})},
};

void PrintTo(const RunCase& c, std::ostream* os) {
    *os << "SyncTyp " << c.syncTyp << " SyncZeitraum " << c.zeitraum;
}

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
    sync::SyncMain(ctx);
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
    sync::SyncMain(ctx);
    EXPECT_EQ(phoneSubjects(), plus(kPhoneBefore, {"Store meeting"}));

    ctx.settings.SyncTermine = 16;
    sync::SyncMain(ctx);
    EXPECT_EQ(phoneSubjects(), plus(kPhoneBefore, {"Store meeting"}));
}
