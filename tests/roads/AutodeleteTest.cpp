// SPDX-License-Identifier: GPL-3.0-or-later
// The autodelete pass at the end of a read of the phone's calendar: each mode
// with its type boxes and series box, against the real phone, and a cancel in
// the middle.
#include "core/OptionsModel.h"
#include "roads/Mobile.h"
#include "roads/RoadsFixture.h"

using namespace tsr;
using tsr::test::RoadsFixture;
using tsr::test::vcs;
using tsr::test::when;

namespace {

struct Mode {
    const char* name;
    int16_t delOption;
    int16_t delTermine;
    int16_t delSerie;
    int16_t delAnzahl;
    QList<int> left; // the records the phone keeps
};

// Today is 2 March 2026; DelDate is 10 February.
const Mode kModes[] = {
    {"before the date, all types", 1, 32, 0, 0, {3, 4, 5, 6, 7}},
    {"before the date, meetings only", 1, 2, 0, 0, {1, 3, 4, 5, 6, 7}},
    {"passed entries, all types", 3, 32, 0, 0, {3, 5, 6}},
    {"passed entries, calls and birthdays", 3, 4 | 8, 0, 0, {1, 2, 3, 5, 6, 7}},
    {"passed entries, series too", 3, 32, 1, 0, {5, 6}},
    {"the two oldest memos, no series", 2, 1, 0, 2, {2, 3, 4, 5, 6}},
    {"more than there are", 2, 32, 1, 99, {}},
    {"no mode chosen", 0, 32, 1, 0, {1, 2, 3, 4, 5, 6, 7}},
};

class Autodelete : public RoadsFixture, public ::testing::WithParamInterface<Mode> {
protected:
    test::EmulatedPhone& seeded() {
        test::EmulatedPhone& p = phoneWith();
        p.seed(1, vcs("20260201T090000Z", "20260201T100000Z", "MISCELLANEOUS", "Old memo"));
        p.seed(2, vcs("20260205T090000Z", "20260205T100000Z", "MEETING", "Old meeting"));
        p.seed(3, vcs("20260105T180000Z", "20260105T193000Z", "MISCELLANEOUS", "Choir", "W1 MO TH #0"));
        p.seed(4, vcs("20260220T090000Z", "20260220T091500Z", "PHONE CALL", "0301234567"));
        p.seed(5, vcs("20260305T090000Z", "20260305T100000Z", "MISCELLANEOUS", "Next week"));
        p.seed(6, vcs("20260320T090000Z", "20260320T100000Z", "MEETING", "Later meeting"));
        p.seed(7, vcs("20260301T070000Z", "20260301T080000Z", "MISCELLANEOUS", "Yesterday"));
        return p;
    }

    void choose(const Mode& m) {
        auto& s = ctx.settings;
        s.Autodel = 1;
        s.DelOption = m.delOption;
        s.DelTermine = m.delTermine;
        s.DelSerie = m.delSerie;
        s.DelAnzahl = m.delAnzahl;
        s.DelDate = when(2026, 2, 10);
        core::LoadPropertySettings(ctx);
    }
};

} // namespace

TEST_P(Autodelete, ModesTakeTheChosenEntriesOffThePhone) {
    const Mode& m = GetParam();
    test::EmulatedPhone& p = seeded();
    ctx.flags.GlobalStartDate = when(2026, 1, 1);
    choose(m);
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    EXPECT_EQ(p.records().keys(), m.left);
    EXPECT_EQ(ctx.read.vCalMobileCount, m.left.size());
    EXPECT_EQ(cal().recordCount(), m.left.size());
    EXPECT_EQ(ctx.tables.LogCalendar->recordCount(), 7 - m.left.size());
}

INSTANTIATE_TEST_SUITE_P(Modes, Autodelete, ::testing::ValuesIn(kModes),
                         [](const ::testing::TestParamInfo<Mode>& info) {
                             QString name = QString::fromLatin1(info.param.name);
                             name.remove(u' ').remove(u',');
                             return name.toStdString();
                         });

using AutodeleteCancel = RoadsFixture;

// A cancel in the middle of the pass ends it; the count stays true to the phone.
TEST_F(AutodeleteCancel, HalfWayKeepsTheRest) {
    test::EmulatedPhone& p = phoneWith();
    for (int i = 1; i <= 5; ++i)
        p.seed(i, vcs(QByteArray("2026020") + QByteArray::number(i) + "T090000Z",
                      QByteArray("2026020") + QByteArray::number(i) + "T100000Z", "MISCELLANEOUS",
                      "Old " + QByteArray::number(i)));
    ctx.flags.GlobalStartDate = when(2026, 1, 1);
    ctx.settings.Autodel = 1;
    ctx.settings.DelOption = 3;
    ctx.settings.DelTermine = 32;
    core::LoadPropertySettings(ctx);
    int polls = 0;
    ui.onProcessEvents = [&] {
        // The third poll of the pass, after two entries went.
        if (!ui.statusTexts.isEmpty() && ui.statusTexts.last().startsWith(ctx.strings.text(894)) && ++polls == 3)
            ctx.status.cancelRequested();
    };
    ui.answer(core::MsgResult::Yes);
    ASSERT_TRUE(roads::vCalReadMobile(ctx));
    EXPECT_EQ(p.records().size(), 3);
    EXPECT_EQ(ctx.read.vCalMobileCount, 3);
    EXPECT_EQ(cal().recordCount(), 3);
}
