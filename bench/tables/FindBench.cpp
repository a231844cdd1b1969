// SPDX-License-Identifier: GPL-3.0-or-later
// Find on a calendar table the size of a whole PIM calendar: 20,000 rows, then
// 2,000 look-ups by StartAsText and 2,000 by EntryID, each from the first row,
// the way the matcher and the series setters search.
#include "core/Context.h"
#include "tables/Layouts.h"
#include "tables/TSRADODB.h"

#include <benchmark/benchmark.h>

using namespace tsr;
using namespace tsr::tables;

namespace {

constexpr int kRows = 20000;
constexpr int kLookups = 2000;

QString startText(const Recordset& t, int i) {
    return t.dateAsText(core::VbDate(45000.0 + i / 3 + (i % 3) * 0.125));
}

void fill(Recordset& t) {
    InitCalendarRS(t);
    for (int i = 0; i < kRows; ++i) {
        vCalCreateNewRecord(t);
        t.setValue(QStringLiteral("EntryID"), QStringLiteral("uid-%1").arg(i / 4)); // series of four rows
        t.setValue(QStringLiteral("StartAsText"), startText(t, i));
        t.update();
    }
}

void BM_FindStartAsTextThenEntryID(benchmark::State& state) {
    Recordset t;
    t.setDateTextForm(QStringLiteral("dd.mm.yy"), QStringLiteral("hh:mm:ss"));
    fill(t);
    QStringList byStart, byId;
    for (int k = 0; k < kLookups; ++k) {
        const int i = (k * 7919) % kRows;
        byStart << QStringLiteral("StartAsText = '") + startText(t, i) + QLatin1Char('\'');
        byId << QStringLiteral("EntryID = uid-%1").arg(i / 4);
    }
    int hits = 0;
    for (auto _ : state) {
        hits = 0;
        for (const QString& c : byStart) {
            t.moveFirst();
            hits += t.find(c, 0, 1);
        }
        for (const QString& c : byId) {
            t.moveFirst();
            hits += t.find(c, 0, 1);
        }
    }
    if (hits != 2 * kLookups)
        state.SkipWithError("a look-up missed");
    state.counters["lookups"] = 2 * kLookups;
}
BENCHMARK(BM_FindStartAsTextThenEntryID)->Unit(benchmark::kMillisecond);

// The same look-ups with the table changing between them, as a read that merges
// and appends rows does: every change keeps the index current.
void BM_FindWhileAppending(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Recordset t;
        fill(t);
        state.ResumeTiming();
        for (int k = 0; k < kLookups; ++k) {
            t.moveFirst();
            t.find(QStringLiteral("EntryID = uid-%1").arg(k * 3), 0, 1);
            vCalCreateNewRecord(t);
            t.setValue(QStringLiteral("EntryID"), QStringLiteral("new-%1").arg(k));
            t.update();
        }
    }
}
BENCHMARK(BM_FindWhileAppending)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
